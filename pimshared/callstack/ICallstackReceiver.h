#ifndef PIMTLV_PIMSHARED_CALLSTACK_ICALLSTACKRECEIVER_H
#define PIMTLV_PIMSHARED_CALLSTACK_ICALLSTACKRECEIVER_H

#include "pimshared/common/ItemDescription.h"
#include "platform/PalExport.h"

// The operations of ICallstackReceiver below, described once for the code
// that iterates them (the do-nothing receiver, the tool's documents, the
// recording receivers of tests, fuzzers and benchmarks): an operation is
// declared below and listed here, and a list that does not match the
// declarations does not compile.
#define PIMTLV_CALLLIST_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(Begin, "kind", "instance")                     \
    OP0(End)                                          \
    OP(CallByte, "value")                             \
    OP(CallText1, "text")                             \
    OP(CallText2, "text")                             \
    OP(CallText3, "text")                             \
    OP(CallText4, "text")                             \
    OP(CallText5, "text")                             \
    OP(CallFlag, "value")

namespace PimShared {

/// What a reader of call-list streams implements. A stream holds one entry:
/// Begin, then one call per property leaf in stream order (a property that
/// appears twice is delivered twice), then End. Texts are valid only during the
/// call.
class PIMTLV_API ICallstackReceiver {
  public:
    /// kind: 1 for an entry node 2000, 2 for 2001. instance: the call list's
    /// instance number, 0 when its leaf did not come before the entry.
    virtual bool Begin(const unsigned int& kind, const unsigned int& instance) = 0;
    /// Closes the item.
    virtual bool End() = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool CallByte(const unsigned char& value) = 0;
    virtual bool CallText1(const char* text) = 0;
    virtual bool CallText2(const char* text) = 0;
    virtual bool CallText3(const char* text) = 0;
    virtual bool CallText4(const char* text) = 0;
    virtual bool CallText5(const char* text) = 0;
    virtual bool CallFlag(const bool& value) = 0;
    /// @}
    /// Every problem, as a code (see CTLVCallstackParser) with an empty text;
    /// a malformed stream comes with the TLV walk's text.
    virtual bool TraceMessage(const int& code, const char* text) = 0;

    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ICallstackReceiver() = default;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    ICallstackReceiver() = default;
    ICallstackReceiver(const ICallstackReceiver&) = default;
    ICallstackReceiver& operator=(const ICallstackReceiver&) = default;
    /// @}
};

/// An ICallstackReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need. Its calls are made from the
/// item's list of operations, so it has every call the receiver has.
class CCallstackReceiverBase : public ICallstackReceiver {
    PIMTLV_DESCRIBE_DO_NOTHING(ICallstackReceiver, PIMTLV_CALLLIST_OPERATIONS)
};

}  // namespace PimShared

#endif
