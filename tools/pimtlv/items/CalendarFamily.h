#ifndef PIMTLV_TOOL_ITEMS_CALENDARFAMILY_H
#define PIMTLV_TOOL_ITEMS_CALENDARFAMILY_H

// What the adapters of events, tasks and notes share: one numbering, the
// codec of the reply-wanted setting and the list of asymmetries.

#include <vector>

#include "Items.h"
#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimTool {

// The reply-wanted setting: null when not given, else its number.
template <>
struct Codec<PimShared::eRsvpType> {
    static Json ToJson(PimShared::eRsvpType v) {
        return v == PimShared::eRsvpNotGiven ? Json(nullptr) : Json(static_cast<unsigned int>(v));
    }
};

// Type-ID names of the whole family; an item simply never uses the others.
std::vector<TypeName> CalendarFamilyNames();

// The family's parser and creator stay apart on purpose in a few places; the
// tool's help lists them.
constexpr const char* kCalendarAsymmetries =
    "InstanceName is read but never written (the creator refuses it); a status "
    "sent as a one-byte code comes back as its text; 1008 date-times and "
    "date-times without the final Z are written back as 1007 UTC texts; an item "
    "without properties comes back without its End (the parser reports its "
    "closing nodes).";

}  // namespace PimTool

#endif
