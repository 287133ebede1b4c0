#ifndef PIMTLV_FUZZ_VCARDCHECKS_H
#define PIMTLV_FUZZ_VCARDCHECKS_H

// The checks of the vCard bridge's fuzz targets, in the shape of the item
// checks (null, or what went wrong), so that a replay can call them too.

#include <cstddef>
#include <cstdint>
#include <string>

#include "bridges/vcard/Vcard.h"
#include "fuzz/ItemParserChecks.h"

namespace PimTlvFuzz {

// Any bytes as vCard text. What import writes must read cleanly, export, and
// import again to the very same streams unless the export named a loss.
inline const char* CheckVcardImport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(reinterpret_cast<const char*>(data), size);
    std::size_t end = 0;
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (item.offset != end || item.size == 0) return "items do not tile the streams";
        end += item.size;
    }
    if (end != imported.streams.size()) return "streams longer than their items";
    if (imported.items.empty()) return nullptr;

    const PimBridge::ExportResult exported =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!exported.ok) return "the streams of an import do not export";
    if (exported.items.size() != imported.items.size()) return "export lost or added items";
    bool clean = true;
    for (const PimBridge::ExportedItem& item : exported.items) {
        if (item.malformed || !item.diagnostics.empty()) return "an imported stream reads unclean";
        clean = clean && item.losses.empty();
    }
    const PimBridge::ImportResult again =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!again.ok) return "the export does not import";
    if (clean && again.streams != imported.streams) return "the export imports to other streams";
    return nullptr;
}

// Any bytes as a file of contact streams. What export writes must be CRLF
// text that import reads to one card per item, and, unless either side named
// a loss, the export of that import must be the same text.
inline const char* CheckVcardExport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult exported = PimBridge::ExportVcard(data, size);
    if (!exported.ok) {
        return exported.text.empty() && !exported.error.empty() ? nullptr
                                                                : "a failed export says nothing";
    }
    if (exported.items.empty()) return nullptr;
    for (std::size_t i = 0; i < exported.text.size(); ++i) {
        if (exported.text[i] == '\n' && (i == 0 || exported.text[i - 1] != '\r'))
            return "a bare LF";
    }
    const PimBridge::ImportResult imported =
        PimBridge::ImportVcard(exported.text.data(), exported.text.size());
    if (!imported.ok) return "the export does not import";
    if (imported.items.size() != exported.items.size()) return "cards and items differ in number";
    for (const PimBridge::ImportedItem& item : imported.items) {
        if (!item.losses.empty()) return nullptr;
    }
    const PimBridge::ExportResult second =
        PimBridge::ExportVcard(imported.streams.data(), imported.streams.size());
    if (!second.ok) return "the streams of an import do not export";
    for (const PimBridge::ExportedItem& item : second.items) {
        if (!item.losses.empty()) return nullptr;
    }
    return second.text == exported.text ? nullptr : "the second export differs from the first";
}

}  // namespace PimTlvFuzz

#endif
