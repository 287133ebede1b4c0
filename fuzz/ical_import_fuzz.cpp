// Any bytes as iCalendar text through the import, its export and the import
// of that (see IcalChecks.h).

#include <cstdio>
#include <cstdlib>

#include "fuzz/IcalChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const char* fault = PimTlvFuzz::CheckIcalImport(data, size)) {
        std::fprintf(stderr, "ical_import: %s\n", fault);
        std::abort();
    }
    return 0;
}
