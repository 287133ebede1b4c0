#ifndef PIMTLV_BRIDGES_VCARD_VCARD_H
#define PIMTLV_BRIDGES_VCARD_VCARD_H

// vCard files and contact streams. Import reads cards of versions 2.1, 3.0
// and 4.0 and writes each as one contact stream, in file order; export writes
// every contact stream of a file of streams as a vCard 3.0 card. What one side
// has no place for is named in the result, never dropped silently.

#include <cstddef>
#include <cstdint>

#include "bridges/common/Bridge.h"

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

}  // namespace PimBridge

#endif
