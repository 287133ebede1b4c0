// Original text, device cards and base from one input (see VcardChecks.h).

#include "fuzz/VcardChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::CheckVcardMerge)
