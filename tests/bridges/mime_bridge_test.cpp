// The MIME bridge: messages in, e-mail streams out, and back through GMime.
#include <gmime/gmime.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "bridges/mime/MimeBridge.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"
#include "support/EmailRecorder.h"

namespace {

using PimBridge::ExportResult;
using PimBridge::ImportResult;
using A = PimShared::IEmailAttributes;

std::string Fixture(const char* name) {
    std::ifstream in(std::string(PIMTLV_BRIDGE_FIXTURES) + "/mime/" + name, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

ImportResult Eml(const std::string& text) {
    return PimBridge::ImportEml(text.data(), text.size());
}

// The receiver calls of item i of an import.
std::vector<std::string> Calls(const ImportResult& r, std::size_t i = 0) {
    MimeTest::EmailRecorder recorder;
    PimShared::CTLVEmailParser parser(recorder);
    const char* error = nullptr;
    unsigned int consumed = 0;
    EXPECT_TRUE(
        parser.Parse(r.streams.data() + r.items[i].offset, r.items[i].size, error, consumed));
    return recorder.calls;
}

bool Has(const std::vector<std::string>& calls, const std::string& call) {
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

ExportResult Export(const ImportResult& r, bool mbox = false) {
    return mbox ? PimBridge::ExportMbox(r.streams.data(), r.streams.size())
                : PimBridge::ExportEml(r.streams.data(), r.streams.size());
}

TEST(MimeImport, HeaderFieldsMailboxesAndGroups) {
    const ImportResult r = Eml(Fixture("nested.eml"));
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 1u);
    const std::vector<std::string> calls = Calls(r);
    const std::vector<std::string> head(calls.begin(), calls.begin() + 16);
    EXPECT_EQ(head, (std::vector<std::string>{
                        "Begin(0)",
                        "Mailbox(0,'Jürgen Müller','juergen@example.org')",
                        "Mailbox(1,'Secretary','sec@example.org')",
                        "Group('team',[2 '' 'a@example.org'],[2 'Bea B.' 'b@example.org'])",
                        "Mailbox(3,'François','francois@example.fr')",
                        // an empty group keeps its field with an empty member
                        "Group('Undisclosed recipients',[3 '' ''])",
                        "Mailbox(4,'Привет','privet@example.ru')",
                        "Mailbox(5,'','hidden@example.org')",
                        "Subject('Résumé and 日本')",
                        "OrigDate('Mon, 3 Mar 2025 09:00:00 +0100')",
                        "MessageId('<m1@example.org>')",
                        "InReplyTo('<m0@example.org>')",
                        "References('<a@example.org> <m0@example.org>')",
                        "Keywords('plans, review')",
                        "Comments('written by hand')",
                        "MimeVersion('1.0')",
                    }));
}

TEST(MimeImport, EntitiesNestAsThePartsDo) {
    const ImportResult r = Eml(Fixture("nested.eml"));
    ASSERT_TRUE(r.ok);
    // The tree: each entity by its type, indented by depth.
    std::string tree;
    int depth = 0;
    for (const std::string& c : Calls(r)) {
        if (c == "BeginEntity") ++depth;
        if (c == "EndEntity") --depth;
        if (c.rfind("ContentSubtype(", 0) == 0) tree += std::string(depth * 2, ' ') + c + "\n";
    }
    EXPECT_EQ(tree,
              "ContentSubtype(4,null)\n"        // multipart/mixed
              "  ContentSubtype(5,null)\n"      // alternative
              "    ContentSubtype(2,null)\n"    // plain
              "    ContentSubtype(6,null)\n"    // related
              "      ContentSubtype(3,null)\n"  // html
              "      ContentSubtype(8,null)\n"  // png
              "  ContentSubtype(12,null)\n"     // message/rfc822
              "    ContentSubtype(4,null)\n"    // the inner message's mixed
              "      ContentSubtype(2,null)\n"
              "      ContentSubtype(1,'x-custom')\n"
              "  ContentSubtype(11,null)\n");  // pdf
    const std::vector<std::string> calls = Calls(r);
    for (const char* call :
         {"ContentTypeParam(2,4,null,null)",  // charset=iso-8859-1
          "ContentTypeParam(5,5,null,null)",  // format=flowed
          "ContentTypeParam(1,1,'type','text/html')", "ContentTypeParam(1,1,'Version','2')",
          "ContentTypeParam(4,1,null,'Pläne.pdf')",  // encoded word in a parameter
          "ContentDispositionType(2,null)", "ContentDispositionType(3,null)",
          "ContentDispositionTypeParam(2,'Pläne.pdf',null)",  // RFC 2231
          "ContentDispositionTypeParam(6,'295',null)",
          "ContentDispositionTypeParam(3,'Mon, 3 Mar 2025 08:00:00 +0100',null)",
          "ContentDispositionTypeParam(1,'kept','x-note')", "ContentId('<logo@example.org>')",
          "ContentDescription('the logo')",
          "Body(4,3,'Gr\xFC\xDF"
          "e aus K\xF6ln, \nthe plan is attached.',38)",
          "Mailbox(0,'Earlier','earlier@example.org')", "Subject('the earlier mail')",
          "Body(5,0,'custom bytes',12)"}) {
        EXPECT_TRUE(Has(calls, call)) << call;
    }
}

// Every way a body is sent, and how it travels: decoded, with the encoding
// and the charset told.
TEST(MimeImport, Bodies) {
    struct Case {
        const char* what;
        const char* part;  // header fields, blank line, body
        const char* body;  // the BodyContent call
        bool lost;         // the transfer encoding has no place
    };
    const Case cases[] = {
        {"no encoding field: 7bit, us-ascii", "Content-Type: text/plain\n\nhi\r\nthere\n",
         "Body(1,1,'hi\nthere\n',9)", false},
        {"8bit utf-8",
         "Content-Type: text/plain; charset=UTF-8\nContent-Transfer-Encoding: 8bit\n\nä\n",
         "Body(2,2,'ä\n',3)", false},
        {"binary stays byte for byte",
         "Content-Type: application/octet-stream\nContent-Transfer-Encoding: binary\n\na\r\nb\n",
         "Body(3,0,'a\r\nb\n',5)", false},
        {"base64 windows-1252",
         "Content-Type: text/plain; charset=windows-1252\nContent-Transfer-Encoding: "
         "base64\n\ngA0K\n",
         "Body(5,5,'\x80\r\n',3)", false},
        {"ISO_8859-1 is iso-8859-1",
         "Content-Type: text/plain; charset=ISO_8859-1\nContent-Transfer-Encoding: "
         "quoted-printable\n\n=E9\n",
         "Body(4,3,'\xE9\n',2)", false},
        {"a charset of no member", "Content-Type: text/plain; charset=koi8-r\n\nx\n",
         "Body(1,0,'x\n',2)", false},
        {"uuencode is decoded and travels as base64",
         "Content-Type: text/plain\nContent-Transfer-Encoding: x-uuencode\n\n"
         "begin 644 a.txt\n#:&D*\n`\nend\n",
         "Body(5,1,'hi\n',3)", true},
        {"an encoding GMime does not know travels as sent",
         "Content-Type: text/plain\nContent-Transfer-Encoding: x-rot13\n\nuv\n",
         "Body(1,1,'uv\n',3)", true},
        {"empty body", "Content-Type: text/plain\n\n", "Body(1,1,'',0)", false},
    };
    for (const Case& c : cases) {
        const ImportResult r = Eml(std::string("Subject: s\nMIME-Version: 1.0\n") + c.part);
        ASSERT_TRUE(r.ok) << c.what;
        EXPECT_TRUE(Has(Calls(r), c.body)) << c.what;
        EXPECT_EQ(!r.items[0].losses.empty(), c.lost) << c.what;
        // What travels comes back: the export imports to the same stream.
        const ExportResult e = Export(r);
        const ImportResult again = Eml(e.text);
        EXPECT_EQ(again.streams, r.streams) << c.what << "\n" << e.text;
    }
}

TEST(MimeImport, LossesByNameCountAndLine) {
    const ImportResult r = Eml(Fixture("nested.eml"));
    ASSERT_TRUE(r.ok);
    std::string losses;
    for (const PimBridge::Loss& l : r.items[0].losses)
        losses += l.name + " " + std::to_string(l.count) + " " + std::to_string(l.line) + "\n";
    EXPECT_EQ(losses,
              "Return-Path 1 1\nReceived 2 2\nDKIM-Signature 1 4\nX-Mailer 1 20\n"
              "(preamble) 1 23\nContent-Language 1 40\n");
    EXPECT_TRUE(r.HasLoss());
}

TEST(MimeImport, RefusesTextThatIsNoMessage) {
    // GMime reads nearly anything as a message (a text without header
    // fields is a body); nothing at all is none.
    const ImportResult r = Eml("");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.errorLine, 1u);
    const std::string eml = "Subject: x\n\nbody\n";
    EXPECT_FALSE(PimBridge::ImportMbox(eml.data(), eml.size()).ok);
}

// Messages nested n levels deep, with a text at the bottom: in multiparts
// (three lines a level) or in message parts (three lines a level).
std::string Deep(int n, bool multipart) {
    std::string s = "From: a@example.org\nSubject: deep\n";
    for (int i = 0; i < n; ++i) {
        const std::string b = "b" + std::to_string(i);
        s += multipart
                 ? "Content-Type: multipart/mixed; boundary=" + b + "\n\n--" + b + "\n"
                 : "Content-Type: message/rfc822\n\nSubject: level " + std::to_string(i) + "\n";
    }
    s += multipart ? "Content-Type: text/plain\n\nbottom text\n" : "\nbottom text\n";
    for (int i = n - 1; multipart && i >= 0; --i) s += "--b" + std::to_string(i) + "--\n";
    return s;
}

// Inputs that once changed without a word: each now arrives intact, or the
// change is named (by field, line, kind and how), and --strict refuses it.
TEST(MimeImport, NothingChangesSilently) {
    using Kind = PimBridge::Loss::Kind;
    struct Case {
        const char* what;
        std::string text;
        const char* call;  // a call the item must hold
        const char* loss;  // name:line:detail of the loss reported, or null for none
        Kind kind;
    };
    const Case cases[] = {
        {"8-bit header without a charset", "From: a@b.c\nSubject: Caf\xE9 \x80\n\nx\n",
         "Subject('Café €')", "Subject:2:8-bit text without a charset, read as windows-1252",
         Kind::Converted},
        {"encoded word in an unknown charset", "From: a@b.c\nSubject: =?x-bogus?Q?Caf=E9?=\n\nx\n",
         "Subject('Café')",
         "Subject:2:an encoded word: unknown charset x-bogus, read as windows-1252",
         Kind::Converted},
        {"encoded word with bytes not valid in its charset",
         "From: a@b.c\nSubject: =?utf-8?Q?Caf=E9?=\n\nx\n", "Subject('Café')",
         "Subject:2:an encoded word: bytes not valid in utf-8, read as windows-1252",
         Kind::Converted},
        {"display name with bytes not valid in its charset",
         "From: =?utf-8?Q?Ren=E9?= <r@b.c>\n\nx\n", "Mailbox(0,'René','r@b.c')",
         "From:1:an encoded word: bytes not valid in utf-8, read as windows-1252", Kind::Converted},
        {"parameter with bytes not valid in its charset",
         "From: a@b.c\nContent-Type: text/plain\nContent-Disposition: attachment;\n"
         " filename*=utf-8''caf%E9\n\nx\n",
         "ContentDispositionTypeParam(2,'café',null)",
         "Content-Disposition:3:a parameter value: bytes not valid in utf-8, read as windows-1252",
         Kind::Converted},
        {"8-bit bytes in a plain parameter value",
         "From: a@b.c\nContent-Type: text/plain\nContent-Disposition: attachment;"
         " filename=\"caf\xE9\"\n\nx\n",
         "ContentDispositionTypeParam(2,'café',null)",
         "Content-Disposition:3:8-bit text without a charset, read as windows-1252",
         Kind::Converted},
        {"a character split across encoded words is no fault",
         "From: a@b.c\nSubject: =?utf-8?Q?Caf=C3?= =?utf-8?Q?=A9?=\n\nx\n", "Subject('Café')",
         nullptr, Kind::Converted},
        {"8-bit body without a charset", "From: a@b.c\nContent-Type: text/plain\n\nCaf\xE9\n",
         "Body(1,0,'Caf\xE9\n',5)", "Body:2:8-bit text without a charset: kept as sent, undecoded",
         Kind::Converted},
        {"body in an unknown charset",
         "From: a@b.c\nContent-Type: text/plain; charset=x-bogus\n\nCaf\xE9\n",
         "Body(1,0,'Caf\xE9\n',5)", "Body:2:unknown charset x-bogus: kept as sent, undecoded",
         Kind::Converted},
        {"message parts nested deeper than GMime reads", Deep(600, false), "Subject('level 511')",
         "(parts):1539:nested deeper than GMime reads (1024 levels, a message part counting two): "
         "kept as one body, as it was sent",
         Kind::Limit},
        {"multiparts nested deeper than GMime reads", Deep(1100, true), "BeginEntity",
         "(parts):3075:nested deeper than GMime reads (1024 levels, a message part counting two): "
         "kept as one body, as it was sent",
         Kind::Limit},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const ImportResult r = Eml(c.text);
        ASSERT_TRUE(r.ok) << r.error;
        EXPECT_TRUE(Has(Calls(r), c.call));
        std::string losses;
        for (const PimBridge::Loss& l : r.items[0].losses) {
            if (l.kind == c.kind)
                losses += l.name + ":" + std::to_string(l.line) + ":" + l.detail + "\n";
        }
        EXPECT_EQ(losses, c.loss != nullptr ? std::string(c.loss) + "\n" : "");
        EXPECT_EQ(r.HasLoss(), c.loss != nullptr);
        // What travels comes back: the bottom text of a cut nesting too.
        const ExportResult e = Export(r);
        ASSERT_TRUE(e.ok) << e.error;
        EXPECT_TRUE(e.items[0].losses.empty()) << e.items[0].losses[0].name;
        EXPECT_EQ(e.text.find("bottom text") != std::string::npos,
                  c.text.find("bottom text") != std::string::npos);
    }
}

// mboxrd both ways: a body line of '>'s and "From " gets one '>' more on
// export and one less on import, so every body comes back as it was; a
// "From " line that is no separator (inside a paragraph, or without an
// address and a date) is body text.
TEST(MimeImport, MboxQuotingBothWays) {
    const std::string body =
        "From the start\n>From once\n>>From twice\nnot From\nFrom in a paragraph\n\n"
        "From me to you\n\n>From x@y Mon Jan  1 00:00:00 2024\n";
    const std::string quoted =
        ">From the start\n>>From once\n>>>From twice\nnot From\n>From in a paragraph\n\n"
        ">From me to you\n\n>>From x@y Mon Jan  1 00:00:00 2024\n";
    const std::string head = "From a@example.org Mon Jan  1 00:00:00 2024\nSubject: one\n\n";
    const std::string mbox =
        head + quoted + "\nFrom b@example.org Tue Jan  2 00:00:00 2024\nSubject: two\n\nx\n";
    const ImportResult r = PimBridge::ImportMbox(mbox.data(), mbox.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[1].line, 14u);
    EXPECT_TRUE(Has(Calls(r, 0), "Body(1,1,'" + body + "'," + std::to_string(body.size()) + ")"));
    EXPECT_TRUE(Has(Calls(r, 0), "Begin(0)"));
    EXPECT_TRUE(Has(Calls(r, 1), "Begin(1)"));

    const ExportResult e = Export(r, true);
    ASSERT_TRUE(e.ok);
    EXPECT_NE(e.text.find("\n\n" + quoted + "\nFrom MAILER-DAEMON "), std::string::npos) << e.text;
    EXPECT_EQ(PimBridge::ImportMbox(e.text.data(), e.text.size()).streams, r.streams);

    // A line that reads as a separator but follows no empty line is body
    // text, and said; so is a separator with nothing after it.
    const std::string glued = head + "x\nFrom b@example.org Tue Jan  2 00:00:00 2024\n";
    const ImportResult one = PimBridge::ImportMbox(glued.data(), glued.size());
    ASSERT_EQ(one.items.size(), 1u);
    ASSERT_EQ(one.items[0].losses.size(), 1u);
    EXPECT_EQ(one.items[0].losses[0].name + ":" + std::to_string(one.items[0].losses[0].line),
              "From line:5");
    const std::string empty = "From a Mon Jan  1 00:00:00 2024\n\n" + mbox;
    const ImportResult gap = PimBridge::ImportMbox(empty.data(), empty.size());
    ASSERT_TRUE(gap.ok);
    ASSERT_EQ(gap.losses.size(), 1u);
    EXPECT_EQ(gap.losses[0].line, 1u);
}

// Which lines after an empty line start a message: "From ", an address and a
// date with a time and a year, as the usual writers put them.
TEST(MimeImport, MboxSeparators) {
    struct Case {
        const char* line;
        bool separates;
    };
    const Case cases[] = {
        {"From a@example.org Mon Jan  1 00:00:00 2024", true},
        {"From a@example.org  Sat Jan  3 01:05:34 1996 +0100", true},
        {"From - Mon Jan 01 09:15 2024", true},
        {"From Hello Support Tue Jul 10 18:50:15 2012", true},
        {"From me to you", false},
        {"From a@example.org at 12:00", false},
        {"From a@example.org in 2024", false},
        {"From  Mon Jan  1 00:00:00", false},
        {"From:a@example.org Mon Jan  1 00:00:00 2024", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        for (const char* eol : {"\n", "\r\n"}) {
            const std::string mbox = std::string("From x Mon Jan  1 00:00:00 2024") + eol +
                                     "Subject: a" + eol + eol + "body" + eol + eol + c.line + eol +
                                     "Subject: b" + eol + eol + "x" + eol;
            const ImportResult r = PimBridge::ImportMbox(mbox.data(), mbox.size());
            ASSERT_TRUE(r.ok);
            EXPECT_EQ(r.items.size(), c.separates ? 2u : 1u);
        }
    }
}

TEST(MimeExport, GMimeReadsBackWhatWasImported) {
    const ImportResult r = Eml(Fixture("nested.eml"));
    const ExportResult e = Export(r);
    ASSERT_TRUE(e.ok) << e.error;
    EXPECT_TRUE(e.items[0].losses.empty());
    EXPECT_EQ(Eml(e.text).streams, r.streams);

    GMimeStream* stream = g_mime_stream_mem_new_with_buffer(e.text.data(), e.text.size());
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr);
    ASSERT_NE(message, nullptr);
    EXPECT_STREQ(g_mime_message_get_subject(message), "Résumé and 日本");
    char* to = internet_address_list_to_string(g_mime_message_get_to(message), nullptr, FALSE);
    EXPECT_STREQ(to, "François <francois@example.fr>, Undisclosed recipients: ;");
    g_free(to);
    GMimeMultipart* mixed = GMIME_MULTIPART(g_mime_message_get_mime_part(message));
    ASSERT_EQ(g_mime_multipart_get_count(mixed), 3);
    GMimePart* pdf = GMIME_PART(g_mime_multipart_get_part(mixed, 2));
    EXPECT_STREQ(g_mime_part_get_filename(pdf), "Pläne.pdf");
    EXPECT_EQ(g_mime_part_get_content_encoding(pdf), GMIME_CONTENT_ENCODING_BASE64);
    EXPECT_TRUE(GMIME_IS_MESSAGE_PART(g_mime_multipart_get_part(mixed, 1)));
    g_object_unref(message);
    g_object_unref(parser);
    g_object_unref(stream);
}

TEST(MimeExport, MboxOfSeveralMessages) {
    std::string mbox;
    for (int i = 1; i <= 3; ++i) {
        mbox += "From someone@example.org Mon Mar  3 09:00:00 2025\nSubject: m" +
                std::to_string(i) + "\n\nbody " + std::to_string(i) + "\n\n";
    }
    const ImportResult r = PimBridge::ImportMbox(mbox.data(), mbox.size());
    ASSERT_TRUE(r.ok) << r.error;
    ASSERT_EQ(r.items.size(), 3u);
    EXPECT_EQ(r.items[1].line, 6u);
    EXPECT_TRUE(Has(Calls(r, 2), "Subject('m3')"));

    const ExportResult e = Export(r, true);
    ASSERT_TRUE(e.ok);
    EXPECT_EQ(PimBridge::ImportMbox(e.text.data(), e.text.size()).streams, r.streams);
    // A body line that would start a message is escaped, as mbox does.
    const ExportResult from = Export(Eml("Subject: f\n\nFrom the top\n"), true);
    EXPECT_NE(from.text.find("\n>From the top\n"), std::string::npos) << from.text;
    EXPECT_EQ(PimBridge::ImportMbox(from.text.data(), from.text.size()).items.size(), 1u);
    // .eml holds one message.
    const ExportResult eml = Export(r);
    EXPECT_FALSE(eml.ok);
    EXPECT_TRUE(eml.text.empty());
}

TEST(MimeExport, DeviceStateAndLinksAreLeftOutAndSaid) {
    PimShared::CTLVEmailCreator c;
    const A::eBodyEncoding enc = A::eBodyEncoding7Bit;
    const A::eBodyCharset cs = A::eBodyCharsetUtf8;
    c.Begin(1);
    c.Folder("Inbox");
    c.ReadStatus(A::eReadStatusRead);
    c.Priority(A::ePriorityHigh);
    c.Subject("s");
    c.Body(enc, cs, "http://example.org/body");
    c.End();
    const void* data = nullptr;
    unsigned int length = 0;
    ASSERT_TRUE(c.GetData(data, length));
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    const ExportResult e = PimBridge::ExportEml(bytes, length);
    ASSERT_TRUE(e.ok);
    std::string lost;
    for (const PimBridge::Loss& l : e.items[0].losses) lost += l.name + ";";
    EXPECT_EQ(lost, "Folder;ReadStatus;Priority;Body content link;");
    EXPECT_NE(e.text.find("Subject: s\n"), std::string::npos);

    // What the parser reports is passed on; a broken stream is written up to
    // the fault and said to be malformed.
    c.Reset();
    c.Begin(2);
    c.Subject("t");
    c.Priority(static_cast<unsigned char>(3));  // written, but no reader takes it
    c.End();
    ASSERT_TRUE(c.GetData(data, length));
    std::vector<std::uint8_t> stream(static_cast<const std::uint8_t*>(data),
                                     static_cast<const std::uint8_t*>(data) + length);
    ExportResult odd = PimBridge::ExportEml(stream.data(), stream.size());
    ASSERT_TRUE(odd.ok);
    ASSERT_EQ(odd.items[0].diagnostics.size(), 1u);
    EXPECT_EQ(odd.items[0].diagnostics[0].code, 2);
    EXPECT_FALSE(odd.items[0].malformed);
    stream[12] = static_cast<std::uint8_t>(stream[12] + 5);  // node 600 runs past its root
    odd = PimBridge::ExportEml(stream.data(), stream.size());
    ASSERT_TRUE(odd.ok);
    EXPECT_TRUE(odd.items[0].malformed);
}

// The .eml export of the one item a creator has begun.
ExportResult ExportEnded(PimShared::CTLVEmailCreator& c) {
    c.End();
    const void* data = nullptr;
    unsigned int length = 0;
    if (!c.GetData(data, length)) return ExportResult();
    return PimBridge::ExportEml(static_cast<const std::uint8_t*>(data), length);
}

// A line break in a value would end the header field and start one of the
// stream's choosing.
TEST(MimeExport, NoValueStartsAHeaderField) {
    PimShared::CTLVEmailCreator c;
    const A::eContentType extension = A::eContentTypeExtension;
    const A::eContentParamName name = A::eContentParamNameExtension;
    const A::eContentParamValue value = A::eContentParamValueExtension;
    c.Begin(1);
    c.Subject("x\nX-Evil: subject");
    c.MessageId("<a@b>\r\nX-Evil: id");
    c.Mailbox(A::eMailboxFieldTypeTo, "Eve\nX-Evil: name", "e@example.org\nX-Evil: address");
    c.ContentType(extension, "text\nX-Evil: type");
    c.ContentTypeParam(name, value, "a\nX-Evil: name", "b\nX-Evil: value");
    const ExportResult e = ExportEnded(c);
    ASSERT_TRUE(e.ok);
    EXPECT_EQ(e.text.find("\nX-Evil"), std::string::npos) << e.text;
}

// GMime splits a long parameter value into continuations whose room shrinks
// with the name's length, and finds each parameter by name as it is set: a
// name near a line's width or thousands of parameters once made a small
// stream take gigabytes. Such parameters are left out, and said.
TEST(MimeExport, ParametersGMimeCannotWriteAreBoundedAndSaid) {
    PimShared::CTLVEmailCreator c;
    const A::eContentParamName ext = A::eContentParamNameExtension;
    const A::eContentParamValue value = A::eContentParamValueExtension;
    c.Begin(0);
    c.ContentType(A::eContentTypeText, nullptr);
    c.ContentSubtype(A::eContentSubtypePlain, nullptr);
    c.ContentTypeParam(ext, value, std::string(70, 'n').c_str(), "\xC3\xA9t\xC3\xA9");
    for (int i = 0; i < 600; ++i)
        c.ContentTypeParam(ext, value, ("p" + std::to_string(i)).c_str(), "v");
    const ExportResult e = ExportEnded(c);
    ASSERT_TRUE(e.ok);
    std::string losses;
    for (const PimBridge::Loss& l : e.items[0].losses)
        losses += l.name + " " + std::to_string(l.count) + " " + l.detail + "\n";
    EXPECT_EQ(losses,
              "ContentTypeParam name 1 a name that is no MIME token of at most 40 bytes\n"
              "ContentTypeParam 88 more than 512 parameters in a field\n");
    EXPECT_LT(e.text.size(), 16000u);
    EXPECT_NE(e.text.find("p511=v"), std::string::npos);
}

}  // namespace
