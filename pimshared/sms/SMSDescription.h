#ifndef PIMTLV_PIMSHARED_SMS_SMSDESCRIPTION_H
#define PIMTLV_PIMSHARED_SMS_SMSDESCRIPTION_H

// The SMS as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// ISMSAttributes, where a new property is declared and listed.

#include "pimshared/common/ItemDescription.h"
#include "pimshared/sms/ISMSReceiver.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(SmsItem, "sms", ISMSAttributes, ISMSReceiver, CTLVSMSParser, CTLVSMSCreator,
                     SmsOperations, TSmsReceiverFor, TSmsSlots, PIMTLV_SMS_OPERATIONS)

}  // namespace PimShared

#endif
