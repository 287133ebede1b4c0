#ifndef PIMTLV_PLATFORM_CDATEANDTIME_H
#define PIMTLV_PLATFORM_CDATEANDTIME_H

#include "platform/CString.h"
#include "platform/PalExport.h"

namespace PAL {

/// A calendar date and wall-clock time with microseconds. No time zone is
/// attached: zones travel beside the value as text where the format has one.
class PIMTLV_API CDateAndTime {
  public:
    /// Construction, copying and destruction.
    /// @{
    CDateAndTime() = default;
    CDateAndTime(unsigned int year, unsigned int month, unsigned int day, unsigned int hour = 0,
                 unsigned int minute = 0, unsigned int second = 0,
                 unsigned int microseconds = 0) noexcept;
    /// @}

    /// The fields as set; all 0 for the unset date-time.
    /// @{
    unsigned int getYear() const noexcept { return m_year; }
    unsigned int getMonth() const noexcept { return m_month; }
    unsigned int getDay() const noexcept { return m_day; }
    unsigned int getHour() const noexcept { return m_hour; }
    unsigned int getMinute() const noexcept { return m_minute; }
    unsigned int getSecond() const noexcept { return m_second; }
    unsigned int getMicroseconds() const noexcept { return m_microseconds; }
    /// @}

    /// Set some fields, unchecked, leaving the others.
    /// @{
    void setDate(unsigned int year, unsigned int month, unsigned int day) noexcept;
    void setTime(unsigned int hour, unsigned int minute, unsigned int second) noexcept;
    void setMicroseconds(unsigned int microseconds) noexcept { m_microseconds = microseconds; }
    /// @}

    /// Equal when every field is.
    /// @{
    bool operator==(const CDateAndTime& other) const noexcept;
    bool operator!=(const CDateAndTime& other) const noexcept { return !(*this == other); }
    /// @}

  private:
    unsigned int m_year = 0;
    unsigned int m_month = 0;
    unsigned int m_day = 0;
    unsigned int m_hour = 0;
    unsigned int m_minute = 0;
    unsigned int m_second = 0;
    unsigned int m_microseconds = 0;
};

namespace DateAndTimeUtilities {

/// Text forms of a date-time.
///
/// eDateTimeFormatICalendar (1) is the iCalendar UTC date-time form
/// "YYYYMMDDTHHMMSSZ", for example "20261122T093000Z". ToString always writes
/// that form (four-digit year, zero-padded fields; microseconds are not part
/// of it). FromString accepts it, the same text without the final "Z" (a
/// floating local time), and the date-only form "YYYYMMDD" (midnight); each
/// field must be in its calendar range (month 1-12, day within the month,
/// hour 0-23, minute 0-59, second 0-60). Anything else is refused: false, and
/// the value is left unchanged. Microseconds become 0 on success.
enum eDateTimeFormat : unsigned int {
    eDateTimeFormatNone = 0,
    eDateTimeFormatICalendar = 1,
};

/// An offset from UTC. The codec always passes a default (zero) offset; this
/// host implementation does not shift times by it.
struct STimeZoneOffset {
    int hours = 0;    ///< whole hours, signed
    int minutes = 0;  ///< further minutes
};

/// Returns the text form, or the empty text for a format other than 1.
PIMTLV_API CString ToString(const CDateAndTime& value, eDateTimeFormat format, unsigned int flags,
                            const STimeZoneOffset& offset);
/// Writes the text form into out (reusing its memory); false for format != 1.
PIMTLV_API bool ToString(const CDateAndTime& value, eDateTimeFormat format, unsigned int flags,
                         const STimeZoneOffset& offset, CString& out);

/// Parses text into value as described above; offset may be null.
PIMTLV_API bool FromString(CDateAndTime& value, const CString& text, eDateTimeFormat format,
                           const STimeZoneOffset* offset = nullptr);
PIMTLV_API bool FromString(CDateAndTime& value, const char* text, eDateTimeFormat format,
                           const STimeZoneOffset* offset = nullptr);

}  // namespace DateAndTimeUtilities
}  // namespace PAL

#endif
