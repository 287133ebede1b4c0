// Calendar event: layouts written by the creator, the calls the parser makes
// for them, and the parser's diagnostics.

#include <gtest/gtest.h>

#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/note/TLVNoteParser.h"
#include "pimshared/task/TLVTaskParser.h"
#include "support/CalendarFamily.h"

using namespace CalendarFamilyTest;
using PimShared::CTLVCalendarCreator;
using PimShared::CTLVCalendarParser;
using EventRecorder = Recorder<PimShared::ICalendarReceiver>;

namespace {

Bytes Event(const std::vector<Bytes>& properties) {
    return Frame(1, 103, 7, properties);
}

bool ParseInto(EventRecorder& r, const Bytes& bytes) {
    CTLVCalendarParser parser(r);
    return ParseWith(parser, bytes);
}

std::vector<Row<CTLVCalendarCreator>> EventRows() {
    const PAL::CDateAndTime t(2026, 1, 2, 3, 4, 5);
    auto rows = SharedRows<CTLVCalendarCreator>();
    const std::vector<Row<CTLVCalendarCreator>> own = {
        {"Location",
         [](CTLVCalendarCreator& c) { return c.Location("Room 1", "alt", nullptr, NoX()); },
         N(210, {S(310, "alt"), S(315, "Room 1")}), "Location('Room 1''alt'null{})"},
        {"Priority", [](CTLVCalendarCreator& c) { return c.Priority(5, TwoX()); },
         N(212, {U8(317, 5), S(1013, "X-A"), S(1014, "1"), S(1013, "X-B"), S(1014, "")}),
         "Priority(5{'X-A'='1','X-B'=''})"},
        {"DateTimeStartZone",
         [t](CTLVCalendarCreator& c) { return c.DateTimeStart(t, "Europe/Berlin", NoX()); },
         N(219, {S(1007, "20260102T030405Z"), S(323, "Europe/Berlin")}),
         "DateTimeStart(20260102T030405Z'Europe/Berlin'{})"},
        {"DateTimeEndNoZone",
         [t](CTLVCalendarCreator& c) { return c.DateTimeEnd(t, nullptr, NoX()); },
         N(217, {S(1007, "20260102T030405Z")}), "DateTimeEnd(20260102T030405Znull{})"},
        {"DateTimeStartLocal",
         [t](CTLVCalendarCreator& c) { return c.DateTimeStartLocal(t, NoX()); },
         N(249, {S(1007, "20260102T030405Z")}), "DateTimeStartLocal(20260102T030405Z{})"},
        {"DateTimeEndLocal", [t](CTLVCalendarCreator& c) { return c.DateTimeEndLocal(t, NoX()); },
         N(250, {S(1007, "20260102T030405Z")}), "DateTimeEndLocal(20260102T030405Z{})"},
    };
    rows.insert(rows.end(), own.begin(), own.end());
    return rows;
}

}  // namespace

TEST(CalendarEvent, EveryOperationWritesItsLayoutAndParsesBack) {
    CheckRoundTrips<CTLVCalendarCreator, CTLVCalendarParser, EventRecorder>(EventRows(), 1, 103);
}

TEST(CalendarEvent, WholeEventInOneStream) {
    CTLVCalendarCreator creator;
    std::vector<std::string> expected{"Begin(7)"};
    std::vector<Bytes> properties;
    ASSERT_TRUE(creator.Begin(7));
    for (const auto& row : EventRows()) {
        ASSERT_TRUE(row.write(creator)) << row.name;
        properties.push_back(row.property);
        expected.push_back(row.call);
    }
    ASSERT_TRUE(creator.End());
    expected.push_back("End()");
    const Bytes bytes = Take(creator);
    EXPECT_EQ(bytes, Frame(1, 103, 7, properties));

    // The same parser object serves a second stream from a clean store.
    EventRecorder r;
    CTLVCalendarParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 0;
    for (int pass = 0; pass < 2; ++pass) {
        r.calls.clear();
        ASSERT_TRUE(
            parser.Parse(bytes.data(), static_cast<unsigned>(bytes.size()), error, consumed));
        EXPECT_EQ(consumed, bytes.size());
        EXPECT_EQ(r.calls, expected);
    }
}

