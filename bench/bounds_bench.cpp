// Resource bounds of the readers on hostile shapes: parse time and peak heap
// growth per MiB of input at 1, 4 and 16 MiB. Both must stay flat per MiB
// (linear in the input) for every shape: nodes nested as deep as the bytes
// allow, millions of one-byte leaves and of empty property nodes, e-mail
// entities nested inside each other, and one property with millions of
// extension parameters.
//
// The heap is measured by this program's own global operator new, which every
// allocation of the library goes through: "heap/MiB" is the highest number of
// live heap bytes during one Parse above those live before it, per MiB of
// input; "s/MiB" is the parse time per MiB.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "bench/QuietReceivers.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/email/TLVEmailParser.h"

namespace {

std::atomic<std::size_t> g_live{0};
std::atomic<std::size_t> g_peak{0};

// Kept out of line: the compiler must not pair an inlined new with free.
[[gnu::noinline]] void* Allocate(std::size_t size) noexcept {
    void* p = std::malloc(size == 0 ? 1 : size);
    if (p != nullptr) {
        const std::size_t live = g_live += malloc_usable_size(p);
        std::size_t peak = g_peak.load();
        while (live > peak && !g_peak.compare_exchange_weak(peak, live)) {
        }
    }
    return p;
}

[[gnu::noinline]] void Release(void* p) noexcept {
    if (p != nullptr) g_live -= malloc_usable_size(p);
    std::free(p);
}

}  // namespace

