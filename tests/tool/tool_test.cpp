// Runs the built pimtlv program as a person would and checks what it prints
// and how it exits: every command on every shipped sample, the round trip
// back to the same bytes, malformed streams, and input it must refuse.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ToolRun.h"

namespace {

using ToolRun::Lines;
using ToolRun::Result;
using ToolRun::Slurp;
using ToolRun::Spit;
using ToolRun::Temp;
using ToolRun::Tool;

std::vector<std::string> BuiltItems() {
    std::vector<std::string> items;
    std::istringstream s(PIMTLV_TOOL_ITEMS);
    for (std::string item; std::getline(s, item, ',');) {
        if (!item.empty()) items.push_back(item);
    }
    return items;
}

bool Built(const std::string& item) {
    for (const auto& i : BuiltItems()) {
        if (i == item) return true;
    }
    return false;
}

std::string Sample(const std::string& item, const char* ext) {
    return std::string(PIMTLV_SAMPLES_DIR) + "/" + item + ext;
}

// ---------------------------------------------------------------------------
// Every command on every sample of the items this build has.

class SampleTest : public testing::TestWithParam<std::string> {};

TEST_P(SampleTest, TlvFileIsTheEncodingOfItsJson) {
    const Result r = Tool("encode " + Sample(GetParam(), ".json"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, Slurp(Sample(GetParam(), ".tlv")))
        << "regenerate with: pimtlv encode samples/" << GetParam() << ".json -o samples/"
        << GetParam() << ".tlv";
}

TEST_P(SampleTest, DecodeThenEncodeGivesTheSameBytes) {
    const std::string tlv = Slurp(Sample(GetParam(), ".tlv"));
    const Result decoded = Tool("decode " + Sample(GetParam(), ".tlv"));
    ASSERT_EQ(decoded.status, 0) << decoded.err;
    EXPECT_NE(decoded.out.find("\"item\": \"" + GetParam() + "\""), std::string::npos);
    EXPECT_NE(decoded.out.find("\"diagnostics\": []"), std::string::npos) << decoded.out;
    const Result encoded = Tool("encode -", decoded.out);
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    EXPECT_EQ(encoded.out, tlv);
}

TEST_P(SampleTest, CheckFindsNoDiagnostics) {
    const Result r = Tool("check " + Sample(GetParam(), ".tlv"));
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_NE(r.out.find(" 0 diagnostics"), std::string::npos) << r.out;
    EXPECT_EQ(r.err, "");
}

TEST_P(SampleTest, DumpNamesEveryElementAndReadsHexAlike) {
    const Result binary = Tool("dump " + Sample(GetParam(), ".tlv"));
    ASSERT_EQ(binary.status, 0) << binary.err;
    const auto lines = Lines(binary.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].rfind("     0  Node ", 0), 0u) << lines[0];
    for (const auto& line : lines) {
        // offset, class, type ID, then the constant's name: a creator's stream
        // holds no ID that the item's table does not know.
        std::istringstream words(line);
        std::string offset, cls, id, name;
        words >> offset >> cls;
        if (cls == "Byte") words >> cls;  // "Byte Stream"
        words >> id >> name;
        EXPECT_EQ(name.rfind("TypeId", 0), 0u) << line;
    }
    const Result hex = Tool("encode --hex " + Sample(GetParam(), ".json"));
    ASSERT_EQ(hex.status, 0) << hex.err;
    const Result fromHex = Tool("dump --hex -", hex.out);
    EXPECT_EQ(fromHex.status, 0) << fromHex.err;
    EXPECT_EQ(fromHex.out, binary.out);
}

TEST_P(SampleTest, DamagedCopiesAreReportedAndNeverCrashTheTool) {
    const std::string tlv = Slurp(Sample(GetParam(), ".tlv"));
    const std::size_t step = tlv.size() / 12 + 1;
    for (std::size_t cut = 1; cut < tlv.size(); cut += step) {
        const Result r = Tool("decode --item " + GetParam(), tlv.substr(0, cut));
        EXPECT_EQ(r.status, 1) << "cut at " << cut;
        EXPECT_EQ(r.err.rfind("error: malformed stream at offset 0: ", 0), 0u) << r.err;
    }
    for (std::size_t at = 0; at < tlv.size(); at += step) {
        std::string damaged = tlv;
        damaged[at] = static_cast<char>(damaged[at] ^ 0xA5);
        for (const char* command : {"dump", "check --item "}) {
            const std::string args = std::string(command) + (command[0] == 'c' ? GetParam() : "");
            const Result r = Tool(args, damaged);
            EXPECT_TRUE(r.status == 0 || r.status == 1) << args << " byte " << at << ": " << r.err;
            EXPECT_LE(Lines(r.err).size(), 1u) << r.err;
        }
    }
}

std::vector<std::string> SampledItems() {
    std::vector<std::string> items;
    for (const auto& item : BuiltItems()) {
        if (std::ifstream(Sample(item, ".json"))) items.push_back(item);
    }
    return items;
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleTest, testing::ValuesIn(SampledItems()),
                         [](const testing::TestParamInfo<std::string>& p) { return p.param; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SampleTest);

TEST(SampleFiles, EveryBuiltItemShipsASample) {
    for (const auto& item : BuiltItems()) {
        EXPECT_TRUE(std::ifstream(Sample(item, ".json")).good()) << item;
        EXPECT_TRUE(std::ifstream(Sample(item, ".tlv")).good()) << item;
    }
}

// ---------------------------------------------------------------------------
// Every operation the samples leave out, through the creator and back: the
// tool's tables must hand each argument to the right slot both ways. A row
// with an expectation shows where parser and creator differ by design (an
// empty expectation: the parser makes no call).

struct OpCase {
    const char* item;
    const char* call;     // as decode prints it
    const char* decoded;  // what comes back, when it differs
};

const OpCase kOpCases[] = {
    {"event", R"({"op":"Version","args":{"text":"2.0","xParams":[{"name":"X-A","value":"1"}]}})",
     nullptr},
    {"event", R"({"op":"Classification","args":{"text":"PUBLIC","xParams":[]}})", nullptr},
    {"event", R"({"op":"DateTimeStartLocal","args":{"dateTime":"20261124T120000Z","xParams":[]}})",
     nullptr},
    {"event", R"({"op":"DateTimeEndLocal","args":{"dateTime":"20261124T130000Z","xParams":[]}})",
     nullptr},
    {"event", R"({"op":"DateTimeCreated","args":{"dateTime":"20261101T000000Z","xParams":[]}})",
     nullptr},
    {"event",
     R"({"op":"Organizer","args":{"address":"mailto:o@x","sentBy":"mailto:s@x","commonName":"O","directory":"ldap://d","language":"de","xParams":[]}})",
     nullptr},
    {"event",
     R"({"op":"Attendee","args":{"address":"mailto:a@x","cuType":"INDIVIDUAL","members":["mailto:g@x"],"role":"CHAIR","partStat":"TENTATIVE","rsvp":0,"delegatedTo":["mailto:t@x"],"delegatedFrom":["mailto:f@x"],"sentBy":"mailto:s@x","commonName":"A","directory":"ldap://d","language":"fr","xParams":[]}})",
     nullptr},
    {"event",
     R"({"op":"Attendee","args":{"address":"mailto:b@x","cuType":null,"members":[],"role":null,"partStat":null,"rsvp":null,"delegatedTo":[],"delegatedFrom":[],"sentBy":null,"commonName":null,"directory":null,"language":null,"xParams":[]}})",
     nullptr},
    {"event",
     R"({"op":"Description","args":{"text":"d","altRep":"cid:d","language":"en","xParams":[]}})",
     nullptr},
    {"task", R"({"op":"DateTimeStartLocal","args":{"dateTime":"20261201T080000Z","xParams":[]}})",
     nullptr},
    {"task",
     R"({"op":"Location","args":{"text":"Office","altRep":"cid:o","language":"en","xParams":[]}})",
     nullptr},
    {"task", R"({"op":"SequenceNumber","args":{"number":65535,"xParams":[]}})", nullptr},
    {"note", R"({"op":"Categories","args":{"categories":["A","B"],"language":"en","xParams":[]}})",
     nullptr},
    {"note",
     R"({"op":"Organizer","args":{"address":"mailto:o@x","sentBy":null,"commonName":null,"directory":null,"language":null,"xParams":[]}})",
     nullptr},
    {"note", R"({"op":"LastModified","args":{"dateTime":"20261122T093000Z","xParams":[]}})",
     nullptr},
    {"contact",
     R"({"op":"Logo","args":{"mediaText1":"uri","mediaType":"image/gif","data":"474946","mediaText3":"m3"}})",
     nullptr},
    {"contact",
     R"({"op":"Sound","args":{"mediaText1":"m1","mediaType":"audio/ogg","data":"4f676753","mediaText3":"m3","formattedName":"F","namePart1":"a","namePart2":"b","namePart3":"c","namePart4":"d","namePart5":"e"}})",
     nullptr},
    {"contact",
     R"({"op":"Key","args":{"keyType":"PGP","mediaType":"application/pgp-keys","data":"99"}})",
     nullptr},
    {"contact",
     R"({"op":"NonStandardProperty","args":{"name":"X-PET","value":"cat","data":"0102","xParams":[{"name":"X-K","value":"v"}]}})",
     nullptr},
    {"contact",
     R"({"op":"Label","args":{"text":"Calle Mayor 5","addressType":3,"textParameter":"es","xParams":[]}})",
     nullptr},
    {"contact",
     R"({"op":"Telephone","args":{"number":"+1 555","telephoneType":65535,"telephoneByte":7,"telephoneFlags":513,"text":"desk","xParams":[]}})",
     nullptr},
    {"contact", R"({"op":"Mailer","args":{"text":"mutt","textParameter":"en","xParams":[]}})",
     nullptr},
    {"contact", R"({"op":"Timezone","args":{"text1":"+01:00","text2":null}})", nullptr},
    {"contact", R"({"op":"GeographicPosition","args":{"coordinate1":"40.4","coordinate2":"-3.7"}})",
     nullptr},
    {"contact", R"({"op":"Role","args":{"text":"CTO","textParameter":null,"xParams":[]}})",
     nullptr},
    {"contact", R"({"op":"Agent","args":{"text1":null,"text2":"agent"}})", nullptr},
    {"contact", R"({"op":"Revision","args":{"dateTime":null,"dateTimeAlt":"2026-11-22"}})",
     nullptr},
    {"contact", R"({"op":"SortString","args":{"text":"Ruiz","textParameter":null,"xParams":[]}})",
     nullptr},
    {"contact", R"({"op":"SpeedDial","args":{"text":"7"}})", nullptr},
    {"contact", R"({"op":"XUID","args":{"text":"x-1"}})", R"({"op":"XUID","args":{"text":null}})"},
    {"contact", R"({"op":"Handle","args":{"text":"@ana"}})", R"()"},
    {"contact", R"({"op":"URL","args":{"text":"https://example.org"}})", nullptr},
    {"contact", R"({"op":"Version","args":{"text":"3.0"}})", nullptr},
    {"contact", R"({"op":"Classification","args":{"text":"PRIVATE"}})", nullptr},
    {"contact", R"({"op":"ProdID","args":{"text":"-//x//"}})", nullptr},
    {"contact", R"({"op":"XUCI","args":{"text":"u","number":-1,"unsignedNumber":0}})",
     R"({"op":"XUCI","args":{"text":"u","number":65535,"unsignedNumber":0}})"},
    {"contact", R"({"op":"PhotoAvailability","args":{"available":false}})", nullptr},
    {"email",
     R"({"op":"BodyTypedLink","args":{"contentTypeToken":"x-app","contentSubtypeToken":"x-sub","contentLink":"cid:1"}})",
     R"({"op":"BodyLink","args":{"encoding":1,"charset":1,"contentLink":"cid:1"}})"},
    {"email", R"({"op":"Comments","args":{"text":"c"}})", nullptr},
    {"email", R"({"op":"Keywords","args":{"text":"k"}})", nullptr},
    {"email", R"({"op":"References","args":{"text":"<r@x>"}})", nullptr},
    {"email", R"({"op":"InReplyTo","args":{"text":"<i@x>"}})", nullptr},
    {"email", R"({"op":"CutoffState","args":{"value":65535}})", nullptr},
    {"email", R"({"op":"AttachmentAvailable","args":{"value":2}})", nullptr},
    {"email", R"({"op":"DownloadState","args":{"value":4}})", nullptr},
    {"email", R"({"op":"ContentId","args":{"text":"<id@x>"}})", nullptr},
    {"email", R"({"op":"ContentDescription","args":{"text":"desc"}})", nullptr},
    {"email", R"({"op":"SendingState","args":{"text":"queued"}})", nullptr},
    {"email", R"({"op":"OrigDateLocal","args":{"text":"20261122T101500"}})", nullptr},
    {"email", R"({"op":"Instance","args":{"text":"inst"}})", nullptr},
    {"email", R"({"op":"ContentType","args":{"type":1,"token":"x-type"}})", nullptr},
    {"email", R"({"op":"ContentSubtype","args":{"subtype":1,"token":"x-sub"}})", nullptr},
    {"email", R"({"op":"ContentDispositionType","args":{"type":1,"token":"x-disp"}})", nullptr},
    {"email",
     R"({"op":"ContentDispositionTypeParam","args":{"name":1,"value":"v","nameToken":"x-n"}})",
     nullptr},
    {"email",
     R"({"op":"ContentTypeParam","args":{"name":1,"value":1,"nameToken":"x-n","valueToken":"x-v"}})",
     nullptr},
    {"im",
     R"({"op":"Group","args":{"name":"Team","mailboxes":[{"fieldType":3,"client":4294967295,"displayName":"C","address":"c@x"}]}})",
     nullptr},
    {"im", R"({"op":"ConversationVersionCounter","args":{"text":"12"}})", nullptr},
    {"im", R"({"op":"ConversationSummary","args":{"text":"s"}})", nullptr},
    {"im", R"({"op":"OwnerText","args":{"text":"busy"}})", nullptr},
    {"im", R"({"op":"OwnerLastActivity","args":{"text":"20261122T091700Z"}})", nullptr},
    {"im", R"({"op":"Priority","args":{"priority":2}})", nullptr},
    {"im", R"({"op":"BodyLink","args":{"encoding":1,"charset":1,"contentLink":"cid:b"}})", nullptr},
    {"im", R"({"op":"MimeVersion","args":{"text":"1.0"}})", nullptr},
    {"sms", R"({"op":"Subject","args":{"text":"s"}})", nullptr},
    {"sms", R"({"op":"TimestampLocal","args":{"text":"20261122T101500"}})", nullptr},
    {"sms", R"({"op":"SendingState","args":{"text":"sent"}})", nullptr},
    {"sms", R"({"op":"DownloadState","args":{"state":3}})", nullptr},
    {"sms", R"({"op":"DestinationFName","args":{"text":"Ben"}})", nullptr},
    {"sms", R"({"op":"Instance","args":{"text":"i"}})", nullptr},
    {"sms",
     R"({"op":"OriginatorName","args":{"part1":null,"part2":null,"part3":null,"part4":null,"part5":null,"part6":"Jr."}})",
     nullptr},
    {"calllist", R"({"op":"CallText5","args":{"text":"t5"}})", nullptr},
    {"calllist", R"({"op":"CallByte","args":{"value":255}})", nullptr},
};

void PrintTo(const OpCase& c, std::ostream* os) {
    *os << c.item << " " << c.call;
}

// The lines of the "calls" array of a decode document.
std::vector<std::string> DecodedCalls(const std::string& document) {
    std::vector<std::string> calls;
    bool inside = false;
    for (std::string line : Lines(document)) {
        if (line == "  \"calls\": [") {
            inside = true;
        } else if (inside && line.rfind("  ]", 0) == 0) {
            break;
        } else if (inside) {
            line = line.substr(line.find('{'));
            if (line.back() == ',') line.pop_back();
            calls.push_back(line);
        }
    }
    return calls;
}

class OpTest : public testing::TestWithParam<OpCase> {};

TEST_P(OpTest, ComesBackFromTheParser) {
    const OpCase& c = GetParam();
    if (!Built(c.item)) GTEST_SKIP() << c.item << " is not in this build";
    const std::string begin = std::string(c.item) == "calllist"
                                  ? R"({"op":"Begin","args":{"kind":1,"instance":1}})"
                                  : R"({"op":"Begin","args":{"instance":1}})";
    const std::string end = R"({"op":"End"})";
    const Result encoded =
        Tool("encode", std::string("{\"item\": \"") + c.item + "\", \"calls\": [" + begin + ", " +
                           c.call + ", " + end + "]}");
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    const Result decoded = Tool("decode --item " + std::string(c.item), encoded.out);
    std::vector<std::string> expected = {begin, c.decoded == nullptr ? c.call : c.decoded, end};
    if (expected[1].empty()) expected.erase(expected.begin() + 1);
    EXPECT_EQ(DecodedCalls(decoded.out), expected) << decoded.out;
}

INSTANTIATE_TEST_SUITE_P(EveryOperation, OpTest, testing::ValuesIn(kOpCases));

// ---------------------------------------------------------------------------
// dump on hand-made streams: the frame's names need no item codec.

struct DumpCase {
    const char* name;
    const char* hex;
    int status;
    const char* out;
    const char* err;
};

const DumpCase kDumpCases[] = {
    {"WholeStream", "80 01 14 80 67 11 90 0A 04 00 00 00 05 8F A0 07 6F A1 04 C3 A9 41 00", 0,
     "     0  Node 1 TypeIdObjTypeCalendarTask [20 bytes]\n"
     "     3    Node 103 TypeIdCompTypeVevent [17 bytes]\n"
     "     6      UInt32 10 TypeIdValTypeInstance = 5 (0x00000005)\n"
     "    13      Node 4000 [7 bytes]\n"
     "    16        String 4001 = \"\u00e9A\"\n",
     ""},
    {"EveryLeafClass",
     "80 07 2F 00 07 01 FE 10 07 02 FF FE 20 07 01 FF 40 07 01 05 50 07 02 01 00"
     " A0 07 04 FF FF FF FF 70 07 03 01 02 03 C0 07 02 AA BB 60 07 04 22 0A C3 00",
     0,
     "     0  Node 7 [47 bytes]\n"
     "     3    Int8 7 = -2 (0xfe)\n"
     "     7    Int16 7 = -2 (0xfffe)\n"
     "    12    UInt8 7 = 255 (0xff)\n"
     "    16    Bitfield8 7 = 5 (0x05)\n"
     "    20    Bitfield16 7 = 256 (0x0100)\n"
     "    25    Int32 7 = -1 (0xffffffff)\n"
     "    32    Byte Stream 7 = 3 bytes: 01 02 03\n"
     "    38    Class 12 7 [2 bytes: aa bb]\n"
     "    43    String 7 = \"\\\"\\n\\xc3\"\n",
     ""},
    {"LongByteStreamShowsItsStart",
     "70 01 12 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11", 0,
     "     0  Byte Stream 1 = 18 bytes: 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f ...\n", ""},
    {"EmptyInput", "", 0, "", ""},
    {"TextWithoutItsZero", "80 01 06 80 CA 03 61 2E 01 41", 1,
     "     0  Node 1 TypeIdObjTypeCalendarTask [6 bytes]\n"
     "     3    Node 202 [3 bytes]\n",
     "error: malformed stream at offset 6: String 302 declares 1 byte, more than the 0 bytes "
     "left in node 202 at offset 3\n"},
    {"UnterminatedText", "61 2E 02 41 42", 1, "",
     "error: malformed stream at offset 0: String 302 does not end with a zero byte\n"},
    {"EmptyText", "61 2E 00", 1, "",
     "error: malformed stream at offset 0: String 302 has an empty value; a text needs its zero "
     "byte\n"},
    {"WrongFixedSize", "80 01 04 30 05 01 07", 1,
     "     0  Node 1 TypeIdObjTypeCalendarTask [4 bytes]\n",
     "error: malformed stream at offset 3: UInt16 5 declares a value of 1 byte; the class takes "
     "exactly 2\n"},
    {"NodeLongerThanStream", "80 01 05 80 67 10", 1, "",
     "error: malformed stream at offset 0: Node 1 declares 5 bytes, more than the 3 bytes left in "
     "the stream\n"},
    {"LengthWithoutCount", "80 01 80", 1, "",
     "error: malformed stream at offset 0: length field 0x80 gives no byte count (in the "
     "stream)\n"},
    {"LengthFieldCutShort", "80 01 01 61", 1, "     0  Node 1 TypeIdObjTypeCalendarTask [1 byte]\n",
     "error: malformed stream at offset 3: the element header needs 2 bytes, only 1 byte left (in "
     "node 1 at offset 0)\n"},
    {"LongLengthCutShort", "70 01 83 01", 1, "",
     "error: malformed stream at offset 0: length field announces 3 bytes of length, only 1 byte "
     "left (in the stream)\n"},
    {"SecondElementCutShort", "20 01 01 05 20", 1, "     0  UInt8 1 = 5 (0x05)\n",
     "error: malformed stream at offset 4: the element header needs 2 bytes, only 1 byte left (in "
     "the stream)\n"},
    {"NonMinimalLengthIsRead", "20 01 82 00 01 09", 0, "     0  UInt8 1 = 9 (0x09)\n", ""},
};

void PrintTo(const DumpCase& c, std::ostream* os) {
    *os << c.name;
}

class DumpTest : public testing::TestWithParam<DumpCase> {};

TEST_P(DumpTest, PrintsTreeAndFault) {
    const DumpCase& c = GetParam();
    const Result r = Tool("dump --hex --color=never", c.hex);
    EXPECT_EQ(r.status, c.status);
    EXPECT_EQ(r.out, c.out);
    EXPECT_EQ(r.err, c.err);
}

INSTANTIATE_TEST_SUITE_P(Streams, DumpTest, testing::ValuesIn(kDumpCases),
                         [](const testing::TestParamInfo<DumpCase>& p) { return p.param.name; });

TEST(Dump, DeepNestingStopsIndentingAndSaysTheDepth) {
    // 40 nodes 7, each holding the next; the innermost holds UInt8 1 = 9.
    std::string hex = "20 01 01 09";
    std::size_t length = 4;
    for (int i = 0; i < 40; ++i) {
        char header[16];
        std::snprintf(header, sizeof header, "80 07 %02zx ", length);
        hex = header + hex;
        length += 3;
    }
    const Result r = Tool("dump --hex", hex);
    ASSERT_EQ(r.status, 0) << r.err;
    const auto lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 41u);
    EXPECT_EQ(lines[32], "    96  " + std::string(64, ' ') + "Node 7 [25 bytes]");
    EXPECT_EQ(lines[40], "   120  " + std::string(64, ' ') + "(depth 40) UInt8 1 = 9 (0x09)");
}

TEST(Dump, ColourOnlyWhenAsked) {
    const char* hex = "20 01 01 05";
    EXPECT_EQ(Tool("dump --hex", hex).out.find('\033'), std::string::npos);
    EXPECT_NE(Tool("dump --hex --color=always", hex).out.find("\033["), std::string::npos);
}

// ---------------------------------------------------------------------------
// Input the tool must refuse: one line on standard error, exit 2.

struct BadInput {
    const char* name;
    const char* args;
    const char* input;
    const char* item;  // needs this item in the build, or null
    const char* err;   // the start of the one line
};

const BadInput kBadInputs[] = {
    {"NoCommand", "", "", nullptr, "error: A subcommand is required"},
    {"UnknownCommand", "frobnicate", "", nullptr,
     "error: unknown command 'frobnicate' (expected dump, decode, encode, check, ops, import or "
     "export)"},
    {"UnknownOption", "dump --bogus", "", nullptr,
     "error: The following argument was not expected: --bogus"},
    {"BadColourMode", "dump --color=sometimes", "", nullptr, "error: --color"},
    {"MissingFile", "dump /no/such/file", "", nullptr,
     "error: cannot open '/no/such/file': No such file or directory"},
    {"Directory", "check /", "", nullptr, "error: '/' is a directory"},
    {"BadHexDigit", "dump --hex", "80 0g", nullptr,
     "error: bad hex input: unexpected character 'g' at line 1, column 5"},
    {"OddHex", "check --hex", "80\n01 1", nullptr,
     "error: bad hex input: odd number of hex digits (the last one is at line 2, column 4)"},
    {"UnknownItemOption", "decode --item calendar", "", nullptr,
     "error: unknown item 'calendar' (expected one of event, task, note, contact, email, im, sms, "
     "calllist)"},
    {"UndetectableItem", "decode --hex", "80 09 00", nullptr,
     "error: cannot tell the item from the stream (root node 9, no inner node); name it with "
     "--item"},
    {"OpsOfUnknownItem", "ops fax", "", nullptr, "error: unknown item 'fax'"},
    {"JsonSyntax", "encode", "{\"item\": \"event\",\n \"calls\": [}", nullptr,
     "error: bad JSON at line 2, column 12: syntax error"},
    {"JsonNumberOverflow", "encode",
     R"({"item": "event", "calls": [{"op": "Begin", "args": {"instance": 1e400}}]})", nullptr,
     "error: bad JSON: number overflow parsing '1e400'"},
    {"JsonNotObject", "encode", "[1]", nullptr, "error: the JSON document must be an object"},
    {"JsonUnknownKey", "encode", "{\"item\": \"event\", \"calls\": [], \"extra\": 1}", nullptr,
     "error: unknown key 'extra' in the JSON document"},
    {"JsonNoItem", "encode", "{\"calls\": []}", nullptr, "error: the JSON document needs \"item\""},
    {"JsonUnknownItem", "encode", "{\"item\": \"fax\", \"calls\": []}", nullptr,
     "error: unknown item 'fax'"},
    {"JsonEmptyItem", "encode", "{\"item\": \"\", \"calls\": []}", nullptr,
     "error: unknown item ''"},
    {"OpsOfEmptyItem", "ops ''", "", nullptr, "error: unknown item ''"},
    {"UnknownOperation", "encode",
     R"({"item": "event", "calls": [{"op": "Begin"}, {"op": "Lunch"}]})", "event",
     "error: call 1: unknown operation 'Lunch'"},
    {"UnknownArgument", "encode",
     R"({"item": "event", "calls": [{"op": "Begin", "args": {"instanse": 1}}]})", "event",
     "error: call 0 (Begin): unknown argument 'instanse'"},
    {"CallWithoutOp", "encode", R"({"item": "event", "calls": [{"args": {}}]})", "event",
     "error: call 0: \"op\" must name an operation"},
    {"TextAsNumber", "encode",
     R"({"item": "event", "calls": [{"op": "Summary", "args": {"text": 5}}]})", "event",
     "error: call 0 (Summary): argument 'text' must be a string or null"},
    {"NumberTooLarge", "encode",
     R"({"item": "event", "calls": [{"op": "Priority", "args": {"priority": 256}}]})", "event",
     "error: call 0 (Priority): argument 'priority' must be an integer from 0 to 255"},
    {"NegativeInstance", "encode",
     R"({"item": "event", "calls": [{"op": "Begin", "args": {"instance": -1}}]})", "event",
     "error: call 0 (Begin): argument 'instance' must be an integer from 0 to 4294967295"},
    {"FractionalNumber", "encode",
     R"({"item": "event", "calls": [{"op": "SequenceNumber", "args": {"number": 1.5}}]})", "event",
     "error: call 0 (SequenceNumber): argument 'number' must be an integer from 0 to 65535"},
    {"BadDateTime", "encode",
     R"({"item": "event", "calls": [{"op": "LastModified", "args": {"dateTime": "yesterday"}}]})",
     "event", "error: call 0 (LastModified): argument 'dateTime' must be a date-time text"},
    {"ListNotArray", "encode",
     R"({"item": "event", "calls": [{"op": "Categories", "args": {"categories": "a"}}]})", "event",
     "error: call 0 (Categories): argument 'categories' must be an array"},
    {"XParamField", "encode",
     R"({"item": "event", "calls": [{"op": "Status", "args": {"xParams": [{"nom": "a"}]}}]})",
     "event", "error: call 0 (Status): argument 'xParams' has an unknown field 'nom'"},
    {"ArgsNotObject", "encode", R"({"item": "event", "calls": [{"op": "End", "args": [1]}]})",
     "event", "error: call 0 (End): argument 'args' must be an object"},
    {"NotABoolean", "encode",
     R"({"item": "contact", "calls": [{"op": "PhotoAvailability", "args": {"available": 1}}]})",
     "contact", "error: call 0 (PhotoAvailability): argument 'available' must be true or false"},
    {"DataNotHex", "encode",
     R"({"item": "contact", "calls": [{"op": "Photo", "args": {"data": "89 5G"}}]})", "contact",
     "error: call 0 (Photo): argument 'data' must be a hex string or null"},
    {"LengthIsNotAnArgument", "encode",
     R"({"item": "contact", "calls": [{"op": "Key", "args": {"length": 3}}]})", "contact",
     "error: call 0 (Key): unknown argument 'length'"},
    {"SignedOutOfRange", "encode",
     R"({"item": "contact", "calls": [{"op": "XUCI", "args": {"number": 2147483648}}]})", "contact",
     "error: call 0 (XUCI): argument 'number' must be an integer from -2147483648 to 2147483647"},
    {"EnumerationNegative", "encode",
     R"({"item": "sms", "calls": [{"op": "ReadStatus", "args": {"status": -1}}]})", "sms",
     "error: call 0 (ReadStatus): argument 'status' must be an integer from 0 to 4294967295"},
};

void PrintTo(const BadInput& c, std::ostream* os) {
    *os << c.name;
}

class BadInputTest : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputTest, OneLineAndExitTwo) {
    const BadInput& c = GetParam();
    if (c.item != nullptr && !Built(c.item)) GTEST_SKIP() << c.item << " is not in this build";
    const Result r = Tool(c.args, c.input);
    EXPECT_EQ(r.status, 2) << r.err;
    EXPECT_EQ(r.err.rfind(c.err, 0), 0u) << r.err;
    EXPECT_EQ(Lines(r.err).size(), 1u) << r.err;
    EXPECT_EQ(r.out, "");
}

INSTANTIATE_TEST_SUITE_P(Refused, BadInputTest, testing::ValuesIn(kBadInputs),
                         [](const testing::TestParamInfo<BadInput>& p) { return p.param.name; });

TEST(BadInput, ItemMissingFromTheBuild) {
    for (const char* item :
         {"event", "task", "note", "contact", "email", "im", "sms", "calllist"}) {
        if (Built(item)) continue;
        const Result r = Tool("encode", std::string("{\"item\": \"") + item + "\", \"calls\": []}");
        EXPECT_EQ(r.status, 2);
        EXPECT_NE(r.err.find("is not available in this build"), std::string::npos) << r.err;
    }
}

// ---------------------------------------------------------------------------
// Exit statuses and messages of streams that parse with problems.

TEST(Version, PrintsNameAndVersion) {
    const Result r = Tool("--version");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("pimtlv ", 0), 0u) << r.out;
}

TEST(Help, EveryCommandHasIt) {
    for (const char* command : {"dump", "decode", "encode", "check"}) {
        const Result r = Tool(std::string(command) + " --help");
        EXPECT_EQ(r.status, 0) << command;
        EXPECT_NE(r.out.find("Usage:"), std::string::npos) << command;
    }
}

struct CheckCase {
    const char* name;
    const char* item;
    const char* hex;
    const char* out;
};

// node 1 { node 103 { UInt32 10 = 1, node 215 { String 999 "x" } } }
constexpr const char* kUnexpectedValue =
    "80 01 12 80 67 0F 90 0A 04 00 00 00 01 80 D7 05 63 E7 02 78 00";

const CheckCase kCheckCases[] = {
    {"EventValueOutOfPlace", "event", kUnexpectedValue,
     "code 2 (before call 1, Summary): Unexpected PropValue-Id (999) for the current "
     "PropType-Id (215)\n"
     "calendar event: 3 receiver calls, 1 diagnostic\n"},
    {"SmsLeafOutOfPlace", "sms", "80 02 0F 90 0A 04 00 00 00 01 82 BC 05 63 E7 02 78 00",
     "code 2 (before call 1, End): Unexpected String with type ID = 999\n"
     "SMS: 2 receiver calls, 1 diagnostic\n"},
    {"TwoItemsNameTheirItem", "sms",
     "80 02 0F 90 0A 04 00 00 00 01 82 BC 05 63 E7 02 78 00 "
     "80 02 0F 90 0A 04 00 00 00 02 82 BC 05 63 E7 02 78 00",
     "code 2 (item 1 at offset 0, before call 1, End): Unexpected String with type ID = 999\n"
     "item 1 at offset 0: SMS: 2 receiver calls, 1 diagnostic\n"
     "code 2 (item 2 at offset 18, before call 1, End): Unexpected String with type ID = 999\n"
     "item 2 at offset 18: SMS: 2 receiver calls, 1 diagnostic\n"
     "total: 2 items, 4 receiver calls, 2 diagnostics\n"},
    {"ContactSecondInstance", "contact", "80 00 0E 90 0A 04 00 00 00 01 90 0A 04 00 00 00 02",
     "code 3 (before call 1, End): (no text)\n"
     "contact: 2 receiver calls, 1 diagnostic\n"},
};

void PrintTo(const CheckCase& c, std::ostream* os) {
    *os << c.name;
}

class CheckTest : public testing::TestWithParam<CheckCase> {};

TEST_P(CheckTest, ListsDiagnosticsAndExitsOne) {
    const CheckCase& c = GetParam();
    if (!Built(c.item)) GTEST_SKIP() << c.item << " is not in this build";
    const Result r = Tool("check --hex", c.hex);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, c.out);
    EXPECT_EQ(r.err, "");
}

