#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"
#include "support/IMRecorder.h"

using namespace MimeTest;
using PimShared::CTLVIMCreator;
using PimShared::CTLVIMParser;
using I = PimShared::IIMAttributes;
using Lines = std::vector<std::string>;

namespace {

Outcome ParseWith(IMRecorder& r, const Bytes& stream) {
    return MimeTest::ParseWith<CTLVIMParser>(r, stream);
}

// Every operation that reads back as written, with an entity two deep.
void WriteSample(I& s) {
    const PAL::TVector<I::tMailbox> members{
        {I::eMailboxFieldTypeTo, I::eUCIClientNotGiven, "C", "c@x"}};  // clients stay out of groups
    const PAL::TVector<I::tExtendedData> extended{{I::eExtendedDataKeyUnreadCount, 3},
                                                  {I::eExtendedDataKeyDeliveryReport, -1}};
    s.Begin(5);
    s.ConversationID("conv");
    s.ConversationName("name");
    s.ConversationLastActivity("last");
    s.ConversationVersionCounter("12");
    s.ConversationSummary("sum");
    s.OwnerAvailability(I::ePresenceAvailabilityDoNotDisturb);
    s.OwnerText("busy");
    s.OwnerLastActivity("now");
    s.OwnerChatState(I::eChatStateActive);
    s.Direction(I::eDirectionIncoming);
    s.EntityType(I::eEntityTypeFileTransfer);
    s.Priority(I::ePriorityHigh);
    s.Subject("hi");
    s.Mailbox(I::eMailboxFieldTypeFrom, I::eUCIClientXmpp, "Ann", "ann@x");
    s.Group("g", members);
    s.ConversationParticipant(I::eUCIClientNotGiven, "1", nullptr, I::eChatStateGone, nullptr, "4",
                              nullptr, I::ePresenceAvailabilityAway, "6",
                              static_cast<unsigned char>(3));
    s.ExtendedData(extended);
    s.BeginEntity();
    s.ContentType(I::eContentTypeImage, nullptr);
    s.ContentSubtype(I::eContentSubtypePng, nullptr);
    s.Body(I::eBodyEncodingBase64, I::eBodyCharsetUnknown, "iVBO", 4u);
    s.BeginEntity();
    s.Body(I::eBodyEncoding7Bit, I::eBodyCharsetUsAscii, "http://x");
    s.EndEntity();
    s.EndEntity();
    s.End();
}

TEST(IMParser, MessageReadsBackAsWritten) {
    IMRecorder expected;
    WriteSample(expected);
    CTLVIMCreator creator;
    WriteSample(creator);
    IMRecorder got;
    EXPECT_TRUE(ParseWith(got, Written(creator)).ok);
    EXPECT_EQ(got.calls, expected.calls);
}

class IMReading : public ::testing::TestWithParam<Case> {};

TEST_P(IMReading, Calls) {
    IMRecorder r;
    const Outcome got = ParseWith(r, GetParam().stream);
    EXPECT_TRUE(got.ok);
    EXPECT_EQ(got.calls, GetParam().calls);
}

const std::string kEmptyParticipant =
    "ConversationParticipant(4294967295,null,null,4294967295,null,null,null,4294967295,null,255)";

const Case kCases[] = {
    {"a value before any extended-data node joins the list that node then clears",
     Message(900, {I32(992, 5), Node(990, {U8(991, 2), I32(992, 7), I32(992, 8)})}),
     {"Begin(7)", "ExtendedData([2 7],[2 8])", "End"}},
    {"values outside the node are taken without complaint",
     Node(2, {U32(10, 7), Node(900, {Node(990, {U8(991, 4)}), I32(992, 1)}), I32(992, 2)}),
     {"Begin(7)", "ExtendedData()", "End"}},
    {"a node starts its key at zero",
     Message(900, {U8(991, 9), Node(990, {I32(992, 1)})}),
     {"Begin(7)", "ExtendedData([0 1])", "End"}},
    {"mailbox client in a group and alone",
     Message(900, {Node(965, {Str(966, "g"), Node(930, {U8(931, 3), U8(934, 2), Str(932, "A")})}),
                   Node(930, {U8(934, 1)}), Node(930)}),
     {"Begin(7)", "Group('g',[3 2 'A' null])", "Mailbox(0,1,null,null)",
      "Mailbox(0,4294967295,null,null)", "End"}},
    {"empty participant", Message(900, {Node(980)}), {"Begin(7)", kEmptyParticipant, "End"}},
    {"a participant or extended-data node inside its own kind is refused",
     Message(900, {Node(980, {Node(980)}), Node(990, {Node(990)})}),
     {"Begin(7)", Refused("Node Begin", 980), kEmptyParticipant, Refused("Node End", 980),
      Refused("Node Begin", 990), "ExtendedData()", Refused("Node End", 990), "End"}},
    {"participant leaves by position",
     Message(900, {Node(980, {Str(988, "6"), U8(989, 0), U8(987, 1), U8(983, 2), Str(981, "1"),
                              Str(986, "5")})}),
     {"Begin(7)", "ConversationParticipant(4294967295,'1',null,2,null,null,'5',1,'6',0)", "End"}},
    {"owner and conversation leaves",
     Message(900, {U8(996, 3), U8(999, 2), U8(967, 1), U8(995, 0), Str(997, "t"), Str(998, "l"),
                   Str(974, "s")}),
     {"Begin(7)", "OwnerAvailability(3)", "OwnerChatState(2)", "Direction(1)", "EntityType(0)",
      "OwnerText('t')", "OwnerLastActivity('l')", "ConversationSummary('s')", "End"}},
    {"an entity may stand in extended data but not in a participant",
     Message(900, {Node(990, {Node(900)}), Node(980, {Node(900)})}),
     // The refused entity's end still counts: the message's depth drops to
     // zero and the ends that follow are refused.
     {"Begin(7)", "BeginEntity", "EndEntity", "ExtendedData()", Refused("Node Begin", 900),
      Refused("Node End", 980), Refused("Node End", 900), "End"}},
    {"body rule with the 9xx IDs",
     Message(900, {Node(940, {Blob(943, "x"), Str(944, "L")}),
                   Node(935, {U8(936, 1), Str(937, "tok"), Node(940, {Str(944, "L")})})}),
     {"Begin(7)", "Trace(3,'Body content and body content link are set')",
      "BodyTypedLink('tok','','L')", "ContentType(1,'tok')", "End"}},
    {"refusals",
     Message(900, {U8(925, 1), U8(934, 1), U8(983, 1), U8(987, 1), U8(989, 1), Str(981, "x"),
                   Str(988, "x"), I32(991, 1), U8(992, 1), Node(623)}),
     {"Begin(7)", Refused("UInt8", 925), Refused("UInt8", 934), Refused("UInt8", 983),
      Refused("UInt8", 987), Refused("UInt8", 989), Refused("String", 981), Refused("String", 988),
      Refused("Int32", 991), Refused("UInt8", 992), Refused("Node Begin", 623),
      Refused("Node End", 623), "End"}},
    {"additions outside the message are refused",
     Node(2, {U8(996, 1), Str(970, "c"), Node(980), Node(990), I32(992, 1)}),
     {Refused("UInt8", 996), Refused("String", 970), Refused("Node Begin", 980),
      Refused("Node End", 980), Refused("Node Begin", 990), Refused("Node End", 990), "End"}},
    {"undefined class",
     Message(900, {El(15, 4095, {})}),
     {"Begin(7)", "Trace(1,'Unexpected class ID = 15 with type ID = 4095')", "End"}},
};
INSTANTIATE_TEST_SUITE_P(Reading, IMReading, ::testing::ValuesIn(kCases),
                         [](const auto& p) { return CaseName(p.param.name); });

TEST(IMParser, OwnerTextsNeverStopTheWalkButOtherLeavesDo) {
    IMRecorder owner;
    owner.stopOn = "Owner";
    const Outcome goesOn =
        ParseWith(owner, Message(900, {Str(997, "a"), Str(998, "b"), U8(996, 1), Str(913, "s")}));
    EXPECT_FALSE(goesOn.ok);
    EXPECT_EQ(goesOn.calls, (Lines{"Begin(7)", "OwnerText('a')", "OwnerLastActivity('b')",
                                   "OwnerAvailability(1)", "End", "Trace(3,'')"}));

    IMRecorder conversation;
    conversation.stopOn = "ConversationID";
    const Outcome stops = ParseWith(conversation, Message(900, {Str(970, "c"), Str(913, "s")}));
    EXPECT_FALSE(stops.ok);
    EXPECT_EQ(stops.calls, (Lines{"Begin(7)", "ConversationID('c')", "End", "Trace(3,'')"}));
}

TEST(IMParser, NullDataCallsNothing) {
    IMRecorder r;
    CTLVIMParser parser(r);
    const char* error = nullptr;
    unsigned consumed = 1;
    EXPECT_FALSE(parser.Parse(nullptr, 0, error, consumed));
    EXPECT_STREQ(error, "");
    EXPECT_EQ(consumed, 0u);
    EXPECT_TRUE(r.calls.empty());
}

TEST(IMParser, DamagedStreamsAreHarmless) {
    CTLVIMCreator creator;
    WriteSample(creator);
    CheckDamagedStreams<CTLVIMParser, IMRecorder>(Written(creator));
}

}  // namespace
