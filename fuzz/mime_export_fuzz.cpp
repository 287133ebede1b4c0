// Any bytes as a file of e-mail streams, written as one message and as an
// mbox. An export that succeeds gives text that imports again.
#include <cstdint>
#include <cstdlib>

#include "fuzz/MimeChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (PimTlvFuzz::CheckMimeExport(data, size) != nullptr) std::abort();
    return 0;
}
