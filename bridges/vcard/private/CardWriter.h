#ifndef PIMTLV_BRIDGES_VCARD_PRIVATE_CARDWRITER_H
#define PIMTLV_BRIDGES_VCARD_PRIVATE_CARDWRITER_H

// Contact streams as the content lines of a card, in the form of one vCard
// version. A contact is a 3.0 record; 2.1 and 4.0 are written where a card
// must keep the version it had (a merge onto an original): 2.1 with bare TYPE
// values and quoted-printable UTF-8 for 8-bit text and line breaks, 4.0 with
// PREF, data: URIs, geo: URIs and explicit value types where its defaults
// differ from 3.0's.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bridges/common/Bridge.h"
#include "bridges/common/ItemStreams.h"

namespace PimShared {
class CTLVContactParser;
}

namespace PimBridge::Vcard {

enum class Version : unsigned char { V21, V30, V40 };

// "2.1", "3.0", "4.0".
const char* VersionText(Version version);
// The version a VERSION value names; 3.0 for any other.
Version VersionOf(std::string_view value);

// One logical content line, unfolded. qp: its value is quoted-printable, so
// it folds with soft line breaks; blankAfter: a 2.1 base64 value, which ends
// at an empty line.
struct OutLine {
    std::string text;
    bool qp = false;
    bool blankAfter = false;
};

// Appends line with its line ends (eol), folded so that no physical line holds
// more than 75 octets and no UTF-8 sequence or quoted-printable triplet is cut.
void EmitLine(std::string& out, const OutLine& line, std::string_view eol = "\r\n");

// What one contact stream became.
struct CardLines {
    std::vector<OutLine> lines;  // every property, in stream order; no BEGIN, VERSION, END
    ExportedItem item;           // diagnostics and losses (kind and offset not set)
    std::string uid;             // the contact's UID, empty when none
    unsigned int instance = 0;
};

// Runs the contact parser over one stream and writes its properties as lines
// of one version. One writer serves any number of streams, one at a time.
class CardWriter {
  public:
    explicit CardWriter(Version version);
    ~CardWriter();
    CardWriter(const CardWriter&) = delete;
    CardWriter& operator=(const CardWriter&) = delete;
    // out is cleared first. With text, the lines are appended to it (CRLF,
    // folded) instead of kept in out.lines.
    void Write(const std::uint8_t* data, std::size_t size, CardLines& out,
               std::string* text = nullptr);

  private:
    class Receiver;
    std::unique_ptr<Receiver> m_receiver;
    std::unique_ptr<PimShared::CTLVContactParser> m_parser;  // resets per parse
};

// Calls onContact(const ItemSpan&) for each item of a file of streams, until
// it returns false. false (why set) when the file cannot be cut into items or
// holds an item other than a contact.
template <typename OnContact>
bool ForEachContact(const std::uint8_t* data, std::size_t size, OnContact&& onContact,
                    std::string& why) {
    bool contacts = true;
    const bool cut = ForEachItem(
        data, size,
        [&](const ItemSpan& span) {
            if (KindOf(span) == ItemKind::Contact) return onContact(span);
            why = "item at offset " + std::to_string(span.offset) + " is no contact (root node " +
                  std::to_string(span.frame.root) + "): vCard carries contacts only";
            contacts = false;
            return false;
        },
        why);
    return cut && contacts;
}

}  // namespace PimBridge::Vcard

#endif
