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

}  // namespace

bool FormatDiagnostic(PAL::CString& out, const char* fmt, ...) {
    if (fmt == nullptr) return false;
    va_list args;
    va_start(args, fmt);
    out.truncate(0);
    bool ok = true;
    const char* run = fmt;
    const char* p = fmt;
    while (ok && *p != 0) {
        if (*p != '%') {
            ++p;
            continue;
        }
        ok = out.append(run, static_cast<std::size_t>(p - run));
        const char conversion = p[1];
        char number[24];
        char* end = number + sizeof number;
        if (conversion == 'd') {
            const int v = va_arg(args, int);
            const long long wide = v;
            char* start = Digits(end, static_cast<unsigned long long>(wide < 0 ? -wide : wide));
            if (wide < 0) *--start = '-';
            ok = ok && out.append(start, static_cast<std::size_t>(end - start));
        } else if (conversion == 'u') {
            char* start = Digits(end, va_arg(args, unsigned int));
            ok = ok && out.append(start, static_cast<std::size_t>(end - start));
        } else if (conversion == 's') {
            const char* s = va_arg(args, const char*);
            ok = ok && out.append(s == nullptr ? "(null)" : s);
        } else if (conversion == '%') {
            ok = ok && out.append('%');
        } else {
            // Not a shape of ours: copy it as it stands.
            ok = ok && out.append(p, conversion == 0 ? 1 : 2);
        }
        p += conversion == 0 ? 1 : 2;
        run = p;
    }
    if (ok) ok = out.append(run, static_cast<std::size_t>(p - run));
    va_end(args);
    return ok;
}

}  // namespace PimShared