// clang-format off
void* operator new(std::size_t n) { if (void* p = Allocate(n)) return p; throw std::bad_alloc(); }
void* operator new[](std::size_t n) { if (void* p = Allocate(n)) return p; throw std::bad_alloc(); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return Allocate(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return Allocate(n); }
void operator delete(void* p) noexcept { Release(p); }
void operator delete[](void* p) noexcept { Release(p); }
void operator delete(void* p, std::size_t) noexcept { Release(p); }
void operator delete[](void* p, std::size_t) noexcept { Release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { Release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { Release(p); }
// clang-format on

namespace {

using Bytes = std::vector<unsigned char>;
constexpr std::size_t kMiB = 1u << 20;

std::size_t FieldSize(std::size_t length) {
    std::size_t n = 1;
    if (length >= 128) {
        for (std::size_t v = length; v != 0; v >>= 8) ++n;
    }
    return n;
}

void Header(Bytes& out, unsigned cls, unsigned id, std::size_t length) {
    out.push_back(static_cast<unsigned char>(cls << 4 | id >> 8));
    out.push_back(static_cast<unsigned char>(id));
    const std::size_t n = FieldSize(length) - 1;
    if (n == 0) return out.push_back(static_cast<unsigned char>(length));
    out.push_back(static_cast<unsigned char>(0x80 | n));
    for (std::size_t i = n; i-- > 0;) out.push_back(static_cast<unsigned char>(length >> (8 * i)));
}

Bytes Node(unsigned id, const Bytes& content) {
    Bytes out;
    Header(out, 8, id, content.size());
    out.insert(out.end(), content.begin(), content.end());
    return out;
}

Bytes Str(unsigned id, const char* text) {
    Bytes out;
    const std::size_t n = std::char_traits<char>::length(text) + 1;
    Header(out, 6, id, n);
    out.insert(out.end(), text, text + n);
    return out;
}

Bytes Repeat(const Bytes& unit, std::size_t budget) {
    Bytes out;
    out.reserve(budget);
    while (out.size() + unit.size() <= budget) out.insert(out.end(), unit.begin(), unit.end());
    return out;
}

// Nodes id nested as deep as budget bytes allow, each holding filling before
// the next. The sizes are worked out innermost first, then written outermost
// first, so building stays linear.
Bytes Nested(unsigned id, const Bytes& filling, std::size_t budget) {
    std::vector<std::size_t> values;
    for (std::size_t value = filling.size();;) {
        const std::size_t total = 2 + FieldSize(value) + value;
        if (total > budget) break;
        values.push_back(value);
        value = total + filling.size();
    }
    Bytes out;
    out.reserve(budget);
    for (std::size_t k = values.size(); k-- > 0;) {
        Header(out, 8, id, values[k]);
        out.insert(out.end(), filling.begin(), filling.end());
    }
    return out;
}

const Bytes kInstance = {0x90, 0x0A, 0x04, 0, 0, 0, 7};

Bytes EventFrame(const Bytes& properties) {
    Bytes component = kInstance;
    component.insert(component.end(), properties.begin(), properties.end());
    return Node(1, Node(103, component));
}

// The hostile shapes, each about budget bytes.
Bytes EventNesting(std::size_t budget) {
    return EventFrame(Node(208, Nested(208, {}, budget)));
}
Bytes EventOneByteLeaves(std::size_t budget) {
    return EventFrame(Repeat({0x21, 0x3D, 0x01, 0x05}, budget));  // UInt8 317 outside its property
}
Bytes EventEmptyNodes(std::size_t budget) {
    return EventFrame(Repeat({0x80, 0xD0, 0x00}, budget));  // empty Description nodes
}
Bytes EventXParams(std::size_t budget) {
    Bytes pair = Str(1013, "X-A");
    const Bytes value = Str(1014, "v");
    pair.insert(pair.end(), value.begin(), value.end());
    Bytes summary = Str(320, "s");
    const Bytes pairs = Repeat(pair, budget);
    summary.insert(summary.end(), pairs.begin(), pairs.end());
    return EventFrame(Node(215, summary));
}
Bytes EmailNestedEntities(std::size_t budget) {
    Bytes message = kInstance;
    const Bytes entities = Nested(600, Str(616, "s"), budget);
    message.insert(message.end(), entities.begin(), entities.end());
    return Node(2, message);
}

template <typename TParser, typename TReceiver>
void Bound(benchmark::State& state, Bytes (*shape)(std::size_t)) {
    const Bytes bytes = shape(static_cast<std::size_t>(state.range(0)) * kMiB);
    TReceiver receiver;
    TParser parser(receiver);
    std::size_t growth = 0;
    for (auto _ : state) {
        const std::size_t before = g_live.load();
        g_peak = before;
        const char* error = nullptr;
        unsigned int consumed = 0;
        benchmark::DoNotOptimize(
            parser.Parse(bytes.data(), static_cast<unsigned int>(bytes.size()), error, consumed));
        growth = std::max(growth, g_peak.load() - before);
    }
    const double mib = static_cast<double>(bytes.size()) / kMiB;
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
    state.counters["s/MiB"] = benchmark::Counter(
        mib, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["heap/MiB"] =
        benchmark::Counter(static_cast<double>(growth) / mib, benchmark::Counter::kDefaults,
                           benchmark::Counter::OneK::kIs1024);
}

using Shape = Bytes (*)(std::size_t);

void Event(benchmark::State& state, Shape shape) {
    Bound<PimShared::CTLVCalendarParser, PimTlvBench::Quiet<PimShared::ICalendarReceiver>>(state,
                                                                                           shape);
}
void Email(benchmark::State& state, Shape shape) {
    Bound<PimShared::CTLVEmailParser, PimTlvBench::QuietEmail>(state, shape);
}

void Sizes(benchmark::internal::Benchmark* b) {
    b->Arg(1)->Arg(4)->Arg(16)->Unit(benchmark::kMillisecond)->MinTime(0.3);
}

BENCHMARK_CAPTURE(Event, Nesting, EventNesting)->Apply(Sizes);
BENCHMARK_CAPTURE(Event, OneByteLeaves, EventOneByteLeaves)->Apply(Sizes);
BENCHMARK_CAPTURE(Event, EmptyNodes, EventEmptyNodes)->Apply(Sizes);
BENCHMARK_CAPTURE(Event, XParams, EventXParams)->Apply(Sizes);
BENCHMARK_CAPTURE(Email, NestedEntities, EmailNestedEntities)->Apply(Sizes);

}  // namespace
