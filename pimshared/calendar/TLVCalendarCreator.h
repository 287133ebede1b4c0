#ifndef PIMTLV_PIMSHARED_CALENDAR_TLVCALENDARCREATOR_H
#define PIMTLV_PIMSHARED_CALENDAR_TLVCALENDARCREATOR_H

#include "pimshared/calendar/ICalendarAttributes.h"
#include "pimshared/common/CalendarFamilyCreator.h"
#include "pimshared/common/TypeIds.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one calendar event: node 1 { node 103 { UInt32 10 = instance,
/// property nodes in call order } }. The operations it shares with tasks and
/// notes come from the family's writers; the end times are the event's own.
/// InstanceName writes nothing and answers false.
class PIMTLV_API CTLVCalendarCreator
    : public TEventTaskCreator<ICalendarCreator, TypeIdObjTypeCalendarTask, TypeIdCompTypeVevent> {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVCalendarCreator() = default;
    /// @}
    ~CTLVCalendarCreator() override;

    /// Writes the event's end, with or without its zone, as ICalendarAttributes describes it.
    /// @{
    bool DateTimeEnd(const PAL::CDateAndTime& dateTime, const char* timeZone,
                     const PAL::TVector<tXParam>& xParams) override;
    bool DateTimeEndLocal(const PAL::CDateAndTime& dateTime,
                          const PAL::TVector<tXParam>& xParams) override;
    /// @}
};

}  // namespace PimShared

#endif
