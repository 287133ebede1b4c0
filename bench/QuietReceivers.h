#ifndef PIMTLV_BENCH_QUIETRECEIVERS_H
#define PIMTLV_BENCH_QUIETRECEIVERS_H

// Receivers for the reading benchmarks: they answer true to everything and
// keep nothing, so what is measured is the codec, not a receiver.

#include <benchmark/benchmark.h>

#include "pimshared/calendar/ICalendarReceiver.h"
#include "pimshared/common/XParam.h"
#include "pimshared/email/IEmailReceiver.h"
#include "pimshared/im/IIMReceiver.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimTlvBench {

using XParams = PAL::TVector<PimShared::tXParam>;
using Texts = PAL::TVector<const char*>;
using M = PimShared::IMimeMessageAttributes;

// A receiver that takes everything and keeps nothing. It declares the
// operations of all three receivers; those the base lacks are never called.
template <typename TReceiver>
class Quiet : public TReceiver {
  public:
    using X = const XParams&;
    using D = const PAL::CDateAndTime&;
    using T = const char*;
    using L = const Texts&;
    bool TraceMessage(const int&, T) { return true; }
    bool Begin(const unsigned int&) { return true; }
    bool End() { return true; }
    bool ProductIdentifier(T, X) { return true; }
    bool Version(T, X) { return true; }
    bool Categories(L, T, X) { return true; }
    bool Classification(T, X) { return true; }
    bool Description(T, T, T, X) { return true; }
    bool Location(T, T, T, X) { return true; }
    bool Priority(const unsigned char&, X) { return true; }
    bool Status(T, X) { return true; }
    bool Summary(T, T, T, X) { return true; }
    bool DateTimeStart(D, T, X) { return true; }
    bool DateTimeEnd(D, T, X) { return true; }
    bool DateTimeStartLocal(D, X) { return true; }
    bool DateTimeEndLocal(D, X) { return true; }
    bool DateTimeDueLocal(D, X) { return true; }
    bool UniqueIdentifier(T, X) { return true; }
    bool DateTimeCreated(D, X) { return true; }
    bool LastModified(D, X) { return true; }
    bool SequenceNumber(const unsigned short&, X) { return true; }
    bool Attendee(T, T, L, T, T, const PimShared::eRsvpType&, L, L, T, T, T, T, X) { return true; }
    bool Organizer(T, T, T, T, T, X) { return true; }
    bool SendStatus(unsigned char) { return true; }
    bool InstanceName(T) { return true; }
};

// Answers true to everything and keeps nothing: what is measured is the
// codec, not a receiver.
template <class Base>
class TQuiet : public Base {
  public:
    bool Begin(const unsigned&) override { return true; }
    bool End() override { return true; }
    bool BeginEntity() override { return true; }
    bool EndEntity() override { return true; }
    bool AttachmentAvailable(const M::eAttachmentAvailable&) override { return true; }
    bool CutoffState(const unsigned short&) override { return true; }
    bool Comments(const char*) override { return true; }
    bool ContentDescription(const char*) override { return true; }
    bool ContentId(const char*) override { return true; }
    bool ContentTransferEncodingEnum(const M::eContentTransferEncoding&) override { return true; }
    bool ReadStatus(const M::eReadStatus&) override { return true; }
    bool DownloadState(const M::eDownloadState&) override { return true; }
    bool Folder(const char*) override { return true; }
    bool InReplyTo(const char*) override { return true; }
    bool Instance(const char*) override { return true; }
    bool Keywords(const char*) override { return true; }
    bool MessageId(const char*) override { return true; }
    bool MimeVersion(const char*) override { return true; }
    bool OrigDate(const char*) override { return true; }
    bool SendingState(const char*) override { return true; }
    bool OrigDateLocal(const char*) override { return true; }
    bool Priority(const unsigned char&) override { return true; }
    bool References(const char*) override { return true; }
    bool Subject(const char*) override { return true; }
    bool Body(const M::eBodyEncoding&, const M::eBodyCharset&, const void* content,
              const unsigned& length) override {
        benchmark::DoNotOptimize(content);
        benchmark::DoNotOptimize(length);
        return true;
    }
    bool Body(const M::eBodyEncoding&, const M::eBodyCharset&, const char*) override {
        return true;
    }
    bool Body(const char*, const char*, const char*) override { return true; }
    bool ContentDispositionType(const M::eContentDispositionType&, const char*) override {
        return true;
    }
    bool ContentDispositionTypeParam(const M::eContentDispositionParamName&, const char*,
                                     const char*) override {
        return true;
    }
    bool ContentSubtype(const M::eContentSubtype&, const char*) override { return true; }
    bool ContentType(const M::eContentType&, const char*) override { return true; }
    bool ContentTypeParam(const M::eContentParamName&, const M::eContentParamValue&, const char*,
                          const char*) override {
        return true;
    }
    bool Group(const char*, const PAL::TVector<typename Base::tMailbox>&) override { return true; }
    bool Priority(const M::ePriority&) override { return true; }
    bool TraceMessage(const int&, const char*) override { return true; }
};

class QuietEmail : public TQuiet<PimShared::IEmailReceiver> {
  public:
    bool Mailbox(const eMailboxFieldType&, const char*, const char*) override { return true; }
};

class QuietIM : public TQuiet<PimShared::IIMReceiver> {
  public:
    bool Mailbox(const eMailboxFieldType&, eUCIClient, const char*, const char*) override {
        return true;
    }
    bool Direction(const eDirection&) override { return true; }
    bool EntityType(const eEntityType&) override { return true; }
    bool ExtendedData(const PAL::TVector<tExtendedData>&) override { return true; }
    bool ConversationID(const char*) override { return true; }
    bool ConversationName(const char*) override { return true; }
    bool ConversationLastActivity(const char*) override { return true; }
    bool ConversationVersionCounter(const char*) override { return true; }
    bool ConversationSummary(const char*) override { return true; }
    bool OwnerAvailability(ePresenceAvailability) override { return true; }
    bool OwnerText(const char*) override { return true; }
    bool OwnerLastActivity(const char*) override { return true; }
    bool OwnerChatState(eChatState) override { return true; }
    bool ConversationParticipant(eUCIClient, const char*, const char*, eChatState, const char*,
                                 const char*, const char*, ePresenceAvailability, const char*,
                                 const unsigned char&) override {
        return true;
    }
};

}  // namespace PimTlvBench

#endif