INSTANTIATE_TEST_SUITE_P(Diagnostics, CheckTest, testing::ValuesIn(kCheckCases),
                         [](const testing::TestParamInfo<CheckCase>& p) { return p.param.name; });

class EventStreamTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!Built("event")) GTEST_SKIP() << "event is not in this build";
    }
};

TEST_F(EventStreamTest, DecodeKeepsTraceLinesOnlyWhenAsked) {
    const Result plain = Tool("decode --hex", kUnexpectedValue);
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(plain.out.find("\"code\":0"), std::string::npos);
    const Result traced = Tool("decode --hex --trace", kUnexpectedValue);
    EXPECT_NE(traced.out.find(R"({"code":0,"text":"NodeBegin():  typeId: 1","call":0})"),
              std::string::npos)
        << traced.out;
}

TEST_F(EventStreamTest, DecodeOfCutStreamPrintsWhatItReadAndTheFault) {
    // The same stream with a text that claims one byte more than its node holds.
    std::string hex = kUnexpectedValue;
    hex.replace(hex.find("63 E7 02"), 8, "63 E7 03");
    const Result r = Tool("decode --hex", hex);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find(R"({"op":"Begin","args":{"instance":1}})"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"ok\":false"), std::string::npos) << r.out;
    EXPECT_EQ(r.err,
              "error: malformed stream at offset 16: String 999 declares 3 bytes, more than "
              "the 2 bytes left in node 215 at offset 13\n");
}

