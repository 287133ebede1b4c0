// Any bytes as vCard text. What import writes must read cleanly, export, and
// import again to the very same streams unless the export named a loss.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bridges/vcard/Vcard.h"

namespace {

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "vcard_import: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(reinterpret_cast<const char*>(data), size);
    std::size_t end = 0;
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (item.offset != end || item.size == 0) Fail("items do not tile the streams");
        end += item.size;
    }
    if (end != imported.streams.size()) Fail("streams longer than their items");
    if (imported.items.empty()) return 0;

    const PimBridge::ExportResult exported =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!exported.ok) Fail("the streams of an import do not export");
    if (exported.items.size() != imported.items.size()) Fail("export lost or added items");
    bool clean = true;
    for (const PimBridge::ExportedItem& item : exported.items) {
        if (item.malformed || !item.diagnostics.empty()) Fail("an imported stream reads unclean");
        clean = clean && item.losses.empty();
    }
    const PimBridge::ImportResult again =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!again.ok) Fail("the export does not import");
    if (clean && again.streams != imported.streams) Fail("the export imports to other streams");
    return 0;
}
