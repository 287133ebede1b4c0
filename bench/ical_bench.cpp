// The iCalendar bridge against libical alone, on one generated calendar of
// 10,000 events with attendees: import against libical's parse of the same
// text, export against libical's writing of the same calendar (already
// built). Compare each pair within one run, as ratios:
//
//   build/bench/bench/ical_bench --benchmark_min_time=2
//
// The merge of the calendar's streams, a tenth of them edited (a new
// summary), back onto the calendar, against libical's parse and writing of
// the same calendar: what a service that merged with libical alone would
// spend at the least.
//
// Import = libical's parse + the walk into item streams; export = the item
// parsers + building libical's tree + libical's writing. Two more yardsticks
// split the export: the item parsers alone (the TLV side), and libical
// copying the parsed calendar and writing the copy (libical building and
// writing a tree of its own, with no bridge).

#include <benchmark/benchmark.h>
#include <libical/ical.h>

#include <cstdlib>
#include <string>

#include "bench/QuietReceivers.h"
#include "bridges/ical/ICalendarBridge.h"
#include "pimshared/calendar/TLVCalendarParser.h"

namespace {

constexpr int kEvents = 10000;

const std::string& Calendar() {
    static const std::string text = [] {
        std::string t = "BEGIN:VCALENDAR\r\nPRODID:-//bench//EN\r\nVERSION:2.0\r\n";
        for (int i = 0; i < kEvents; ++i) {
            const std::string n = std::to_string(i);
            const std::string day = std::to_string(10 + i % 18);
            t += "BEGIN:VEVENT\r\nUID:event-" + n + "@bench.example\r\n";
            t += "SUMMARY;LANGUAGE=en:Planning meeting number " + n + "\r\n";
            t += "DESCRIPTION:Agenda: budget\\, staffing\\; next steps for quarter " + n + "\r\n";
            t += "LOCATION:Room " + std::to_string(i % 40) + "\r\n";
            t += "DTSTART;TZID=Europe/Berlin:202603" + day + "T090000\r\n";
            t += "DTEND;TZID=Europe/Berlin:202603" + day + "T103000\r\n";
            t += "CREATED:20260101T080000Z\r\nLAST-MODIFIED:20260102T080000Z\r\n";
            t += "SEQUENCE:" + std::to_string(i % 7) + "\r\nSTATUS:CONFIRMED\r\n";
            t += "CATEGORIES:work,planning\r\n";
            t += "ORGANIZER;CN=Alice Example:mailto:alice@bench.example\r\n";
            for (const char* who : {"bob", "carol", "dave"}) {
                t += std::string("ATTENDEE;CUTYPE=INDIVIDUAL;ROLE=REQ-PARTICIPANT;PARTSTAT=") +
                     "NEEDS-ACTION;RSVP=TRUE;CN=" + who + ":mailto:" + who + "@bench.example\r\n";
            }
            t += "END:VEVENT\r\n";
        }
        return t + "END:VCALENDAR\r\n";
    }();
    return text;
}

void LibicalParse(benchmark::State& state) {
    const std::string& text = Calendar();
    for (auto _ : state) {
        icalcomponent* c = icalparser_parse_string(text.c_str());
        benchmark::DoNotOptimize(c);
        icalcomponent_free(c);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(LibicalParse)->Unit(benchmark::kMillisecond);

void Import(benchmark::State& state) {
    const std::string& text = Calendar();
    for (auto _ : state) {
        const PimBridge::ImportResult r = PimBridge::ImportICalendar(text.data(), text.size());
        if (!r.ok || r.items.size() != kEvents) state.SkipWithError("import failed");
        benchmark::DoNotOptimize(r.streams.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(Import)->Unit(benchmark::kMillisecond);

// The tree libical writes in the export's place: the export's own text,
// parsed once. The caller frees it.
icalcomponent* ExportedTree() {
    const PimBridge::ImportResult r =
        PimBridge::ImportICalendar(Calendar().data(), Calendar().size());
    const PimBridge::ExportResult e =
        PimBridge::ExportICalendar(r.streams.data(), r.streams.size());
    return icalparser_parse_string(e.text.c_str());
}

void LibicalWrite(benchmark::State& state) {
    icalcomponent* c = ExportedTree();
    for (auto _ : state) {
        char* text = icalcomponent_as_ical_string_r(c);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
    icalcomponent_free(c);
}
BENCHMARK(LibicalWrite)->Unit(benchmark::kMillisecond);

void Export(benchmark::State& state) {
    const PimBridge::ImportResult r =
        PimBridge::ImportICalendar(Calendar().data(), Calendar().size());
    for (auto _ : state) {
        const PimBridge::ExportResult e =
            PimBridge::ExportICalendar(r.streams.data(), r.streams.size());
        if (!e.ok) state.SkipWithError("export failed");
        benchmark::DoNotOptimize(e.text.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(r.streams.size()));
}
BENCHMARK(Export)->Unit(benchmark::kMillisecond);

void ItemParsersAlone(benchmark::State& state) {
    const PimBridge::ImportResult r =
        PimBridge::ImportICalendar(Calendar().data(), Calendar().size());
    PimTlvBench::Quiet<PimShared::ICalendarReceiver> quiet;
    PimShared::CTLVCalendarParser parser(quiet);
    for (auto _ : state) {
        for (const PimBridge::ImportedItem& item : r.items) {
            const char* error = nullptr;
            unsigned int consumed = 0;
            const unsigned int length = static_cast<unsigned int>(item.size);
            benchmark::DoNotOptimize(
                parser.Parse(r.streams.data() + item.offset, length, error, consumed));
        }
    }
}
BENCHMARK(ItemParsersAlone)->Unit(benchmark::kMillisecond);

void LibicalCopyAndWrite(benchmark::State& state) {
    icalcomponent* c = ExportedTree();
    for (auto _ : state) {
        icalcomponent* copy = icalcomponent_new_clone(c);
        char* text = icalcomponent_as_ical_string_r(copy);
        benchmark::DoNotOptimize(text);
        std::free(text);
        icalcomponent_free(copy);
    }
    icalcomponent_free(c);
}
BENCHMARK(LibicalCopyAndWrite)->Unit(benchmark::kMillisecond);

void LibicalParseAndWrite(benchmark::State& state) {
    const std::string& text = Calendar();
    for (auto _ : state) {
        icalcomponent* c = icalparser_parse_string(text.c_str());
        char* written = icalcomponent_as_ical_string_r(c);
        benchmark::DoNotOptimize(written);
        std::free(written);
        icalcomponent_free(c);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(LibicalParseAndWrite)->Unit(benchmark::kMillisecond);

void MergeTenthEdited(benchmark::State& state) {
    const std::string& text = Calendar();
    std::string edited = text;
    for (int i = 0; i < kEvents; i += 10) {
        const std::string from = "meeting number " + std::to_string(i) + "\r\n";
        edited.replace(edited.find(from), from.size(),
                       "meeting, moved " + std::to_string(i) + "\r\n");
    }
    const PimBridge::ImportResult device = PimBridge::ImportICalendar(edited.data(), edited.size());
    for (auto _ : state) {
        const PimBridge::MergeResult m = PimBridge::MergeICalendar(
            text.data(), text.size(), device.streams.data(), device.streams.size());
        if (!m.ok || m.items.size() != kEvents) state.SkipWithError("merge failed");
        benchmark::DoNotOptimize(m.text.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}
BENCHMARK(MergeTenthEdited)->Unit(benchmark::kMillisecond);

}  // namespace
