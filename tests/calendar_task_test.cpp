// Task: layouts written by the creator, the calls the parser makes for them,
// and where the task parser differs from the event's.

#include <gtest/gtest.h>

#include "CalendarFamilyTestSupport.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"

using namespace cftest;
using PimShared::CTLVTaskCreator;
using PimShared::CTLVTaskParser;
using TaskRecorder = Recorder<PimShared::ITaskReceiver>;

namespace {

Bytes Task(std::initializer_list<Bytes> properties) {
    return Frame(1, 104, 7, properties);
}

template <typename TCreator>
Bytes Take(TCreator& c) {
    const void* data = nullptr;
    unsigned int length = 0;
    if (!c.GetData(data, length)) return {};
    const auto* p = static_cast<const std::uint8_t*>(data);
    return Bytes(p, p + length);
}

bool ParseWith(CTLVTaskParser& parser, const Bytes& bytes) {
    const char* error = nullptr;
    unsigned int consumed = 0;
    return parser.Parse(bytes.data(), static_cast<unsigned int>(bytes.size()), error, consumed);
}

bool ParseInto(TaskRecorder& r, const Bytes& bytes) {
    CTLVTaskParser parser(r);
    return ParseWith(parser, bytes);
}

std::vector<Row<CTLVTaskCreator>> TaskRows() {
    const PAL::CDateAndTime t(2027, 12, 31, 23, 59, 59);
    auto rows = SharedRows<CTLVTaskCreator>();
    const std::vector<Row<CTLVTaskCreator>> own = {
        {"Location", [](CTLVTaskCreator& c) { return c.Location("Desk", nullptr, "en", NoX()); },
         N(210, {S(1002, "en"), S(315, "Desk")}), "Location('Desk'null'en'{})"},
        {"Priority", [](CTLVTaskCreator& c) { return c.Priority(9, NoX()); }, N(212, {U8(317, 9)}),
         "Priority(9{})"},
        {"DateTimeStart", [t](CTLVTaskCreator& c) { return c.DateTimeStart(t, nullptr, TwoX()); },
         N(219, {S(1007, "20271231T235959Z"), S(1013, "X-A"), S(1014, "1"), S(1013, "X-B"),
                 S(1014, "")}),
         "DateTimeStart(20271231T235959Znull{'X-A'='1','X-B'=''})"},
        {"DateTimeStartZone", [t](CTLVTaskCreator& c) { return c.DateTimeStart(t, "UTC", NoX()); },
         N(219, {S(1007, "20271231T235959Z"), S(323, "UTC")}),
         "DateTimeStart(20271231T235959Z'UTC'{})"},
        {"DateTimeStartLocal", [t](CTLVTaskCreator& c) { return c.DateTimeStartLocal(t, NoX()); },
         N(249, {S(1007, "20271231T235959Z")}), "DateTimeStartLocal(20271231T235959Z{})"},
        {"DateTimeDueLocal", [t](CTLVTaskCreator& c) { return c.DateTimeDueLocal(t, NoX()); },
         N(251, {S(1007, "20271231T235959Z")}), "DateTimeDueLocal(20271231T235959Z{})"},
    };
    rows.insert(rows.end(), own.begin(), own.end());
    return rows;
}

}  // namespace

TEST(Task, EveryOperationWritesItsLayoutAndParsesBack) {
    for (const auto& row : TaskRows()) {
        SCOPED_TRACE(row.name);
        CTLVTaskCreator creator;
        ASSERT_TRUE(creator.Begin(7));
        ASSERT_TRUE(row.write(creator));
        ASSERT_TRUE(creator.End());
        const Bytes bytes = Take(creator);
        EXPECT_EQ(bytes, Task({row.property}));

        TaskRecorder r;
        EXPECT_TRUE(ParseInto(r, bytes));
        EXPECT_EQ(r.calls, (std::vector<std::string>{"Begin(7)", row.call, "End()"}));
        EXPECT_TRUE(r.traces.empty()) << r.traces.front();
    }
}

TEST(Task, SharedPropertiesAreWrittenAsAnEventWritesThem) {
    // Same property bytes; only the component node differs.
    PimShared::CTLVCalendarCreator event;
    CTLVTaskCreator task;
    const PAL::TVector<const char*> list{"m"};
    for (auto* c : {static_cast<PimShared::ICalendarCreator*>(&event)}) {
        ASSERT_TRUE(c->Begin(1) && c->Summary("s", "a", "l", TwoX()) &&
                    c->Attendee("x", "c", list, "r", "p", PimShared::eRsvpTrue, list, list, "b",
                                "n", "d", "l", NoX()) &&
                    c->End());
    }
    ASSERT_TRUE(task.Begin(1) && task.Summary("s", "a", "l", TwoX()) &&
                task.Attendee("x", "c", list, "r", "p", PimShared::eRsvpTrue, list, list, "b", "n",
                              "d", "l", NoX()) &&
                task.End());
    Bytes e = Take(event);
    const Bytes t = Take(task);
    ASSERT_EQ(e.size(), t.size());
    EXPECT_EQ(e[4], 103);
    e[4] = 104;
    EXPECT_EQ(e, t);
}

