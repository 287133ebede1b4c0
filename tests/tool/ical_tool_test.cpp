// pimtlv import and export with iCalendar: warnings, --strict, the format
// told from name or content, standard input, and errors with their line.
#include <gtest/gtest.h>

#include <string>

#include "ToolRun.h"

namespace {

using ToolRun::Result;
using ToolRun::Slurp;
using ToolRun::Spit;
using ToolRun::Temp;
using ToolRun::Tool;

const std::string kCalendar =
    "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:e\r\n"
    "RRULE:FREQ=DAILY\r\nRRULE:FREQ=WEEKLY\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\n"
    "END:VCALENDAR\r\n";

TEST(IcalTool, ImportWarnsOfLossesAndExportWritesTheItemsBack) {
    const std::string ics = Temp("in.ics");
    Spit(ics, kCalendar);
    const Result imported = Tool("import " + ics);
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(imported.err,
              "warning: " + ics + ":6: event 1 (instance 0): RRULE not carried (2 times)\n");
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

TEST(IcalTool, StrictPassesWhatIsRegeneratedAndFailsWhatIsConverted) {
    const std::string minimal =
        "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:m\r\n"
        "DTSTAMP:20260101T000000Z\r\nDTSTART;TZID=Europe/Berlin:20260101T100000\r\nEND:VEVENT\r\n"
        "END:VCALENDAR\r\n";
    const Result imported = Tool("import --strict --from ics -", minimal);
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_EQ(
        imported.err,
        "note: <stdin>:6: event 1 (instance 0): DTSTAMP not carried (written anew by rule)\n");
    const Result exported = Tool("export - --to ics", imported.out);
    EXPECT_EQ(exported.status, 0) << exported.err;
    const Result again = Tool("import --strict --from ics -", exported.out);
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.out, imported.out);

    std::string latin1 = minimal;
    latin1.replace(latin1.find("UID:m"), 5, "SUMMARY:Caf\xE9");
    const Result converted = Tool("import --strict --from ics -", latin1);
    EXPECT_EQ(converted.status, 1);
    EXPECT_NE(converted.err.find(
                  "error: <stdin>:5: event 1 (instance 0): SUMMARY converted (from windows-1252)"),
              std::string::npos)
        << converted.err;
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

// export --onto: the merged text on stdout, one report line per item on
// stderr; --base and --prefer for three-way merges; clear errors otherwise.
TEST(IcalTool, ExportOntoTheOriginalMergesAndReports) {
    const std::string original = Temp("original.ics");
    const std::string event =
        "BEGIN:VEVENT\r\nUID:e\r\nSUMMARY:a\r\nRRULE:FREQ=DAILY\r\nEND:VEVENT\r\n";
    const std::string calendar = "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\n" + event +
                                 "BEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
    Spit(original, calendar);
    const Result streams = Tool("import " + original);
    const Result same = Tool("export - --to ics --onto " + original, streams.out);
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out, calendar);
    EXPECT_EQ(same.err, "event 1 (UID e): unchanged\ntask 2 (UID t): unchanged\n");

    std::string edited = calendar;
    edited.replace(edited.find("SUMMARY:a"), 9, "SUMMARY:b");
    const Result device = Tool("import --from ics -", edited);
    const Result merged = Tool("export - --to ics --onto " + original, device.out);
    EXPECT_EQ(merged.status, 0) << merged.err;
    EXPECT_EQ(merged.err, "event 1 (UID e): changed: SUMMARY changed\ntask 2 (UID t): unchanged\n");
    EXPECT_NE(merged.out.find("SUMMARY:b\r\nRRULE:FREQ=DAILY\r\n"), std::string::npos);

    // The server changed the summary too since it sent the calendar.
    const std::string base = Temp("base.ics");
    Spit(base, calendar);
    std::string server = calendar;
    server.replace(server.find("SUMMARY:a"), 9, "SUMMARY:c");
    Spit(original, server);
    const Result kept =
        Tool("export - --to ics --onto " + original + " --base " + base, device.out);
    EXPECT_EQ(kept.status, 0) << kept.err;
    EXPECT_EQ(kept.out, server);
    EXPECT_EQ(kept.err.rfind("event 1 (UID e): unchanged; conflict: SUMMARY, server's value "
                             "kept\n",
                             0),
              0u)
        << kept.err;
    const Result taken =
        Tool("export - --to ics --onto " + original + " --base " + base + " --prefer device",
             device.out);
    EXPECT_NE(taken.out.find("SUMMARY:b"), std::string::npos);
    EXPECT_NE(taken.err.find("device's value taken"), std::string::npos) << taken.err;
    std::remove(original.c_str());
    std::remove(base.c_str());
}

TEST(IcalTool, ExportOntoRefusesWhatItCannotMerge) {
    const std::string original = Temp("not.ics");
    Spit(original, "no calendar here\n");
    const Result streams = Tool("import --from ics -",
                                "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:e\r\nEND:VEVENT\r\n"
                                "END:VCALENDAR\r\n");
    const Result bad = Tool("export - --to ics --onto " + original, streams.out);
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.err.rfind("error: " + original + ":1: the original: no iCalendar", 0), 0u)
        << bad.err;
    const Result noBase = Tool("export - --to ics --base " + original, streams.out);
    EXPECT_EQ(noBase.status, 2);
    std::remove(original.c_str());
}