TEST_F(EventStreamTest, EncodeReportsRefusedCallsAndStillWrites) {
    const Result r = Tool("encode --hex",
                          R"({"item": "event", "calls": [{"op": "Begin", "args": {"instance": 2}},
        {"op": "InstanceName", "args": {"name": "x"}}, {"op": "End"}]})");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "warning: the creator refused call 1 (InstanceName)\n");
    EXPECT_EQ(r.out, "80 01 0a 80 67 07 90 0a 04 00 00 00 02\n");
}

TEST_F(EventStreamTest, EncodeWritesTheOutputFile) {
    const std::string path = Temp("out.tlv");
    const Result r = Tool("encode -o " + path,
                          R"({"item": "event", "calls": [{"op": "Begin"}, {"op": "End"}]})");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(Slurp(path), std::string("\x80\x01\x0a\x80\x67\x07\x90\x0a\x04\x00\x00\x00\x00", 13));
    std::remove(path.c_str());
}

TEST_F(EventStreamTest, EncodeRefusesAStreamLeftOpen) {
    const Result r = Tool("encode", R"({"item": "event", "calls": [{"op": "Begin"}]})");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err.rfind("error: the creator could not finish the stream", 0), 0u) << r.err;
}

// ---------------------------------------------------------------------------
// Files of several items one after another, as a bulk export or a sync log
// holds them.

