#include "bridges/vcard/Vcard.h"
#include "../Bridges.h"

namespace PimTool {

namespace {

// A vCard file starts with BEGIN:VCARD, after a byte-order mark and empty
// lines at most.
bool LooksLikeVcard(const char* text, std::size_t size) {
    std::size_t i = 0;
    if (size >= 3 && text[0] == '\xEF' && text[1] == '\xBB' && text[2] == '\xBF') i = 3;
    while (i < size && (text[i] == '\r' || text[i] == '\n' || text[i] == ' ' || text[i] == '\t'))
        ++i;
    static const char kBegin[] = "BEGIN:VCARD";
    for (std::size_t k = 0; kBegin[k] != '\0'; ++k, ++i) {
        if (i >= size) return false;
        char c = text[i];
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        if (c != kBegin[k]) return false;
    }
    return true;
}

}  // namespace

const FormatAdapter kVcfFormat = {"vcf",
                                  "vCard",
                                  {".vcf", ".vcard"},
                                  LooksLikeVcard,
                                  PimBridge::ImportVcard,
                                  PimBridge::ExportVcard,
                                  PimBridge::MergeVcard};

}  // namespace PimTool
