#ifndef PIMTLV_PIMSHARED_COMMON_DIAGNOSTICFORMAT_H
#define PIMTLV_PIMSHARED_COMMON_DIAGNOSTICFORMAT_H

#include <cstddef>
#include <cstring>

#include "platform/CString.h"
#include "platform/PalExport.h"

namespace PimShared {

// Formats a diagnostic text into out, reusing its memory. The parsers format
// a text for nearly every element they see, so this is a small exact
// formatter instead of vsnprintf: it knows "%d" (int), "%u" (unsigned int),
// "%s" (const char*, null printed as "(null)") and "%%"; every other byte is
// copied. Output is identical to printf's for those shapes.
PIMTLV_API bool FormatDiagnostic(PAL::CString& out, const char* fmt, ...);

// Texts of the message family's refusals (e-mail, instant message, SMS):
// an element of an undefined class, and an element refused in its place, named
// by its class word (ParserCreatorCollection::ClassDisplayName, or "Node End").
constexpr const char* kUnexpectedClassText = "Unexpected class ID = %d with type ID = %d";
constexpr const char* kUnexpectedTypeIdText = "Unexpected %s with type ID = %d";
// A node's closing has a class word of its own; its opening is "Node Begin".
constexpr const char* kNodeEndWord = "Node End";

// The message family's one refusal path: formats kUnexpectedTypeIdText into
// text and reports it to the receiver with code 2; returns the receiver's
// answer. Receiver is any type with TraceMessage(const int&, const char*).
template <typename Receiver>
bool AlertUnexpectedTypeId(Receiver& receiver, PAL::CString& text, const char* kind,
                           unsigned int typeId) {
    FormatDiagnostic(text, kUnexpectedTypeIdText, kind, static_cast<int>(typeId));
    const int code = 2;
    return receiver.TraceMessage(code, text.c_str());
}

// Decimal digits of every 12-bit number, left-aligned and padded with zero
// bytes: the numbers of trace lines are type IDs, so their digits, with the
// text's end after them, are one four-byte copy.
constexpr unsigned int DigitCount12(unsigned int n) {
    return n > 999 ? 4u : n > 99 ? 3u : n > 9 ? 2u : 1u;
}
struct tDecimal12 {
    char digits[4096][8];
};
constexpr tDecimal12 MakeDecimal12() {
    tDecimal12 table{};
    for (unsigned int n = 0; n < 4096; ++n) {
        const unsigned int count = DigitCount12(n);
        for (unsigned int i = count, rest = n; i > 0; --i, rest /= 10) {
            table.digits[n][i - 1] = static_cast<char>('0' + rest % 10);
        }
    }
    return table;
}
inline constexpr tDecimal12 kDecimal12 = MakeDecimal12();

// A trace line of one fixed head and a number ("NodeBegin():  typeId: 202").
// The head is written once into the line's own bytes; each line rewrites only
// the bytes after it, so a parser that traces every element it reads pays a
// copy per element and can never run out of memory for it.
class CTraceLine {
  public:
    // format is the head followed by "%d".
    template <std::size_t N>
    explicit CTraceLine(const char (&format)[N]) : m_head(N - 3) {
        static_assert(N >= 3, "a trace line ends with %d");
        static_assert(N - 3 + kMaxDigits + 1 <= kCapacity, "room for the head and any number");
        static_assert(kMaxDigits + 1 >= sizeof kDecimal12.digits[0], "room for a table copy");
        std::memcpy(m_text, format, m_head);
        m_text[m_head] = 0;
    }
    CTraceLine(const CTraceLine&) = delete;
    CTraceLine& operator=(const CTraceLine&) = delete;

    // The line for number.
    const char* Format(int number) noexcept {
        char* const digits = m_text + m_head;
        if (static_cast<unsigned int>(number) < 4096) {
            // A type ID: the table's eight bytes hold its digits and the
            // text's end.
            std::memcpy(digits, kDecimal12.digits[number], sizeof kDecimal12.digits[number]);
            return m_text;
        }
        unsigned int magnitude =
            number < 0 ? 0u - static_cast<unsigned int>(number) : static_cast<unsigned int>(number);
        std::size_t count = number < 0 ? 2 : 1;
        for (unsigned int rest = magnitude; rest >= 10; rest /= 10) ++count;
        char* out = digits + count;
        *out = 0;
        do {
            *--out = static_cast<char>('0' + magnitude % 10);
            magnitude /= 10;
        } while (magnitude != 0);
        if (number < 0) *--out = '-';
        return m_text;
    }

  private:
    static constexpr std::size_t kMaxDigits = 11;  // "-2147483648"
    static constexpr std::size_t kCapacity = 64;   // the longest head has 52 bytes
    std::size_t m_head;
    char m_text[kCapacity];
};

}  // namespace PimShared

#endif
