#ifndef PIMTLV_PIMSHARED_COMMON_PARSERFRAME_H
#define PIMTLV_PIMSHARED_COMMON_PARSERFRAME_H

#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

namespace PimShared {

// The public parser classes hold their working object through a pointer made
// at construction; when that allocation failed, Parse reads nothing and
// answers false, but the caller still gets defined out-parameters.
// Impl is any parser with CTLVParser's Parse.
template <typename Impl>
bool ForwardParse(Impl* impl, const void* data, const unsigned int& length, const char*& errorText,
                  unsigned int& consumed) {
    if (impl != nullptr) return impl->Parse(data, length, errorText, consumed);
    errorText = "";
    consumed = 0;
    return false;
}

// The account of why the last walk stopped; without a working object the
// parser never walked, for want of memory.
template <typename Impl>
const ParserCreatorCollection::TLVError& ForwardLastError(const Impl* impl) noexcept {
    static const ParserCreatorCollection::TLVError noEngine = [] {
        ParserCreatorCollection::TLVError e;
        e.reason = ParserCreatorCollection::TLVError::Reason::OutOfMemory;
        return e;
    }();
    return impl != nullptr ? impl->LastError() : noEngine;
}

}  // namespace PimShared

#endif
