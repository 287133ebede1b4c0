#include "pimshared/common/DiagnosticFormat.h"

#include <cstdarg>
#include <cstring>

namespace PimShared {

namespace {

// Decimal digits of magnitude, written backwards from end; returns the start.
char* Digits(char* end, unsigned long long magnitude) {
    do {
        *--end = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    return end;
}

// Collects the text in a stack buffer and hands it to the string in one
// assignment; pieces that do not fit go straight to the string.
class Sink {
  public:
    explicit Sink(PAL::CString& out) : m_out(out) {}

    void Put(const char* text, std::size_t length) {
        if (length <= sizeof m_buffer - m_used) {
            std::memcpy(m_buffer + m_used, text, length);
            m_used += length;
            return;
        }
        Flush();
        m_ok = m_ok && m_out.append(text, length);
    }

    bool Finish() {
        Flush();
        return m_ok;
    }

  private:
    void Flush() {
        if (m_first) {
            m_ok = m_out.assign(m_buffer, m_used);
            m_first = false;
        } else if (m_used != 0) {
            m_ok = m_ok && m_out.append(m_buffer, m_used);
        }
        m_used = 0;
    }

    PAL::CString& m_out;
    char m_buffer[256];
    std::size_t m_used = 0;
    bool m_first = true;
    bool m_ok = true;
};

// Writes number in decimal, sign included, backwards from end.
char* SignedDigits(char* end, long long number) {
    char* start = Digits(end, static_cast<unsigned long long>(number < 0 ? -number : number));
    if (number < 0) *--start = '-';
    return start;
}

}  // namespace

bool FormatDiagnostic(PAL::CString& out, const char* fmt, ...) {
    if (fmt == nullptr) return false;
    va_list args;
    va_start(args, fmt);
    Sink sink(out);
    const char* p = fmt;
    for (;;) {
        const char* percent = std::strchr(p, '%');
        if (percent == nullptr) {
            sink.Put(p, std::strlen(p));
            break;
        }
        sink.Put(p, static_cast<std::size_t>(percent - p));
        const char conversion = percent[1];
        char number[24];
        char* end = number + sizeof number;
        if (conversion == 'd') {
            char* start = SignedDigits(end, va_arg(args, int));
            sink.Put(start, static_cast<std::size_t>(end - start));
        } else if (conversion == 'u') {
            char* start = Digits(end, va_arg(args, unsigned int));
            sink.Put(start, static_cast<std::size_t>(end - start));
        } else if (conversion == 's') {
            const char* s = va_arg(args, const char*);
            if (s == nullptr) s = "(null)";
            sink.Put(s, std::strlen(s));
        } else if (conversion == '%') {
            sink.Put("%", 1);
        } else {
            // Not a shape of ours: copy it as it stands.
            sink.Put(percent, conversion == 0 ? 1 : 2);
        }
        if (conversion == 0) break;
        p = percent + 2;
    }
    va_end(args);
    return sink.Finish();
}

}  // namespace PimShared
