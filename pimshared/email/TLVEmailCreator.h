#ifndef PIMTLV_PIMSHARED_EMAIL_TLVEMAILCREATOR_H
#define PIMTLV_PIMSHARED_EMAIL_TLVEMAILCREATOR_H

#include "pimshared/common/MimeMessageCreator.h"
#include "pimshared/email/IEmailCreator.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one e-mail as a TLV stream: node 2 { UInt32 10, node 600 { the
/// message's properties, one node 600 per nested entity } }. Call Begin, the
/// properties and entities, End, then GetData; Reset before the next e-mail.
class PIMTLV_API CTLVEmailCreator : public TMimeMessageCreator<IEmailCreator> {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVEmailCreator() noexcept;
    /// @}
    ~CTLVEmailCreator() override;

    /// Display name and address are written only when given.
    bool Mailbox(const eMailboxFieldType& fieldType, const char* displayName,
                 const char* address) override;
};

}  // namespace PimShared

#endif
