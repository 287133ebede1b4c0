#include <gtest/gtest.h>

#include <functional>

#include "pimshared/im/TLVIMCreator.h"
#include "support/MimeMessageRecorder.h"

using namespace MimeTest;
using PimShared::CTLVIMCreator;
using I = PimShared::IIMAttributes;

namespace {

struct Layout {
    const char* name;
    std::function<bool(CTLVIMCreator&)> write;
    Bytes children;  // of the message's node 900
};

class IMLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(IMLayout, WritesExactBytes) {
    CTLVIMCreator c;
    ASSERT_TRUE(c.Begin(7));
    ASSERT_TRUE(GetParam().write(c));
    ASSERT_TRUE(c.End());
    EXPECT_EQ(Written(c), Message(900, {GetParam().children}));
}

const PAL::TVector<I::tMailbox> kMembers{
    {I::eMailboxFieldTypeTo, I::eUCIClientXmpp, "Ann", "ann@x"},
    {I::eMailboxFieldTypeCc, I::eUCIClientSip, nullptr, nullptr}};
const PAL::TVector<I::tExtendedData> kExtended{{I::eExtendedDataKeyUnreadCount, -2},
                                               {I::eExtendedDataKeyDisplayReport, 70000}};

const Layout kLayouts[] = {
    {"shared texts in the 9xx range", [](auto& c) {
         return c.SendingState("a") && c.OrigDate("b") && c.OrigDateLocal("c") &&
                c.Subject("d") && c.MimeVersion("e") && c.MessageId("f") && c.References("g") &&
                c.InReplyTo("h") && c.Comments("i") && c.Keywords("j") && c.ContentId("k") &&
                c.ContentDescription("l") && c.Folder("m") && c.Instance("n");
     },
     Cat({Str(910, "a"), Str(911, "b"), Str(912, "c"), Str(913, "d"), Str(915, "e"),
          Str(916, "f"), Str(917, "g"), Str(918, "h"), Str(920, "i"), Str(921, "j"),
          Str(923, "k"), Str(924, "l"), Str(903, "m"), Str(904, "n")})},
    {"shared bytes and cutoff", [](auto& c) {
         return c.ReadStatus(I::eReadStatusRead) &&
                c.ContentTransferEncodingEnum(I::eContentTransferEncodingBinary) &&
                c.DownloadState(I::eDownloadStateFailed) &&
                c.AttachmentAvailable(I::eAttachmentAvailableNo) &&
                c.Priority(static_cast<unsigned char>(4)) && c.Priority(I::ePriorityLow) &&
                c.CutoffState(0x8001);
     },
     Cat({U8(914, 1), U8(922, 3), U8(926, 4), U8(927, 0), U8(925, 4), U8(905, 1),
          B16(919, 0x8001)})},
    {"bodies and MIME nodes", [](auto& c) {
         return c.Body(I::eBodyEncoding8Bit, I::eBodyCharsetUtf8, "hi", 2u) &&
                c.Body("t", "s", "L") && c.ContentType(I::eContentTypeExtension, "x") &&
                c.ContentSubtype(I::eContentSubtypePlain, "no") &&
                c.ContentDispositionType(I::eContentDispositionTypeExtension, "y") &&
                c.ContentTypeParam(I::eContentParamNameExtension,
                                   I::eContentParamValueExtension, "n", "v") &&
                c.ContentDispositionTypeParam(I::eContentDispositionParamNameExtension, "f",
                                              "p");
     },
     Cat({Node(940, {U8(941, 2), U8(942, 2), Blob(943, "hi")}),
          Node(940, {Str(937, "t"), Str(947, "s"), Str(944, "L")}),
          Node(935, {U8(936, 1), Str(937, "x")}), Node(945, {U8(946, 2)}),
          Node(950, {U8(951, 1), Str(952, "y")}),
          Node(955, {U8(956, 1), U8(957, 1), Str(958, "n"), Str(959, "v")}),
          Node(960, {U8(961, 1), Str(962, "f"), Str(963, "p")})})},
    {"mailbox client before the texts", [](auto& c) {
         return c.Mailbox(I::eMailboxFieldTypeFrom, I::eUCIClientSip, "A", "a@x") &&
                c.Mailbox(I::eMailboxFieldTypeTo, I::eUCIClientNotGiven, nullptr, nullptr);
     },
     Cat({Node(930, {U8(931, 0), U8(934, 3), Str(932, "A"), Str(933, "a@x")}),
          Node(930, {U8(931, 3)})})},
    {"group members carry no client", [](auto& c) { return c.Group("g", kMembers); },
     Node(965, {Str(966, "g"), Node(930, {U8(931, 3), Str(932, "Ann"), Str(933, "ann@x")}),
                Node(930, {U8(931, 4), Str(932, ""), Str(933, "")})})},
    {"conversation, owner, direction and entity type", [](auto& c) {
         return c.ConversationID("1") && c.ConversationName("2") &&
                c.ConversationLastActivity("3") && c.ConversationVersionCounter("4") &&
                c.ConversationSummary("5") && c.OwnerText("6") && c.OwnerLastActivity("7") &&
                c.OwnerAvailability(I::ePresenceAvailabilityAway) &&
                c.OwnerChatState(I::eChatStateComposing) && c.Direction(I::eDirectionOutgoing) &&
                c.EntityType(I::eEntityTypeSystemNotice);
     },
     Cat({Str(970, "1"), Str(971, "2"), Str(972, "3"), Str(973, "4"), Str(974, "5"),
          Str(997, "6"), Str(998, "7"), U8(996, 1), U8(999, 1), U8(967, 1), U8(995, 2)})},
    {"participant in position order without its client", [](auto& c) {
         return c.ConversationParticipant(I::eUCIClientXmpp, "1", "2", I::eChatStatePaused, "3",
                                          "4", "5", I::ePresenceAvailabilityOffline, "6",
                                          static_cast<unsigned char>(9));
     },
     Node(980, {Str(981, "1"), Str(982, "2"), U8(983, 2), Str(984, "3"), Str(985, "4"),
                Str(986, "5"), U8(987, 4), Str(988, "6"), U8(989, 9)})},
    {"participant with nothing given is empty", [](auto& c) {
         return c.ConversationParticipant(I::eUCIClientXmpp, nullptr, nullptr,
                                          I::eChatStateNotGiven, nullptr, nullptr, nullptr,
                                          I::ePresenceAvailabilityNotGiven, nullptr,
                                          static_cast<unsigned char>(0xFF));
     },
     Node(980)},
    {"extended data pairs", [](auto& c) { return c.ExtendedData(kExtended); },
     Node(990, {U8(991, 1), I32(992, -2), U8(991, 3), I32(992, 70000)})},
    {"empty extended data", [](auto& c) { return c.ExtendedData({}); }, Node(990)},
    {"entities", [](auto& c) { return c.BeginEntity() && c.EndEntity(); }, Node(900)},
};

INSTANTIATE_TEST_SUITE_P(Operations, IMLayout, ::testing::ValuesIn(kLayouts),
                         [](const auto& p) { return CaseName(p.param.name); });

}  // namespace
