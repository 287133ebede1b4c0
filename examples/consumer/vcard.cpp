// The installed vCard bridge: a card into a contact stream and back.
#include <string>

#include "bridges/vcard/Vcard.h"

int main() {
    const std::string card = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Lee\r\nEND:VCARD\r\n";
    const PimBridge::ImportResult in = PimBridge::ImportVcard(card.data(), card.size());
    if (!in.ok || in.items.size() != 1) return 1;
    const PimBridge::ExportResult out =
        PimBridge::ExportVcard(in.streams.data(), in.streams.size());
    return out.ok && out.text == card ? 0 : 1;
}