struct DiagnosticCase {
    const char* name;
    Bytes stream;
    std::vector<std::string> traces;
    std::vector<std::string> calls;
};

TEST(Task, Diagnostics) {
    const DiagnosticCase cases[] = {
        {"WrongRoot",
         N(3, {}),
         {"1:NodeBegin(): [state ParsingStateBegin] Unexpected typeId: 3  Expected: 1 "
          "(TypeIdObjTypeCalendarTask)",
          "2:NodeEnd(): [state ParsingStateBegin] Unexpected typeId: 3"},
         {}},
        // An event is refused at its component; its instance leaf and its
        // properties are then met at object level.
        {"EventStream",
         Frame(1, 103, 4, {N(215, {S(320, "s")})}),
         {"2:NodeBegin(): [state ParsingStateTaskContext] Unexpected typeId: 103  Expected: 104 "
          "(TypeIdCompTypeVtodo)",
          "2:NodeBegin(): [state ParsingStateTaskContext] Unexpected typeId: 215  Expected: 104 "
          "(TypeIdCompTypeVtodo)",
          "2:LeafNode(): [state ParsingStateTaskContext] Unexpected typeId: 320",
          "2:NodeEnd(): [state ParsingStateTaskContext] Unexpected typeId: 215  Expected: 1 "
          "(TypeIdObjTypeCalendarTask)",
          "2:NodeEnd(): [state ParsingStateTaskContext] Unexpected typeId: 103  Expected: 1 "
          "(TypeIdObjTypeCalendarTask)"},
         {"Begin(4)", "End()"}},
        {"EventEndTimesAreUnimplemented",
         Task({N(215, {S(320, "s")}), N(217, {S(1007, "20260101T000000Z")}), N(250, {})}),
         {"4:NodeBegin(): [state ParsingStateVtodoContext] Unimplemented typeId. TypeId: 217.",
          "4:NodeBegin(): [state ParsingStateVtodoContext] Unimplemented typeId. TypeId: 250."},
         {"Begin(7)", "Summary('s'nullnull{})", "End()"}},
        {"SecondXParamValue",
         Task({N(234, {S(1010, "u"), S(1013, "X-N"), S(1014, "v"), S(1014, "w")})}),
         {"6:handleXParamValue(): Missing TypeIdValTypeXparamName. Property-TypeId: 234"},
         {"Begin(7)", "UniqueIdentifier('u'{'X-N'='v'})", "End()"}},
        {"StatusCodes",
         Task({N(214, {U8(319, 4)}), N(214, {U8(319, 200)}), N(214, {S(319, "IN-PROCESS")})}),
         {},
         {"Begin(7)", "Status('COMPLETED'{})", "Status('NEEDS_ACTION'{})", "Status('IN-PROCESS'{})",
          "End()"}},
        {"DueTimeTakesNoZone",
         Task({N(251, {S(1008, "20260303T030303Z"), S(323, "Z")})}),
         {"2:Unexpected PropValue-Id (323) for the current PropType-Id (251)"},
         {"Begin(7)", "DateTimeDueLocal(20260303T030303Z{})", "End()"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TaskRecorder r;
        ParseInto(r, c.stream);
        EXPECT_EQ(r.traces, c.traces);
        EXPECT_EQ(r.calls, c.calls);
    }
}

TEST(Task, BeginAndEndOnlyNeverLeavesThePropertyContext) {
    CTLVTaskCreator creator;
    ASSERT_TRUE(creator.Begin(3) && creator.End());
    EXPECT_EQ(Take(creator), Hex("80 01 0A 80 68 07 90 0A 04 00 00 00 03"));
    ASSERT_TRUE(creator.Begin(3) && creator.End());
    TaskRecorder r;
    ParseInto(r, Take(creator));
    EXPECT_EQ(r.calls, (std::vector<std::string>{"Begin(3)"}));
    EXPECT_EQ(r.traces,
              (std::vector<std::string>{"2:NodeEnd(): [state ParsingStatePropertyContext] "
                                        "Unexpected typeId: 104  Expected: -1 (current "
                                        "property)",
                                        "2:NodeEnd(): [state ParsingStatePropertyContext] "
                                        "Unexpected typeId: 1  Expected: -1 (current "
                                        "property)"}));
}

TEST(Task, NullBufferAndCreatorWithoutOrder) {
    TaskRecorder r;
    CTLVTaskParser parser(r);
    const char* error = nullptr;
    unsigned int consumed = 9;
    EXPECT_FALSE(parser.Parse(nullptr, 4, error, consumed));
    EXPECT_STREQ(error, "invalid TLV stream");
    EXPECT_EQ(consumed, 0u);
    EXPECT_TRUE(r.all.empty());

    CTLVTaskCreator creator;
    EXPECT_FALSE(creator.InstanceName("n"));
    // A property before Begin is written as told; End then has nothing to close.
    EXPECT_TRUE(creator.Priority(1, NoX()));
    EXPECT_FALSE(creator.End());
}
