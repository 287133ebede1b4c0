#ifndef PIMTLV_PIMSHARED_CALENDAR_ICALENDARRECEIVER_H
#define PIMTLV_PIMSHARED_CALENDAR_ICALENDARRECEIVER_H

#include "pimshared/calendar/ICalendarAttributes.h"
#include "pimshared/common/ReceiverBases.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a CTLVCalendarParser reports to: the operations of
/// ICalendarAttributes, slot for slot, called with each property's values when
/// its node closes, then TraceMessage for every diagnostic. Texts and lists are
/// valid only during the call. A false answer to a call made at a leaf ends
/// the walk.
class PIMTLV_API ICalendarReceiver : public ICalendarAttributes {
  public:
    /// Code 0 is a trace line, 1 a wrong root, 2 an unexpected element, 4 an
    /// unimplemented property (its values are skipped), 6 an internal or
    /// stream error.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ICalendarReceiver() = default;
    /// @}
};

/// A ICalendarReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CCalendarReceiverBase : public TCalendarFamilyReceiverBase<ICalendarReceiver> {
  public:
    bool Location(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Priority(const unsigned char& /*priority*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeStart(const PAL::CDateAndTime& /*dateTime*/, const char* /*timeZone*/,
                       const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeEnd(const PAL::CDateAndTime& /*dateTime*/, const char* /*timeZone*/,
                     const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeStartLocal(const PAL::CDateAndTime& /*dateTime*/,
                            const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeEndLocal(const PAL::CDateAndTime& /*dateTime*/,
                          const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
};

}  // namespace PimShared

#endif
