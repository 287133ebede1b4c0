#include "pimshared/common/CalendarFamily.h"

namespace PimShared {
namespace CalendarFamily {

namespace {

constexpr const char* kStatusTexts[] = {
    "TENTATIVE", "CONFIRMED", "CANCELLED", "NEEDS-ACTION", "COMPLETED", "IN-PROGRESS",
    "DRAFT",     "FINAL",     "ACCEPTED",  "SENT",         "DECLINED",  "DELEGATED",
};
static_assert(sizeof kStatusTexts / sizeof kStatusTexts[0] == 12, "status codes are 0 to 11");

}  // namespace

const char* StatusText(unsigned int code) noexcept {
    return code < sizeof kStatusTexts / sizeof kStatusTexts[0] ? kStatusTexts[code]
                                                               : "NEEDS_ACTION";
}

}  // namespace CalendarFamily
}  // namespace PimShared
