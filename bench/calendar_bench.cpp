// Cost of the calendar family codecs: building and parsing an event of about
// 1 KB (20 properties, 3 attendees, extension parameters), a task and a note,
// beside a plain walk of the same bytes with CTLVParser and the minimal
// walker, and, when the benchmark is built with PIMTLV_BENCH_PROTOBUF and the
// generated calendar_bench.pb.h, beside Protocol Buffers on the same content;
// with PIMTLV_BENCH_MSGPACK, beside msgpack-c on the same fields.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/QuietReceivers.h"
#include "bench/TlvYardsticks.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"

#ifdef PIMTLV_BENCH_PROTOBUF
#include "bench/ProtobufLoops.h"
#include "calendar_bench.pb.h"
#endif
#ifdef PIMTLV_BENCH_MSGPACK
#include <msgpack.hpp>
#endif

namespace {

using XParams = PAL::TVector<PimShared::tXParam>;
using Texts = PAL::TVector<const char*>;
using PimTlvBench::Quiet;

const char kDescription[] =
    "Quarterly planning for the platform team. We go through the roadmap, the open risks of the "
    "sync service, the migration of the calendar store and the staffing for the next two "
    "quarters. Please read the attached notes beforehand and bring your estimates. Lunch is "
    "provided; the room has a projector and a conference phone for remote attendees.";

// What varies between the benchmark's events: the long 1.3 KB one with a
// member list and extension parameters on every attendee, and a compact one
// of 994 bytes and 66 elements (20 properties, 3 attendees, extension
// parameters on the description and on one attendee).
struct Content {
    const char* description = kDescription;
    PAL::CDateAndTime start{2026, 11, 23, 9, 30, 0};
    PAL::CDateAndTime end{2026, 11, 23, 12, 0, 0};
    PAL::CDateAndTime stamp{2026, 11, 20, 17, 45, 12};
    XParams none;
    XParams one{{"X-SOURCE", "sync"}};
    XParams two{{"X-SOURCE", "sync"}, {"X-COLOR", "#3366ff"}};
    Texts categories{"Work", "Planning", "Quarterly"};
    Texts members{"mailto:team@example.com"};
    Texts empty;
    const XParams* summaryX = &two;
    const char* cuType = "INDIVIDUAL";
    const XParams* attendeeX[3] = {&one, &one, &one};
    const char* attendees[3] = {"mailto:ann@example.com", "mailto:bob@example.com",
                                "mailto:carla@example.com"};
    const char* names[3] = {"Ann Example", "Bob Example", "Carla Example"};
};
const Content& Data() {
    static const Content content;
    return content;
}

const char kCompactDescription[] =
    "Quarterly planning for the platform team: the roadmap, the open risks of the sync service, "
    "the migration of the calendar store and the staffing for the next two quarters. Please "
    "read the notes beforehand and bring your estimates; lunch is provided. Thanks, Dan";

Content MakeCompact() {
    Content c;
    c.description = kCompactDescription;
    c.categories = Texts{"Work", "Planning"};
    c.members = Texts{};
    c.summaryX = &c.none;
    c.cuType = nullptr;
    c.attendeeX[1] = c.attendeeX[2] = &c.none;
    return c;
}
const Content& Compact() {
    static const Content content = MakeCompact();
    return content;
}

// The properties the three items share, written to any of the creators.
template <typename TCreator>
bool WriteShared(TCreator& c, const Content& d) {
    bool ok = c.ProductIdentifier("-//Example//Sync 4.2//EN", d.none) && c.Version("2.0", d.none) &&
              c.Categories(d.categories, "en", d.none) && c.Classification("PUBLIC", d.none) &&
              c.Description(d.description, nullptr, "en", d.one) && c.Status("CONFIRMED", d.none) &&
              c.Summary("Quarterly planning", nullptr, "en", *d.summaryX) &&
              c.UniqueIdentifier("4f6c2a9e-1b7d-4c55-9a3e-0d2f8b1c7e66@example.com", d.none) &&
              c.DateTimeCreated(d.stamp, d.none) && c.LastModified(d.stamp, d.none) &&
              c.SequenceNumber(3, d.none);
    for (int i = 0; ok && i < 3; ++i) {
        ok = c.Attendee(d.attendees[i], d.cuType, d.members, "REQ-PARTICIPANT", "NEEDS-ACTION",
                        PimShared::eRsvpTrue, d.empty, d.empty, nullptr, d.names[i], nullptr,
                        nullptr, *d.attendeeX[i]);
    }
    return ok &&
           c.Organizer("mailto:dora@example.com", nullptr, "Dora Example", nullptr, nullptr,
                       d.none) &&
           c.SendStatus(1);
}

bool WriteEvent(PimShared::CTLVCalendarCreator& c, const Content& d) {
    return c.Reset() && c.Begin(42) && WriteShared(c, d) &&
           c.Location("Room 4.12, Building B", nullptr, nullptr, d.none) && c.Priority(5, d.none) &&
           c.DateTimeStart(d.start, "Europe/Berlin", d.none) &&
           c.DateTimeEnd(d.end, "Europe/Berlin", d.none) && c.End();
}
bool WriteTask(PimShared::CTLVTaskCreator& c, const Content& d) {
    return c.Reset() && c.Begin(42) && WriteShared(c, d) && c.Priority(5, d.none) &&
           c.DateTimeDueLocal(d.end, d.none) && c.End();
}
bool WriteNote(PimShared::CTLVNoteCreator& c, const Content& d) {
    return c.Reset() && c.Begin(42) && WriteShared(c, d) && c.End();
}

using PimTlvBench::NullTarget;

using ContentOf = const Content& (*)();

template <typename TCreator, bool (*Write)(TCreator&, const Content&), ContentOf Get = Data>
void Create(benchmark::State& state) {
    TCreator creator;
    const void* data = nullptr;
    unsigned int length = 0;
    for (auto _ : state) {
        if (!Write(creator, Get()) || !creator.GetData(data, length)) {
            state.SkipWithError("write failed");
            break;
        }
        benchmark::DoNotOptimize(data);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["bytes"] = length;
}

template <typename TCreator, bool (*Write)(TCreator&, const Content&), ContentOf Get = Data>
std::string Bytes() {
    TCreator creator;
    const void* data = nullptr;
    unsigned int length = 0;
    if (!Write(creator, Get()) || !creator.GetData(data, length)) return {};
    return std::string(static_cast<const char*>(data), length);
}

template <typename TParser, typename TReceiver, typename TCreator,
          bool (*Write)(TCreator&, const Content&), ContentOf Get = Data>
void Parse(benchmark::State& state) {
    const std::string bytes = Bytes<TCreator, Write, Get>();
    Quiet<TReceiver> receiver;
    TParser parser(receiver);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const auto length = static_cast<unsigned int>(bytes.size());
    for (auto _ : state) {
        if (!parser.Parse(bytes.data(), length, error, consumed)) {
            state.SkipWithError("parse failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

template <typename TCreator, bool (*Write)(TCreator&, const Content&)>
void Walk(benchmark::State& state) {
    const std::string bytes = Bytes<TCreator, Write>();
    NullTarget target;
    ParserCreatorCollection::CTLVParser parser(target);
    const char* error = nullptr;
    unsigned int consumed = 0;
    const auto length = static_cast<unsigned int>(bytes.size());
    for (auto _ : state) {
        if (!parser.Parse(bytes.data(), length, error, consumed)) {
            state.SkipWithError("walk failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

// The walk's yardstick on the same bytes: the minimal walker with a fast UTF-8
// check, its calls as virtual as the codec's.
template <typename TCreator, bool (*Write)(TCreator&, const Content&)>
void YardstickWalk(benchmark::State& state) {
    const std::string bytes = Bytes<TCreator, Write>();
    NullTarget target;
    ParserCreatorCollection::ITLV* opaque = &target;
    benchmark::DoNotOptimize(opaque);
    PimTlvBench::MinimalWalker<PimTlvBench::FastTextCheck> walker;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto length = static_cast<unsigned int>(bytes.size());
    for (auto _ : state) {
        if (!walker.Walk(data, length, *opaque)) {
            state.SkipWithError("walk failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

using PimShared::CTLVCalendarCreator;
using PimShared::CTLVNoteCreator;
using PimShared::CTLVTaskCreator;

BENCHMARK(Create<CTLVCalendarCreator, WriteEvent>)->Name("Event/CreateAndGetData");
BENCHMARK(Parse<PimShared::CTLVCalendarParser, PimShared::ICalendarReceiver, CTLVCalendarCreator,
                WriteEvent>)
    ->Name("Event/Parse");
BENCHMARK(Create<CTLVCalendarCreator, WriteEvent, Compact>)->Name("CompactEvent/CreateAndGetData");
BENCHMARK(Parse<PimShared::CTLVCalendarParser, PimShared::ICalendarReceiver, CTLVCalendarCreator,
                WriteEvent, Compact>)
    ->Name("CompactEvent/Parse");
BENCHMARK(Walk<CTLVCalendarCreator, WriteEvent>)->Name("Event/PlainWalk");
BENCHMARK(YardstickWalk<CTLVCalendarCreator, WriteEvent>)->Name("Event/YardstickWalk");
BENCHMARK(Create<CTLVTaskCreator, WriteTask>)->Name("Task/CreateAndGetData");
BENCHMARK(Parse<PimShared::CTLVTaskParser, PimShared::ITaskReceiver, CTLVTaskCreator, WriteTask>)
    ->Name("Task/Parse");
BENCHMARK(Walk<CTLVTaskCreator, WriteTask>)->Name("Task/PlainWalk");
BENCHMARK(Create<CTLVNoteCreator, WriteNote>)->Name("Note/CreateAndGetData");
BENCHMARK(Parse<PimShared::CTLVNoteParser, PimShared::INoteReceiver, CTLVNoteCreator, WriteNote>)
    ->Name("Note/Parse");
BENCHMARK(Walk<CTLVNoteCreator, WriteNote>)->Name("Note/PlainWalk");

#ifdef PIMTLV_BENCH_PROTOBUF
void SetText(pimbench::Text* t, const char* text, const char* language, const XParams& x) {
    t->set_text(text);
    if (language != nullptr) t->set_language(language);
    for (const auto& p : x) {
        auto* e = t->add_x();
        e->set_name(p.name);
        e->set_value(p.value);
    }
}

// The same content as WriteEvent, date-times formatted the same way.
void BuildEvent(pimbench::Event& e, const Content& d, std::string& when) {
    using PAL::DateAndTimeUtilities::ToString;
    const PAL::DateAndTimeUtilities::STimeZoneOffset offset;
    const auto format = PAL::DateAndTimeUtilities::eDateTimeFormatICalendar;
    e.set_instance(42);
    SetText(e.mutable_product_identifier(), "-//Example//Sync 4.2//EN", nullptr, d.none);
    SetText(e.mutable_version(), "2.0", nullptr, d.none);
    auto* c = e.mutable_categories();
    for (const char* category : d.categories) c->add_category(category);
    c->set_language("en");
    SetText(e.mutable_classification(), "PUBLIC", nullptr, d.none);
    SetText(e.mutable_description(), d.description, "en", d.one);
    SetText(e.mutable_location(), "Room 4.12, Building B", nullptr, d.none);
    e.mutable_priority()->set_value(5);
    SetText(e.mutable_status(), "CONFIRMED", nullptr, d.none);
    SetText(e.mutable_summary(), "Quarterly planning", "en", *d.summaryX);
    PAL::CString text;
    ToString(d.start, format, 0, offset, text);
    e.mutable_start()->set_value(text.c_str());
    e.mutable_start()->set_zone("Europe/Berlin");
    ToString(d.end, format, 0, offset, text);
    e.mutable_end()->set_value(text.c_str());
    e.mutable_end()->set_zone("Europe/Berlin");
    SetText(e.mutable_unique_identifier(), "4f6c2a9e-1b7d-4c55-9a3e-0d2f8b1c7e66@example.com",
            nullptr, d.none);
    ToString(d.stamp, format, 0, offset, text);
    e.mutable_created()->set_value(text.c_str());
    ToString(d.stamp, format, 0, offset, text);
    e.mutable_last_modified()->set_value(text.c_str());
    e.mutable_sequence()->set_value(3);
    for (int i = 0; i < 3; ++i) {
        auto* a = e.add_attendee();
        a->set_address(d.attendees[i]);
        if (d.cuType != nullptr) a->set_cu_type(d.cuType);
        for (const char* member : d.members) a->add_member(member);
        a->set_role("REQ-PARTICIPANT");
        a->set_part_stat("NEEDS-ACTION");
        a->set_rsvp(1);
        a->set_common_name(d.names[i]);
        for (const auto& p : *d.attendeeX[i]) {
            auto* x = a->add_x();
            x->set_name(p.name);
            x->set_value(p.value);
        }
    }
    e.mutable_organizer()->set_address("mailto:dora@example.com");
    e.mutable_organizer()->set_common_name("Dora Example");
    e.set_send_status(1);
    e.SerializeToString(&when);
}

template <ContentOf Get>
void BuildDataEvent(pimbench::Event& e, std::string& out) {
    BuildEvent(e, Get(), out);
}

using PimTlvBench::ProtobufBuildAndSerialize;
using PimTlvBench::ProtobufParse;

BENCHMARK_TEMPLATE(ProtobufBuildAndSerialize, pimbench::Event, BuildDataEvent<Data>)
    ->Name("Event/Protobuf/BuildAndSerialize");
BENCHMARK_TEMPLATE(ProtobufParse, pimbench::Event, BuildDataEvent<Data>)
    ->Name("Event/Protobuf/ParseFromString");
BENCHMARK_TEMPLATE(ProtobufBuildAndSerialize, pimbench::Event, BuildDataEvent<Compact>)
    ->Name("CompactEvent/Protobuf/BuildAndSerialize");
BENCHMARK_TEMPLATE(ProtobufParse, pimbench::Event, BuildDataEvent<Compact>)
    ->Name("CompactEvent/Protobuf/ParseFromString");
#endif

#ifdef PIMTLV_BENCH_MSGPACK
// The same fields as the protobuf message, schemaless: each structure a map
// from its field number to the value, fields left out as protobuf leaves out
// empty ones, extension parameters as [name, value] pairs.
using Packer = msgpack::packer<msgpack::sbuffer>;

void PackXParams(Packer& p, unsigned int key, const XParams& x) {
    p.pack_uint32(key);
    p.pack_array(x.size());
    for (const auto& pair : x) {
        p.pack_array(2);
        p.pack(pair.name);
        p.pack(pair.value);
    }
}

void PackText(Packer& p, unsigned int key, const char* text, const char* language,
              const XParams& x) {
    p.pack_uint32(key);
    p.pack_map(1 + (language != nullptr ? 1 : 0) + (x.size() != 0 ? 1 : 0));
    p.pack_uint32(1);
    p.pack(text);
    if (language != nullptr) {
        p.pack_uint32(3);
        p.pack(language);
    }
    if (x.size() != 0) PackXParams(p, 4, x);
}

void PackDateTime(Packer& p, unsigned int key, const PAL::CDateAndTime& when, const char* zone,
                  PAL::CString& text) {
    PAL::DateAndTimeUtilities::ToString(when, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar,
                                        0, PAL::DateAndTimeUtilities::STimeZoneOffset(), text);
    p.pack_uint32(key);
    p.pack_map(zone != nullptr ? 2 : 1);
    p.pack_uint32(1);
    p.pack(text.c_str());
    if (zone != nullptr) {
        p.pack_uint32(2);
        p.pack(zone);
    }
}

void PackNumber(Packer& p, unsigned int key, unsigned int value) {
    p.pack_uint32(key);
    p.pack_map(1);
    p.pack_uint32(1);
    p.pack_uint32(value);
}

__attribute__((noinline)) void MsgpackPackEvent(msgpack::sbuffer& out, const Content& d) {
    out.clear();
    Packer p(out);
    PAL::CString text;
    p.pack_map(19);
    p.pack_uint32(1);
    p.pack_uint32(42);
    PackText(p, 2, "-//Example//Sync 4.2//EN", nullptr, d.none);
    PackText(p, 3, "2.0", nullptr, d.none);
    p.pack_uint32(4);
    p.pack_map(2);
    p.pack_uint32(1);
    p.pack_array(d.categories.size());
    for (const char* category : d.categories) p.pack(category);
    p.pack_uint32(2);
    p.pack("en");
    PackText(p, 5, "PUBLIC", nullptr, d.none);
    PackText(p, 6, d.description, "en", d.one);
    PackText(p, 7, "Room 4.12, Building B", nullptr, d.none);
    PackNumber(p, 8, 5);
    PackText(p, 9, "CONFIRMED", nullptr, d.none);
    PackText(p, 10, "Quarterly planning", "en", *d.summaryX);
    PackDateTime(p, 11, d.start, "Europe/Berlin", text);
    PackDateTime(p, 12, d.end, "Europe/Berlin", text);
    PackText(p, 13, "4f6c2a9e-1b7d-4c55-9a3e-0d2f8b1c7e66@example.com", nullptr, d.none);
    PackDateTime(p, 14, d.stamp, nullptr, text);
    PackDateTime(p, 15, d.stamp, nullptr, text);
    PackNumber(p, 16, 3);
    p.pack_uint32(17);
    p.pack_array(3);
    for (int i = 0; i < 3; ++i) {
        const bool members = d.members.size() != 0;
        const bool x = d.attendeeX[i]->size() != 0;
        p.pack_map(5 + (d.cuType != nullptr ? 1 : 0) + (members ? 1 : 0) + (x ? 1 : 0));
        p.pack_uint32(1);
        p.pack(d.attendees[i]);
        if (d.cuType != nullptr) {
            p.pack_uint32(2);
            p.pack(d.cuType);
        }
        if (members) {
            p.pack_uint32(3);
            p.pack_array(d.members.size());
            for (const char* member : d.members) p.pack(member);
        }
        p.pack_uint32(4);
        p.pack("REQ-PARTICIPANT");
        p.pack_uint32(5);
        p.pack("NEEDS-ACTION");
        p.pack_uint32(6);
        p.pack_uint32(1);
        p.pack_uint32(10);
        p.pack(d.names[i]);
        if (x) PackXParams(p, 13, *d.attendeeX[i]);
    }
    p.pack_uint32(18);
    p.pack_map(2);
    p.pack_uint32(1);
    p.pack("mailto:dora@example.com");
    p.pack_uint32(3);
    p.pack("Dora Example");
    p.pack_uint32(19);
    p.pack_uint32(1);
}

__attribute__((noinline)) std::size_t MsgpackUnpackEvent(const msgpack::sbuffer& in) {
    const msgpack::object_handle handle = msgpack::unpack(in.data(), in.size());
    return handle.get().via.map.size;
}

template <ContentOf Get>
void MsgpackPack(benchmark::State& state) {
    msgpack::sbuffer out;
    for (auto _ : state) {
        MsgpackPackEvent(out, Get());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["bytes"] = static_cast<double>(out.size());
}

template <ContentOf Get>
void MsgpackUnpack(benchmark::State& state) {
    msgpack::sbuffer bytes;
    MsgpackPackEvent(bytes, Get());
    for (auto _ : state) benchmark::DoNotOptimize(MsgpackUnpackEvent(bytes));
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(MsgpackPack<Data>)->Name("Event/Msgpack/Pack");
BENCHMARK(MsgpackUnpack<Data>)->Name("Event/Msgpack/Unpack");
BENCHMARK(MsgpackPack<Compact>)->Name("CompactEvent/Msgpack/Pack");
BENCHMARK(MsgpackUnpack<Compact>)->Name("CompactEvent/Msgpack/Unpack");
#endif

}  // namespace

BENCHMARK_MAIN();
