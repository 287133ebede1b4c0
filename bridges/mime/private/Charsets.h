#ifndef PIMTLV_BRIDGES_MIME_PRIVATE_CHARSETS_H
#define PIMTLV_BRIDGES_MIME_PRIVATE_CHARSETS_H

// Header text whose charset GMime cannot honour. GMime reads 8-bit text
// without a charset by the fallback charsets it is given (UTF-8, then
// windows-1252, which reads any byte); but an encoded word in a charset it
// does not know loses its 8-bit bytes, and one with bytes not valid in its
// charset gets '?' for them. These functions find such words so that the
// change is said, and read them by the same fallback instead.

#include <string>
#include <string_view>

#include "bridges/common/Charset.h"

namespace PimBridge {
namespace Mime {

// Why bytes do not read in charset ("unknown charset x-foo", "bytes not
// valid in utf-8"), or empty. A value cut into pieces may end inside a
// character: partial makes that no fault.
std::string Unreadable(const std::string& charset, std::string_view bytes, bool partial);

struct CharsetTrouble {
    // What would not arrive as sent ("8-bit text without a charset", "an
    // encoded word in unknown charset x-foo", "bytes not valid in utf-8"),
    // or empty when nothing.
    std::string what;
    // Whether GMime itself reads it by the fallback charset (else it drops
    // the bytes or puts '?' for them, unless the caller relabels the text).
    bool fallsBack = false;
};

// The first trouble of a raw header value: 8-bit text that is not UTF-8, an
// encoded word or an RFC 2231 parameter value in a charset iconv does not
// know or with bytes not valid in it.
CharsetTrouble FindCharsetTrouble(const char* raw);

// raw with each encoded word and parameter value FindCharsetTrouble finds
// fault with relabelled in the fallback charset, for GMime to decode
// without loss.
std::string WithFallbackCharset(const char* raw);

}  // namespace Mime
}  // namespace PimBridge

#endif
