#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYDESCRIPTION_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYDESCRIPTION_H

// The operations that events, tasks and notes share, described once for the
// three items (see ItemDescription.h for the form).

#include "pimshared/common/ItemDescription.h"
#include "pimshared/common/XParam.h"

// Every item of the family has these.
#define PIMTLV_CALENDAR_COMMON_OPERATIONS(OP, OP0, OVERLOAD)                                \
    OP(Begin, "instance")                                                                   \
    OP0(End)                                                                                \
    OP(ProductIdentifier, "text", "xParams")                                                \
    OP(Version, "text", "xParams")                                                          \
    OP(Categories, "categories", "language", "xParams")                                     \
    OP(Classification, "text", "xParams")                                                   \
    OP(Description, "text", "altRep", "language", "xParams")                                \
    OP(Status, "text", "xParams")                                                           \
    OP(Summary, "text", "altRep", "language", "xParams")                                    \
    OP(UniqueIdentifier, "text", "xParams")                                                 \
    OP(DateTimeCreated, "dateTime", "xParams")                                              \
    OP(LastModified, "dateTime", "xParams")                                                 \
    OP(SequenceNumber, "number", "xParams")                                                 \
    OP(Attendee, "address", "cuType", "members", "role", "partStat", "rsvp", "delegatedTo", \
       "delegatedFrom", "sentBy", "commonName", "directory", "language", "xParams")         \
    OP(Organizer, "address", "sentBy", "commonName", "directory", "language", "xParams")    \
    OP(SendStatus, "status")                                                                \
    OP(InstanceName, "name")

// Events and tasks have these beyond the common ones.
#define PIMTLV_CALENDAR_EVENT_TASK_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(Location, "text", "altRep", "language", "xParams")        \
    OP(Priority, "priority", "xParams")                          \
    OP(DateTimeStart, "dateTime", "timeZone", "xParams")         \
    OP(DateTimeStartLocal, "dateTime", "xParams")

namespace PimShared {
namespace Description {

template <>
struct Record<tXParam> {
    static constexpr auto kFields = std::make_tuple(&tXParam::name, &tXParam::value);
    static constexpr auto kNames = Names("name", "value");
};

}  // namespace Description
}  // namespace PimShared

#endif