// A property that comes again in the same stream starts from nothing: what
// the first one carried (optional texts, list entries, an RSVP, extension
// parameters) never reaches the second one's call.
TEST(CalendarEvent, RepeatedPropertyStartsFromNothing) {
    struct Case {
        const char* name;
        Bytes first;
        Bytes second;
        std::string call;
    };
    const Case cases[] = {
        {"Description",
         N(208, {S(310, "a"), S(1002, "en"), S(312, "x"), S(1013, "X-A"), S(1014, "1")}),
         N(208, {S(312, "y")}), "Description('y'nullnull{})"},
        {"Attendee",
         N(228, {S(330, "GROUP"), S(331, "m1"), U8(334, 1), S(335, "d1"), S(338, "Ann"),
                 S(340, "mailto:a@x")}),
         N(228, {S(340, "mailto:b@x")}),
         "Attendee('mailto:b@x'null[]nullnull-1[][]nullnullnullnull{})"},
    };
    for (const Case& c : cases) {
        EventRecorder r;
        ASSERT_TRUE(ParseInto(r, Event({c.first, c.second}))) << c.name;
        ASSERT_EQ(r.calls.size(), 4u) << c.name;
        EXPECT_EQ(r.calls[2], c.call) << c.name;
    }
}

TEST(CalendarEvent, FixedExamples) {
    CTLVCalendarCreator creator;
    ASSERT_TRUE(creator.Begin(5));
    ASSERT_TRUE(creator.ProductIdentifier("AB", NoX()));
    ASSERT_TRUE(creator.End());
    EXPECT_EQ(Take(creator),
              FromHex("80 01 13 80 67 10 90 0A 04 00 00 00 05 80 CA 06 61 2E 03 41 42 00"));

    // InstanceName is read but never written.
    ASSERT_TRUE(creator.Begin(5));
    EXPECT_FALSE(creator.InstanceName("x"));
    ASSERT_TRUE(creator.End());
    EXPECT_EQ(Take(creator), Frame(1, 103, 5, {}));
}

TEST(CalendarEvent, TraceLinesPrecedeEveryEvent) {
    EventRecorder r;
    ASSERT_TRUE(
        ParseInto(r, FromHex("80 01 13 80 67 10 90 0A 04 00 00 00 05 80 CA 06 61 2E 03 41 42 00")));
    EXPECT_EQ(r.all, (std::vector<std::string>{
                         "0:NodeBegin():  typeId: 1", "0:NodeBegin():  typeId: 103",
                         "0:LeafNode():  typeId: 10", "Begin(5)", "0:NodeBegin():  typeId: 202",
                         "0:LeafNode():  typeId: 302", "0:NodeEnd():  typeId: 202",
                         "0:callPropertyCallbackAndResetDataMember():  typeId: 202",
                         "ProductIdentifier('AB'{})", "0:NodeEnd():  typeId: 103",
                         "0:NodeEnd():  typeId: 1", "End()"}));
}

