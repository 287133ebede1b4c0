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

// Texts of the message family's refusals (e-mail, instant message, SMS):
// an element of an undefined class, and an element refused in its place, named
// by its class word (ParserCreatorCollection::ClassDisplayName, or "Node End").
constexpr const char* kUnexpectedClassText = "Unexpected class ID = %d with type ID = %d";
constexpr const char* kUnexpectedTypeIdText = "Unexpected %s with type ID = %d";
// A node's closing has a class word of its own; its opening is "Node Begin".
constexpr const char* kNodeEndWord = "Node End";

// The message family's one refusal path: formats kUnexpectedTypeIdText into
// text and reports it to the receiver with code 2; returns the receiver's
// answer. Receiver is any type with TraceMessage(const int&, const char*).
template <typename Receiver>
bool AlertUnexpectedTypeId(Receiver& receiver, PAL::CString& text, const char* kind,
                           unsigned int typeId) {
    FormatDiagnostic(text, kUnexpectedTypeIdText, kind, static_cast<int>(typeId));
    const int code = 2;
    return receiver.TraceMessage(code, text.c_str());
}

}  // namespace PimShared

#endif
