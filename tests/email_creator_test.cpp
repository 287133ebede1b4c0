#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "pimshared/email/TLVEmailCreator.h"
#include "support/MimeMessageRecorder.h"

using namespace MimeTest;
using PimShared::CTLVEmailCreator;
using PimShared::IEmailAttributes;
using E = PimShared::IEmailAttributes;

namespace {

TEST(EmailCreator, FrameIsObjectInstanceThenComponent) {
    CTLVEmailCreator c;
    ASSERT_TRUE(c.Begin(7));
    ASSERT_TRUE(c.End());
    EXPECT_EQ(Written(c),
              (Bytes{0x80, 0x02, 0x0A, 0x90, 0x0A, 0x04, 0, 0, 0, 7, 0x82, 0x58, 0x00}));
}

struct Layout {
    const char* name;
    std::function<bool(CTLVEmailCreator&)> write;
    Bytes children;  // of the message's node 600
};

class EmailLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(EmailLayout, WritesExactBytes) {
    CTLVEmailCreator c;
    ASSERT_TRUE(c.Begin(7));
    ASSERT_TRUE(GetParam().write(c));
    ASSERT_TRUE(c.End());
    EXPECT_EQ(Written(c), Node(2, {U32(10, 7), El(8, 600, GetParam().children)}));
}

const E::eBodyEncoding kB64 = E::eBodyEncodingBase64;
const E::eBodyCharset kUtf8 = E::eBodyCharsetUtf8;
const PAL::TVector<E::tMailbox> kTwo{{E::eMailboxFieldTypeTo, "Ann", "ann@x"},
                                     {E::eMailboxFieldTypeCc, nullptr, nullptr}};

const Layout kLayouts[] = {
    {"texts", [](auto& c) {
         return c.MimeVersion("1.0") && c.MessageId("m") && c.References("r") &&
                c.InReplyTo("i") && c.Subject("s") && c.Comments("c") && c.Keywords("k") &&
                c.OrigDate("d") && c.ContentId("id") && c.ContentDescription("cd") &&
                c.OrigDateLocal("l") && c.SendingState("st") && c.Folder("f") &&
                c.Instance("in");
     },
     Cat({Str(612, "1.0"), Str(613, "m"), Str(614, "r"), Str(615, "i"), Str(616, "s"),
          Str(617, "c"), Str(618, "k"), Str(619, "d"), Str(621, "id"), Str(622, "cd"),
          Str(627, "l"), Str(693, "st"), Str(903, "f"), Str(904, "in")})},
    {"null text is empty", [](auto& c) { return c.Subject(nullptr); }, Str(616, "")},
    {"bytes take the low byte", [](auto& c) {
         return c.ReadStatus(static_cast<E::eReadStatus>(0x1FF)) &&
                c.ContentTransferEncodingEnum(E::eContentTransferEncodingBase64) &&
                c.DownloadState(E::eDownloadStateComplete) &&
                c.AttachmentAvailable(E::eAttachmentAvailableYes);
     },
     Cat({U8(610, 0xFF), U8(620, 5), U8(628, 3), U8(635, 1)})},
    {"two priorities", [](auto& c) {
         return c.Priority(static_cast<unsigned char>(9)) && c.Priority(E::ePriorityHigh);
     },
     Cat({U8(623, 9), U8(905, 2)})},
    {"cutoff is a 16-bit field", [](auto& c) { return c.CutoffState(0x1234); },
     B16(692, 0x1234)},
    {"body content", [](auto& c) { return c.Body(kB64, kUtf8, "abc", 3u); },
     Node(630, {U8(631, 5), U8(632, 2), Blob(633, "abc")})},
    {"body link", [](auto& c) { return c.Body(kB64, kUtf8, "cid:1"); },
     Node(630, {U8(631, 5), U8(632, 2), Str(634, "cid:1")})},
    {"body tokens", [](auto& c) { return c.Body("text", "x-y", "cid:2"); },
     Node(630, {Str(642, "text"), Str(647, "x-y"), Str(634, "cid:2")})},
    {"extension type writes its token, null as empty",
     [](auto& c) { return c.ContentType(E::eContentTypeExtension, nullptr); },
     Node(640, {U8(641, 1), Str(642, "")})},
    {"named type drops its token",
     [](auto& c) { return c.ContentType(E::eContentTypeText, "ignored"); },
     Node(640, {U8(641, 2)})},
    {"subtype and disposition", [](auto& c) {
         return c.ContentSubtype(E::eContentSubtypeExtension, "x-s") &&
                c.ContentDispositionType(E::eContentDispositionTypeAttachment, "no");
     },
     Cat({Node(645, {U8(646, 1), Str(647, "x-s")}), Node(650, {U8(651, 3)})})},
    {"type parameter tokens follow their extension members", [](auto& c) {
         return c.ContentTypeParam(E::eContentParamNameExtension, E::eContentParamValueUtf8,
                                   "x-n", "no") &&
                c.ContentTypeParam(E::eContentParamNameCharset, E::eContentParamValueExtension,
                                   "no", "x-v");
     },
     Cat({Node(660, {U8(661, 1), U8(662, 3), Str(663, "x-n")}),
          Node(660, {U8(661, 2), U8(662, 1), Str(664, "x-v")})})},
    {"disposition parameter value always, name token for the extension", [](auto& c) {
         return c.ContentDispositionTypeParam(E::eContentDispositionParamNameFilename, "a.txt",
                                              "no") &&
                c.ContentDispositionTypeParam(E::eContentDispositionParamNameExtension,
                                              nullptr, "x-p");
     },
     Cat({Node(670, {U8(671, 2), Str(672, "a.txt")}),
          Node(670, {U8(671, 1), Str(672, ""), Str(673, "x-p")})})},
    {"mailbox writes only the texts given", [](auto& c) {
         return c.Mailbox(E::eMailboxFieldTypeTo, "Ann", "ann@x") &&
                c.Mailbox(E::eMailboxFieldTypeBcc, nullptr, nullptr) &&
                c.Mailbox(E::eMailboxFieldTypeCc, nullptr, "b@x");
     },
     Cat({Node(680, {U8(681, 3), Str(682, "Ann"), Str(683, "ann@x")}), Node(680, {U8(681, 5)}),
          Node(680, {U8(681, 4), Str(683, "b@x")})})},
    {"group writes every member's texts", [](auto& c) { return c.Group("team", kTwo); },
     Node(690, {Str(691, "team"), Node(680, {U8(681, 3), Str(682, "Ann"), Str(683, "ann@x")}),
                Node(680, {U8(681, 4), Str(682, ""), Str(683, "")})})},
    {"empty group", [](auto& c) { return c.Group(nullptr, PAL::TVector<E::tMailbox>{}); },
     Node(690, {Str(691, "")})},
    {"nested entities", [](auto& c) {
         return c.BeginEntity() && c.Subject("a") && c.BeginEntity() && c.EndEntity() &&
                c.EndEntity();
     },
     Node(600, {Str(616, "a"), Node(600)})},
};

INSTANTIATE_TEST_SUITE_P(Operations, EmailLayout, ::testing::ValuesIn(kLayouts),
                         [](const auto& p) { return CaseName(p.param.name); });

TEST(EmailCreator, FailedStepLeavesNodeOpenAndStopsWriting) {
    CTLVEmailCreator c;
    ASSERT_TRUE(c.Begin(1));
    const std::string huge(0xFFFFFF, 'a');  // one byte over what a value may hold
    EXPECT_FALSE(c.Mailbox(E::eMailboxFieldTypeTo, huge.c_str(), "never written"));
    EXPECT_FALSE(c.End());  // the mailbox node is innermost, not 600
    const void* data = nullptr;
    unsigned length = 0;
    EXPECT_FALSE(c.GetData(data, length));
    // Reset makes the creator usable again.
    ASSERT_TRUE(c.Reset());
    ASSERT_TRUE(c.Begin(2) && c.End());
    EXPECT_EQ(Written(c), Message(600, {}, 2));
}

TEST(EmailCreator, GroupFailsWhenItsLastMemberFails) {
    const std::string huge(0xFFFFFF, 'a');
    CTLVEmailCreator c;
    ASSERT_TRUE(c.Begin(1));
    PAL::TVector<E::tMailbox> lastBad{{E::eMailboxFieldTypeTo, "ok", "ok"},
                                      {E::eMailboxFieldTypeTo, huge.c_str(), "x"}};
    EXPECT_FALSE(c.Group("g", lastBad));
}

}  // namespace
