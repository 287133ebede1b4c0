#ifndef PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARITEMS_H
#define PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARITEMS_H

// One item stream's component as export builds it, for the merge, which
// compares and splices components one at a time.

#include <libical/ical.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bridges/common/Bridge.h"
#include "bridges/common/ItemStreams.h"

namespace PimBridge {
namespace Ical {

struct ComponentDeleter {
    void operator()(icalcomponent* c) const { icalcomponent_free(c); }
};
using ComponentPtr = std::unique_ptr<icalcomponent, ComponentDeleter>;

// A zone an item's time names, and whether the time-zone database knows it.
struct UsedZone {
    std::string tzid;
    icaltimezone* zone;
};

struct BuiltItem {
    ComponentPtr component;       // null when the stream is no event, task or note
    const char* kind = nullptr;   // "event", "task", "note"
    unsigned int instance = 0;    // as the stream gives it
    std::vector<UsedZone> zones;  // the zones its times name, in order of first use
};

// A VTIMEZONE for every zone of zones that the time-zone database knows, from
// its definition there, under the very TZID the items use.
std::string ZoneDefinitions(const std::vector<UsedZone>& zones);

// "event", "task" or "note" for an item iCalendar holds, else null.
const char* ItemKindName(const ItemSpan& span);

// Replays the item at span of data into a new component, as export writes
// it; with stamp, its DTSTAMP too. What the parser said and what has no place
// in the component go to item.
BuiltItem BuildItem(const std::uint8_t* data, const ItemSpan& span, bool stamp, ExportedItem& item);

}  // namespace Ical
}  // namespace PimBridge

#endif