std::string Bin(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 3) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

class MultiItemTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* item : {"event", "sms", "contact"}) {
            if (!Built(item)) GTEST_SKIP() << item << " is not in this build";
        }
        Spit(m_path, Slurp(Sample("event", ".tlv")) + Slurp(Sample("sms", ".tlv")) +
                         Slurp(Sample("contact", ".tlv")));
    }
    void TearDown() override { std::remove(m_path.c_str()); }

    // The file with an event in front of the contact whose instance leaf
    // declares 5 bytes, one more than its class holds.
    std::string WithBadItem() const {
        const std::string good = Slurp(m_path);
        const std::size_t contact = good.size() - Slurp(Sample("contact", ".tlv")).size();
        m_badAt = contact + 6;
        return good.substr(0, contact) + Bin("80 01 0a 80 67 07 90 0a 05 00 00 00 02") +
               good.substr(contact);
    }

    std::string m_path = Temp("multi.tlv");
    mutable std::size_t m_badAt = 0;
};

TEST_F(MultiItemTest, DecodeGivesAnArrayThatEncodesBackToTheSameBytes) {
    const Result decoded = Tool("decode " + m_path);
    ASSERT_EQ(decoded.status, 0) << decoded.err;
    const auto lines = Lines(decoded.out);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "[");
    EXPECT_EQ(lines[2], "  \"item\": \"event\",");
    EXPECT_EQ(lines.back(), "]");
    std::vector<std::string> items;
    for (const auto& line : lines) {
        if (line.rfind("  \"item\": ", 0) == 0) items.push_back(line);
    }
    EXPECT_EQ(items, (std::vector<std::string>{"  \"item\": \"event\",", "  \"item\": \"sms\",",
                                               "  \"item\": \"contact\","}));
    const Result encoded = Tool("encode", decoded.out);
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    EXPECT_EQ(encoded.out, Slurp(m_path));
}

