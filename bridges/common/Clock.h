#ifndef PIMTLV_BRIDGES_COMMON_CLOCK_H
#define PIMTLV_BRIDGES_COMMON_CLOCK_H

// The bridges' one idea of "now" (an export's DTSTAMP, a merge's
// LAST-MODIFIED or REV). SOURCE_DATE_EPOCH, when set to a number of seconds,
// stands in for the clock so that the same input gives the same output.

#include <cerrno>
#include <cstdlib>
#include <ctime>

namespace PimBridge {

inline std::time_t Now() {
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
        char* end = nullptr;
        errno = 0;
        const long long seconds = std::strtoll(epoch, &end, 10);
        if (end != epoch && *end == '\0' && errno == 0 && seconds >= 0)
            return static_cast<std::time_t>(seconds);
    }
    return std::time(nullptr);
}

}  // namespace PimBridge

#endif
