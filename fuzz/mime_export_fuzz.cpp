// Any bytes as a file of e-mail streams, written as one message and as an
// mbox. An export that succeeds gives text that imports again.
#include <cstdint>
#include <cstdlib>

#include "bridges/mime/MimeBridge.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult eml = PimBridge::ExportEml(data, size);
    if (eml.ok && !eml.text.empty() && !PimBridge::ImportEml(eml.text.data(), eml.text.size()).ok)
        std::abort();
    const PimBridge::ExportResult mbox = PimBridge::ExportMbox(data, size);
    if (mbox.ok && !mbox.text.empty() &&
        !PimBridge::ImportMbox(mbox.text.data(), mbox.text.size()).ok)
        std::abort();
    return 0;
}
