#ifndef PIMTLV_PIMSHARED_COMMON_DIAGNOSTICFORMAT_H
#define PIMTLV_PIMSHARED_COMMON_DIAGNOSTICFORMAT_H

#include "platform/CString.h"
#include "platform/PalExport.h"

namespace PimShared {

// Formats a diagnostic text into out, reusing its memory. The parsers format
// a text for nearly every element they see, so this is a small exact
// formatter instead of vsnprintf: it knows "%d" (int), "%u" (unsigned int),
// "%s" (const char*, null printed as "(null)") and "%%"; every other byte is
// copied. Output is identical to printf's for those shapes.
PIMTLV_API bool FormatDiagnostic(PAL::CString& out, const char* fmt, ...);

// Class words for diagnostics: see ParserCreatorCollection::ClassDisplayName.

}  // namespace PimShared

#endif
