#include "pimshared/email/TLVEmailCreator.h"

#include "pimshared/email/EmailTypeIds.h"

namespace PimShared {

CTLVEmailCreator::CTLVEmailCreator() noexcept
    : TMimeMessageCreator<IEmailCreator>(EmailTypeIds::kEmailIds) {}

CTLVEmailCreator::~CTLVEmailCreator() = default;

bool CTLVEmailCreator::Mailbox(const eMailboxFieldType& fieldType, const char* displayName,
                               const char* address) {
    return WriteMailbox(fieldType, displayName, address);
}

}  // namespace PimShared
