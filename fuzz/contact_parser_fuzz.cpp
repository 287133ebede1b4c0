// Any bytes through the contact parser, with a receiver that reads everything
// it is given and refuses a call chosen by the input (see ItemParserChecks.h).

#include "fuzz/ItemParserChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::kContactParser)
