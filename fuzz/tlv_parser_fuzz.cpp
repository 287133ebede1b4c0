// Walks arbitrary bytes with CTLVParser and checks every promise the walk
// makes to its target (see TlvWalkCheck.h). The last bytes of the input choose
// which leaf the target refuses, so refusals land everywhere in the stream.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/TlvWalkCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::size_t refuseAt = 0;
    for (std::size_t i = size > 2 ? size - 2 : 0; i < size; ++i)
        refuseAt = refuseAt * 256 + data[i];
    const PimTlvFuzz::WalkResult walk = PimTlvFuzz::CheckWalk(data, size, refuseAt);
    const char* fault = walk.fault;
    if (fault == nullptr && walk.ok) fault = PimTlvFuzz::CheckRebuild(data, size);
    if (fault != nullptr) {
        std::fprintf(stderr, "TLV walk fault: %s\n", fault);
        std::abort();
    }
    return 0;
}
