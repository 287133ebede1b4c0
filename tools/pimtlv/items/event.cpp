// The calendar event (VEVENT) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"

namespace PimTool {

namespace {

using PimShared::ICalendarAttributes;
using PimShared::ICalendarReceiver;

class EventRecorder : public EventTaskRecorder<ICalendarReceiver> {
  public:
    using EventTaskRecorder::EventTaskRecorder;

    bool DateTimeEnd(const PAL::CDateAndTime& dt, const char* zone, const XParams& x) override {
        return m_rec.Put<&ICalendarAttributes::DateTimeEnd>(dt, zone, x);
    }
    bool DateTimeEndLocal(const PAL::CDateAndTime& dt, const XParams& x) override {
        return m_rec.Put<&ICalendarAttributes::DateTimeEndLocal>(dt, x);
    }
};

std::vector<OpEntry> EventOps() {
    using I = ICalendarAttributes;
    return Joined(Joined(CalendarCommonOps<I>(), EventTaskOps<I>()),
                  {
                      Op<&I::DateTimeEnd>("DateTimeEnd", "dateTime", "timeZone", "xParams"),
                      Op<&I::DateTimeEndLocal>("DateTimeEndLocal", "dateTime", "xParams"),
                  });
}

}  // namespace

const ItemAdapter kEventItem = {
    "event",
    CalendarFamilyNames(),
    EventOps(),
    &DecodeWith<PimShared::CTLVCalendarParser, EventRecorder>,
    &EncodeWith<ICalendarAttributes, PimShared::CTLVCalendarCreator>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
