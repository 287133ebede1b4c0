#ifndef PIMTLV_TOOL_ITEMS_MIMEMESSAGE_H
#define PIMTLV_TOOL_ITEMS_MIMEMESSAGE_H

// What the adapters of e-mails and instant messages share.

#include "Items.h"

namespace PimTool {

// Message-family IDs name bare leaves and nodes alike, so each name holds for
// both.
#define PIMTLV_MESSAGE_NAME(c)                   \
    TypeName{c, true, kNoParent, #c}, TypeName { \
        c, false, kNoParent, #c                  \
    }

}  // namespace PimTool

#endif
