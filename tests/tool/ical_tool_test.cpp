// pimtlv import and export with iCalendar: warnings, --strict, the format
// told from name or content, standard input, and errors with their line.
#include <gtest/gtest.h>

#include <string>

#include "ToolRun.h"

namespace {

using toolrun::Result;
using toolrun::Slurp;
using toolrun::Spit;
using toolrun::Temp;
using toolrun::Tool;

const std::string kCalendar =
    "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:e\r\n"
    "RRULE:FREQ=DAILY\r\nRRULE:FREQ=WEEKLY\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\n"
    "END:VCALENDAR\r\n";

TEST(IcalTool, ImportWarnsOfLossesAndExportWritesTheItemsBack) {
    const std::string ics = Temp("in.ics");
    Spit(ics, kCalendar);
    const Result imported = Tool("import " + ics);
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(imported.err, "warning: " + ics + ":6: event 1 (instance 0): RRULE not carried (2 times)\n");
    const Result exported = Tool("export - --to ics", imported.out);
    EXPECT_EQ(exported.status, 0) << exported.err;
    EXPECT_NE(exported.out.find("BEGIN:VTODO\r\nUID:t\r\n"), std::string::npos) << exported.out;
    const Result again = Tool("import -", exported.out);  // told by its content
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.out, imported.out);
    std::remove(ics.c_str());
}

TEST(IcalTool, StrictTurnsLossIntoFailureAndWritesNothing) {
    const std::string out = Temp("strict.tlv");
    const Result r = Tool("import --strict --from ics - -o " + out, kCalendar);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err.rfind("error: <stdin>:6: event 1 (instance 0): RRULE", 0), 0u) << r.err;
    EXPECT_EQ(Slurp(out), "");
}

TEST(IcalTool, TextThatIsNoCalendarFailsWithItsLine) {
    const Result r = Tool("import --from ics -", "just words\n");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err.rfind("error: <stdin>:1: no iCalendar component", 0), 0u) << r.err;
    const Result help = Tool("export --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--to"), std::string::npos);
}

}  // namespace
