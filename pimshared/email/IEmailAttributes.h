#ifndef PIMTLV_PIMSHARED_EMAIL_IEMAILATTRIBUTES_H
#define PIMTLV_PIMSHARED_EMAIL_IEMAILATTRIBUTES_H

#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/MimeMessageDescription.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// An e-mail, property by property. The MIME message operations shared with the
/// instant message come first (IMimeMessageAttributes), then the e-mail's group,
/// mailbox and enumerated priority. Begin opens the message and End closes it;
/// BeginEntity/EndEntity bracket each nested MIME entity (attachments, parts of
/// a multipart body), to any depth.
class PIMTLV_API IEmailAttributes : public IMimeMessageAttributes {
  public:
    /// One address of a header field. Borrows its texts.
    struct tMailbox {
        /// The header field, the display name (may be null) and the address.
        /// @{
        eMailboxFieldType fieldType;
        const char* displayName;
        const char* address;
        /// @}
    };

    using IMimeMessageAttributes::Priority;

    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool Group(const char* name, const PAL::TVector<tMailbox>& mailboxes) = 0;
    virtual bool Mailbox(const eMailboxFieldType& fieldType, const char* displayName,
                         const char* address) = 0;
    virtual bool Priority(const ePriority& priority) = 0;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IEmailAttributes() = default;
    IEmailAttributes(const IEmailAttributes&) = default;
    IEmailAttributes& operator=(const IEmailAttributes&) = default;
    ~IEmailAttributes() = default;
    /// @}
};

}  // namespace PimShared

// The operations above, described once for the code that iterates them (the
// do-nothing receiver, the tool's documents, the recording receivers of tests,
// fuzzers and benchmarks): an operation is declared above and listed here, and
// a list that does not match the declarations does not compile.
#define PIMTLV_EMAIL_OPERATIONS(OP, OP0, OVERLOAD)     \
    PIMTLV_MIME_MESSAGE_OPERATIONS(OP, OP0, OVERLOAD)  \
    OP(Group, "name", "mailboxes")                     \
    OP(Mailbox, "fieldType", "displayName", "address") \
    OVERLOAD(Priority, Priority, (const IEmailAttributes::ePriority&), "priority")

#endif
