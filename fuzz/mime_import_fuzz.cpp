// Any bytes as an .eml and as an mbox. Whatever the import makes of them
// must be e-mail streams the e-mail parser reads without a word, and those
// must export and import again.
#include <cstdint>
#include <cstdlib>

#include "fuzz/MimeChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (PimTlvFuzz::CheckMimeImport(data, size) != nullptr) std::abort();
    return 0;
}