TEST_F(MultiItemTest, CheckReportsEachItemAndTheTotal) {
    const Result r = Tool("check " + m_path);
    EXPECT_EQ(r.status, 0) << r.err;
    const auto lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 4u) << r.out;
    EXPECT_EQ(lines[0].rfind("item 1 at offset 0: calendar event: ", 0), 0u) << lines[0];
    EXPECT_EQ(lines[1].rfind("item 2 at offset ", 0), 0u) << lines[1];
    EXPECT_NE(lines[1].find(": SMS: "), std::string::npos) << lines[1];
    EXPECT_EQ(lines[3].rfind("total: 3 items, ", 0), 0u) << lines[3];
    EXPECT_EQ(lines[3].substr(lines[3].size() - 15), ", 0 diagnostics") << lines[3];
}

TEST_F(MultiItemTest, DumpNamesEachItemInItsOwnKind) {
    const Result r = Tool("dump " + m_path);
    EXPECT_EQ(r.status, 0) << r.err;
    for (const char* name : {"TypeIdCompTypeVevent", "TypeIdCompTypeSMS", "TypeIdObjTypeContact"}) {
        EXPECT_NE(r.out.find(name), std::string::npos) << name;
    }
}

TEST_F(MultiItemTest, MalformedItemEndsTheRunAfterTheItemsBeforeIt) {
    Spit(m_path, WithBadItem());
    const std::string fault =
        "error: malformed stream at offset " + std::to_string(m_badAt) +
        ": UInt32 10 declares a value of 5 bytes; the class takes exactly 4\n";
    const Result decoded = Tool("decode " + m_path);
    EXPECT_EQ(decoded.status, 1);
    EXPECT_EQ(decoded.err, fault);
    EXPECT_NE(decoded.out.find("\"ok\":false"), std::string::npos);
    EXPECT_EQ(decoded.out.find("\"item\": \"contact\""), std::string::npos);
    EXPECT_EQ(decoded.out.substr(decoded.out.size() - 4), "}\n]\n");

    const Result checked = Tool("check " + m_path);
    EXPECT_EQ(checked.status, 1);
    EXPECT_EQ(checked.err, fault);
    const auto lines = Lines(checked.out);
    ASSERT_GE(lines.size(), 4u) << checked.out;
    EXPECT_NE(lines[1].find("SMS: 18 receiver calls, 0 diagnostics"), std::string::npos);
    EXPECT_EQ(lines.back().rfind("total: 3 items, ", 0), 0u);
    EXPECT_EQ(checked.out.find("item 4"), std::string::npos);

    const Result dumped = Tool("dump " + m_path);
    EXPECT_EQ(dumped.status, 1);
    EXPECT_EQ(dumped.err, fault);
}

