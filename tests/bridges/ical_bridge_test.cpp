// The iCalendar bridge: what each item receives from iCalendar text, what
// it loses and where, and that the export libical writes imports back to the
// very same streams.
#include <gtest/gtest.h>
#include <libical/ical.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "bridges/ical/ICalendarBridge.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/note/TLVNoteParser.h"
#include "pimshared/task/TLVTaskParser.h"
#include "support/CalendarFamily.h"

namespace {

using PimBridge::ExportICalendar;
using PimBridge::ImportICalendar;
using PimBridge::ImportResult;
using Lines = std::vector<std::string>;

std::string Cal(const std::string& body) {
    return "BEGIN:VCALENDAR\r\nPRODID:-//t//EN\r\nVERSION:2.0\r\n" + body + "END:VCALENDAR\r\n";
}

// The property calls of item i, without Begin, PRODID, VERSION and End.
Lines Calls(const ImportResult& r, std::size_t i) {
    const auto& item = r.items.at(i);
    const CalendarFamilyTest::Bytes bytes(r.streams.begin() + item.offset,
                                          r.streams.begin() + item.offset + item.size);
    Lines calls;
    const auto run = [&](auto& recorder, auto& parser) {
        EXPECT_TRUE(CalendarFamilyTest::ParseWith(parser, bytes));
        EXPECT_EQ(recorder.traces, Lines{});
        calls = recorder.calls;
    };
    if (item.kind == "event") {
        CalendarFamilyTest::Recorder<PimShared::ICalendarReceiver> rec;
        PimShared::CTLVCalendarParser parser(rec);
        run(rec, parser);
    } else if (item.kind == "task") {
        CalendarFamilyTest::Recorder<PimShared::ITaskReceiver> rec;
        PimShared::CTLVTaskParser parser(rec);
        run(rec, parser);
    } else {
        CalendarFamilyTest::Recorder<PimShared::INoteReceiver> rec;
        PimShared::CTLVNoteParser parser(rec);
        run(rec, parser);
    }
    if (calls.size() < 4) return calls;
    return Lines(calls.begin() + 3, calls.end() - 1);
}

// Export, then import of that export: the same streams.
void ExpectRoundTrip(const ImportResult& r) {
    const auto out = ExportICalendar(r.streams.data(), r.streams.size());
    ASSERT_TRUE(out.ok) << out.error;
    for (const auto& item : out.items) {
        EXPECT_TRUE(item.diagnostics.empty() && item.losses.empty() && !item.malformed);
    }
    const auto again = ImportICalendar(out.text.data(), out.text.size());
    ASSERT_TRUE(again.ok) << again.error;
    EXPECT_EQ(again.streams, r.streams) << out.text;
}

struct ImportCase {
    const char* name;
    const char* component;
    std::string lines;
    Lines calls;
};

const std::vector<ImportCase> kImportCases = {
    {"RichTextEscapedFoldedNonAscii",
     "VEVENT",
     "SUMMARY;ALTREP=\"cid:x@y\";LANGUAGE=de:Gr\xC3\xBC\xC3\x9F\x65\\, Welt\\;\\nzwei\r\n  und "
     "mehr\r\nLOCATION;X-ROOM=\"a;b\":Saal\r\nDESCRIPTION;X-Q=\"say ^'hi^': \xC3\xA9\":d\r\n",
     {"Summary('Gr\xC3\xBC\xC3\x9F\x65, Welt;\nzwei und mehr''cid:x@y''de'{})",
      "Location('Saal'nullnull{'X-ROOM'='a;b'})",
      "Description('d'nullnull{'X-Q'='say \"hi\": \xC3\xA9'})"}},
    {"EventTimesInEveryForm",
     "VEVENT",
     "DTSTART:20260301T100000Z\r\nDTEND;TZID=Europe/Berlin:20260301T120000\r\n"
     "DTSTART:20260302T080000\r\nDTEND;VALUE=DATE:20260303\r\n",
     {"DateTimeStart(20260301T100000Znull{})", "DateTimeEnd(20260301T120000Z'Europe/Berlin'{})",
      "DateTimeStartLocal(20260302T080000Z{})",
      "DateTimeEndLocal(20260303T000000Z{'VALUE'='DATE'})"}},
    {"TaskDueAndCreatedOutsideTheirOperationsForm",
     "VTODO",
     "DUE:20260301T100000Z\r\nDUE;TZID=America/New_York:20260301T100000\r\n"
     "DUE:20260301T100000\r\nCREATED:20260101T000000\r\nLAST-MODIFIED;TZID=Asia/"
     "Tokyo:20260102T000000\r\n"
     "DTSTART;TZID=Europe/Paris;VALUE=DATE:20260104\r\nPRIORITY:9\r\nSTATUS:IN-PROCESS\r\n",
     {"DateTimeDueLocal(20260301T100000Z{'X-PIMTLV-TIME'='UTC'})",
      "DateTimeDueLocal(20260301T100000Z{'TZID'='America/New_York'})",
      "DateTimeDueLocal(20260301T100000Z{})",
      "DateTimeCreated(20260101T000000Z{'X-PIMTLV-TIME'='FLOATING'})",
      "LastModified(20260102T000000Z{'TZID'='Asia/Tokyo'})",
      "DateTimeStart(20260104T000000Z'Europe/Paris'{'VALUE'='DATE'})", "Priority(9{})",
      "Status('IN-PROCESS'{})"}},
    {"CategoriesPerLineWithLanguage",
     "VJOURNAL",
     "CATEGORIES;LANGUAGE=en:a,b,c\r\nCATEGORIES:d\r\nCLASS:PRIVATE\r\nUID:u1\r\nSEQUENCE:"
     "65535\r\n",
     {"Categories(['a','b','c']'en'{})", "Categories(['d']null{})", "Classification('PRIVATE'{})",
      "UniqueIdentifier('u1'{})", "SequenceNumber(65535{})"}},
    {"AttendeesAndOrganizerWithEveryParameter",
     "VEVENT",
     "ATTENDEE;CUTYPE=GROUP;MEMBER=\"mailto:g@x\";ROLE=CHAIR;PARTSTAT=TENTATIVE;RSVP=TRUE;\r\n"
     " DELEGATED-TO=\"mailto:t@x\";DELEGATED-FROM=\"mailto:f@x\";SENT-BY=\"mailto:s@x\";\r\n"
     " CN=\"Doe, J\";DIR=\"ldap://d\";LANGUAGE=fr;X-N=2;SCHEDULE-AGENT=CLIENT:mailto:j@x\r\n"
     "ATTENDEE;RSVP=FALSE;CN=A;CN=B:mailto:k@x\r\n"
     "ORGANIZER;SENT-BY=\"mailto:s@x\";CN=Boss;DIR=\"ldap://b\";LANGUAGE=it:mailto:b@x\r\n",
     {"Attendee('mailto:j@x''GROUP'['mailto:g@x']'CHAIR''TENTATIVE'1['mailto:t@x']['mailto:f@"
      "x']'mailto:s@x''Doe, J''ldap://d''fr'{'X-N'='2','SCHEDULE-AGENT'='CLIENT'})",
      "Attendee('mailto:k@x'null[]nullnull0[][]null'A'nullnull{'CN'='B'})",
      "Organizer('mailto:b@x''mailto:s@x''Boss''ldap://b''it'{})"}},
};

class ImportTest : public testing::TestWithParam<ImportCase> {};

TEST_P(ImportTest, ItemGetsEveryPropertyAndTheExportReadsBackAlike) {
    const ImportCase& c = GetParam();
    const std::string text =
        Cal(std::string("BEGIN:") + c.component + "\r\n" + c.lines + "END:" + c.component + "\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 1u);
    EXPECT_EQ(r.items[0].losses.size(), 0u) << r.items[0].losses[0].name;
    EXPECT_EQ(Calls(r, 0), c.calls);
    ExpectRoundTrip(r);
}

INSTANTIATE_TEST_SUITE_P(Ical, ImportTest, testing::ValuesIn(kImportCases),
                         [](const auto& p) { return std::string(p.param.name); });

std::string Said(const std::vector<PimBridge::Loss>& losses) {
    static const char* const kKinds[] = {"lost", "regenerated", "converted", "limit"};
    std::string said;
    for (const auto& l : losses) {
        said +=
            l.name + " " + kKinds[static_cast<int>(l.kind)] + "@" + std::to_string(l.line) + " ";
    }
    return said;
}

// Inputs that once arrived changed without a word: each arrives intact, or a
// report names what changed and how; only a change of content fails --strict.
struct SilentCase {
    const char* name;
    const char* component;
    std::string lines;  // from line 5
    Lines calls;
    std::string losses;
    bool changes;
};

const std::vector<SilentCase> kSilentCases = {
    {"Windows1252TextIsConvertedAndNamed",
     "VEVENT",
     "SUMMARY:Caf\xE9 cr\xE8me \x80\r\nLOCATION:M\xC3\xBCnchen\r\n"
     "DESCRIPTION;LANGUAGE=fr:\x93q\x94 \x81\r\n",
     {"Summary('Caf\xC3\xA9 cr\xC3\xA8me \xE2\x82\xAC'nullnull{})",
      "Location('M\xC3\xBCnchen'nullnull{})",
      "Description('\xE2\x80\x9Cq\xE2\x80\x9D \xC2\x81'null'fr'{})"},
     "SUMMARY converted@5 DESCRIPTION converted@7 ",
     true},
    {"BlanksAndEmptyTextsStay",
     "VEVENT",
     "SUMMARY:  two  \r\nDESCRIPTION:\r\nLOCATION;LANGUAGE=de:\r\n"
     "UID;X-PIMTLV-WRAP=mine:\tu \r\n x \r\n",
     {"Summary('  two  'nullnull{})", "Description(''nullnull{})", "Location(''null'de'{})",
      "UniqueIdentifier('\tu x '{'X-PIMTLV-WRAP'='mine'})"},
     "",
     false},
    {"DurationBecomesTheEndAcrossAnOffsetChange",
     "VEVENT",
     "DTSTART;TZID=Europe/Berlin:20260329T013000\r\nDURATION:PT1H\r\n",
     {"DateTimeStart(20260329T013000Z'Europe/Berlin'{})",
      "DateTimeEnd(20260329T033000Z'Europe/Berlin'{})"},
     "DURATION converted@6 ",
     true},
    {"DurationOfDaysOnADate",
     "VEVENT",
     "DTSTART;VALUE=DATE:20260227\r\nDURATION:P1W2D\r\n",
     {"DateTimeStartLocal(20260227T000000Z{'VALUE'='DATE'})",
      "DateTimeEndLocal(20260308T000000Z{'VALUE'='DATE'})"},
     "DURATION converted@6 ",
     true},
    {"TaskDurationBecomesDue",
     "VTODO",
     "DURATION:PT90M\r\nDTSTART:20260101T100000Z\r\n",
     {"DateTimeDueLocal(20260101T113000Z{'X-PIMTLV-TIME'='UTC'})",
      "DateTimeStart(20260101T100000Znull{})"},
     "DURATION converted@5 ",
     true},
    {"ZoneOfAUtcTimeIsReported",
     "VEVENT",
     "DTSTART;TZID=Europe/Berlin:20260101T100000Z\r\n",
     {"DateTimeStart(20260101T100000Znull{})"},
     "DTSTART;TZID lost@5 ",
     true},
    {"BlanksAroundACategoryAreReported",
     "VJOURNAL",
     "CATEGORIES:a ,b\r\nCATEGORIES:d\r\n",
     {"Categories(['a','b']null{})", "Categories(['d']null{})"},
     "CATEGORIES converted@5 ",
     true},
    {"StampIsRegeneratedNotLost",
     "VEVENT",
     "DTSTAMP:20260101T000000Z\r\nUID:u\r\n",
     {"UniqueIdentifier('u'{})"},
     "DTSTAMP regenerated@5 ",
     false},
};

class SilentTest : public testing::TestWithParam<SilentCase> {};

TEST_P(SilentTest, ContentArrivesIntactOrTheReportNamesIt) {
    const SilentCase& c = GetParam();
    const std::string text =
        Cal(std::string("BEGIN:") + c.component + "\r\n" + c.lines + "END:" + c.component + "\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 1u);
    EXPECT_EQ(Calls(r, 0), c.calls);
    EXPECT_EQ(Said(r.items[0].losses), c.losses);
    EXPECT_EQ(r.HasLoss(), c.changes);
    ExpectRoundTrip(r);
}

INSTANTIATE_TEST_SUITE_P(Ical, SilentTest, testing::ValuesIn(kSilentCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(IcalImport, ZonesFromTheDatabaseAreRegeneratedOthersLost) {
    // libical keeps the zones ahead of the items, the last first: each
    // still reports its own line, and so does the item after them.
    const std::string text =
        Cal("BEGIN:VEVENT\r\nX-A:1\r\nEND:VEVENT\r\nBEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"
            "END:VTIMEZONE\r\nBEGIN:VTIMEZONE\r\nTZID:Custom\r\nEND:VTIMEZONE\r\n"
            "BEGIN:VEVENT\r\nX-B:\xE9\r\nEND:VEVENT\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(Said(r.losses), "VTIMEZONE lost@10 VTIMEZONE regenerated@7 ");
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[1].line, 13u);
    EXPECT_EQ(Said(r.items[0].losses), "X-A lost@5 ");
    EXPECT_EQ(Said(r.items[1].losses), "X-B converted@14 X-B lost@14 ");
}

TEST(IcalImport, AValueOverTheLimitIsNamedAtItsLine) {
    const std::string text =
        Cal("BEGIN:VEVENT\r\nUID:u\r\nDESCRIPTION:" + std::string((16u << 20) + 1, 'd') +
            "\r\nEND:VEVENT\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.errorLine, 6u);
    EXPECT_NE(r.error.find("DESCRIPTION of event 1"), std::string::npos) << r.error;
    EXPECT_NE(r.error.find("16 MiB"), std::string::npos) << r.error;
}

TEST(IcalImport, MixedItemsInOrderWithCalendarTextsAndPositions) {
    const std::string text =
        Cal("BEGIN:VTODO\r\nUID:t\r\nEND:VTODO\r\nBEGIN:VEVENT\r\nUID:e\r\nEND:VEVENT\r\n"
            "BEGIN:VJOURNAL\r\nUID:n\r\nEND:VJOURNAL\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 3u);
    const std::string marked = "\xEF\xBB\xBF" + text;  // a byte order mark changes nothing
    const ImportResult same = ImportICalendar(marked.data(), marked.size());
    EXPECT_EQ(same.streams, r.streams);
    EXPECT_TRUE(same.losses.empty());
    const char* kinds[] = {"task", "event", "note"};
    const unsigned lines[] = {4, 7, 10};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(r.items[i].kind, kinds[i]);
        EXPECT_EQ(r.items[i].line, lines[i]);
    }
    const auto task =
        CalendarFamilyTest::Bytes(r.streams.begin(), r.streams.begin() + r.items[0].size);
    CalendarFamilyTest::Recorder<PimShared::ITaskReceiver> rec;
    PimShared::CTLVTaskParser parser(rec);
    EXPECT_TRUE(CalendarFamilyTest::ParseWith(parser, task));
    EXPECT_EQ(rec.calls, (Lines{"Begin(0)", "ProductIdentifier('-//t//EN'{})", "Version('2.0'{})",
                                "UniqueIdentifier('t'{})", "End()"}));
    ExpectRoundTrip(r);
}

TEST(IcalImport, LossesByNameWithCountAndFirstLine) {
    const std::string text =
        Cal("X-WR-CALNAME:c\r\nBEGIN:VTIMEZONE\r\nTZID:Z\r\nEND:VTIMEZONE\r\n"  // lines 4-7
            "BEGIN:VJOURNAL\r\nDTSTAMP:20260101T000000Z\r\nEXDATE:20260101T000000Z\r\n"
            "SUMMARY:s\r\nEXDATE:20260102T000000Z\r\nLOCATION:nowhere\r\nPRIORITY:300\r\n"
            "X-FOO;X-P=1:x\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nEND:VALARM\r\nNO NAME\r\n"
            "CREATED:2026XX01\r\nNO NAME EITHER\r\nEND:VJOURNAL\r\nJUNK\r\n") +
        "TRAILER\r\n";
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 1u);
    const auto str = [](const std::vector<PimBridge::Loss>& losses) {
        std::string s;
        for (const auto& l : losses)
            s += l.name + "x" + std::to_string(l.count) + "@" + std::to_string(l.line) + " ";
        return s;
    };
    EXPECT_EQ(
        str(r.losses),
        "X-WR-CALNAMEx1@4 unreadable linex1@23 VTIMEZONEx1@5 text outside any componentx1@25 ");
    EXPECT_EQ(str(r.items[0].losses),
              "DTSTAMPx1@9 EXDATEx2@10 LOCATIONx1@13 PRIORITYx1@14 "
              "X-FOOx1@15 unreadable linex3@19 VALARMx1@16 ");
    EXPECT_TRUE(r.HasLoss());
}

TEST(IcalImport, ItemsOfSeveralCalendarsGetTheirOwnCalendarTexts) {
    const std::string one = Cal("BEGIN:VEVENT\r\nEND:VEVENT\r\n");
    std::string two = one;
    two.replace(two.find("-//t//EN"), 8, "-//u//EN");
    const std::string text = one + two;
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[1].line, 10u);
    const auto second =
        CalendarFamilyTest::Bytes(r.streams.begin() + r.items[1].offset, r.streams.end());
    CalendarFamilyTest::Recorder<PimShared::ICalendarReceiver> rec;
    PimShared::CTLVCalendarParser parser(rec);
    EXPECT_TRUE(CalendarFamilyTest::ParseWith(parser, second));
    EXPECT_EQ(rec.calls.at(1), "ProductIdentifier('-//u//EN'{})");
    // One calendar comes back, with the first item's product: the second
    // item reports that its own has no place.
    const auto out = ExportICalendar(r.streams.data(), r.streams.size());
    ASSERT_TRUE(out.ok);
    EXPECT_EQ(out.items[0].losses.size(), 0u);
    ASSERT_EQ(out.items[1].losses.size(), 1u);
    EXPECT_EQ(out.items[1].losses[0].name, "PRODID");
}

TEST(IcalImport, TextThatIsNoICalendarIsAnErrorWithItsLine) {
    const struct {
        std::string text;
        unsigned line;
    } cases[] = {
        {"", 1},
        {"hello\nworld\n", 1},
        {std::string("BEGIN:VCALENDAR\r\nSUMMARY:a\0b\r\n", 28), 2},
        {[] {
             std::string deep = "BEGIN:VCALENDAR\r\n";
             for (int i = 0; i < 100; ++i) deep += "BEGIN:X-C\r\n";
             return deep;
         }(),
         65},
    };
    for (const auto& c : cases) {
        const ImportResult r = ImportICalendar(c.text.data(), c.text.size());
        EXPECT_FALSE(r.ok);
        EXPECT_FALSE(r.error.empty());
        EXPECT_EQ(r.errorLine, c.line) << r.error;
    }
}

TEST(IcalImport, LooksLikeICalendarAfterBomAndBlankLines) {
    EXPECT_TRUE(PimBridge::LooksLikeICalendar("\xEF\xBB\xBF\r\n\r\nbegin:vcalendar", 32));
    EXPECT_FALSE(PimBridge::LooksLikeICalendar("BEGIN:VCARD\r\n", 13));
    EXPECT_FALSE(PimBridge::LooksLikeICalendar("BEGIN:VCAL", 10));
}

TEST(IcalExport, OneValidCalendarWithStampsThatLibicalReads) {
    setenv("SOURCE_DATE_EPOCH", "1767323045", 1);  // 2026-01-02 03:04:05 UTC
    const std::string text =
        Cal("BEGIN:VEVENT\r\nUID:e\r\nLAST-MODIFIED;TZID=Asia/Tokyo:20260105T150708\r\nSUMMARY:" +
            std::string(100, 'x') + "\r\nEND:VEVENT\r\nBEGIN:VTODO\r\nEND:VTODO\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok);
    const auto out = ExportICalendar(r.streams.data(), r.streams.size());
    unsetenv("SOURCE_DATE_EPOCH");
    ASSERT_TRUE(out.ok) << out.error;
    std::istringstream lines(out.text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.back(), '\r');
        EXPECT_LE(line.size(), 76u);
    }
    icalcomponent* cal = icalparser_parse_string(out.text.c_str());
    ASSERT_NE(cal, nullptr);
    EXPECT_STREQ(
        icalproperty_get_prodid(icalcomponent_get_first_property(cal, ICAL_PRODID_PROPERTY)),
        "-//t//EN");
    icalcomponent* event = icalcomponent_get_first_component(cal, ICAL_VEVENT_COMPONENT);
    icalcomponent* task = icalcomponent_get_first_component(cal, ICAL_VTODO_COMPONENT);
    ASSERT_TRUE(event && task);
    EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_dtstamp(event)), "20260105T060708Z");
    // Without a revision time of its own, the task is stamped with the export's time.
    EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_dtstamp(task)), "20260102T030405Z");
    EXPECT_EQ(std::string(icalcomponent_get_summary(event)), std::string(100, 'x'));
    icalcomponent_free(cal);
}