TEST(CalendarEvent, Diagnostics) {
    CheckDiagnostics<CTLVCalendarParser, EventRecorder>({
        // The value is read by its ID; a text where a number belongs reads as 0.
        {"PriorityOfOtherClasses",
         Event({N(212, {Element(1, 317, {0x00, 0x05})}), N(212, {S(317, "9")}),
                N(212, {Element(10, 317, {0, 0, 1, 6})})}),
         {},
         {"Begin(7)", "Priority(5{})", "Priority(0{})", "Priority(6{})", "End()"}},
        {"WrongRoot",
         N(2, {S(10, "x")}),
         {"1:NodeBegin(): [state ParsingStateBegin] Unexpected typeId: 2  Expected: 1 "
          "(TypeIdObjTypeCalendarTask)",
          "2:LeafNode(): [state ParsingStateBegin] Unexpected typeId: 10",
          "2:NodeEnd(): [state ParsingStateBegin] Unexpected typeId: 2"},
         {}},
        {"TaskComponentInEventRoot",
         N(1, {N(104, {}), S(999, "x")}),
         {"2:NodeBegin(): [state ParsingStateCalendarContext] Unexpected typeId: 104  Expected: "
          "103 "
          "(TypeIdCompTypeVevent)",
          "2:NodeEnd(): [state ParsingStateCalendarContext] Unexpected typeId: 104  Expected: 1 "
          "(TypeIdObjTypeCalendar)",
          "2:LeafNode(): [state ParsingStateCalendarContext] Unexpected typeId: 999"},
         {"End()"}},
        {"UnimplementedPropertyIsSkipped",
         Event({N(215, {S(320, "kept")}), N(209, {S(312, "dropped"), S(999, "dropped")}),
                N(216, {S(312, "dropped")})}),
         {"4:NodeBegin(): [state ParsingStateVeventContext] Unimplemented typeId. TypeId: 209.",
          "4:NodeBegin(): [state ParsingStateVeventContext] Unimplemented typeId. TypeId: 216."},
         {"Begin(7)", "Summary('kept'nullnull{})", "End()"}},
        // The instance leaf already counts as the component's first property.
        {"UnimplementedFirstProperty",
         Event({N(251, {S(1007, "20260101T000000Z")})}),
         {"4:NodeBegin(): [state ParsingStatePropertyContext] Unimplemented typeId. TypeId: 251."},
         {"Begin(7)", "End()"}},
        {"UnimplementedInsideProperty",
         Event({N(215, {N(901, {S(1004, "x")})})}),
         {"4:NodeBegin(): [state ParsingStatePropertyContext] Unimplemented typeId. TypeId: 901.",
          "2:NodeEnd(): [state ParsingStateVeventContext] Unexpected typeId: 215  Expected: 103 "
          "(TypeIdCompTypeVevent)"},
         {"Begin(7)", "End()"}},
        {"BeginAndEndOnly",
         Event({}),
         {"2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 103  Expected: -1 "
          "(current property)",
          "2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 1  Expected: -1 "
          "(current property)"},
         {"Begin(7)"}},
        {"XParamValueWithoutName",
         Event(
             {N(215, {S(320, "s"), S(1014, "v"), S(1013, "X-N"), S(1014, "w"), S(1014, "again")})}),
         {"6:handleXParamValue(): Missing TypeIdValTypeXparamName. Property-TypeId: 215",
          "6:handleXParamValue(): Missing TypeIdValTypeXparamName. Property-TypeId: 215"},
         {"Begin(7)", "Summary('s'nullnull{'X-N'='w'})", "End()"}},
        {"UnexpectedValueId",
         Event({N(249, {S(1007, "20260101T000000Z"), S(323, "UTC")}), N(214, {U8(319, 12)})}),
         {"2:Unexpected PropValue-Id (323) for the current PropType-Id (249)"},
         {"Begin(7)", "DateTimeStartLocal(20260101T000000Z{})", "Status('NEEDS_ACTION'{})",
          "End()"}},
        {"StatusCodes",
         Event({N(214, {U8(319, 3)}), N(214, {U8(319, 11)}), N(214, {U8(319, 0)})}),
         {},
         {"Begin(7)", "Status('NEEDS-ACTION'{})", "Status('DELEGATED'{})", "Status('TENTATIVE'{})",
          "End()"}},
        {"AlternateDateTimeAndZone",
         Event({N(219, {S(1008, "20250505T050505Z"), S(323, "Z1")}),
                N(242, {S(1008, "20250505T050505Z")})}),
         {"2:Unexpected PropValue-Id (1008) for the current PropType-Id (242)"},
         {"Begin(7)", "DateTimeStart(20250505T050505Z'Z1'{})",
          "DateTimeCreated(00000000T000000Z{})", "End()"}},
        {"SendStatusTakesNoXParams",
         Event({N(252, {U8(377, 1), S(1013, "X")})}),
         {"2:Unexpected PropValue-Id (1013) for the current PropType-Id (252)"},
         {"Begin(7)", "SendStatus(1)", "End()"}},
        {"UnknownPropertyLetInThenReported",
         Event({N(205, {S(302, "x")})}),
         {"6:storePropertyValue(): Unexpected mCurrentProperty: 205",
          "6:callPropertyCallbackAndResetDataMember(): Unexpected typeId: 205"},
         {"Begin(7)", "End()"}},
        {"InstanceNameAndObjectLevelProperty",
         N(1,
           {N(202, {S(302, "top")}), N(100, {}), N(103, {S(904, "name"), N(215, {S(320, "s")})})}),
         {},
         {"ProductIdentifier('top'{})", "InstanceName('name')", "Summary('s'nullnull{})", "End()"}},
        {"UndefinedClass",
         Event({N(215, {Element(11, 320, {1, 2}), S(320, "s")})}),
         {"6:Unknown(): Unexpected class: 11  TypeId: 320"},
         {"Begin(7)", "Summary('s'nullnull{})", "End()"}},
    });
}

TEST(CalendarEvent, FailuresOfTheWalk) {
    EventRecorder r;
    CTLVCalendarParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 5;
    EXPECT_FALSE(parser.Parse(nullptr, 10, error, consumed));
    EXPECT_STREQ(error, "invalid TLV stream");
    EXPECT_TRUE(r.all.empty());

    // A truncated stream: the walk fails and is reported once with code 6.
    Bytes cut = Event({N(215, {S(320, "Lunch")})});
    cut.resize(cut.size() - 2);
    EXPECT_FALSE(parser.Parse(cut.data(), static_cast<unsigned int>(cut.size()), error, consumed));
    ASSERT_FALSE(r.traces.empty());
    EXPECT_EQ(r.traces.back(), std::string("6:") + error);
}

