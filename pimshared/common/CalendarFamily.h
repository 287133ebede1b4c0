#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARFAMILY_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARFAMILY_H

#include "platform/PalExport.h"

namespace PimShared {

/// An attendee's reply-wanted setting. It travels as one unsigned byte (its
/// low 8 bits); eRsvpNotGiven writes no byte at all, and a parser reports an
/// attendee without the byte as eRsvpNotGiven. A byte the sender chose outside
/// the named values arrives as that number, so receivers should treat unknown
/// values as "not false".
enum eRsvpType : unsigned int {
    eRsvpFalse = 0,               ///< no reply is wanted
    eRsvpTrue = 1,                ///< a reply is wanted
    eRsvpNotGiven = 0xFFFFFFFFu,  ///< the setting is absent
};

/// One leaf value as the parsers of the calendar family receive it. Which
/// member is set depends on the element class of the leaf.
union uTlvValue {
    /// The value, by element class: the numbers, a text, or a byte stream's data and length.
    /// @{
    signed char int8;
    short int16;
    unsigned char uint8;
    unsigned short uint16;
    unsigned int uint32;
    int int32;
    const char* text;
    struct {
        /// A byte stream's bytes and their count.
        /// @{
        const void* data;
        unsigned int length;
        /// @}
    } bytes;
    /// @}
};

namespace CalendarFamily {

/// The text of a one-byte status code: 0 "TENTATIVE" up to 11 "DELEGATED";
/// every higher code gives "NEEDS_ACTION" (with an underscore, unlike code 3's
/// "NEEDS-ACTION": older readers depend on both spellings).
PIMTLV_API const char* StatusText(unsigned int code) noexcept;

}  // namespace CalendarFamily
}  // namespace PimShared

#endif
