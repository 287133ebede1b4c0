#include <string>

#include "bridges/common/ItemStreams.h"
#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/CardWriter.h"

namespace PimBridge {

ExportResult ExportVcard(const std::uint8_t* data, std::size_t size) {
    ExportResult result;
    if (data == nullptr) size = 0;
    std::string why;
    std::string notContact;
    Vcard::CardWriter writer(Vcard::Version::V30);
    Vcard::CardLines card;
    const bool cut = ForEachItem(
        data, size,
        [&](const ItemSpan& span) {
            if (span.root != 0) {
                notContact = "item at offset " + std::to_string(span.offset) +
                             " is no contact (root node " + std::to_string(span.root) +
                             "): vCard carries contacts only";
                return false;
            }
            writer.Write(data + span.offset, span.size, card);
            result.text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
            for (const Vcard::OutLine& line : card.lines) Vcard::EmitLine(result.text, line);
            result.text += "END:VCARD\r\n";
            ExportedItem& item = result.items.emplace_back(std::move(card.item));
            item.kind = "contact";
            item.offset = span.offset;
            return true;
        },
        why);
    if (!cut || !notContact.empty()) {
        result.error = cut ? notContact : why;
        result.text.clear();
        return result;
    }
    result.ok = true;
    return result;
}

}  // namespace PimBridge
