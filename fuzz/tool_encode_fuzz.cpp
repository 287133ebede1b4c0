// Any bytes as the JSON document of the pimtlv tool's encode, through the
// tool's own functions (see ToolEncodeCheck.h).

#include "fuzz/ToolEncodeCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return PimTlvFuzz::RunToolEncodeCheck(data, size);
}
