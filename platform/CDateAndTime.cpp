#include "platform/CDateAndTime.h"

namespace PAL {

CDateAndTime::CDateAndTime(unsigned int year, unsigned int month, unsigned int day,
                           unsigned int hour, unsigned int minute, unsigned int second,
                           unsigned int microseconds) noexcept
    : m_year(year),
      m_month(month),
      m_day(day),
      m_hour(hour),
      m_minute(minute),
      m_second(second),
      m_microseconds(microseconds) {}

void CDateAndTime::setDate(unsigned int year, unsigned int month, unsigned int day) noexcept {
    m_year = year;
    m_month = month;
    m_day = day;
}

void CDateAndTime::setTime(unsigned int hour, unsigned int minute, unsigned int second) noexcept {
    m_hour = hour;
    m_minute = minute;
    m_second = second;
}

bool CDateAndTime::operator==(const CDateAndTime& o) const noexcept {
    return m_year == o.m_year && m_month == o.m_month && m_day == o.m_day && m_hour == o.m_hour &&
           m_minute == o.m_minute && m_second == o.m_second && m_microseconds == o.m_microseconds;
}

namespace DateAndTimeUtilities {
namespace {

// Writes value as exactly width decimal digits (the high digits of a larger
// value are dropped, so the text keeps its fixed shape).
char* PutDigits(char* out, unsigned int value, unsigned int width) {
    for (unsigned int i = width; i > 0; --i) {
        out[i - 1] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return out + width;
}

// Reads Width digits; false at the first byte that is no digit, a text's end
// included, so that nothing after the end is read.
template <unsigned int Width>
bool ReadDigits(const char* text, unsigned int& value) {
    unsigned int read = 0;
    for (unsigned int i = 0; i < Width; ++i) {
        const unsigned int digit =
            static_cast<unsigned char>(text[i]) - static_cast<unsigned int>('0');
        if (digit > 9) return false;
        read = read * 10 + digit;
    }
    value = read;
    return true;
}

unsigned int DaysInMonth(unsigned int year, unsigned int month) {
    static constexpr unsigned char kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month == 2 && ((year % 4 == 0 && year % 100 != 0) || year % 400 == 0)) return 29;
    return kDays[month - 1];
}

constexpr unsigned int kICalendarLength = 16;  // YYYYMMDDTHHMMSSZ

}  // namespace

bool ToString(const CDateAndTime& value, eDateTimeFormat format, unsigned int flags,
              const STimeZoneOffset& offset, CString& out) {
    (void)flags;
    (void)offset;
    if (format != eDateTimeFormatICalendar) return false;
    char text[kICalendarLength];
    char* p = PutDigits(text, value.getYear(), 4);
    p = PutDigits(p, value.getMonth(), 2);
    p = PutDigits(p, value.getDay(), 2);
    *p++ = 'T';
    p = PutDigits(p, value.getHour(), 2);
    p = PutDigits(p, value.getMinute(), 2);
    p = PutDigits(p, value.getSecond(), 2);
    *p = 'Z';
    return out.assign(text, kICalendarLength);
}

CString ToString(const CDateAndTime& value, eDateTimeFormat format, unsigned int flags,
                 const STimeZoneOffset& offset) {
    CString out;
    ToString(value, format, flags, offset, out);
    return out;
}

bool FromString(CDateAndTime& value, const char* text, eDateTimeFormat format,
                const STimeZoneOffset* offset) {
    (void)offset;
    if (format != eDateTimeFormatICalendar || text == nullptr) return false;
    // YYYYMMDD, YYYYMMDDTHHMMSS or YYYYMMDDTHHMMSSZ, read front to back: each
    // byte is looked at only once the ones before it were what they must be.
    unsigned int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (!ReadDigits<4>(text, year) || !ReadDigits<2>(text + 4, month) ||
        !ReadDigits<2>(text + 6, day)) {
        return false;
    }
    if (text[8] != 0) {
        if (text[8] != 'T' || !ReadDigits<2>(text + 9, hour) || !ReadDigits<2>(text + 11, minute) ||
            !ReadDigits<2>(text + 13, second)) {
            return false;
        }
        if (text[15] != 0 && (text[15] != 'Z' || text[16] != 0)) return false;
    }
    if (month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month) || hour > 23 ||
        minute > 59 || second > 60) {
        return false;
    }
    value = CDateAndTime(year, month, day, hour, minute, second, 0);
    return true;
}

bool FromString(CDateAndTime& value, const CString& text, eDateTimeFormat format,
                const STimeZoneOffset* offset) {
    return FromString(value, text.c_str(), format, offset);
}

}  // namespace DateAndTimeUtilities
}  // namespace PAL
