#include "pimshared/email/TLVEmailParser.h"
#include "pimshared/common/ParserFrame.h"

#include <new>

#include "pimshared/common/MimeMessageParser.h"
#include "pimshared/email/EmailTypeIds.h"

namespace PimShared {

// The e-mail is the MIME message engine with the e-mail's IDs and nothing
// added; only the receiver operations outside the shared interface are wired
// here.
class CTLVEmailParser::CTLVEmailParserImpl final : public CMimeMessageParserEngine {
  public:
    explicit CTLVEmailParserImpl(IEmailReceiver& receiver)
        : CMimeMessageParserEngine(receiver, EmailTypeIds::kEmailIds), m_receiver(receiver) {}

  private:
    bool Trace(int code, const char* text) override { return m_receiver.TraceMessage(code, text); }
    bool DeliverPriority(unsigned int priority) override {
        return m_receiver.Priority(static_cast<IEmailAttributes::ePriority>(priority));
    }
    bool DeliverMailbox(const MailboxFields& m) override {
        return m_receiver.Mailbox(static_cast<IEmailAttributes::eMailboxFieldType>(m.fieldType),
                                  m.displayName, m.address);
    }
    bool DeliverGroup(const char* name) override { return m_receiver.Group(name, m_group); }
    void AppendToGroup(const MailboxFields& m) override {
        m_group.pushBack(IEmailAttributes::tMailbox{
            static_cast<IEmailAttributes::eMailboxFieldType>(m.fieldType), m.displayName,
            m.address});
    }
    void ClearGroup() override { m_group.clear(); }

    IEmailReceiver& m_receiver;
    PAL::TVector<IEmailAttributes::tMailbox> m_group;
};

CTLVEmailParser::CTLVEmailParser(IEmailReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVEmailParserImpl(receiver)) {}

CTLVEmailParser::~CTLVEmailParser() = default;

bool CTLVEmailParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                            unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVEmailParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
