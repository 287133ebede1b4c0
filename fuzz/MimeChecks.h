#ifndef PIMTLV_FUZZ_MIMECHECKS_H
#define PIMTLV_FUZZ_MIMECHECKS_H

// The checks of the MIME bridge's fuzz targets, in the shape of the item
// checks (null, or what went wrong), so that a replay can call them too.

#include <cstddef>
#include <cstdint>
#include <string>

#include "bridges/mime/MimeBridge.h"
#include "fuzz/ItemReceivers.h"
#include "pimshared/email/TLVEmailParser.h"

namespace PimTlvFuzz {

// What one import made of the text, as .eml or as mbox: e-mail streams the
// e-mail parser reads without a word, which export and import again.
inline const char* CheckMimeImportAs(const std::uint8_t* data, std::size_t size, bool mbox) {
    const char* text = reinterpret_cast<const char*>(data);
    const PimBridge::ImportResult result =
        mbox ? PimBridge::ImportMbox(text, size) : PimBridge::ImportEml(text, size);
    for (const PimBridge::ImportedItem& item : result.items) {
        MimeMessageLog<PimShared::IEmailReceiver> log;
        log.Start(CallLog::kNever, false);
        PimShared::CTLVEmailParser parser(log);
        const char* error = nullptr;
        unsigned int consumed = 0;
        if (!parser.Parse(result.streams.data() + item.offset, static_cast<unsigned int>(item.size),
                          error, consumed))
            return "an imported stream does not parse";
        if (log.Fault() != nullptr) return log.Fault();
        for (const std::string& call : log.Lines()) {
            if (call.rfind("Trace(", 0) == 0) return "an imported stream reads with a trace";
        }
    }
    if (!result.ok || result.items.empty()) return nullptr;
    const PimBridge::ExportResult exported =
        mbox ? PimBridge::ExportMbox(result.streams.data(), result.streams.size())
             : PimBridge::ExportEml(result.streams.data(), result.streams.size());
    if (!exported.ok) return "the streams of an import do not export";
    const PimBridge::ImportResult again =
        mbox ? PimBridge::ImportMbox(exported.text.data(), exported.text.size())
             : PimBridge::ImportEml(exported.text.data(), exported.text.size());
    if (!again.ok) return "the export does not import";
    if (mbox && again.items.size() != result.items.size()) return "the mbox export lost messages";
    return nullptr;
}

// Any bytes as an .eml and as an mbox.
inline const char* CheckMimeImport(const std::uint8_t* data, std::size_t size) {
    const char* fault = CheckMimeImportAs(data, size, false);
    return fault != nullptr ? fault : CheckMimeImportAs(data, size, true);
}

// Any bytes as a file of e-mail streams, written as one message and as an
// mbox. An export that succeeds gives text that imports again.
inline const char* CheckMimeExport(const std::uint8_t* data, std::size_t size) {
    const PimBridge::ExportResult eml = PimBridge::ExportEml(data, size);
    if (eml.ok && !eml.text.empty() && !PimBridge::ImportEml(eml.text.data(), eml.text.size()).ok)
        return "the .eml export does not import";
    const PimBridge::ExportResult mbox = PimBridge::ExportMbox(data, size);
    // (An item whose stream breaks before it begins writes no message, so
    // the count of messages is checked on the import side only.)
    if (mbox.ok && !mbox.text.empty() &&
        !PimBridge::ImportMbox(mbox.text.data(), mbox.text.size()).ok)
        return "the mbox export does not import";
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
