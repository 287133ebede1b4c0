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
    bool Direction(const I::eDirection& v) override { return Log("Direction(" + N(v) + ")"); }
    bool EntityType(const I::eEntityType& v) override { return Log("EntityType(" + N(v) + ")"); }
    bool ExtendedData(const PAL::TVector<I::tExtendedData>& list) override {
        std::string line = "ExtendedData(";
        for (const I::tExtendedData& e : list) {
            line += "[" + N(e.key) + ":" + std::to_string(e.value) + "]";
        }
        return Log(line + ")");
    }
    bool ConversationID(const char* s) override { return Log("ConversationID(" + T(s) + ")"); }
    bool ConversationName(const char* s) override { return Log("ConversationName(" + T(s) + ")"); }
    bool ConversationLastActivity(const char* s) override {
        return Log("ConversationLastActivity(" + T(s) + ")");
    }
    bool ConversationVersionCounter(const char* s) override {
        return Log("ConversationVersionCounter(" + T(s) + ")");
    }
    bool ConversationSummary(const char* s) override {
        return Log("ConversationSummary(" + T(s) + ")");
    }
    bool OwnerAvailability(I::ePresenceAvailability v) override {
        return Log("OwnerAvailability(" + N(v) + ")");
    }
    bool OwnerText(const char* s) override { return Log("OwnerText(" + T(s) + ")"); }
    bool OwnerLastActivity(const char* s) override {
        return Log("OwnerLastActivity(" + T(s) + ")");
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
};

}  // namespace MimeTest

#endif
