// Any bytes as an .eml and as an mbox. Whatever the import makes of them
// must be e-mail streams the e-mail parser reads without a word, and those
// must export and import again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bridges/mime/MimeBridge.h"
#include "fuzz/ItemReceivers.h"
#include "pimshared/email/TLVEmailParser.h"

namespace {

void Check(const PimBridge::ImportResult& result, bool mbox) {
    for (const PimBridge::ImportedItem& item : result.items) {
        PimTlvFuzz::MimeMessageLog<PimShared::IEmailReceiver> log;
        log.Start(PimTlvFuzz::CallLog::kNever, false);
        PimShared::CTLVEmailParser parser(log);
        const char* error = nullptr;
        unsigned int consumed = 0;
        if (!parser.Parse(result.streams.data() + item.offset, static_cast<unsigned int>(item.size),
                          error, consumed) ||
            log.Fault() != nullptr)
            std::abort();
        for (const std::string& call : log.Lines()) {
            if (call.rfind("Trace(", 0) == 0) std::abort();
        }
    }
    if (!result.ok || result.items.empty()) return;
    const PimBridge::ExportResult text =
        mbox ? PimBridge::ExportMbox(result.streams.data(), result.streams.size())
             : PimBridge::ExportEml(result.streams.data(), result.streams.size());
    if (!text.ok) std::abort();
    const PimBridge::ImportResult again =
        mbox ? PimBridge::ImportMbox(text.text.data(), text.text.size())
             : PimBridge::ImportEml(text.text.data(), text.text.size());
    if (!again.ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const char* text = reinterpret_cast<const char*>(data);
    Check(PimBridge::ImportEml(text, size), false);
    Check(PimBridge::ImportMbox(text, size), true);
    return 0;
}
