// The iCalendar merge: what comes from the item and what stays as the
// original has it, how items find their components (overrides included), new
// items and unmatched components, three-way conflicts, the report and the
// timestamps. A device's streams are written here as the import of the text
// the device would hold, so each case reads as two calendars.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bridges/ical/ICalendarBridge.h"

namespace {

using PimBridge::MergedItem;
using PimBridge::MergeOptions;
using PimBridge::MergeResult;
using Outcome = MergedItem::Outcome;

std::string Cal(const std::string& body) {
    return "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\n" + body + "END:VCALENDAR\r\n";
}

std::string Event(const std::string& lines) {
    return "BEGIN:VEVENT\r\nUID:u1\r\n" + lines + "END:VEVENT\r\n";
}

std::vector<std::uint8_t> Streams(const std::string& text) {
    const PimBridge::ImportResult r = PimBridge::ImportICalendar(text.data(), text.size());
    EXPECT_TRUE(r.ok) << r.error;
    return r.streams;
}

MergeResult Merge(const std::string& original, const std::string& device,
                  const MergeOptions& options = {}) {
    const std::vector<std::uint8_t> streams = Streams(device);
    return PimBridge::MergeICalendar(original.data(), original.size(), streams.data(),
                                     streams.size(), options);
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(IcalMerge, RulesByProperty) {
    struct Case {
        const char* name;
        std::string original;  // the event's lines
        std::string device;
        const char* report;
        std::vector<std::string> kept;  // lines the merged text must hold
        std::vector<std::string> gone;  // lines it must not
    };
    const std::string alarm = "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nEND:VALARM\r\n";
    const Case cases[] = {
        {"carried, changed",
         "SUMMARY:a\r\n",
         "SUMMARY:b\r\n",
         "changed: SUMMARY changed",
         {"SUMMARY:b\r\n"},
         {"SUMMARY:a"}},
        {"carried, removed",
         "SUMMARY:a\r\nLOCATION:x\r\n",
         "SUMMARY:a\r\n",
         "changed: LOCATION removed",
         {"SUMMARY:a\r\n"},
         {"LOCATION"}},
        {"carried, added after the last property and before the alarm",
         "SUMMARY:a\r\n" + alarm,
         "SUMMARY:a\r\nLOCATION:y\r\n",
         "changed: LOCATION added",
         {"LOCATION:y\r\nDTSTAMP:"},
         {}},
        {"not carried, kept in place",
         "RRULE:FREQ=WEEKLY\r\nSUMMARY:a\r\nTRANSP:OPAQUE\r\n",
         "SUMMARY:b\r\n",
         "changed: SUMMARY changed",
         {"RRULE:FREQ=WEEKLY\r\nSUMMARY:b\r\nTRANSP:OPAQUE\r\n"},
         {}},
        {"parameter of a kept attendee stays",
         "ATTENDEE;SCHEDULE-STATUS=2.0;PARTSTAT=NEEDS-ACTION:mailto:b@x\r\n",
         "ATTENDEE;PARTSTAT=ACCEPTED;SCHEDULE-STATUS=2.0:mailto:b@x\r\n",
         "changed: ATTENDEE changed",
         {"SCHEDULE-STATUS=2.0", "PARTSTAT=ACCEPTED"},
         {"NEEDS-ACTION"}},
        {"sub-component kept",
         "SUMMARY:a\r\n" + alarm,
         "SUMMARY:b\r\n",
         "changed: SUMMARY changed",
         {"SUMMARY:b\r\n", alarm},
         {}},
        {"unchanged",
         "SUMMARY:a\r\nRRULE:FREQ=DAILY\r\n" + alarm,
         "SUMMARY:a\r\n",
         "unchanged",
         {},
         {"LAST-MODIFIED"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string original = Cal(Event(c.original));
        const MergeResult r = Merge(original, Cal(Event(c.device)));
        ASSERT_TRUE(r.ok) << r.error;
        ASSERT_EQ(r.items.size(), 1u);
        EXPECT_EQ(PimBridge::Describe(r.items[0]), c.report);
        EXPECT_EQ(r.items[0].uid, "u1");
        for (const std::string& k : c.kept) EXPECT_TRUE(Has(r.text, k)) << r.text;
        for (const std::string& g : c.gone) EXPECT_FALSE(Has(r.text, g)) << r.text;
        if (r.Unchanged()) {
            EXPECT_EQ(r.text, original);
        }
    }
}

// A recurring event and its override share a UID: each item finds its
// component by instance number, whatever order the streams come in.
TEST(IcalMerge, OverridesMatchByInstance) {
    const std::string master =
        "BEGIN:VEVENT\r\nUID:r\r\nSUMMARY:weekly\r\nRRULE:FREQ=WEEKLY\r\n"
        "DTSTART:20250105T100000Z\r\nEND:VEVENT\r\n";
    const std::string override =
        "BEGIN:VEVENT\r\nUID:r\r\nRECURRENCE-ID:20250112T100000Z\r\n"
        "SUMMARY:moved\r\nDTSTART:20250112T110000Z\r\nEND:VEVENT\r\n";
    const std::string original = Cal(master + override);
    std::vector<std::uint8_t> device = Streams(Cal(master + override));
    std::vector<std::uint8_t> edited =
        Streams(Cal(master + "BEGIN:VEVENT\r\nUID:r\r\nSUMMARY:moved again\r\n"
                             "DTSTART:20250112T110000Z\r\nEND:VEVENT\r\n"));
    // The edited override (instance 1) first, then the master as it was.
    const PimBridge::ImportResult parts =
        PimBridge::ImportICalendar(original.data(), original.size());
    std::vector<std::uint8_t> streams(edited.begin() + parts.items[1].offset, edited.end());
    streams.insert(streams.end(), device.begin(), device.begin() + parts.items[1].offset);
    const MergeResult r =
        PimBridge::MergeICalendar(original.data(), original.size(), streams.data(), streams.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[0].instance, 1u);
    EXPECT_EQ(PimBridge::Describe(r.items[0]), "changed: SUMMARY changed");
    EXPECT_EQ(PimBridge::Describe(r.items[1]), "unchanged");
    EXPECT_TRUE(Has(r.text, master)) << r.text;
    EXPECT_TRUE(Has(r.text, "RECURRENCE-ID:20250112T100000Z\r\nSUMMARY:moved again\r\n"));
}

TEST(IcalMerge, NewItemsAreAddedAndUnmatchedComponentsStay) {
    const std::string kept = "BEGIN:VTODO\r\nUID:t\r\nSUMMARY:kept\r\nEND:VTODO\r\n";
    const std::string zone =
        "BEGIN:VTIMEZONE\r\nTZID:Z\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000"
        "\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\n"
        "END:VTIMEZONE\r\n";
    const std::string original =
        "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\n"
        "X-WR-CALNAME:home\r\n" +
        zone + Event("SUMMARY:a\r\n") + kept + "END:VCALENDAR\r\n";
    const MergeResult r = Merge(
        original,
        Cal(Event("SUMMARY:a\r\n") + "BEGIN:VJOURNAL\r\nUID:n\r\nSUMMARY:new\r\nEND:VJOURNAL\r\n"));
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[0].outcome, Outcome::Unchanged);
    EXPECT_EQ(r.items[1].outcome, Outcome::Added);
    EXPECT_EQ(r.items[1].kind, "note");
    const std::size_t added = r.text.find("BEGIN:VJOURNAL\r\nUID:n\r\n");
    ASSERT_NE(added, std::string::npos) << r.text;
    EXPECT_EQ(r.text.compare(0, added, original, 0, original.size() - 15), 0) << r.text;
    EXPECT_TRUE(Has(r.text, "DTSTAMP:"));
    const std::string end = "END:VJOURNAL\r\nEND:VCALENDAR\r\n";
    EXPECT_EQ(r.text.rfind(end), r.text.size() - end.size()) << r.text;

    // A UID the import read as Windows-1252 finds its component in the form
    // the device sends back: an edit, not a new item.
    const std::string latin =
        Cal("BEGIN:VEVENT\r\nUID:ab\xE1"
            "c\r\nSUMMARY:a\r\nEND:VEVENT\r\n");
    const MergeResult edited = Merge(latin, Cal("BEGIN:VEVENT\r\nUID:ab\xC3\xA1"
                                                "c\r\nSUMMARY:b\r\nEND:VEVENT\r\n"));
    ASSERT_TRUE(edited.ok) << edited.error;
    ASSERT_EQ(edited.items.size(), 1u);
    EXPECT_EQ(edited.items[0].outcome, Outcome::Changed);
    EXPECT_TRUE(Has(edited.text,
                    "UID:ab\xE1"
                    "c\r\nSUMMARY:b\r\n"))
        << edited.text;
}

// An added item that names a zone the original defines no VTIMEZONE for gets
// the database's definition, once, before the new components; a zone the
// database does not know is reported, one the original defines is not added.
TEST(IcalMerge, ZonesTheOriginalLacks) {
    const std::string custom =
        "BEGIN:VTIMEZONE\r\nTZID:Z\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000"
        "\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\n"
        "END:VTIMEZONE\r\n";
    const auto at = [](const char* uid, const char* tzid) {
        return std::string("BEGIN:VEVENT\r\nUID:") + uid + "\r\nDTSTART;TZID=" + tzid +
               ":20250105T100000\r\nEND:VEVENT\r\n";
    };
    struct Case {
        const char* name;
        std::string device;             // after the original's event u1, as it was
        std::string zones;              // the TZIDs of the VTIMEZONEs added, in order
        std::vector<std::string> lost;  // losses of the second item
    };
    const Case cases[] = {
        {"new item, known zone", at("n", "Europe/Berlin"), "Europe/Berlin", {}},
        {"two new items, one zone",
         at("n", "Europe/Berlin") + at("m", "Europe/Berlin"),
         "Europe/Berlin",
         {}},
        {"new item, unknown zone", at("n", "Mars/Olympus"), "", {"VTIMEZONE of TZID Mars/Olympus"}},
        {"new item, zone of the original", at("n", "Z"), "", {}},
    };
    const std::string original = Cal(custom + Event("SUMMARY:a\r\n"));
    for (const Case& c : cases) {
        const MergeResult r = Merge(original, Cal(Event("SUMMARY:a\r\n") + c.device));
        ASSERT_TRUE(r.ok) << c.name << ": " << r.error;
        std::string zones;
        const std::size_t firstNew = r.text.find("BEGIN:VEVENT\r\nUID:n");
        for (std::size_t p = r.text.find("BEGIN:VTIMEZONE"); p != std::string::npos;
             p = r.text.find("BEGIN:VTIMEZONE", p + 1)) {
            const std::size_t id = r.text.find("TZID:", p) + 5;
            const std::string tzid = r.text.substr(id, r.text.find_first_of("\r\n", id) - id);
            if (tzid == "Z") continue;
            EXPECT_LT(p, firstNew) << c.name;
            zones += tzid;
        }
        EXPECT_EQ(zones, c.zones) << c.name << "\n" << r.text;
        std::vector<std::string> lost;
        for (const PimBridge::Loss& l : r.items.at(1).losses) lost.push_back(l.name);
        EXPECT_EQ(lost, c.lost) << c.name;
    }
}

// A property changed on the device, in the original since the base was
// sent, or on both: who wins, and what the report says.
TEST(IcalMerge, ThreeWay) {
    struct Case {
        const char* base;
        const char* original;
        const char* device;
        bool preferDevice;
        const char* merged;  // SUMMARY afterwards
        const char* report;
    };
    const Case cases[] = {
        {"a", "a", "b", false, "b", "changed: SUMMARY changed"},
        {"a", "c", "a", false, "c", "unchanged"},
        {"a", "c", "b", false, "c", "unchanged; conflict: SUMMARY, server's value kept"},
        {"a", "c", "b", true, "b",
         "changed: SUMMARY changed; conflict: SUMMARY, device's value taken"},
        {"a", "b", "b", false, "b", "unchanged"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.base) + c.original + c.device);
        const auto cal = [](const char* summary) {
            return Cal(Event("LOCATION:here\r\nSUMMARY:" + std::string(summary) + "\r\n"));
        };
        const std::string base = cal(c.base);
        MergeOptions options;
        options.base = base.data();
        options.baseSize = base.size();
        options.preferDevice = c.preferDevice;
        const MergeResult r = Merge(cal(c.original), cal(c.device), options);
        ASSERT_TRUE(r.ok) << r.error;
        EXPECT_EQ(PimBridge::Describe(r.items.at(0)), c.report);
        EXPECT_TRUE(Has(r.text, "SUMMARY:" + std::string(c.merged) + "\r\n")) << r.text;
    }
}

// A changed item was modified at "now", which SOURCE_DATE_EPOCH fixes; a
// new start is a revision. An unchanged one keeps its stamps.
TEST(IcalMerge, TimestampsFollowTheClock) {
    ::setenv("SOURCE_DATE_EPOCH", "1767225600", 1);  // 2026-01-01
    const std::string stamps = "DTSTAMP:20200101T000000Z\r\nLAST-MODIFIED:20200101T000000Z\r\n";
    const std::string original = Cal(Event(stamps + "SEQUENCE:4\r\nDTSTART:20250101T100000Z\r\n") +
                                     "BEGIN:VEVENT\r\nUID:u2\r\n" + stamps + "END:VEVENT\r\n");
    const MergeResult r =
        Merge(original, Cal(Event(stamps + "SEQUENCE:4\r\nDTSTART:20250101T110000Z\r\n") +
                            "BEGIN:VEVENT\r\nUID:u2\r\n" + stamps + "END:VEVENT\r\n"));
    ::unsetenv("SOURCE_DATE_EPOCH");
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(PimBridge::Describe(r.items[0]), "changed: DTSTART changed");
    EXPECT_TRUE(Has(r.text,
                    "UID:u1\r\nDTSTAMP:20260101T000000Z\r\nLAST-MODIFIED:"
                    "20260101T000000Z\r\nSEQUENCE:5\r\nDTSTART:20250101T110000Z\r\n"))
        << r.text;
    EXPECT_TRUE(Has(r.text, "UID:u2\r\n" + stamps)) << r.text;
}

TEST(IcalMerge, BadInputGivesAClearAnswer) {
    const std::string original = Cal(Event("SUMMARY:a\r\n"));
    const std::vector<std::uint8_t> streams = Streams(original);
    const auto merge = [&](const std::string& text, const std::vector<std::uint8_t>& s) {
        return PimBridge::MergeICalendar(text.data(), text.size(), s.data(), s.size());
    };
    const MergeResult notCalendar = merge("hello\r\n", streams);
    EXPECT_FALSE(notCalendar.ok);
    EXPECT_EQ(notCalendar.error.rfind("the original: no iCalendar component", 0), 0u)
        << notCalendar.error;
    EXPECT_TRUE(notCalendar.text.empty());
    const MergeResult cut = merge(original, {streams.begin(), streams.end() - 1});
    EXPECT_FALSE(cut.ok);
    EXPECT_TRUE(Has(cut.error, "offset 0")) << cut.error;
    // A stream its parser stops in would read as a device that removed
    // everything after the fault: the component is left alone instead.
    std::vector<std::uint8_t> broken = streams;
    broken[broken.size() - 1] ^= 0xFF;
    const MergeResult failed = merge(original, broken);
    ASSERT_TRUE(failed.ok) << failed.error;
    EXPECT_EQ(failed.items.at(0).outcome, Outcome::Failed);
    EXPECT_EQ(failed.text, original);
}

TEST(IcalMerge, LineEndsOfTheOriginalAreKept) {
    std::string original = Cal(Event("SUMMARY:a\r\n"));
    for (std::size_t p; (p = original.find("\r\n")) != std::string::npos;) original.erase(p, 1);
    const MergeResult r = Merge(original, Cal(Event("SUMMARY:b\r\n")));
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_TRUE(Has(r.text, "UID:u1\nSUMMARY:b\nDTSTAMP:")) << r.text;
    EXPECT_FALSE(Has(r.text, "\r"));
}

}  // namespace
