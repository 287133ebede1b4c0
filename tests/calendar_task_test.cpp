// Task: layouts written by the creator, the calls the parser makes for them,
// and where the task parser differs from the event's.

#include <gtest/gtest.h>

#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"
#include "support/CalendarFamily.h"

using namespace CalendarFamilyTest;
using PimShared::CTLVTaskCreator;
using PimShared::CTLVTaskParser;
using TaskRecorder = Recorder<PimShared::ITaskReceiver>;

namespace {

Bytes Task(const std::vector<Bytes>& properties) {
    return Frame(1, 104, 7, properties);
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
    CheckRoundTrips<CTLVTaskCreator, CTLVTaskParser, TaskRecorder>(TaskRows(), 1, 104);
}

TEST(Task, Diagnostics) {
    CheckDiagnostics<CTLVTaskParser, TaskRecorder>({
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
        {"BeginAndEndOnly",
         Task({}),
         {"2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 104  Expected: -1 "
          "(current property)",
          "2:NodeEnd(): [state ParsingStatePropertyContext] Unexpected typeId: 1  Expected: -1 "
          "(current property)"},
         {"Begin(7)"}},
        {"DueTimeTakesNoZone",
         Task({N(251, {S(1008, "20260303T030303Z"), S(323, "Z")})}),
         {"2:Unexpected PropValue-Id (323) for the current PropType-Id (251)"},
         {"Begin(7)", "DateTimeDueLocal(20260303T030303Z{})", "End()"}},
    });
}

TEST(Task, CreatorFrameAndInstanceName) {
    CTLVTaskCreator creator;
    EXPECT_FALSE(creator.InstanceName("n"));
    ASSERT_TRUE(creator.Begin(3) && creator.End());
    EXPECT_EQ(Take(creator), FromHex("80 01 0A 80 68 07 90 0A 04 00 00 00 03"));
}
