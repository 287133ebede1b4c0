// Bytes read as a sequence of instant-message creator operations; the stream
// written must parse back to the same operations (see ItemRoundTrip.h).

#include "fuzz/ItemRoundTripChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::kImRoundTrip)