TEST(EmptyFile, HoldsNoItems) {
    EXPECT_EQ(Tool("decode").out, "[]\n");
    const Result checked = Tool("check");
    EXPECT_EQ(checked.status, 0);
    EXPECT_EQ(checked.out, "total: 0 items, 0 receiver calls, 0 diagnostics\n");
    const Result encoded = Tool("encode", "[]");
    EXPECT_EQ(encoded.status, 0);
    EXPECT_EQ(encoded.out, "");
}

// Memory stays flat however many calls and diagnostics a parse makes: an SMS
// whose node holds 300,000 leaves its parser refuses (one diagnostic each,
// 200 different ones in turn) took some 200 MB when the tool kept them. The
// diagnostics come out complete and in order.
TEST(LargeStream, MemoryDoesNotGrowWithTheDiagnostics) {
    if (!Built("sms")) GTEST_SKIP() << "sms is not in this build";
    constexpr std::size_t kLeaves = 300000;
    std::string leaves;
    for (std::size_t i = 0; i < kLeaves; ++i) {
        leaves += "\x6F" + std::string(1, static_cast<char>(i % 200)) + Bin("03 78 79 00");
    }
    const auto header = [](int type, std::size_t length) {
        return Bin(type == 2 ? "80 02 83" : "82 BC 83") + static_cast<char>(length >> 16) +
               static_cast<char>(length >> 8) + static_cast<char>(length);
    };
    const std::string sms = header(700, leaves.size()) + leaves;
    const std::string body = Bin("90 0A 04 00 00 00 01") + sms;
    const std::string path = Temp("refused.tlv");
    Spit(path, header(2, body.size()) + body);
    // The peak of the largest child so far: the shell, a copy of this
    // process until it starts the tool, sets the floor.
    const auto peak = [] {
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        return usage.ru_maxrss;
    };
    Tool("--version");
    const long floor = peak();
    const Result checked = Tool("check " + path);
#if !defined(__SANITIZE_ADDRESS__)  // whose quarantine keeps what is freed
    EXPECT_LT(peak(), floor + 40 * 1024) << "peak KiB of check";
#endif
    (void)floor;
    EXPECT_EQ(checked.status, 1) << checked.err;
    const auto lines = Lines(checked.out);
    ASSERT_EQ(lines.size(), kLeaves + 1);
    EXPECT_EQ(lines[kLeaves - 1],
              "code 2 (before call 1, End): Unexpected String with type ID = 4039");
    const Result decoded = Tool("decode " + path);
    EXPECT_EQ(decoded.status, 0) << decoded.err;
    EXPECT_NE(decoded.out.find("type ID = 4039\",\"call\":1}\n  ],\n"), std::string::npos);
    std::remove(path.c_str());
}

}  // namespace

