// Reads a sequence of CTLVCreator calls from the input and checks the bytes
// of every GetData against an independent writer (see TlvRoundTrip.h).

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/TlvRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const char* fault = PimTlvFuzz::CheckRoundTrip(data, size)) {
        std::fprintf(stderr, "TLV round trip fault: %s\n", fault);
        std::abort();
    }
    return 0;
}
