// The e-mail formats of the import and export commands: one message (.eml)
// and many (mbox), both through the MIME bridge.
#include <cstring>

#include "Bridges.h"
#include "bridges/mime/MimeBridge.h"

namespace PimTool {

namespace {

bool LooksLikeMbox(const char* text, std::size_t size) {
    return size >= 5 && std::memcmp(text, "From ", 5) == 0;
}

// A header field name (printable characters but the colon) and its colon.
bool LooksLikeEml(const char* text, std::size_t size) {
    std::size_t i = 0;
    while (i < size && text[i] > ' ' && text[i] < 127 && text[i] != ':') ++i;
    return i > 0 && i < size && text[i] == ':';
}

}  // namespace

const FormatAdapter kEmlFormat = {
    "eml",         "an e-mail message",   {".eml", ".msg"},
    &LooksLikeEml, &PimBridge::ImportEml, &PimBridge::ExportEml,
    nullptr,
};

const FormatAdapter kMboxFormat = {
    "mbox",
    "an mbox",
    {".mbox", ".mbx"},
    &LooksLikeMbox,
    &PimBridge::ImportMbox,
    &PimBridge::ExportMbox,
    nullptr,
};

}  // namespace PimTool