namespace {

// What a parser repairs or passes over without a word is a finding of check,
// with the element's offset, and sets the exit status.
TEST(CheckFindings, NameRepairedTextsAndDateTimesThatDoNotRead) {
    if (!Built("event")) GTEST_SKIP() << "event is not in this build";
    struct Case {
        const char* what;
        const char* date;  // the hex of DTSTART's text, its zero byte included
        const char* text;  // the hex of SUMMARY's text
        const char* finding;
    };
    // node 1 { node 103 { UInt32 10, node 219 { String 1007 date }, node 215 { String 320 } } }
    const auto stream = [](const std::string& date, const std::string& text) {
        const auto len = [](const std::string& hex) { return (hex.size() + 1) / 3; };
        char b[24];
        const auto h = [&b](std::size_t n) {
            std::snprintf(b, sizeof b, "%02zx", n);
            return std::string(b);
        };
        const std::string start =
            "80 db " + h(3 + len(date)) + " 63 ef " + h(len(date)) + " " + date;
        const std::string summary =
            "80 d7 " + h(3 + len(text)) + " 61 40 " + h(len(text)) + " " + text;
        const std::string comp = "90 0a 04 00 00 00 00 " + start + " " + summary;
        return "80 01 " + h(3 + len(comp)) + " 80 67 " + h(len(comp)) + " " + comp;
    };
    const Case cases[] = {
        {"sound", "32 30 32 35 31 32 33 30 54 32 33 30 30 30 30 5a 00", "41 00", nullptr},
        {"month 13, hour 25", "32 30 32 35 31 33 34 30 54 32 35 30 30 30 30 5a 00", "41 00",
         "finding (offset 16): String 1007 \"20251340T250000Z\" does not read as a date-time: "
         "the parser hands the property on without it\n"},
        {"Latin-1 text", "32 30 32 35 31 32 33 30 54 32 33 30 30 30 30 5a 00", "63 61 66 e9 00",
         "finding (offset 39): String 320 \"caf\\xe9\" is not UTF-8: the parser hands it on with "
         "'?' for each bad byte\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Result r = Tool("check --hex", stream(c.date, c.text));
        EXPECT_EQ(r.status, c.finding == nullptr ? 0 : 1) << r.out << r.err;
        if (c.finding != nullptr) {
            EXPECT_NE(r.out.find(c.finding), std::string::npos) << r.out;
            EXPECT_NE(r.out.find(", 1 diagnostic\n"), std::string::npos) << r.out;
        } else {
            EXPECT_EQ(r.out.find("finding"), std::string::npos) << r.out;
        }
    }
}

}  // namespace
