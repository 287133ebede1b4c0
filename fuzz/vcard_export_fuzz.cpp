// Any bytes as a file of contact streams. Whatever export writes must be
// vCard that import reads, one card per exported item, and the second export
// of that must equal the first unless something was lost on the way.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bridges/vcard/Vcard.h"

namespace {

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "vcard_export: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const PimBridge::ExportResult exported = PimBridge::ExportVcard(data, size);
    if (!exported.ok) {
        if (!exported.text.empty() || exported.error.empty()) Fail("a failed export says nothing");
        return 0;
    }
    if (exported.items.empty()) return 0;
    for (std::size_t i = 0; i + 1 < exported.text.size(); ++i) {
        if (exported.text[i] == '\n' && exported.text[i - 1] != '\r') Fail("a bare LF");
    }
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!imported.ok) Fail("the export does not import");
    if (imported.items.size() != exported.items.size()) Fail("cards and items differ in number");
    bool clean = true;
    for (const PimBridge::ImportedItem& item : imported.items) clean = clean && item.losses.empty();
    if (!clean) return 0;
    const PimBridge::ExportResult second =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!second.ok) Fail("the streams of an import do not export");
    for (const PimBridge::ExportedItem& item : second.items) {
        if (!item.losses.empty()) return 0;
    }
    if (second.text != exported.text) Fail("the second export differs from the first");
    return 0;
}
