#ifndef PIMTLV_PIMSHARED_NOTE_INOTERECEIVER_H
#define PIMTLV_PIMSHARED_NOTE_INOTERECEIVER_H

#include "pimshared/note/INoteAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a CTLVNoteParser reports to: the operations of
/// INoteAttributes, slot for slot, called with each property's values when
/// its node closes, then TraceMessage for every diagnostic. Texts and lists are
/// valid only during the call. A false answer to a call made at a leaf ends
/// the walk.
class PIMTLV_API INoteReceiver : public INoteAttributes {
  public:
    /// Code 0 is a trace line, 1 a wrong root, 2 an unexpected element, 4 an
    /// unimplemented property (its values are skipped), 6 an internal or
    /// stream error.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~INoteReceiver() = default;
    /// @}
};

/// A INoteReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CNoteReceiverBase : public INoteReceiver {
  public:
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    bool End() override { return true; }
    bool ProductIdentifier(const char* /*text*/,
                           const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Version(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Categories(const PAL::TVector<const char*>& /*categories*/, const char* /*language*/,
                    const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Classification(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Description(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                     const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Status(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Summary(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                 const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool UniqueIdentifier(const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeCreated(const PAL::CDateAndTime& /*dateTime*/,
                         const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool LastModified(const PAL::CDateAndTime& /*dateTime*/,
                      const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool SequenceNumber(const unsigned short& /*number*/,
                        const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Attendee(const char* /*address*/, const char* /*cuType*/,
                  const PAL::TVector<const char*>& /*members*/, const char* /*role*/,
                  const char* /*partStat*/, const eRsvpType& /*rsvp*/,
                  const PAL::TVector<const char*>& /*delegatedTo*/,
                  const PAL::TVector<const char*>& /*delegatedFrom*/, const char* /*sentBy*/,
                  const char* /*commonName*/, const char* /*directory*/, const char* /*language*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Organizer(const char* /*address*/, const char* /*sentBy*/, const char* /*commonName*/,
                   const char* /*directory*/, const char* /*language*/,
                   const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool SendStatus(unsigned char /*status*/) override { return true; }
    bool InstanceName(const char* /*name*/) override { return true; }
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

}  // namespace PimShared

#endif