TEST(IcalExport, EveryZoneTheItemsNameHasItsDefinition) {
    const std::string text =
        Cal("BEGIN:VEVENT\r\nDTSTART;TZID=Europe/Berlin:20260701T120000\r\n"
            "DTEND;TZID=America/New_York:20260701T120000\r\nEND:VEVENT\r\nBEGIN:VTODO\r\n"
            "DUE;TZID=Asia/Tokyo:20260701T120000\r\nCREATED;TZID=Europe/Berlin:20260101T000000\r\n"
            "END:VTODO\r\nBEGIN:VEVENT\r\nDTSTART;TZID=Mars/Olympus:20260701T120000\r\n"
            "END:VEVENT\r\n");
    const ImportResult r = ImportICalendar(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    const auto out = ExportICalendar(r.streams.data(), r.streams.size());
    ASSERT_TRUE(out.ok) << out.error;
    EXPECT_EQ(Said(out.items[0].losses) + Said(out.items[1].losses), "");
    EXPECT_EQ(Said(out.items[2].losses), "VTIMEZONE of TZID Mars/Olympus lost@0 ");
    icalcomponent* cal = icalparser_parse_string(out.text.c_str());
    ASSERT_NE(cal, nullptr);
    std::vector<std::string> defined;
    for (icalcomponent* z = icalcomponent_get_first_component(cal, ICAL_VTIMEZONE_COMPONENT);
         z != nullptr; z = icalcomponent_get_next_component(cal, ICAL_VTIMEZONE_COMPONENT)) {
        defined.push_back(
            icalproperty_get_tzid(icalcomponent_get_first_property(z, ICAL_TZID_PROPERTY)));
    }
    std::sort(defined.begin(), defined.end());
    EXPECT_EQ(defined, (Lines{"America/New_York", "Asia/Tokyo", "Europe/Berlin"}));
    // The definitions are the zones': noon in New York in July is 16:00 UTC.
    icalcomponent* event = icalcomponent_get_first_component(cal, ICAL_VEVENT_COMPONENT);
    const icaltimetype end =
        icaltime_convert_to_zone(icalcomponent_get_dtend(event), icaltimezone_get_utc_timezone());
    EXPECT_STREQ(icaltime_as_ical_string(end), "20260701T160000Z");
    icalcomponent_free(cal);
}

TEST(IcalExport, RefusesOtherItemsAndPassesOnWhatParsersReport) {
    const auto nothing = ExportICalendar(nullptr, 0);  // no calendar has no component
    EXPECT_FALSE(nothing.ok);
    EXPECT_NE(nothing.error, "");
    EXPECT_EQ(nothing.text, "");
    const CalendarFamilyTest::Bytes contact =
        CalendarFamilyTest::Element(8, 0, CalendarFamilyTest::FromHex("90 0A 04 00 00 00 01"));
    const auto refused = ExportICalendar(contact.data(), contact.size());
    EXPECT_FALSE(refused.ok);
    EXPECT_EQ(refused.text, "");
    const CalendarFamilyTest::Bytes event =
        CalendarFamilyTest::Frame(1, 103, 4,
                                  {CalendarFamilyTest::N(252, {CalendarFamilyTest::U8(377, 1)}),
                                   CalendarFamilyTest::N(209, {CalendarFamilyTest::S(312, "x")})});
    const auto out = ExportICalendar(event.data(), event.size());
    ASSERT_TRUE(out.ok) << out.error;
    ASSERT_EQ(out.items.size(), 1u);
    EXPECT_EQ(out.items[0].diagnostics.size(), 1u);  // 209 is no property the event knows
    ASSERT_EQ(out.items[0].losses.size(), 2u);
    EXPECT_EQ(out.items[0].losses[0].name, "instance number");
    EXPECT_EQ(out.items[0].losses[1].name, "send status");
}

TEST(IcalExport, LineBreaksAndBadNamesCannotForgeLines) {
    const CalendarFamilyTest::Bytes event = CalendarFamilyTest::Frame(
        1, 103, 0,
        {CalendarFamilyTest::N(
             228, {CalendarFamilyTest::S(340, "mailto:a@x\r\nEND:VEVENT\r\nBEGIN:VEVENT")}),
         CalendarFamilyTest::N(
             215, {CalendarFamilyTest::S(320, "s\rt\r\nu"), CalendarFamilyTest::S(1013, "X-A:B"),
                   CalendarFamilyTest::S(1014, "v"), CalendarFamilyTest::S(1013, "X-C"),
                   CalendarFamilyTest::S(1014, "1\r\nUID:forged")})});
    const auto out = ExportICalendar(event.data(), event.size());
    ASSERT_TRUE(out.ok) << out.error;
    EXPECT_EQ(out.text.find("forged"), std::string::npos) << out.text;
    EXPECT_EQ(out.items[0].losses.size(), 3u);
    const ImportResult again = ImportICalendar(out.text.data(), out.text.size());
    ASSERT_TRUE(again.ok);
    EXPECT_EQ(again.items.size(), 1u);
    // Every line break of the text arrives, a lone CR as one too.
    EXPECT_EQ(Calls(again, 0), (Lines{"Summary('s\nt\nu'nullnull{})"}));
}

TEST(IcalFixtures, EveryFixtureRoundTrips) {
    for (const char* name : {"mixed.ics"}) {
        std::ifstream in(std::string(PIMTLV_BRIDGE_FIXTURES) + "/ical/" + name, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        const ImportResult r = ImportICalendar(text.str().data(), text.str().size());
        ASSERT_TRUE(r.ok) << name << ": " << r.error;
        EXPECT_GT(r.items.size(), 0u);
        ExpectRoundTrip(r);
    }
}

}  // namespace
