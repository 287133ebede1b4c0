#ifndef PIMTLV_PIMSHARED_CALENDAR_ICALENDARRECEIVER_H
#define PIMTLV_PIMSHARED_CALENDAR_ICALENDARRECEIVER_H

#include "pimshared/calendar/ICalendarAttributes.h"
#include "pimshared/common/ItemDescription.h"
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

/// An ICalendarReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CCalendarReceiverBase : public ICalendarReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(ICalendarAttributes, PIMTLV_EVENT_OPERATIONS)
};

}  // namespace PimShared

#endif
