// Any bytes as an original text, a base and item streams through the merge
// (see IcalChecks.h).

#include <cstdio>
#include <cstdlib>

#include "fuzz/IcalChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const char* fault = PimTlvFuzz::CheckIcalMerge(data, size)) {
        std::fprintf(stderr, "ical_merge: %s\n", fault);
        std::abort();
    }
    return 0;
}