namespace {

std::string Binary(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 3) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

// Odd but valid item frames: decode, check and export tell the same item, as
// its parser accepts it, or all refuse to guess.
TEST(IcalTool, DecodeCheckAndExportTellTheSameItem) {
    struct Case {
        const char* what;
        const char* hex;
        const char* item;  // decode's name, null: no item told
        const char* title;
        const char* component;
    };
    const Case cases[] = {
        {"event as written", "80 01 0A 80 67 07 90 0A 04 00 00 00 00", "event", "calendar event",
         "VEVENT"},
        {"instance ahead of the component", "80 01 0A 90 0A 04 00 00 00 00 80 67 00", "event",
         "calendar event", "VEVENT"},
        {"task with its instance ahead", "80 01 0A 90 0A 04 00 00 00 00 80 68 00", "task", "task",
         "VTODO"},
        {"note", "80 03 0A 80 69 07 90 0A 04 00 00 00 00", "note", "note", "VJOURNAL"},
        {"calendar root without a component", "80 01 07 90 0A 04 00 00 00 00", nullptr, nullptr,
         nullptr},
    };
    const std::string path = Temp("kind.tlv");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Spit(path, Binary(c.hex));
        const Result decoded = Tool("decode " + path);
        const Result checked = Tool("check " + path);
        const Result exported = Tool("export --to ics " + path);
        if (c.item == nullptr) {
            EXPECT_EQ(decoded.status, 2);
            EXPECT_NE(decoded.err.find("cannot tell the item"), std::string::npos) << decoded.err;
            EXPECT_EQ(checked.status, 2);
            EXPECT_EQ(exported.status, 2);
            EXPECT_NE(exported.err.find("is no event, task or note"), std::string::npos)
                << exported.err;
            continue;
        }
        EXPECT_EQ(decoded.status, 0) << decoded.err;
        EXPECT_NE(decoded.out.find("\"item\": \"" + std::string(c.item) + "\""), std::string::npos)
            << decoded.out;
        // The parser may still have words for the frame (diagnostics: 1), but
        // no command refuses the item (2).
        EXPECT_NE(checked.status, 2) << checked.err;
        EXPECT_NE(("\n" + checked.out).find("\n" + std::string(c.title) + ": "), std::string::npos)
            << checked.out;
        EXPECT_NE(exported.status, 2) << exported.err;
        EXPECT_NE(exported.out.find("BEGIN:" + std::string(c.component) + "\r\n"),
                  std::string::npos)
            << exported.out;
    }
    std::remove(path.c_str());
}

}  // namespace
