// vCard text in and out of contact streams: what each property and parameter
// becomes, what is lost and reported, and that an export reads back to the
// streams it came from.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "bridges/vcard/Vcard.h"
#include "pimshared/contact/TLVContactParser.h"
#include "support/ContactRecorder.h"

namespace {

using PimBridge::ExportVcard;
using PimBridge::ImportVcard;

std::string Card(const std::string& version, const std::vector<std::string>& lines) {
    std::string text = "BEGIN:VCARD\r\nVERSION:" + version + "\r\n";
    for (const std::string& l : lines) text += l + "\r\n";
    return text + "END:VCARD\r\n";
}

// The receiver calls of every item, items separated by " | ", without the
// frame (Begin, Version, End) when bare.
std::string Calls(const PimBridge::ImportResult& r, bool bare = true) {
    std::string all;
    for (const PimBridge::ImportedItem& item : r.items) {
        TestSupport::RecordingReceiver rec;
        PimShared::CTLVContactParser parser(rec);
        const char* error = nullptr;
        unsigned int consumed = 0;
        EXPECT_TRUE(parser.Parse(r.streams.data() + item.offset, item.size, error, consumed));
        if (!all.empty()) all += " | ";
        std::string calls;
        for (const std::string& c : rec.calls) {
            if (bare && (c.rfind("Begin(", 0) == 0 || c == "Version(3.0)" || c == "End()"))
                continue;
            calls += (calls.empty() ? "" : " ") + c;
        }
        all += calls;
    }
    return all;
}

std::string Import(const std::string& version, const std::string& line) {
    const std::string text = Card(version, {line});
    return Calls(ImportVcard(text.data(), text.size()));
}

std::string Losses(const PimBridge::ImportResult& r) {
    std::string s;
    for (const PimBridge::ImportedItem& item : r.items) {
        for (const PimBridge::Loss& l : item.losses)
            s += (s.empty() ? "" : " ") + l.name + "x" + std::to_string(l.count) + "@" +
                 std::to_string(l.line);
    }
    return s;
}

// Import, export, import again: the streams must be the same.
std::string RoundTrip(const std::string& text, PimBridge::ExportResult* exported = nullptr) {
    const PimBridge::ImportResult first = ImportVcard(text.data(), text.size());
    EXPECT_TRUE(first.ok) << first.error;
    const PimBridge::ExportResult out = ExportVcard(first.streams.data(), first.streams.size());
    EXPECT_TRUE(out.ok) << out.error;
    const PimBridge::ImportResult second = ImportVcard(out.text.data(), out.text.size());
    EXPECT_TRUE(second.ok) << second.error << "\n" << out.text;
    EXPECT_EQ(first.streams, second.streams) << out.text;
    if (exported != nullptr) *exported = out;
    return out.text;
}

struct Case {
    const char* version;
    const char* line;
    const char* calls;
};

TEST(VcardImport, EveryCarriedPropertyReachesItsOperation) {
    const Case cases[] = {
        {"3.0", "FN;LANGUAGE=de:Jo Doe", "FormattedName(Jo Doe|de|[])"},
        {"3.0", "N:Doe;John;Q.;Dr.;Jr.", "Name(Doe|John|Q.|Dr.|Jr.|-|[])"},
        {"3.0", "N:Do\\;e;Jo\\,hn;;;", "Name(Do;e|Jo,hn|-|-|-|-|[])"},
        {"3.0", "NICKNAME:Jim,Jimmie", "Nickname([Jim,Jimmie]|-|[])"},
        {"3.0", "PHOTO;VALUE=uri;TYPE=GIF:http://x/p.gif", "Photo(http://x/p.gif|GIF|-#0|-)"},
        {"3.0", "PHOTO;ENCODING=b;TYPE=JPEG:AAEC\r\n Aw==", "Photo(-|JPEG|#4:00010203|-)"},
        {"4.0", "PHOTO:data:image/png;base64,AAEC", "Photo(-|image/png|#3:000102|-)"},
        {"3.0", "BDAY:1996-04-15", "Birthday(1996-04-15|-)"},
        {"4.0", "BDAY;VALUE=text:circa 1800", "Birthday(-|circa 1800)"},
        {"3.0", "ADR;TYPE=dom,home,postal,parcel:;;123 Main\\, Apt 4;Any;CA;91921;US",
         "Address(-|-|123 Main, Apt 4|Any|CA|91921|US|29|-|[])"},
        {"3.0", "LABEL;TYPE=work:1 Main St.\\nAny Town", "Label(1 Main St.\nAny Town|32|-|[])"},
        {"3.0", "TEL;TYPE=work,voice,pref,msg:+1-213-555-1234",
         "Telephone(+1-213-555-1234|30|0|0|-|[])"},
        {"3.0", "EMAIL;TYPE=internet,pref:jq@example.com", "Email(jq@example.com|5)"},
        {"3.0", "MAILER:PigeonMail 2.1", "Mailer(PigeonMail 2.1|-|[])"},
        {"3.0", "TZ:-05:00", "Timezone(-05:00|-)"},
        {"4.0", "TZ:America/New_York", "Timezone(-|America/New_York)"},
        {"3.0", "TZ:Europe/Berlin",
         "Timezone(Europe/Berlin|-)"},  // the second slot says VALUE=text
        {"3.0", "GEO:37.386013;-122.082932", "GeographicPosition(37.386013|-122.082932)"},
        {"4.0", "GEO:geo:37.386013,-122.082932", "GeographicPosition(37.386013|-122.082932)"},
        {"3.0", "TITLE:Director\\, Research", "Title(Director, Research|-|[])"},
        {"3.0", "ROLE:Programmer", "Role(Programmer|-|[])"},
        {"3.0", "LOGO;VALUE=uri:http://x/logo.jpg", "Logo(http://x/logo.jpg|-|-#0|-)"},
        {"3.0", "AGENT;VALUE=uri:CID:JQPUBLIC", "Agent(CID:JQPUBLIC|-)"},
        {"3.0", "AGENT:BEGIN:VCARD\\nFN:Susan\\nEND:VCARD",
         "Agent(-|BEGIN:VCARD\nFN:Susan\nEND:VCARD)"},
        {"3.0", "ORG:ABC\\, Inc.;North American Division;Marketing",
         "Organization(ABC, Inc.|[North American Division,Marketing])"},
        // A backslash at the end escapes nothing: the value does not vanish.
        {"3.0", "ORG:Acme;Sales\\", "Organization(Acme|[Sales\\])"},
        {"3.0", "CATEGORIES:TRAVEL AGENT,INTERNET", "Categories([TRAVEL AGENT,INTERNET]|-|[])"},
        {"3.0", "NOTE:line one\\nline two\\; and \\\\", "Note(line one\nline two; and \\|-|[])"},
        {"3.0", "REV:1995-10-31T22:27:10Z", "Revision(1995-10-31T22:27:10Z|-)"},
        {"3.0", "SORT-STRING:Harten", "SortString(Harten|-|[])"},
        {"3.0", "SOUND;TYPE=BASIC;ENCODING=b:AAEC", "Sound(-|BASIC|#3:000102|-|-|-|-|-|-|-)"},
        {"3.0", "UID:19950401-080045-40000F192713-0052", "UID(19950401-080045-40000F192713-0052)"},
        {"3.0", "URL:http://www.example.org/dir", "URL(http://www.example.org/dir)"},
        {"3.0", "CLASS:PUBLIC", "Classification(PUBLIC)"},
        {"3.0", "PRODID:-//ONLINE DIRECTORY//NONSGML Version 1//EN",
         "ProdID(-//ONLINE DIRECTORY//NONSGML Version 1//EN)"},
        {"3.0", "KEY;ENCODING=b;TYPE=X509:AAEC", "Key(-|X509|#3:000102)"},
        {"4.0", "KEY:http://x/key.asc", "Key(http://x/key.asc|-|-#0)"},
        {"3.0", "X-ABLabel;X-SERVICE=a,b:_$!<Other>!$_",
         "NonStandardProperty(X-ABLABEL|_$!<Other>!$_|-#0|[X-SERVICE=a,b])"},
        {"3.0", "X-DATA;ENCODING=b:AAEC", "NonStandardProperty(X-DATA|-|#3:000102|[])"},
        // Grouping prefixes travel as the GROUP parameter where the operation
        // takes parameters.
        {"3.0", "item1.TEL;TYPE=cell:555", "Telephone(555|64|0|0|-|[GROUP=item1])"},
        {"3.0", "item1.X-ABLabel:Other", "NonStandardProperty(X-ABLABEL|Other|-#0|[GROUP=item1])"},
        // Several values in one parameter, in one quoted value, or repeated.
        {"3.0", "TEL;TYPE=home;TYPE=fax:1", "Telephone(1|33|0|0|-|[])"},
        {"4.0", "TEL;VALUE=uri;PREF=1;TYPE=\"voice,home\":tel:+1-555",
         "Telephone(+1-555|25|0|0|-|[VALUE=uri])"},
        {"3.0", "TEL;TYPE=iPhone,cell;X-Q=\"a:b\":2",
         "Telephone(2|64|0|0|-|[TYPE=iPhone,X-Q=a:b])"},
    };
    for (const Case& c : cases) EXPECT_EQ(Import(c.version, c.line), c.calls) << c.line;
}

// The bits are ours; this is the table the README documents.
TEST(VcardImport, EachTypeValueHasItsBitBothWays) {
    struct Bit {
        const char* property;
        const char* type;
        unsigned int bit;
    };
    const Bit bits[] = {
        {"ADR", "dom", 0x01},        {"ADR", "intl", 0x02},    {"ADR", "postal", 0x04},
        {"ADR", "parcel", 0x08},     {"ADR", "home", 0x10},    {"ADR", "work", 0x20},
        {"ADR", "pref", 0x40},       {"LABEL", "intl", 0x02},  {"TEL", "home", 0x0001},
        {"TEL", "msg", 0x0002},      {"TEL", "work", 0x0004},  {"TEL", "pref", 0x0008},
        {"TEL", "voice", 0x0010},    {"TEL", "fax", 0x0020},   {"TEL", "cell", 0x0040},
        {"TEL", "video", 0x0080},    {"TEL", "pager", 0x0100}, {"TEL", "bbs", 0x0200},
        {"TEL", "modem", 0x0400},    {"TEL", "car", 0x0800},   {"TEL", "isdn", 0x1000},
        {"TEL", "pcs", 0x2000},      {"TEL", "text", 0x4000},  {"TEL", "textphone", 0x8000},
        {"EMAIL", "internet", 0x01}, {"EMAIL", "x400", 0x02},  {"EMAIL", "pref", 0x04},
        {"EMAIL", "home", 0x08},     {"EMAIL", "work", 0x10},
    };
    for (const Bit& b : bits) {
        const std::string line = std::string(b.property) + ";TYPE=" + b.type + ":v";
        const std::string calls = Import("3.0", line);
        const std::string bit = "|" + std::to_string(b.bit) + "|";
        const std::string email = "(v|" + std::to_string(b.bit) + ")";
        EXPECT_TRUE(calls.find(bit) != std::string::npos || calls.find(email) != std::string::npos)
            << line << " -> " << calls;
        const std::string out = RoundTrip(Card("3.0", {line}));
        const std::string written = std::string(b.property) + ";TYPE=" + b.type + ":";
        EXPECT_NE(out.find("\r\n" + written), std::string::npos) << out;
    }
}

TEST(VcardImport, Version21QuotedPrintableCharsetsAndBareParameters) {
    const std::string text =
        Card("2.1", {
                        "N;CHARSET=ISO-8859-1;ENCODING=QUOTED-PRINTABLE:M=FCller;J=FCrgen",
                        "NOTE;ENCODING=QUOTED-PRINTABLE:one=0D=0Atwo =",
                        "three =3D end",
                        "TEL;HOME;VOICE;PREF:123",
                        "FN:Caf\xE9",  // 8-bit text without a charset: converted, and said
                        "PHOTO;ENCODING=BASE64;TYPE=GIF:",
                        "AAEC",
                        "AwQF",
                        "",
                        "AGENT:",
                        "BEGIN:VCARD",
                        "VERSION:2.1",
                        "FN:Agent Smith",
                        "END:VCARD",
                        "TITLE:after the agent",
                    });
    const PimBridge::ImportResult r = ImportVcard(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(Calls(r),
              "Name(M\xC3\xBCller|J\xC3\xBCrgen|-|-|-|-|[]) Note(one\ntwo three = end|-|[]) "
              "Telephone(123|25|0|0|-|[]) FormattedName(Caf\xC3\xA9|-|[]) "
              "Photo(-|GIF|#6:000102030405|-) "
              "Agent(-|BEGIN:VCARD\nVERSION:2.1\nFN:Agent Smith\nEND:VCARD) "
              "Title(after the agent|-|[])");
    EXPECT_EQ(Losses(r), "FNx1@7");
    RoundTrip(text);
}

// Inputs that once changed without a word: each arrives with its meaning, or a
// warning names the property (and so --strict refuses it), and the export
// writes the meaning back.
TEST(VcardImport, WhatUsedToChangeSilentlyArrivesIntactOrIsNamed) {
    struct Row {
        const char* version;
        const char* line;
        const char* calls;
        const char* warnings;  // "NAME detail", comma-separated
        const char* exported;  // the line the export writes
    };
    const Row rows[] = {
        {"3.0", "FN:Caf\xE9", "FormattedName(Caf\xC3\xA9|-|[])", "FN from windows-1252",
         "FN:Caf\xC3\xA9"},
        {"3.0", "NOTE:\x80 5", "Note(\xE2\x82\xAC 5|-|[])", "NOTE from windows-1252",
         "NOTE:\xE2\x82\xAC 5"},
        // A byte Windows-1252 leaves undefined reads as the control of its number,
        // as in the other bridges, and the euro beside it stays a euro.
        {"3.0", "NOTE:\x80\x81", "Note(\xE2\x82\xAC\xC2\x81|-|[])", "NOTE from windows-1252",
         "NOTE:\xE2\x82\xAC\xC2\x81"},
        {"3.0", "TITLE;CHARSET=UTF-8:M\xFCller", "Title(M\xC3\xBCller|-|[])",
         "TITLE from windows-1252, TITLE;CHARSET=UTF-8", "TITLE:M\xC3\xBCller"},
        {"4.0", "N:Stevenson;John;Philip,Paul;Dr.;Jr.,M.D.",
         "Name(Stevenson|John|Philip,Paul|Dr.|Jr.,M.D.|-|[])", "",
         "N:Stevenson;John;Philip,Paul;Dr.;Jr.,M.D."},
        {"3.0", "ADR;TYPE=home:;;Main St 1,Back Yard;Town;;;",
         "Address(-|-|Main St 1,Back Yard|Town|-|-|-|16|-|[])", "",
         "ADR;TYPE=home:;;Main St 1,Back Yard;Town;;;"},
        {"3.0", "N:Doe;Jo\\,hn;;;", "Name(Doe|Jo,hn|-|-|-|-|[])",
         "N an escaped comma reads as a separator of values", "N:Doe;Jo,hn;;;"},
        {"4.0", "TEL;VALUE=uri:tel:+49-30-1234", "Telephone(+49-30-1234|0|0|0|-|[VALUE=uri])", "",
         "TEL;VALUE=uri:tel:+49-30-1234"},
        {"2.1", "NOTE;ENCODING=QUOTED-PRINTABLE:one=\r\n two=\r\n\tthree",
         "Note(one two\tthree|-|[])", "", "NOTE:one two\tthree"},
        // Bytes shaped like UTF-8 that the strict check refuses (an overlong
        // form here) are no UTF-8 either: converted and named, never '?'.
        {"3.0", "NOTE:x\xE0\x80\x80y", "Note(x\xC3\xA0\xE2\x82\xAC\xE2\x82\xACy|-|[])",
         "NOTE from windows-1252", "NOTE:x\xC3\xA0\xE2\x82\xAC\xE2\x82\xACy"},
        // Base64 on text: the text it encodes, or the value as written, its
        // bytes read as Windows-1252, with the encoding named.
        {"2.1", "NOTE;ENCODING=BASE64:SGVsbG8=", "Note(Hello|-|[])", "", "NOTE:Hello"},
        {"3.0",
         "UID;ENCODING=b:ab\xE1"
         "c",
         "UID(ab\xC3\xA1"
         "c)",
         "UID from windows-1252, UID;ENCODING",
         "UID:ab\xC3\xA1"
         "c"},
        {"3.0", "NOTE;ENCODING=b:AAE=", "Note(AAE=|-|[])", "NOTE;ENCODING", "NOTE:AAE="},
    };
    for (const Row& row : rows) {
        const std::string text = Card(row.version, {row.line});
        const PimBridge::ImportResult r = ImportVcard(text.data(), text.size());
        ASSERT_TRUE(r.ok) << row.line;
        EXPECT_EQ(Calls(r), row.calls) << row.line;
        std::string warnings;
        for (const PimBridge::Loss& l : r.items[0].losses)
            warnings +=
                (warnings.empty() ? "" : ", ") + l.name + (l.detail.empty() ? "" : " ") + l.detail;
        EXPECT_EQ(warnings, row.warnings) << row.line;
        EXPECT_EQ(r.HasLoss(), *row.warnings != '\0') << row.line;
        const PimBridge::ExportResult out = ExportVcard(r.streams.data(), r.streams.size());
        EXPECT_NE(out.text.find(std::string("\r\n") + row.exported + "\r\n"), std::string::npos)
            << row.line << "\n"
            << out.text;
    }
}

TEST(VcardImport, WhatHasNoPlaceIsReportedByNameCountAndLine) {
    const std::string text =
        Card("4.0", {
                        "FN:A",                       // line 3
                        "KIND:individual",            // 4
                        "GENDER:F",                   // 5
                        "KIND:group",                 // 6
                        "item2.EMAIL;PID=1.1:a@b.c",  // 7: group and PID, EMAIL takes no parameters
                        "URL;TYPE=work:http://x",     // 8
                        "EMAIL;TYPE=school:c@d.e",    // 9
                        "NOTE;ALTID=1;LANGUAGE=en:hi",  // 10
                        "TITLE;CHARSET=NO-SUCH-SET:t",  // 11
                        "N;X-A=1:;;;;",                 // 12: an empty name keeps no parameters
                    });
    const PimBridge::ImportResult r = ImportVcard(text.data(), text.size());
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.HasLoss());
    EXPECT_EQ(Losses(r),
              "KINDx2@4 GENDERx1@5 EMAIL;GROUPx1@7 EMAIL;PIDx1@7 URL;TYPEx1@8 "
              "EMAIL;TYPE=schoolx1@9 NOTE;ALTIDx1@10 TITLE;CHARSET=NO-SUCH-SETx1@11 N;X-Ax1@12");
    EXPECT_EQ(Calls(r),
              "FormattedName(A|-|[]) Email(a@b.c|0) URL(http://x) Email(c@d.e|0) "
              "Note(hi|en|[]) Title(t|-|[]) Name(-|-|-|-|-|-|[])");
}

TEST(VcardImport, SeveralCardsInFileOrderWithTheirLinesAndInstances) {
    std::ifstream in(std::string(PIMTLV_BRIDGE_FIXTURES) + "/vcard/addressbook.vcf",
                     std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    const std::string text = s.str();
    const PimBridge::ImportResult r = ImportVcard(text.data(), text.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 3u);
    EXPECT_EQ(r.items[0].line, 1u);
    EXPECT_EQ(r.items[1].line, 13u);
    EXPECT_EQ(r.items[2].line, 23u);
    EXPECT_EQ(r.items[1].offset, r.items[0].size);
    EXPECT_EQ(Calls(r, false),
              "Begin(0) Version(3.0) Name(M\xC3\xBCller|J\xC3\xBCrgen|-|Dr.|-|-|[]) "
              "FormattedName(J\xC3\xBCrgen M\xC3\xBCller|-|[]) Telephone(+49 30 1234|20|0|0|-|[]) "
              "Address(-|-|Stra\xC3\x9F"
              "e 1\nHof|Berlin|-|10115|Germany|16|-|[]) "
              "Photo(-|GIF|#14:4749463839610100|-) "
              "NonStandardProperty(X-MS-OL-DEFAULT-POSTAL-ADDRESS|2|-#0|[]) End() | "
              "Begin(1) Version(3.0) FormattedName(Erika Mustermann|-|[]) "
              "Name(Mustermann|Erika|-|-|-|-|[]) Email(erika@example.org|5) "
              "NonStandardProperty(X-ABLABEL|private|-#0|[GROUP=item1]) "
              "Organization(Example, Inc.|[Research]) Categories([friends,work]|-|[]) "
              "Note(two\nlines; one semicolon|-|[]) End() | "
              "Begin(2) Version(3.0) FormattedName(Jane Roe|-|[]) "
              "Telephone(+1-555-0100|16456|0|0|-|[VALUE=uri]) GeographicPosition(52.5|13.4) End()");
    EXPECT_EQ(Losses(r), "EMAIL;GROUPx1@17 KINDx1@26 GENDERx1@28");
    RoundTrip(text);
}

TEST(VcardImport, BrokenTextIsAClearErrorAndKeepsTheCardsBefore) {
    const struct {
        std::string text;
        const char* error;
        unsigned int line;
        std::size_t items;
    } cases[] = {
        {"", "no BEGIN:VCARD in the input", 0, 0},
        {"hello\r\n", "no ':' in the content line", 1, 0},
        {Card("3.0", {"FN:a"}) + "BEGIN:VCARD\r\nFN:b\r\n", "the card has no END:VCARD line", 5, 1},
        {Card("3.0", {"FN:a"}) + "BEGIN:VCARD\r\nFN;X=\"open:b\r\nEND:VCARD\r\n",
         "a parameter value without its closing quote", 6, 1},
        {Card("3.0", {std::string("TEL;\0:1", 7)}), "a NUL byte in the content line", 3, 0},
        {Card("2.1", {"NOTE;ENCODING=QUOTED-PRINTABLE:a=00b"}),
         "a NUL character in the decoded value", 3, 0},
        {Card("3.0", {"[g.FN:a"}),
         "a property name or group with characters other than letters, digits, '-'", 3, 0},
    };
    for (const auto& c : cases) {
        const PimBridge::ImportResult r = ImportVcard(c.text.data(), c.text.size());
        EXPECT_FALSE(r.ok);
        EXPECT_EQ(r.error, c.error);
        EXPECT_EQ(r.errorLine, c.line) << c.error;
        EXPECT_EQ(r.items.size(), c.items) << c.error;
    }
}

TEST(VcardExport, WritesFoldedEscapedVersion30) {
    const std::string longNote(70, 'x');
    const std::string text = Card("3.0", {
                                             "item1.N;LANGUAGE=en;X-A=1:Doe\\;Jr;Jo,hn;;;",
                                             "NOTE:" + longNote + "\xC3\xA4\xC3\xA4\xC3\xA4",
                                             "PHOTO;ENCODING=b;TYPE=JPEG:" + std::string(80, 'A'),
                                             "BDAY;VALUE=text:circa 1800",
                                             "TZ;VALUE=text:Europe/Berlin",
                                             "X-FOO;X-P=\"a;b\":raw;value",
                                         });
    EXPECT_EQ(RoundTrip(text),
              "BEGIN:VCARD\r\nVERSION:3.0\r\n"
              "item1.N;LANGUAGE=en;X-A=1:Doe\\;Jr;Jo,hn;;;\r\n"
              "NOTE:" +
                  longNote +
                  "\r\n \xC3\xA4\xC3\xA4\xC3\xA4\r\n"  // no UTF-8 sequence cut
                  "PHOTO;ENCODING=b;TYPE=JPEG:" +
                  std::string(48, 'A') + "\r\n " + std::string(32, 'A') +
                  "\r\n"
                  "BDAY;VALUE=text:circa 1800\r\n"
                  "TZ;VALUE=text:Europe/Berlin\r\n"
                  "X-FOO;X-P=\"a;b\":raw;value\r\n"
                  "END:VCARD\r\n");
}

// A line break in a parameter value goes out as ^n, in an extension
// property's value as \n: CR LF, LF and a lone CR alike, never dropped.
TEST(VcardExport, LineBreaksOfEveryFormAreWritten) {
    PimShared::CTLVContactCreator c;
    ASSERT_TRUE(c.Begin(0));
    c.FormattedName("A", nullptr, {{"X-P", "a\rb\r\nc\nd"}});
    c.NonStandardProperty("X-A", "v\rw\r\nx", nullptr, 0, {});
    c.End();
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    const PimBridge::ExportResult out = ExportVcard(static_cast<const std::uint8_t*>(data), length);
    ASSERT_TRUE(out.ok);
    EXPECT_EQ(out.text,
              "BEGIN:VCARD\r\nVERSION:3.0\r\nFN;X-P=a^nb^nc^nd:A\r\nX-A:v\\nw\\nx\r\n"
              "END:VCARD\r\n");
}

TEST(VcardExport, ReportsWhatVcardHasNoPlaceForAndWhatTheParserSaid) {
    PimShared::CTLVContactCreator c;
    const unsigned int instance = 4;
    ASSERT_TRUE(c.Begin(instance));
    c.Version("2.1");
    c.SpeedDial("7");
    c.PhotoAvailability(true);
    // Parameters that would not read back as themselves: VALUE is consumed,
    // a TYPE value with a bit is one of the bits.
    c.Telephone("1", 0x0008, 3, 0, "x", {{"VALUE", "u"}, {"TYPE", "home,main"}});
    c.End();
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    std::vector<std::uint8_t> bytes(static_cast<const std::uint8_t*>(data),
                                    static_cast<const std::uint8_t*>(data) + length);
    const PimBridge::ExportResult out = ExportVcard(bytes.data(), bytes.size());
    ASSERT_TRUE(out.ok);
    ASSERT_EQ(out.items.size(), 1u);
    std::string losses;
    for (const PimBridge::Loss& l : out.items[0].losses) losses += l.name + " ";
    EXPECT_EQ(losses, "VERSION SpeedDial PhotoAvailability TEL;TELBYTE TEL;TELTEXT TEL;VALUE ");
    EXPECT_EQ(out.text,
              "BEGIN:VCARD\r\nVERSION:3.0\r\nTEL;TYPE=home,pref;TYPE=main:1\r\nEND:VCARD\r\n");

    bytes.pop_back();  // the stream now ends inside its last node
    bytes[2] = static_cast<std::uint8_t>(bytes[2] - 1);
    const PimBridge::ExportResult cut = ExportVcard(bytes.data(), bytes.size());
    ASSERT_TRUE(cut.ok);
    EXPECT_TRUE(cut.items[0].malformed);
    ASSERT_FALSE(cut.items[0].diagnostics.empty());
    EXPECT_EQ(cut.items[0].diagnostics.back().code, 6);

    const std::uint8_t event[] = {0x80, 0x01, 0x00};  // node 1: a calendar item
    const PimBridge::ExportResult refused = ExportVcard(event, sizeof event);
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.error.find("no contact"), std::string::npos) << refused.error;
    EXPECT_TRUE(refused.text.empty());
}

}  // namespace
