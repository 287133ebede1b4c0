// Any bytes as a file of contact streams (see VcardChecks.h).

#include "fuzz/VcardChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::CheckVcardExport)
