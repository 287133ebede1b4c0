#include <string>

#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/CardWriter.h"

namespace PimBridge {

ExportResult ExportVcard(const std::uint8_t* data, std::size_t size) {
    ExportResult result;
    if (data == nullptr) size = 0;
    std::string why;
    Vcard::CardWriter writer(Vcard::Version::V30);
    Vcard::CardLines card;
    const bool cut = Vcard::ForEachContact(
        data, size,
        [&](const ItemSpan& span) {
            result.text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
            writer.Write(data + span.offset, span.size, card, &result.text);
            result.text += "END:VCARD\r\n";
            ExportedItem& item = result.items.emplace_back(std::move(card.item));
            item.kind = "contact";
            item.offset = span.offset;
            return true;
        },
        why);
    if (!cut) {
        result.error = why;
        result.text.clear();
        return result;
    }
    result.ok = true;
    return result;
}

}  // namespace PimBridge
