// Throughput of the TLV codec's two engines against minimal yardsticks, on a
// stream shaped like one calendar event (~1 KB) and on a 1 MB stream of such
// events. After the runs the program prints each engine's time as a multiple
// of its yardstick's, measured in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/TlvYardsticks.h"
#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

namespace {

using namespace ParserCreatorCollection;
using PimTlvBench::MinimalWalker;
using PimTlvBench::MinimalWriter;
using PimTlvBench::NullTarget;

// ---- the stream shapes ----------------------------------------------------------

enum class Op { Begin, End, Str, U8, U16, U32 };
struct Step {
    Op op;
    unsigned int id;
    const char* text;
    unsigned int number;
};
constexpr Step B(unsigned int id) {
    return {Op::Begin, id, nullptr, 0};
}
constexpr Step E(unsigned int id) {
    return {Op::End, id, nullptr, 0};
}
constexpr Step S(unsigned int id, const char* t) {
    return {Op::Str, id, t, 0};
}
constexpr Step U8(unsigned int id, unsigned int v) {
    return {Op::U8, id, nullptr, v};
}
constexpr Step U16(unsigned int id, unsigned int v) {
    return {Op::U16, id, nullptr, v};
}
constexpr Step U32(unsigned int id, unsigned int v) {
    return {Op::U32, id, nullptr, v};
}

// One calendar event as an item creator writes it: root, component, instance,
// then 20 property nodes (three of them attendees), some with x-parameters.
// clang-format off
constexpr Step kEvent[] = {
    B(1), B(103), U32(10, 42),
    B(202), S(302, "-//Velmor//PIM Sync 4.2//EN"), E(202),
    B(203), S(1015, "2.0"), E(203),
    B(206), S(1003, "PUBLIC"), E(206),
    B(208), S(1002, "en"),
        S(312, "Quarterly planning review: walk through the roadmap, agree on the hiring plan "
               "and settle the travel budget for the next two quarters."), E(208),
    B(210), S(1002, "en"), S(315, "Building 4, Room 2.17 (Harbour View)"), E(210),
    B(212), U8(317, 5), E(212),
    B(214), S(319, "CONFIRMED"), E(214),
    B(215), S(320, "Quarterly planning review"), S(1013, "X-VELMOR-COLOR"), S(1014, "#3A7BD5"),
        E(215),
    B(219), S(1007, "20261124T090000Z"), S(323, "Europe/Berlin"), E(219),
    B(217), S(1007, "20261124T103000Z"), S(323, "Europe/Berlin"), E(217),
    B(234), S(1010, "8f14e45f-ceea-467f-a0e6-7c2b1d5e9a31@velmor.example"), E(234),
    B(242), S(1007, "20261120T151500Z"), E(242),
    B(244), S(1007, "20261121T080000Z"), E(244),
    B(245), U16(367, 3), E(245),
    B(900), S(1004, "Work"), S(1004, "Planning"), S(1013, "X-SOURCE"), S(1014, "team-calendar"),
        E(900),
    B(230), S(338, "Dana Whitfield"), S(340, "mailto:dana.whitfield@example.com"),
        S(1013, "X-ROOM-BOOKER"), S(1014, "yes"), E(230),
    B(228), S(333, "ACCEPTED"), U8(334, 1), S(338, "Jonas Ekström"),
        S(340, "mailto:jonas.ekstroem@example.com"), S(1013, "X-NUM-GUESTS"), S(1014, "1"), E(228),
    B(228), S(333, "TENTATIVE"), U8(334, 1), S(338, "Priya Raman"),
        S(340, "mailto:priya.raman@example.com"), E(228),
    B(228), S(333, "NEEDS-ACTION"), U8(334, 0), S(338, "Li Wei"),
        S(340, "mailto:li.wei@example.com"), E(228),
    B(252), U8(377, 0), E(252),
    E(103), E(1),
};
// clang-format on

struct Shape {
    const char* name;
    unsigned int events;  // 1: the event alone; more: that many inside one list node
};
constexpr unsigned int kListNode = 6;

template <typename Writer>
bool Replay(Writer& w, const Shape& shape) {
    bool ok = true;
    if (shape.events > 1) ok = w.NodeBegin(kListNode);
    for (unsigned int i = 0; i < shape.events && ok; ++i) {
        for (const Step& s : kEvent) {
            switch (s.op) {
                case Op::Begin:
                    ok = w.NodeBegin(s.id);
                    break;
                case Op::End:
                    ok = w.NodeEnd(s.id);
                    break;
                case Op::Str:
                    ok = w.LeafString(s.id, s.text);
                    break;
                case Op::U8:
                    ok = w.LeafUInt8(s.id, static_cast<unsigned char>(s.number));
                    break;
                case Op::U16:
                    ok = w.LeafUInt16(s.id, static_cast<unsigned short>(s.number));
                    break;
                case Op::U32:
                    ok = w.LeafUInt32(s.id, s.number);
                    break;
            }
            if (!ok) return false;
        }
    }
    if (shape.events > 1 && ok) ok = w.NodeEnd(kListNode);
    return ok;
}

unsigned int ElementsPerEvent() {
    unsigned int n = 0;
    for (const Step& s : kEvent) n += s.op != Op::End ? 1 : 0;
    return n;
}

unsigned int Elements(const Shape& shape) {
    return shape.events * ElementsPerEvent() + (shape.events > 1 ? 1 : 0);
}

// The stream of a shape, written once by the codec.
const std::vector<unsigned char>& StreamOf(const Shape& shape) {
    static std::map<std::string, std::vector<unsigned char>> cache;
    std::vector<unsigned char>& bytes = cache[shape.name];
    if (bytes.empty()) {
        CTLVCreator creator;
        const void* data = nullptr;
        unsigned int length = 0;
        if (Replay(creator, shape) && creator.GetData(data, length)) {
            const auto* p = static_cast<const unsigned char*>(data);
            bytes.assign(p, p + length);
        }
    }
    return bytes;
}

unsigned int EventSize() {
    return static_cast<unsigned int>(StreamOf({"event", 1}).size());
}

const Shape kEventShape{"event", 1};
const Shape kMegabyteShape{"1MB", (1u << 20) / EventSize() + 1};

// ---- targets ----------------------------------------------------------------------

void SetRates(benchmark::State& state, const Shape& shape, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    state.counters["elements/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * Elements(shape), benchmark::Counter::kIsRate);
    state.counters["bytes"] = static_cast<double>(bytes);
}

// ---- benchmarks ---------------------------------------------------------------------

void WalkCodec(benchmark::State& state, const Shape& shape) {
    const std::vector<unsigned char>& stream = StreamOf(shape);
    NullTarget target;
    CTLVParser parser(target);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    for (auto _ : state) {
        const bool ok = parser.Parse(stream.data(), static_cast<unsigned int>(stream.size()),
                                     errorText, consumed);
        if (!ok) state.SkipWithError("walk failed");
        benchmark::DoNotOptimize(consumed);
    }
    SetRates(state, shape, stream.size());
}

template <typename TextCheck>
void WalkMinimalWith(benchmark::State& state, const Shape& shape) {
    const std::vector<unsigned char>& stream = StreamOf(shape);
    NullTarget target;
    ITLV* opaque = &target;  // keeps the calls virtual, as the codec's are
    benchmark::DoNotOptimize(opaque);
    MinimalWalker<TextCheck> walker;
    for (auto _ : state) {
        const bool ok =
            walker.Walk(stream.data(), static_cast<unsigned int>(stream.size()), *opaque);
        if (!ok) state.SkipWithError("walk failed");
    }
    SetRates(state, shape, stream.size());
}

// The yardstick of the walk: the minimal walker with a fast UTF-8 check.
void WalkYardstick(benchmark::State& state, const Shape& shape) {
    WalkMinimalWith<PimTlvBench::FastTextCheck>(state, shape);
}
// The same with the codec's own UTF-8 check, and with none.
void WalkMinimal(benchmark::State& state, const Shape& shape) {
    WalkMinimalWith<PimTlvBench::CodecTextCheck>(state, shape);
}
void WalkMinimalNoUtf8(benchmark::State& state, const Shape& shape) {
    WalkMinimalWith<PimTlvBench::NoTextCheck>(state, shape);
}

void WriteCodec(benchmark::State& state, const Shape& shape) {
    CTLVCreator creator;
    const void* data = nullptr;
    unsigned int length = 0;
    for (auto _ : state) {
        if (!Replay(creator, shape) || !creator.GetData(data, length)) {
            state.SkipWithError("write failed");
        }
        benchmark::DoNotOptimize(data);
    }
    if (length != StreamOf(shape).size()) state.SkipWithError("unexpected size");
    SetRates(state, shape, length);
}

void WriteMinimal(benchmark::State& state, const Shape& shape) {
    MinimalWriter writer;
    const void* data = nullptr;
    unsigned int length = 0;
    for (auto _ : state) {
        writer.Reset();
        if (!Replay(writer, shape) || !writer.GetData(data, length)) {
            state.SkipWithError("write failed");
        }
        benchmark::DoNotOptimize(data);
    }
    // The yardstick is only fair if it writes the very same bytes.
    const auto* p = static_cast<const unsigned char*>(data);
    if (std::vector<unsigned char>(p, p + length) != StreamOf(shape)) {
        state.SkipWithError("yardstick wrote different bytes");
    }
    SetRates(state, shape, length);
}

BENCHMARK_CAPTURE(WalkCodec, event, kEventShape);
BENCHMARK_CAPTURE(WalkYardstick, event, kEventShape);
BENCHMARK_CAPTURE(WalkMinimal, event, kEventShape);
BENCHMARK_CAPTURE(WalkMinimalNoUtf8, event, kEventShape);
BENCHMARK_CAPTURE(WriteCodec, event, kEventShape);
BENCHMARK_CAPTURE(WriteMinimal, event, kEventShape);
BENCHMARK_CAPTURE(WalkCodec, 1MB, kMegabyteShape);
BENCHMARK_CAPTURE(WalkYardstick, 1MB, kMegabyteShape);
BENCHMARK_CAPTURE(WalkMinimal, 1MB, kMegabyteShape);
BENCHMARK_CAPTURE(WalkMinimalNoUtf8, 1MB, kMegabyteShape);
BENCHMARK_CAPTURE(WriteCodec, 1MB, kMegabyteShape);
BENCHMARK_CAPTURE(WriteMinimal, 1MB, kMegabyteShape);

// ---- ratios ---------------------------------------------------------------------------

// Console output as usual, plus the best CPU time per benchmark for the ratios
// (CPU time, because the machines that run this are often shared).
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const std::string name = run.benchmark_name();
            const double t = run.GetAdjustedCPUTime();
            auto it = m_best.find(name);
            if (it == m_best.end() || t < it->second) m_best[name] = t;
        }
    }
    void PrintRatios() const {
        struct Pair {
            const char* engine;
            const char* yardstick;
            double target;
        };
        static constexpr Pair kPairs[] = {{"WalkCodec", "WalkYardstick", 2.0},
                                          {"WriteCodec", "WriteMinimal", 3.0},
                                          {"WalkCodec", "WalkMinimal", 0.0},
                                          {"WalkCodec", "WalkMinimalNoUtf8", 0.0}};
        std::printf("\nTime against the yardstick of the same run:\n");
        for (const char* shape : {"event", "1MB"}) {
            for (const Pair& pair : kPairs) {
                const auto a = m_best.find(std::string(pair.engine) + "/" + shape);
                const auto b = m_best.find(std::string(pair.yardstick) + "/" + shape);
                if (a == m_best.end() || b == m_best.end() || b->second <= 0) continue;
                const double ratio = a->second / b->second;
                std::printf("  %-5s %-10s / %-17s = %5.2fx", shape, pair.engine, pair.yardstick,
                            ratio);
                if (pair.target > 0) {
                    std::printf("  (target <= %.0fx: %s)", pair.target,
                                ratio <= pair.target ? "met" : "MISSED");
                }
                std::printf("\n");
            }
        }
    }

  private:
    std::map<std::string, double> m_best;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    std::printf("event stream: %u bytes, %u elements; 1MB stream: %zu bytes, %u elements\n",
                EventSize(), Elements(kEventShape), StreamOf(kMegabyteShape).size(),
                Elements(kMegabyteShape));
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    return 0;
}
