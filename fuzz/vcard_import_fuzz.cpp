// Any bytes as vCard text (see VcardChecks.h).

#include "fuzz/VcardChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::CheckVcardImport)