TEST(CalendarEvent, OnlyAFalseAnswerAtALeafStopsTheWalk) {
    const Bytes bytes = Event({N(215, {S(320, "a"), S(1002, "en")}), N(234, {S(1010, "u")})});
    const std::vector<std::string> all = {"Begin(7)", "Summary('a'null'en'{})",
                                          "UniqueIdentifier('u'{})", "End()"};
    // Answers to trace lines, to Begin and to property calls made at a node
    // end do not stop the walk.
    for (const char* failOn : {"Trace0", "Begin", "Summary"}) {
        SCOPED_TRACE(failOn);
        EventRecorder r;
        r.failOn = failOn;
        EXPECT_TRUE(ParseInto(r, bytes));
        EXPECT_EQ(r.calls, all);
    }
    // A report made at a leaf and answered false ends the walk there; the
    // open nodes still close, so the property gathered so far is delivered.
    EventRecorder r;
    r.failOn = "Trace2";
    EXPECT_FALSE(ParseInto(
        r, Event({N(215, {S(1002, "en"), S(999, "x"), S(320, "a")}), N(234, {S(1010, "u")})})));
    EXPECT_EQ(r.calls, (std::vector<std::string>{"Begin(7)", "Summary(nullnull'en'{})", "End()"}));
    EXPECT_EQ(r.traces.back(), "6:");
}

// Damaged streams of a whole event, read by all three parsers of the family:
// whatever the bytes, each walk ends, and every text handed over is readable
// (the recorder copies each one).
TEST(CalendarEvent, DamagedStreamsAreSafeForEveryParser) {
    CTLVCalendarCreator creator;
    ASSERT_TRUE(creator.Begin(7));
    for (const auto& row : EventRows()) ASSERT_TRUE(row.write(creator));
    ASSERT_TRUE(creator.End());
    const Bytes whole = Take(creator);
    unsigned seed = 12345;
    auto next = [&seed](unsigned bound) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 8) % bound;
    };
    for (int i = 0; i < 1500; ++i) {
        Bytes damaged = whole;
        for (unsigned k = 1 + next(3); k > 0; --k) damaged[next(damaged.size())] = next(256);
        if (i % 3 == 0) damaged.resize(next(damaged.size()));
        EventRecorder event;
        Recorder<PimShared::ITaskReceiver> task;
        Recorder<PimShared::INoteReceiver> note;
        CTLVCalendarParser eventParser(event);
        PimShared::CTLVTaskParser taskParser(task);
        PimShared::CTLVNoteParser noteParser(note);
        ParseWith(eventParser, damaged);
        ParseWith(taskParser, damaged);
        ParseWith(noteParser, damaged);
    }
}

// A 1013 name still waiting when a stream ends pairs with the next stream's
// first 1014 in a task only; the event and the note report the value as
// nameless. A repaired name (its copy is freed inside the walk) is kept too.
TEST(CalendarEvent, PendingNameAcrossStreams) {
    const std::string missing =
        "6:handleXParamValue(): Missing TypeIdValTypeXparamName. Property-TypeId: 202";
    using TaskRecorder = Recorder<PimShared::ITaskReceiver>;
    using NoteRecorder = Recorder<PimShared::INoteReceiver>;
    using Calls = std::vector<std::string>;
    EXPECT_EQ((NameAcrossStreams<PimShared::CTLVTaskParser, TaskRecorder>(1, 104, "nm")),
              (Calls{"Begin(7)", "ProductIdentifier('pi'{'nm'='val'})", "End()"}));
    EXPECT_EQ((NameAcrossStreams<PimShared::CTLVTaskParser, TaskRecorder>(1, 104, "n\xFF")),
              (Calls{"Begin(7)", "ProductIdentifier('pi'{'n?'='val'})", "End()"}));
    EXPECT_EQ((NameAcrossStreams<CTLVCalendarParser, EventRecorder>(1, 103, "nm")),
              (Calls{missing, "Begin(7)", "ProductIdentifier('pi'{})", "End()"}));
    EXPECT_EQ((NameAcrossStreams<PimShared::CTLVNoteParser, NoteRecorder>(3, 105, "nm")),
              (Calls{missing, "Begin(7)", "ProductIdentifier('pi'{})", "End()"}));
}
