#ifndef PIMTLV_BRIDGES_VCARD_VCARD_H
#define PIMTLV_BRIDGES_VCARD_VCARD_H

// vCard files and contact streams. Import reads cards of versions 2.1, 3.0
// and 4.0 and writes each as one contact stream, in file order; export writes
// every contact stream of a file of streams as a vCard 3.0 card; merge writes
// them onto the cards they came from, in the version each card had. What one side
// has no place for is named in the result, never dropped silently.

#include <cstddef>
#include <cstdint>

#include "bridges/common/Bridge.h"
#include "bridges/common/Merge.h"

namespace PimBridge {

/// Every card of text (UTF-8, or what its CHARSET parameters say) as contact
/// streams one after another. The instance number of each contact is its
/// position in the file, from 0. Fails on a line that is no content line, a
/// card without its END line, or text without any card; the cards before the
/// fault are kept in the result.
PIMTLV_BRIDGE_API ImportResult ImportVcard(const char* text, std::size_t size);

/// Every item of a file of contact streams as a vCard 3.0 card (CRLF lines,
/// folded at 75 octets). A stream its parser stops on is written up to the
/// fault and marked malformed. Fails when the file cannot be cut into items or
/// holds an item other than a contact.
PIMTLV_BRIDGE_API ExportResult ExportVcard(const std::uint8_t* data, std::size_t size);

// The contact streams of data merged onto the cards of original (a .vcf file
// as a sync service keeps it), each item matched to its card as Merge.h says:
// by UID, or by its instance number (the card's position in the file) when
// neither has one. Of a matched card, what the contact carries comes from the
// item: changed values change, lines the item no longer has go, new ones are
// added. The rest stays as the original wrote it: lines the contact has no
// place for (GENDER, ANNIVERSARY, IMPP, URL;TYPE, X-...), parameters of
// carried lines it cannot hold, groups, the card's version (2.1, 3.0 and 4.0
// are written as such) and the text outside cards. A changed card's REV
// becomes the time of the merge (PimBridge::Now(), UTC; added where the card
// had none); an unchanged card is given back byte for byte. An item without a card is appended as a
// plain export writes it; cards no item matched stay as they are.
//
// With options.base (the text sent to the device) the merge is three-way, one
// property name at a time: a property the device changed and the original did
// not takes the device's lines, one the original changed keeps the
// original's, one changed on both sides differently is a conflict, won by the
// original unless options.preferDevice.
//
// Fails (with the line) on an original or base the import would refuse, and
// on streams that cannot be cut into items or hold an item other than a
// contact. A stream its parser stops on is reported Failed and leaves its card
// as it was.
PIMTLV_BRIDGE_API MergeResult MergeVcard(const char* original, std::size_t originalSize,
                                         const std::uint8_t* data, std::size_t size,
                                         const MergeOptions& options = {});

}  // namespace PimBridge

#endif
