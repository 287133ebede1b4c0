// Any bytes as a file of item streams through the export and the import of
// what it wrote (see IcalChecks.h).

#include <cstdio>
#include <cstdlib>

#include "fuzz/IcalChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const char* fault = PimTlvFuzz::CheckIcalExport(data, size)) {
        std::fprintf(stderr, "ical_export: %s\n", fault);
        std::abort();
    }
    return 0;
}
