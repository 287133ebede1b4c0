// A program outside the tree that finds the installed library with
// find_package(pimtlv COMPONENTS vcard) and writes one leaf, takes a card
// through the vCard bridge and back and, when the iCalendar and MIME bridges
// are installed too, an event and an e-mail through theirs.
#include <string>

#include <pimtlv/bridges/vcard/Vcard.h>
#include <pimtlv/contact/TLVContactParser.h>
#include <pimtlv/tlv/TLVCreator.h>
#ifdef PIMTLV_CONSUMER_ICAL
#include <pimtlv/bridges/ical/ICalendarBridge.h>
#endif
#ifdef PIMTLV_CONSUMER_MIME
#include <pimtlv/bridges/mime/MimeBridge.h>
#endif

namespace {

// A receiver that overrides one call; the base answers true to the others.
struct FormattedNames : PimShared::CContactReceiverBase {
    std::string names;
    bool FormattedName(const char* text, const char*, const PAL::TVector<tXParam>&) override {
        names += text != nullptr ? text : "";
        return true;
    }
};

bool BridgesWork() {
#ifdef PIMTLV_CONSUMER_ICAL
    const std::string text =
        "BEGIN:VCALENDAR\r\nPRODID:-//consumer//EN\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:1\r\n"
        "END:VEVENT\r\nEND:VCALENDAR\r\n";
    const PimBridge::ImportResult in = PimBridge::ImportICalendar(text.data(), text.size());
    if (!in.ok || in.items.size() != 1) return false;
    const PimBridge::ExportResult out =
        PimBridge::ExportICalendar(in.streams.data(), in.streams.size());
    if (!out.ok || out.text.find("UID:1\r\n") == std::string::npos) return false;
#endif
#ifdef PIMTLV_CONSUMER_MIME
    const std::string mail = "Subject: hello\n\nbody\n";
    const PimBridge::ImportResult eml = PimBridge::ImportEml(mail.data(), mail.size());
    if (!eml.ok || eml.items.size() != 1) return false;
    const PimBridge::ExportResult back =
        PimBridge::ExportEml(eml.streams.data(), eml.streams.size());
    if (!back.ok || back.text.find("Subject: hello\n") == std::string::npos) return false;
#endif
    const std::string card = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Lee\r\nEND:VCARD\r\n";
    const PimBridge::ImportResult contact = PimBridge::ImportVcard(card.data(), card.size());
    if (!contact.ok || contact.items.size() != 1) return false;
    FormattedNames receiver;
    PimShared::CTLVContactParser parser(receiver);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    const auto size = static_cast<unsigned int>(contact.streams.size());
    if (!parser.Parse(contact.streams.data(), size, errorText, consumed)) return false;
    if (receiver.names != "Ann Lee") return false;
    const PimBridge::ExportResult vcf =
        PimBridge::ExportVcard(contact.streams.data(), contact.streams.size());
    if (!vcf.ok || vcf.text != card) return false;
    return true;
}

}  // namespace

int main() {
    ParserCreatorCollection::CTLVCreator creator;
    const void* data = nullptr;
    unsigned int length = 0;
    const bool leaf = creator.LeafUInt8(1, 2) && creator.GetData(data, length) && length == 4;
    return leaf && BridgesWork() ? 0 : 1;
}
