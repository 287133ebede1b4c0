#ifndef PIMTLV_TESTS_SUPPORT_IMRECORDER_H
#define PIMTLV_TESTS_SUPPORT_IMRECORDER_H

#include <string>

#include "pimshared/im/IIMReceiver.h"
#include "support/MimeMessageRecorder.h"

namespace MimeTest {

// Records every operation of an instant-message receiver as one line.
class IMRecorder : public TRecorder<PimShared::IIMReceiver> {
  public:
    using I = PimShared::IIMAttributes;

    bool Group(const char* name, const PAL::TVector<I::tMailbox>& list) override {
        std::string line = "Group(" + T(name);
        for (const I::tMailbox& m : list) {
            line += ",[" + N(m.fieldType) + " " + N(m.client) + " " + T(m.displayName) + " " +
                    T(m.address) + "]";
        }
        return Log(line + ")");
    }
    bool Mailbox(const I::eMailboxFieldType& f, I::eUCIClient client, const char* name,
                 const char* address) override {
        return Log("Mailbox(" + N(f) + "," + N(client) + "," + T(name) + "," + T(address) + ")");
    }
    bool ExtendedData(const PAL::TVector<I::tExtendedData>& list) override {
        std::string line = "ExtendedData(";
        for (const I::tExtendedData& e : list) {
            line += "[" + N(e.key) + ":" + std::to_string(e.value) + "]";
        }
        return Log(line + ")");
    }
    bool OwnerAvailability(I::ePresenceAvailability v) override {
        return Log("OwnerAvailability(" + N(v) + ")");
    }
    bool OwnerChatState(I::eChatState v) override { return Log("OwnerChatState(" + N(v) + ")"); }
    bool ConversationParticipant(I::eUCIClient client, const char* t1, const char* t2,
                                 I::eChatState chat, const char* t3, const char* t4, const char* t5,
                                 I::ePresenceAvailability availability, const char* t6,
                                 const unsigned char& flags) override {
        return Log("Participant(" + N(client) + "," + T(t1) + "," + T(t2) + "," + N(chat) + "," +
                   T(t3) + "," + T(t4) + "," + T(t5) + "," + N(availability) + "," + T(t6) + "," +
                   N(flags) + ")");
    }

    // clang-format off
    MIMETEST_TEXT(ConversationID) MIMETEST_TEXT(ConversationName)
    MIMETEST_TEXT(ConversationLastActivity) MIMETEST_TEXT(ConversationVersionCounter)
    MIMETEST_TEXT(ConversationSummary) MIMETEST_TEXT(OwnerText) MIMETEST_TEXT(OwnerLastActivity)
    MIMETEST_NUMBER(Direction, I::eDirection) MIMETEST_NUMBER(EntityType, I::eEntityType)
    // clang-format on
};

}  // namespace MimeTest

#endif
