#ifndef PIMTLV_PIMSHARED_COMMON_RECEIVERBASES_H
#define PIMTLV_PIMSHARED_COMMON_RECEIVERBASES_H

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimShared {

/// The calls every receiver of the calendar family (event, task, note) has,
/// answering true and keeping nothing; each item's do-nothing receiver adds
/// its own calls on top.
template <typename Receiver>
class TCalendarFamilyReceiverBase : public Receiver {
  public:
    /// Answers true.
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    /// Answers true.
    bool End() override { return true; }
    /// Answers true.
    bool ProductIdentifier(const char* /*text*/,
                           const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Version(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Categories(const PAL::TVector<const char*>& /*categories*/, const char* /*language*/,
                    const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Classification(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Description(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                     const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Status(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Summary(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                 const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool UniqueIdentifier(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool DateTimeCreated(const PAL::CDateAndTime& /*dateTime*/,
                         const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool LastModified(const PAL::CDateAndTime& /*dateTime*/,
                      const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool SequenceNumber(const unsigned short& /*number*/,
                        const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Attendee(const char* /*address*/, const char* /*cuType*/,
                  const PAL::TVector<const char*>& /*members*/, const char* /*role*/,
                  const char* /*partStat*/, const eRsvpType& /*rsvp*/,
                  const PAL::TVector<const char*>& /*delegatedTo*/,
                  const PAL::TVector<const char*>& /*delegatedFrom*/, const char* /*sentBy*/,
                  const char* /*commonName*/, const char* /*directory*/, const char* /*language*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool Organizer(const char* /*address*/, const char* /*sentBy*/, const char* /*commonName*/,
                   const char* /*directory*/, const char* /*language*/,
                   const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    /// Answers true.
    bool SendStatus(unsigned char /*status*/) override { return true; }
    /// Answers true.
    bool InstanceName(const char* /*name*/) override { return true; }
    /// Answers true.
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

/// The calls the e-mail's and the instant message's receivers share,
/// answering true and keeping nothing; each item's do-nothing receiver adds
/// its own calls on top.
template <typename Receiver>
class TMimeMessageReceiverBase : public Receiver {
  public:
    /// Answers true.
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    /// Answers true.
    bool End() override { return true; }
    /// Answers true.
    bool BeginEntity() override { return true; }
    /// Answers true.
    bool EndEntity() override { return true; }
    /// Answers true.
    bool AttachmentAvailable(
        const IMimeMessageAttributes::eAttachmentAvailable& /*value*/) override {
        return true;
    }
    /// Answers true.
    bool CutoffState(const unsigned short& /*value*/) override { return true; }
    /// Answers true.
    bool Comments(const char* /*text*/) override { return true; }
    /// Answers true.
    bool ContentDescription(const char* /*text*/) override { return true; }
    /// Answers true.
    bool ContentId(const char* /*text*/) override { return true; }
    /// Answers true.
    bool ContentTransferEncodingEnum(
        const IMimeMessageAttributes::eContentTransferEncoding& /*value*/) override {
        return true;
    }
    /// Answers true.
    bool ReadStatus(const IMimeMessageAttributes::eReadStatus& /*value*/) override { return true; }
    /// Answers true.
    bool DownloadState(const IMimeMessageAttributes::eDownloadState& /*value*/) override {
        return true;
    }
    /// Answers true.
    bool Folder(const char* /*text*/) override { return true; }
    /// Answers true.
    bool InReplyTo(const char* /*text*/) override { return true; }
    /// Answers true.
    bool Instance(const char* /*text*/) override { return true; }
    /// Answers true.
    bool Keywords(const char* /*text*/) override { return true; }
    /// Answers true.
    bool MessageId(const char* /*text*/) override { return true; }
    /// Answers true.
    bool MimeVersion(const char* /*text*/) override { return true; }
    /// Answers true.
    bool OrigDate(const char* /*text*/) override { return true; }
    /// Answers true.
    bool SendingState(const char* /*text*/) override { return true; }
    /// Answers true.
    bool OrigDateLocal(const char* /*text*/) override { return true; }
    /// Answers true.
    bool Priority(const unsigned char& /*level*/) override { return true; }
    /// Answers true.
    bool Priority(const IMimeMessageAttributes::ePriority& /*priority*/) override { return true; }
    /// Answers true.
    bool References(const char* /*text*/) override { return true; }
    /// Answers true.
    bool Subject(const char* /*text*/) override { return true; }
    /// Answers true.
    bool Body(const IMimeMessageAttributes::eBodyEncoding& /*encoding*/,
              const IMimeMessageAttributes::eBodyCharset& /*charset*/, const void* /*content*/,
              const unsigned int& /*contentLength*/) override {
        return true;
    }
    /// Answers true.
    bool Body(const IMimeMessageAttributes::eBodyEncoding& /*encoding*/,
              const IMimeMessageAttributes::eBodyCharset& /*charset*/,
              const char* /*contentLink*/) override {
        return true;
    }
    /// Answers true.
    bool Body(const char* /*contentTypeToken*/, const char* /*contentSubtypeToken*/,
              const char* /*contentLink*/) override {
        return true;
    }
    /// Answers true.
    bool ContentDispositionType(const IMimeMessageAttributes::eContentDispositionType& /*type*/,
                                const char* /*token*/) override {
        return true;
    }
    /// Answers true.
    bool ContentDispositionTypeParam(
        const IMimeMessageAttributes::eContentDispositionParamName& /*name*/, const char* /*value*/,
        const char* /*nameToken*/) override {
        return true;
    }
    /// Answers true.
    bool ContentSubtype(const IMimeMessageAttributes::eContentSubtype& /*subtype*/,
                        const char* /*token*/) override {
        return true;
    }
    /// Answers true.
    bool ContentType(const IMimeMessageAttributes::eContentType& /*type*/,
                     const char* /*token*/) override {
        return true;
    }
    /// Answers true.
    bool ContentTypeParam(const IMimeMessageAttributes::eContentParamName& /*name*/,
                          const IMimeMessageAttributes::eContentParamValue& /*value*/,
                          const char* /*nameToken*/, const char* /*valueToken*/) override {
        return true;
    }
    /// Answers true.
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

}  // namespace PimShared

#endif
