// Any bytes through the email parser, with a receiver that reads everything
// it is given and refuses a call chosen by the input (see ItemParserChecks.h).

#include "fuzz/ItemParserChecks.h"

PIMTLV_ITEM_FUZZ_TARGET(PimTlvFuzz::kEmailParser)
