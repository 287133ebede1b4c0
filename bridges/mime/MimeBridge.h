#ifndef PIMTLV_BRIDGES_MIME_MIMEBRIDGE_H
#define PIMTLV_BRIDGES_MIME_MIMEBRIDGE_H

// E-mails between RFC 5322 text and item streams. GMime reads and writes the
// text; every MIME part becomes a nested entity of the e-mail item, exactly as
// the parts nest. Bodies travel decoded from their transfer encoding, in their
// own charset, with the encoding and the charset told beside them, so an
// export gives back the same decoded content.
//
// All four functions are safe to call from several threads at once: GMime is
// set up once per process on first use.

#include <cstddef>
#include <cstdint>

#include "bridges/common/Bridge.h"

namespace PimBridge {

/// One message (.eml). GMime reads nearly any text as a message (one without
/// header fields as a body); an input it reads none from is an error.
PIMTLV_BRIDGE_API ImportResult ImportEml(const char* text, std::size_t size);
/// An mbox: each message after a separator line ("From ", an address and a
/// date, first in the file or after an empty line) is one item, its body
/// lines unquoted the mboxrd way (one '>' taken from ">From ", ">>From ", ...).
/// Each item's instance is its position in the file, from 0.
PIMTLV_BRIDGE_API ImportResult ImportMbox(const char* text, std::size_t size);

/// A file of e-mail streams as one message. More than one e-mail is an error
/// (a .eml file holds one message: use ExportMbox), as is any other item.
PIMTLV_BRIDGE_API ExportResult ExportEml(const std::uint8_t* data, std::size_t size);
/// A file of e-mail streams as an mbox: each message after a "From " line made
/// of its first From address and its Date; lines of '>'s and "From " get one
/// '>' more (mboxrd), so that import gives every body back.
PIMTLV_BRIDGE_API ExportResult ExportMbox(const std::uint8_t* data, std::size_t size);

}  // namespace PimBridge

#endif
