#ifndef PIMTLV_TESTS_SUPPORT_EMAILRECORDER_H
#define PIMTLV_TESTS_SUPPORT_EMAILRECORDER_H

#include <string>

#include "pimshared/email/IEmailReceiver.h"
#include "support/MimeMessageRecorder.h"

namespace MimeTest {

// Records every operation of an e-mail receiver as one line.
class EmailRecorder : public TRecorder<PimShared::IEmailReceiver> {
  public:
    using E = PimShared::IEmailAttributes;

    bool Group(const char* name, const PAL::TVector<E::tMailbox>& list) override {
        std::string line = "Group(" + T(name);
        for (const E::tMailbox& m : list) {
            line += ",[" + N(m.fieldType) + " " + T(m.displayName) + " " + T(m.address) + "]";
        }
        return Log(line + ")");
    }
    bool Mailbox(const E::eMailboxFieldType& f, const char* name, const char* address) override {
        return Log("Mailbox(" + N(f) + "," + T(name) + "," + T(address) + ")");
    }
};

}  // namespace MimeTest

#endif
