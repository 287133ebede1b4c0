#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"
#include "support/EmailRecorder.h"

using namespace MimeTest;
using PimShared::CTLVEmailCreator;
using PimShared::CTLVEmailParser;
using E = PimShared::IEmailAttributes;
using Lines = std::vector<std::string>;

namespace {

Outcome ParseWith(EmailRecorder& r, const Bytes& stream) {
    return MimeTest::ParseWith<CTLVEmailParser>(r, stream);
}

Outcome Parse(const Bytes& stream) {
    EmailRecorder r;
    return ParseWith(r, stream);
}

// A message with parts nested three entities deep, using every operation that
// reads back as written.
void WriteSample(E& s) {
    const PAL::TVector<E::tMailbox> team{{E::eMailboxFieldTypeTo, "C", "c@x"},
                                         {E::eMailboxFieldTypeCc, "D", "d@x"}};
    s.Begin(42);
    s.Subject("Hello");
    s.MimeVersion("1.0");
    s.ReadStatus(E::eReadStatusRead);
    s.CutoffState(0xBEEF);
    s.Priority(E::ePriorityHigh);
    s.Folder("Inbox");
    s.Instance("acct");
    s.Mailbox(E::eMailboxFieldTypeFrom, "Ann", "ann@x");
    s.Mailbox(E::eMailboxFieldTypeTo, nullptr, "bob@x");
    s.Group("team", team);
    s.ContentType(E::eContentTypeMultipart, nullptr);
    s.ContentSubtype(E::eContentSubtypeMixed, nullptr);
    s.Body(E::eBodyEncoding7Bit, E::eBodyCharsetUsAscii, "Hi", 2u);
    s.BeginEntity();
    s.ContentType(E::eContentTypeExtension, "x-app");
    s.ContentTypeParam(E::eContentParamNameExtension, E::eContentParamValueExtension, "n", "v");
    s.ContentDispositionType(E::eContentDispositionTypeAttachment, nullptr);
    s.ContentDispositionTypeParam(E::eContentDispositionParamNameFilename, "a.bin", nullptr);
    s.Body(E::eBodyEncodingBase64, E::eBodyCharsetUtf8, "QUJD", 4u);
    s.BeginEntity();
    s.Subject("inner");
    s.ContentTransferEncodingEnum(E::eContentTransferEncodingQuotedPrintable);
    s.DownloadState(E::eDownloadStatePartial);
    s.AttachmentAvailable(E::eAttachmentAvailableYes);
    s.BeginEntity();
    s.Body(E::eBodyEncodingBase64, E::eBodyCharsetUtf8, "cid:x");
    s.Comments("c");
    s.ContentDescription("cd");
    s.ContentId("id");
    s.InReplyTo("irt");
    s.Keywords("k");
    s.MessageId("mid");
    s.OrigDate("od");
    s.SendingState("ss");
    s.OrigDateLocal("odl");
    s.References("ref");
    s.ContentDispositionType(E::eContentDispositionTypeExtension, "x-d");
    s.ContentSubtype(E::eContentSubtypeExtension, "x-s");
    s.EndEntity();
    s.EndEntity();
    s.EndEntity();
    s.End();
}

TEST(EmailParser, NestedMessageReadsBackAsWritten) {
    EmailRecorder expected;
    WriteSample(expected);
    CTLVEmailCreator creator;
    WriteSample(creator);
    const Outcome got = Parse(Written(creator));
    EXPECT_TRUE(got.ok);
    EXPECT_EQ(got.calls, expected.calls);
}

class EmailReading : public ::testing::TestWithParam<Case> {};

TEST_P(EmailReading, Calls) {
    const Outcome got = Parse(GetParam().stream);
    EXPECT_TRUE(got.ok);
    EXPECT_EQ(got.calls, GetParam().calls);
}

const Case kBodyRule[] = {
    {"content and link conflict",
     Message(600, {Node(630, {Blob(633, "x"), Str(634, "L")})}),
     {"Begin(7)", "Trace(3,'Body content and body content link are set')", "End"}},
    {"link with a content type token",
     Message(600, {Node(640, {U8(641, 1), Str(642, "text"), Node(630, {Str(634, "L")})})}),
     {"Begin(7)", "BodyTypedLink('text','','L')", "ContentType(1,'text')", "End"}},
    {"link alone",
     Message(600, {Node(630, {U8(631, 5), Str(634, "L")})}),
     {"Begin(7)", "BodyLink(5,1,'L')", "End"}},
    {"content",
     Message(600, {Node(630, {U8(632, 2), Blob(633, "abc")})}),
     {"Begin(7)", "Body(1,2,'abc',3)", "End"}},
    {"neither", Message(600, {Node(630)}), {"Begin(7)", "Body(1,1,'',0)", "End"}},
    {"tokens written straight into the body are refused",
     Message(600, {Node(630, {Str(642, "t"), Str(647, "s"), Str(634, "L")})}),
     {"Begin(7)", Refused("String", 642), Refused("String", 647), "BodyLink(1,1,'L')", "End"}},
};
INSTANTIATE_TEST_SUITE_P(BodyRule, EmailReading, ::testing::ValuesIn(kBodyRule),
                         [](const auto& p) { return CaseName(p.param.name); });

const Case kStructure[] = {
    {"no instance leaf begins with zero", Node(2, {Node(600)}), {"Begin(0)", "End"}},
    {"instance inside an entity calls nothing",
     Message(600, {Node(600, {U32(10, 9)})}),
     {"Begin(7)", "BeginEntity", "EndEntity", "End"}},
    {"defaults of empty structured nodes",
     Message(600, {Node(640), Node(645), Node(650), Node(660), Node(670), Node(680)}),
     {"Begin(7)", "ContentType(1,null)", "ContentSubtype(1,null)", "ContentDispositionType(1,null)",
      "ContentTypeParam(1,1,null,null)", "ContentDispositionTypeParam(1,null,null)",
      "Mailbox(0,null,null)", "End"}},
    {"a structured node inside its own kind is refused, and so is its second end",
     Message(600, {Node(630, {Node(630)}), Node(660, {Node(660)}), Node(670, {Node(670)}),
                   Node(680, {Node(680)}), Node(690, {Node(690)})}),
     {"Begin(7)", Refused("Node Begin", 630), "Body(1,1,'',0)", Refused("Node End", 630),
      Refused("Node Begin", 660), "ContentTypeParam(1,1,null,null)", Refused("Node End", 660),
      Refused("Node Begin", 670), "ContentDispositionTypeParam(1,null,null)",
      Refused("Node End", 670), Refused("Node Begin", 680), "Mailbox(0,null,null)",
      Refused("Node End", 680), Refused("Node Begin", 690), "Group(null)", Refused("Node End", 690),
      "End"}},
    // Depth counts ends, not matching begins: the refused entity's end closes
    // the one around it, and what follows is outside every entity.
    {"an entity refused inside an open node still ends the entity around it",
     Message(600, {Node(690, {Node(600)}), Node(680)}),
     {"Begin(7)", Refused("Node Begin", 600), Refused("Node End", 690), Refused("Node Begin", 680),
      Refused("Node End", 680), Refused("Node End", 600), "End"}},
    {"a later value overwrites",
     Message(600, {Node(640, {U8(641, 2), U8(641, 3)})}),
     {"Begin(7)", "ContentType(3,null)", "End"}},
    {"open flags are independent",
     Message(600, {Node(630, {Node(640, {U8(641, 2)}), Blob(633, "x")})}),
     {"Begin(7)", "ContentType(2,null)", "Body(1,1,'x',1)", "End"}},
    {"group gathers its mailboxes in order",
     Message(600,
             {Node(690, {Str(691, "g"), Node(680, {U8(681, 3), Str(682, "A"), Str(683, "a@x")}),
                         Node(680, {U8(681, 4)})}),
              Node(680, {U8(681, 1), Str(683, "solo@x")})}),
     {"Begin(7)", "Group('g',[3 'A' 'a@x'],[4 null null])", "Mailbox(1,null,'solo@x')", "End"}},
    {"empty group", Message(600, {Node(690)}), {"Begin(7)", "Group(null)", "End"}},
};
INSTANTIATE_TEST_SUITE_P(Structure, EmailReading, ::testing::ValuesIn(kStructure),
                         [](const auto& p) { return CaseName(p.param.name); });

const Case kRefusals[] = {
    {"subject before the message node",
     Node(2, {Str(616, "s"), U32(10, 7), Node(600)}),
     {Refused("String", 616), "Begin(7)", "End"}},
    {"plain byte priority is not read back",
     Message(600, {U8(623, 3)}),
     {"Begin(7)", Refused("UInt8", 623), "End"}},
    {"classes never accepted",
     Message(600, {El(0, 616, {1}), El(1, 616, {0, 1}), El(3, 616, {0, 1}), El(4, 616, {1}),
                   I32(616, 1)}),
     {"Begin(7)", Refused("Int8", 616), Refused("Int16", 616), Refused("UInt16", 616),
      Refused("Bitfield8", 616), Refused("Int32", 616), "End"}},
    {"known IDs in the wrong class",
     Message(600, {U8(616, 1), Str(610, "x"), B16(610, 1), Blob(616, "b"), U32(11, 1)}),
     {"Begin(7)", Refused("UInt8", 616), Refused("String", 610), Refused("Bitfield16", 610),
      Refused("Byte Stream", 616), Refused("UInt32", 11), "End"}},
    {"values outside their nodes",
     Message(600,
             {Str(634, ""), U8(631, 1), U8(632, 1),   Blob(633, ""), Str(642, ""), U8(641, 1),
              Str(647, ""), U8(646, 1), Str(652, ""), U8(651, 1),    Str(663, ""), Str(664, ""),
              U8(661, 1),   U8(662, 1), Str(672, ""), Str(673, ""),  U8(671, 1),   Str(682, ""),
              Str(683, ""), U8(681, 1), Str(691, "")}),
     {"Begin(7)",
      Refused("String", 634),
      Refused("UInt8", 631),
      Refused("UInt8", 632),
      Refused("Byte Stream", 633),
      Refused("String", 642),
      Refused("UInt8", 641),
      Refused("String", 647),
      Refused("UInt8", 646),
      Refused("String", 652),
      Refused("UInt8", 651),
      Refused("String", 663),
      Refused("String", 664),
      Refused("UInt8", 661),
      Refused("UInt8", 662),
      Refused("String", 672),
      Refused("String", 673),
      Refused("UInt8", 671),
      Refused("String", 682),
      Refused("String", 683),
      Refused("UInt8", 681),
      Refused("String", 691),
      "End"}},
    {"component outside an object",
     Node(600),
     {Refused("Node Begin", 600), Refused("Node End", 600)}},
    {"structured node outside the message",
     Node(2, {Node(630)}),
     {Refused("Node Begin", 630), Refused("Node End", 630), "End"}},
    {"object end inside the message",
     Message(600, {Node(2)}),
     {"Begin(7)", Refused("Node Begin", 2), Refused("Node End", 2), "End"}},
    {"a second object node ends the first",
     Node(2, {Node(2)}),
     {Refused("Node Begin", 2), "End", Refused("Node End", 2)}},
    {"entity inside an open structured node",
     Message(600, {Node(630, {Node(600)})}),
     {"Begin(7)", Refused("Node Begin", 600), Refused("Node End", 630), Refused("Node End", 600),
      "End"}},
    {"the same node twice",
     Message(600, {Node(640, {Node(640)})}),
     {"Begin(7)", Refused("Node Begin", 640), "ContentType(1,null)", Refused("Node End", 640),
      "End"}},
    {"unknown node ID",
     Message(600, {Node(611)}),
     {"Begin(7)", Refused("Node Begin", 611), Refused("Node End", 611), "End"}},
    {"undefined class",
     Message(600, {El(12, 5, {1, 2, 3}), Str(616, "s")}),
     {"Begin(7)", "Trace(1,'Unexpected class ID = 12 with type ID = 5')", "Subject('s')", "End"}},
};
INSTANTIATE_TEST_SUITE_P(Refusals, EmailReading, ::testing::ValuesIn(kRefusals),
                         [](const auto& p) { return CaseName(p.param.name); });

TEST(EmailParser, FalseAnswerToALeafStopsTheWalk) {
    const Bytes stream = Message(600, {Str(616, "s"), Str(617, "c")});
    EmailRecorder r;
    r.stopOn = "Subject";
    const Outcome got = ParseWith(r, stream);
    EXPECT_FALSE(got.ok);
    EXPECT_EQ(got.calls, (Lines{"Begin(7)", "Subject('s')", "End", "Trace(3,'')"}));

    EmailRecorder refusing;
    refusing.stopOn = "Trace(2";
    const Outcome stopped = ParseWith(refusing, Message(600, {U8(623, 1), Str(616, "s")}));
    EXPECT_FALSE(stopped.ok);
    EXPECT_EQ(stopped.calls, (Lines{"Begin(7)", Refused("UInt8", 623), "End", "Trace(3,'')"}));
}

TEST(EmailParser, FalseAnswerAtANodeEndDoesNotStopTheWalk) {
    EmailRecorder r;
    r.stopOn = "ContentType";
    const Outcome got = ParseWith(r, Message(600, {Node(640), Str(616, "s")}));
    EXPECT_TRUE(got.ok);
    EXPECT_EQ(got.calls, (Lines{"Begin(7)", "ContentType(1,null)", "Subject('s')", "End"}));
}

TEST(EmailParser, BrokenStreamIsReportedWithCodeThree) {
    const Outcome got = Parse(Message(600, {El(2, 616, {1, 2})}));
    EXPECT_FALSE(got.ok);
    EXPECT_EQ(got.calls, (Lines{"Begin(7)", "End", "Trace(3,'')"}));
}

TEST(EmailParser, NullDataCallsNothing) {
    EmailRecorder r;
    CTLVEmailParser parser(r);
    const char* error = nullptr;
    unsigned consumed = 5;
    EXPECT_FALSE(parser.Parse(nullptr, 10, error, consumed));
    EXPECT_STREQ(error, "");
    EXPECT_EQ(consumed, 0u);
    EXPECT_TRUE(r.calls.empty());
}

TEST(EmailParser, EachParseStartsAfresh) {
    EmailRecorder r;
    CTLVEmailParser parser(r);
    const char* error = nullptr;
    unsigned consumed = 0;
    // Leaves a body flag set: its entity was refused, so its end came at depth 0.
    const Bytes skewed = Message(600, {Node(630, {Node(600)})});
    parser.Parse(skewed.data(), skewed.size(), error, consumed);
    r.calls.clear();
    const Bytes plain = Message(600, {Node(600)}, 3);
    EXPECT_TRUE(parser.Parse(plain.data(), plain.size(), error, consumed));
    EXPECT_EQ(consumed, plain.size());
    EXPECT_EQ(r.calls, (Lines{"Begin(3)", "BeginEntity", "EndEntity", "End"}));
}

TEST(EmailParser, DamagedStreamsAreHarmless) {
    CTLVEmailCreator creator;
    WriteSample(creator);
    CheckDamagedStreams<CTLVEmailParser, EmailRecorder>(Written(creator));
}

}  // namespace
