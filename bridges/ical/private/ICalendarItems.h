#ifndef PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARITEMS_H
#define PIMTLV_BRIDGES_ICAL_PRIVATE_ICALENDARITEMS_H

// One item stream's component as export builds it, for the merge, which
// compares and splices components one at a time.

#include <libical/ical.h>

#include <cstdint>
#include <memory>

#include "bridges/common/Bridge.h"
#include "bridges/common/ItemStreams.h"

namespace PimBridge {
namespace Ical {

struct ComponentDeleter {
    void operator()(icalcomponent* c) const { icalcomponent_free(c); }
};
using ComponentPtr = std::unique_ptr<icalcomponent, ComponentDeleter>;

struct BuiltItem {
    ComponentPtr component;      // null when the stream is no event, task or note
    const char* kind = nullptr;  // "event", "task", "note"
    unsigned int instance = 0;   // as the stream gives it
};

// "event", "task" or "note" for an item iCalendar holds, else null.
const char* ItemKindName(const ItemSpan& span);

// Replays the item at span of data into a new component, as export writes
// it; with stamp, its DTSTAMP too. What the parser said and what has no place
// in the component go to item.
BuiltItem BuildItem(const std::uint8_t* data, const ItemSpan& span, bool stamp, ExportedItem& item);

}  // namespace Ical
}  // namespace PimBridge

#endif
