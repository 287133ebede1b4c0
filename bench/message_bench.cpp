// Throughput of the e-mail, instant-message and SMS codecs: writing (every
// operation plus GetData) and reading (the item parser with a receiver that
// keeps nothing), each beside the plain TLV walk of the same bytes, which is
// the floor any item parser stands on. The e-mail is a realistic large one: a
// 4 KB body, five mailboxes, content-type nodes and two 64 KB attachments in
// their own entities. The instant message and the SMS are typical short ones. When built
// with PIMTLV_BENCH_PROTOBUF (message_bench.proto), both are also measured as
// Protocol Buffers messages with the same fields.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/QuietReceivers.h"
#include "bench/TlvYardsticks.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"

#ifdef PIMTLV_BENCH_PROTOBUF
#include "bench/ProtobufLoops.h"
#include "message_bench.pb.h"
#endif

namespace {

using namespace PimShared;
using M = IMimeMessageAttributes;
using PimTlvBench::QuietEmail;
using PimTlvBench::QuietIM;
using PimTlvBench::QuietSMS;

using PimTlvBench::NullTarget;

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
    // Made once: building the caller's list is not the creator's work.
    static const PAL::TVector<IIMAttributes::tExtendedData> extended{
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

// A received part of a concatenated message, with every attribute given.
bool WriteSMS(CTLVSMSCreator& c) {
    using S = ISMSAttributes;
    const unsigned char reference = 17, parts = 2, sequence = 1;
    const S::eReadStatus read = S::ReadStatusUnread;
    const S::eDownloadState download = S::DownloadStateComplete;
    const S::eSMSState received = S::SMSStateReceived;
    const S::eSMSType deliver = S::SMSTypeDeliver;
    const S::eStorageType phone = S::StorageTypePhone;
    const unsigned short index = 12;
    const S::ePriority normal = S::PriorityNormal;
    return c.Begin(3) &&
           c.Body("Running late, the train is stuck at the bridge. Start without me.") &&
           c.Concat(reference, parts, sequence) && c.Destination("+441632960001") &&
           c.ReadStatus(read) && c.DownloadState(download) && c.Folder("Inbox") &&
           c.Instance("sms-0042") && c.Originator("+441632960002") &&
           c.OriginatorName(nullptr, "Ann", "Example", nullptr, nullptr, nullptr) &&
           c.OriginatorFName("Ann Example") && c.ServiceCenter("+447700900000") &&
           c.SMSState(received) && c.SMSType(deliver) && c.StorageType(phone) &&
           c.StorageIndex(index) && c.Subject("Train") && c.Timestamp("20261122T010000Z") &&
           c.TimestampLocal("20261122T010000") && c.Priority(normal) && c.End();
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
BENCHMARK_TEMPLATE(Create, CTLVSMSCreator, WriteSMS)->Name("SMS/Create");
BENCHMARK_TEMPLATE(ParseItem, CTLVSMSCreator, WriteSMS, CTLVSMSParser, QuietSMS)->Name("SMS/Parse");
BENCHMARK_TEMPLATE(ParseItem, CTLVSMSCreator, WriteSMS, ParserCreatorCollection::CTLVParser,
                   NullTarget)
    ->Name("SMS/PlainWalk");

#ifdef PIMTLV_BENCH_PROTOBUF
// The same content through protobuf: build + SerializeToString, and
// ParseFromString (which copies every body, where the TLV parsers hand out
// pointers into the stream).
void AddMailbox(pimbench::Mailbox* m, unsigned type, unsigned client, const char* name,
                const char* address) {
    m->set_field_type(type);
    m->set_client(client);
    if (name != nullptr) m->set_display_name(name);
    m->set_address(address);
}

void BuildEmail(pimbench::Email& e, std::string& out) {
    e.set_instance(42);
    pimbench::Entity* m = e.mutable_message();
    m->set_message_id("<20261122.1234@example.org>");
    m->set_subject("Quarterly figures and the two spreadsheets");
    m->set_orig_date("Sun, 22 Nov 2026 01:00:00 +0000");
    m->set_mime_version("1.0");
    m->set_folder("INBOX");
    m->set_read_status(M::eReadStatusUnread);
    m->set_priority(M::ePriorityNormal);
    AddMailbox(m->add_mailbox(), M::eMailboxFieldTypeFrom, 0, "Ann Example", "ann@example.org");
    AddMailbox(m->add_mailbox(), M::eMailboxFieldTypeTo, 0, "Bob Example", "bob@example.org");
    AddMailbox(m->add_mailbox(), M::eMailboxFieldTypeReplyTo, 0, nullptr, "team@example.org");
    pimbench::Group* g = m->add_group();
    g->set_name("reviewers");
    AddMailbox(g->add_mailbox(), M::eMailboxFieldTypeCc, 0, "Carol Example", "carol@example.org");
    AddMailbox(g->add_mailbox(), M::eMailboxFieldTypeCc, 0, "Dave Example", "dave@example.org");
    m->mutable_content_type()->set_value(M::eContentTypeMultipart);
    m->mutable_content_subtype()->set_value(M::eContentSubtypeMixed);
    pimbench::TypeParam* p = m->add_type_param();
    p->set_name(M::eContentParamNameBoundary);
    p->set_value(M::eContentParamValueExtension);
    p->set_value_token("----=_Part_0");
    pimbench::Entity* text = m->add_entity();
    text->mutable_content_type()->set_value(M::eContentTypeText);
    text->mutable_content_subtype()->set_value(M::eContentSubtypePlain);
    text->mutable_body()->set_encoding(M::eBodyEncoding8Bit);
    text->mutable_body()->set_charset(M::eBodyCharsetUtf8);
    text->mutable_body()->set_content(kBody);
    for (const char* name : {"q3.xlsx", "q4.xlsx"}) {
        pimbench::Entity* a = m->add_entity();
        a->mutable_content_type()->set_value(M::eContentTypeApplication);
        a->mutable_content_subtype()->set_value(M::eContentSubtypeOctetStream);
        a->mutable_disposition()->set_value(M::eContentDispositionTypeAttachment);
        pimbench::DispositionParam* d = a->add_disposition_param();
        d->set_name(M::eContentDispositionParamNameFilename);
        d->set_value(name);
        a->mutable_body()->set_encoding(M::eBodyEncodingBase64);
        a->mutable_body()->set_charset(M::eBodyCharsetUnknown);
        a->mutable_body()->set_content(kAttachment);
    }
    e.SerializeToString(&out);
}

void BuildIM(pimbench::InstantMessage& im, std::string& out) {
    const char text[] = "On my way, see you in ten minutes at the usual place.";
    im.set_instance(7);
    im.set_message_id("im-8812");
    im.set_conversation_id("conv-17");
    im.set_orig_date("20261122T010000Z");
    im.set_direction(IIMAttributes::eDirectionOutgoing);
    im.set_read_status(M::eReadStatusRead);
    AddMailbox(im.add_mailbox(), M::eMailboxFieldTypeFrom, IIMAttributes::eUCIClientXmpp, "Ann",
               "ann@example.org");
    AddMailbox(im.add_mailbox(), M::eMailboxFieldTypeTo, IIMAttributes::eUCIClientXmpp, "Bob",
               "bob@example.org");
    im.mutable_content_type()->set_value(M::eContentTypeText);
    im.mutable_content_subtype()->set_value(M::eContentSubtypePlain);
    im.mutable_body()->set_encoding(M::eBodyEncoding8Bit);
    im.mutable_body()->set_charset(M::eBodyCharsetUtf8);
    im.mutable_body()->set_content(text, sizeof text - 1);
    im.set_owner_availability(IIMAttributes::ePresenceAvailabilityAvailable);
    pimbench::Participant* p = im.add_participant();
    p->set_display_name("Bob");
    p->set_address("bob@example.org");
    p->set_chat_state(IIMAttributes::eChatStateActive);
    p->set_availability(IIMAttributes::ePresenceAvailabilityAway);
    p->set_flags(0xFF);
    pimbench::ExtendedData* x = im.add_extended();
    x->set_key(IIMAttributes::eExtendedDataKeyUnreadCount);
    x->set_value(3);
    im.SerializeToString(&out);
}

using PimTlvBench::ProtobufBuildAndSerialize;
using PimTlvBench::ProtobufParse;

BENCHMARK_TEMPLATE(ProtobufBuildAndSerialize, pimbench::Email, BuildEmail)
    ->Name("Email/Protobuf/BuildAndSerialize");
BENCHMARK_TEMPLATE(ProtobufParse, pimbench::Email, BuildEmail)
    ->Name("Email/Protobuf/ParseFromString");
BENCHMARK_TEMPLATE(ProtobufBuildAndSerialize, pimbench::InstantMessage, BuildIM)
    ->Name("IM/Protobuf/BuildAndSerialize");
BENCHMARK_TEMPLATE(ProtobufParse, pimbench::InstantMessage, BuildIM)
    ->Name("IM/Protobuf/ParseFromString");
#endif

}  // namespace
