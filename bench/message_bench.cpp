// Throughput of the e-mail and instant-message codecs: writing (every
// operation plus GetData) and reading (the item parser with a receiver that
// keeps nothing), each beside the plain TLV walk of the same bytes, which is
// the floor any item parser stands on. The e-mail is a realistic large one: a
// 4 KB body, five mailboxes, content-type nodes and two 64 KB attachments in
// their own entities. The instant message is a typical short one.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/QuietReceivers.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"

namespace {

using namespace PimShared;
using M = IMimeMessageAttributes;
using PimTlvBench::QuietEmail;
using PimTlvBench::QuietIM;

// The plain walk: every element reported, nothing interpreted.
class NullTarget : public ParserCreatorCollection::ITLV {
  public:
    bool Unknown(const ParserCreatorCollection::eClass&, const unsigned&, const void*,
                 const unsigned&) override {
        return true;
    }
    bool NodeBegin(const unsigned&) override { return true; }
    bool NodeEnd(const unsigned&) override { return true; }
    bool LeafInt8(const unsigned&, const signed char&) override { return true; }
    bool LeafInt16(const unsigned&, const short&) override { return true; }
    bool LeafUInt8(const unsigned&, const unsigned char&) override { return true; }
    bool LeafUInt16(const unsigned&, const unsigned short&) override { return true; }
    bool LeafBitfield8(const unsigned&, const unsigned char&) override { return true; }
    bool LeafBitfield16(const unsigned&, const unsigned short&) override { return true; }
    bool LeafString(const unsigned&, const char*) override { return true; }
    bool LeafByteStream(const unsigned&, const void*, const unsigned&) override { return true; }
    bool LeafUInt32(const unsigned&, const unsigned&) override { return true; }
    bool LeafInt32(const unsigned&, const int&) override { return true; }
};

const std::string kBody(4096, 'b');
const std::string kAttachment(64 * 1024, 'a');

bool WriteEmail(CTLVEmailCreator& c) {
    const PAL::TVector<IEmailAttributes::tMailbox> cc{
        {M::eMailboxFieldTypeCc, "Carol Example", "carol@example.org"},
        {M::eMailboxFieldTypeCc, "Dave Example", "dave@example.org"}};
    bool ok = c.Begin(42) && c.MessageId("<20261122.1234@example.org>") &&
              c.Subject("Quarterly figures and the two spreadsheets") &&
              c.OrigDate("Sun, 22 Nov 2026 01:00:00 +0000") && c.MimeVersion("1.0") &&
              c.Folder("INBOX") && c.ReadStatus(M::eReadStatusUnread) &&
              c.Priority(M::ePriorityNormal) &&
              c.Mailbox(M::eMailboxFieldTypeFrom, "Ann Example", "ann@example.org") &&
              c.Mailbox(M::eMailboxFieldTypeTo, "Bob Example", "bob@example.org") &&
              c.Mailbox(M::eMailboxFieldTypeReplyTo, nullptr, "team@example.org") &&
              c.Group("reviewers", cc) && c.ContentType(M::eContentTypeMultipart, nullptr) &&
              c.ContentSubtype(M::eContentSubtypeMixed, nullptr) &&
              c.ContentTypeParam(M::eContentParamNameBoundary, M::eContentParamValueExtension,
                                 nullptr, "----=_Part_0") &&
              c.BeginEntity() && c.ContentType(M::eContentTypeText, nullptr) &&
              c.ContentSubtype(M::eContentSubtypePlain, nullptr) &&
              c.Body(M::eBodyEncoding8Bit, M::eBodyCharsetUtf8, kBody.data(),
                     static_cast<unsigned>(kBody.size())) &&
              c.EndEntity();
    for (const char* name : {"q3.xlsx", "q4.xlsx"}) {
        ok =
            ok && c.BeginEntity() && c.ContentType(M::eContentTypeApplication, nullptr) &&
            c.ContentSubtype(M::eContentSubtypeOctetStream, nullptr) &&
            c.ContentDispositionType(M::eContentDispositionTypeAttachment, nullptr) &&
            c.ContentDispositionTypeParam(M::eContentDispositionParamNameFilename, name, nullptr) &&
            c.Body(M::eBodyEncodingBase64, M::eBodyCharsetUnknown, kAttachment.data(),
                   static_cast<unsigned>(kAttachment.size())) &&
            c.EndEntity();
    }
    return ok && c.End();
}

bool WriteIM(CTLVIMCreator& c) {
    const char text[] = "On my way, see you in ten minutes at the usual place.";
    const PAL::TVector<IIMAttributes::tExtendedData> extended{
        {IIMAttributes::eExtendedDataKeyUnreadCount, 3}};
    return c.Begin(7) && c.MessageId("im-8812") && c.ConversationID("conv-17") &&
           c.OrigDate("20261122T010000Z") && c.Direction(IIMAttributes::eDirectionOutgoing) &&
           c.ReadStatus(M::eReadStatusRead) &&
           c.Mailbox(M::eMailboxFieldTypeFrom, IIMAttributes::eUCIClientXmpp, "Ann",
                     "ann@example.org") &&
           c.Mailbox(M::eMailboxFieldTypeTo, IIMAttributes::eUCIClientXmpp, "Bob",
                     "bob@example.org") &&
           c.ContentType(M::eContentTypeText, nullptr) &&
           c.ContentSubtype(M::eContentSubtypePlain, nullptr) &&
           c.Body(M::eBodyEncoding8Bit, M::eBodyCharsetUtf8, text,
                  static_cast<unsigned>(sizeof text - 1)) &&
           c.OwnerAvailability(IIMAttributes::ePresenceAvailabilityAvailable) &&
           c.ConversationParticipant(IIMAttributes::eUCIClientNotGiven, "Bob", "bob@example.org",
                                     IIMAttributes::eChatStateActive, nullptr, nullptr, nullptr,
                                     IIMAttributes::ePresenceAvailabilityAway, nullptr,
                                     static_cast<unsigned char>(0xFF)) &&
           c.ExtendedData(extended) && c.End();
}

template <class Creator, bool (*Write)(Creator&)>
std::vector<unsigned char> Stream() {
    Creator c;
    const void* data = nullptr;
    unsigned length = 0;
    if (!Write(c) || !c.GetData(data, length)) return {};
    const auto* p = static_cast<const unsigned char*>(data);
    return std::vector<unsigned char>(p, p + length);
}

template <class Creator, bool (*Write)(Creator&)>
void Create(benchmark::State& state) {
    Creator c;
    size_t bytes = 0;
    for (auto _ : state) {
        const void* data = nullptr;
        unsigned length = 0;
        if (!c.Reset() || !Write(c) || !c.GetData(data, length)) {
            state.SkipWithError("writing failed");
            break;
        }
        benchmark::DoNotOptimize(data);
        bytes += length;
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(bytes));
}

// Parser is an item parser over a quiet receiver, or the plain walk over a
// target that ignores every element.
template <class Creator, bool (*Write)(Creator&), class Parser, class Receiver>
void ParseItem(benchmark::State& state) {
    const std::vector<unsigned char> stream = Stream<Creator, Write>();
    Receiver receiver;
    Parser parser(receiver);
    for (auto _ : state) {
        const char* error = nullptr;
        unsigned consumed = 0;
        if (!parser.Parse(stream.data(), static_cast<unsigned>(stream.size()), error, consumed)) {
            state.SkipWithError("parsing failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * stream.size()));
}

BENCHMARK_TEMPLATE(Create, CTLVEmailCreator, WriteEmail)->Name("Email/Create");
BENCHMARK_TEMPLATE(ParseItem, CTLVEmailCreator, WriteEmail, CTLVEmailParser, QuietEmail)
    ->Name("Email/Parse");
BENCHMARK_TEMPLATE(ParseItem, CTLVEmailCreator, WriteEmail, ParserCreatorCollection::CTLVParser,
                   NullTarget)
    ->Name("Email/PlainWalk");
BENCHMARK_TEMPLATE(Create, CTLVIMCreator, WriteIM)->Name("IM/Create");
BENCHMARK_TEMPLATE(ParseItem, CTLVIMCreator, WriteIM, CTLVIMParser, QuietIM)->Name("IM/Parse");
BENCHMARK_TEMPLATE(ParseItem, CTLVIMCreator, WriteIM, ParserCreatorCollection::CTLVParser,
                   NullTarget)
    ->Name("IM/PlainWalk");

}  // namespace
