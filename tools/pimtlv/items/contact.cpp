// The contact in the tool.
#include "Items.h"
#include "pimshared/contact/ContactTypeIds.h"
#include "pimshared/contact/TLVContactCreator.h"
#include "pimshared/contact/TLVContactParser.h"

namespace PimTool {

namespace {

using I = PimShared::IContactAttributes;
using XParams = PAL::TVector<I::tXParam>;
using Texts = PAL::TVector<const char*>;
using CText = const char*;

std::vector<OpEntry> ContactOps() {
    return {
        Op<&I::Begin>("Begin", "instance"),
        Op<&I::End>("End"),
        Op<&I::FormattedName>("FormattedName", "text", "textParameter", "xParams"),
        Op<&I::Name>("Name", "part1", "part2", "part3", "part4", "part5", "textParameter",
                     "xParams"),
        Op<&I::Nickname>("Nickname", "nicknames", "textParameter", "xParams"),
        Op<&I::Photo>("Photo", "mediaText1", "mediaType", "data", nullptr, "mediaText3"),
        Op<&I::Birthday>("Birthday", "dateTime", "dateTimeAlt"),
        Op<&I::Address>("Address", "part1", "part2", "part3", "part4", "part5", "part6", "part7",
                        "addressType", "textParameter", "xParams"),
        Op<&I::Label>("Label", "text", "addressType", "textParameter", "xParams"),
        Op<&I::Telephone>("Telephone", "number", "telephoneType", "telephoneByte", "telephoneFlags",
                          "text", "xParams"),
        Op<&I::Email>("Email", "address", "emailType"),
        Op<&I::Mailer>("Mailer", "text", "textParameter", "xParams"),
        Op<&I::Timezone>("Timezone", "text1", "text2"),
        Op<&I::GeographicPosition>("GeographicPosition", "coordinate1", "coordinate2"),
        Op<&I::Title>("Title", "text", "textParameter", "xParams"),
        Op<&I::Role>("Role", "text", "textParameter", "xParams"),
        Op<&I::Logo>("Logo", "mediaText1", "mediaType", "data", nullptr, "mediaText3"),
        Op<&I::Agent>("Agent", "text1", "text2"),
        Op<&I::Organization>("Organization", "name", "units"),
        Op<&I::Categories>("Categories", "categories", "textParameter", "xParams"),
        Op<&I::Note>("Note", "text", "textParameter", "xParams"),
        Op<&I::Revision>("Revision", "dateTime", "dateTimeAlt"),
        Op<&I::SortString>("SortString", "text", "textParameter", "xParams"),
        Op<&I::Sound>("Sound", "mediaText1", "mediaType", "data", nullptr, "mediaText3",
                      "formattedName", "namePart1", "namePart2", "namePart3", "namePart4",
                      "namePart5"),
        Op<&I::UID>("UID", "text"),
        Op<&I::SpeedDial>("SpeedDial", "text"),
        Op<&I::XUID>("XUID", "text"),
        Op<&I::XUCI>("XUCI", "text", "number", "unsignedNumber"),
        Op<&I::Handle>("Handle", "text"),
        Op<&I::URL>("URL", "text"),
        Op<&I::Version>("Version", "text"),
        Op<&I::Classification>("Classification", "text"),
        Op<&I::ProdID>("ProdID", "text"),
        Op<&I::Key>("Key", "keyType", "mediaType", "data", nullptr),
        Op<&I::PhotoAvailability>("PhotoAvailability", "available"),
        Op<&I::NonStandardProperty>("NonStandardProperty", "name", "value", "data", nullptr,
                                    "xParams"),
    };
}

class ContactRecorder : public PimShared::IContactReceiver {
  public:
    explicit ContactRecorder(Recorder& recorder) : m_rec(recorder) {}

    bool Begin(const unsigned int& instance) override { return m_rec.Put<&I::Begin>(instance); }
    bool End() override { return m_rec.Put<&I::End>(); }
    bool FormattedName(CText t, CText p, const XParams& x) override {
        return m_rec.Put<&I::FormattedName>(t, p, x);
    }
    bool Name(CText a, CText b, CText c, CText d, CText e, CText p, const XParams& x) override {
        return m_rec.Put<&I::Name>(a, b, c, d, e, p, x);
    }
    bool Nickname(const Texts& list, CText p, const XParams& x) override {
        return m_rec.Put<&I::Nickname>(list, p, x);
    }
    bool Photo(CText m1, CText type, const void* data, const unsigned int& n, CText m3) override {
        return m_rec.Put<&I::Photo>(m1, type, data, n, m3);
    }
    bool Birthday(CText a, CText b) override { return m_rec.Put<&I::Birthday>(a, b); }
    bool Address(CText a, CText b, CText c, CText d, CText e, CText f, CText g,
                 const unsigned char& type, CText p, const XParams& x) override {
        return m_rec.Put<&I::Address>(a, b, c, d, e, f, g, type, p, x);
    }
    bool Label(CText t, const unsigned char& type, CText p, const XParams& x) override {
        return m_rec.Put<&I::Label>(t, type, p, x);
    }
    bool Telephone(CText number, const unsigned short& type, const unsigned char& byte,
                   const unsigned short& flags, CText t, const XParams& x) override {
        return m_rec.Put<&I::Telephone>(number, type, byte, flags, t, x);
    }
    bool Email(CText a, const unsigned char& type) override {
        return m_rec.Put<&I::Email>(a, type);
    }
    bool Mailer(CText t, CText p, const XParams& x) override {
        return m_rec.Put<&I::Mailer>(t, p, x);
    }
    bool Timezone(CText a, CText b) override { return m_rec.Put<&I::Timezone>(a, b); }
    bool GeographicPosition(CText a, CText b) override {
        return m_rec.Put<&I::GeographicPosition>(a, b);
    }
    bool Title(CText t, CText p, const XParams& x) override {
        return m_rec.Put<&I::Title>(t, p, x);
    }
    bool Role(CText t, CText p, const XParams& x) override { return m_rec.Put<&I::Role>(t, p, x); }
    bool Logo(CText m1, CText type, const void* data, const unsigned int& n, CText m3) override {
        return m_rec.Put<&I::Logo>(m1, type, data, n, m3);
    }
    bool Agent(CText a, CText b) override { return m_rec.Put<&I::Agent>(a, b); }
    bool Organization(CText name, const Texts& units) override {
        return m_rec.Put<&I::Organization>(name, units);
    }
    bool Categories(const Texts& list, CText p, const XParams& x) override {
        return m_rec.Put<&I::Categories>(list, p, x);
    }
    bool Note(CText t, CText p, const XParams& x) override { return m_rec.Put<&I::Note>(t, p, x); }
    bool Revision(CText a, CText b) override { return m_rec.Put<&I::Revision>(a, b); }
    bool SortString(CText t, CText p, const XParams& x) override {
        return m_rec.Put<&I::SortString>(t, p, x);
    }
    bool Sound(CText m1, CText type, const void* data, const unsigned int& n, CText m3, CText fn,
               CText a, CText b, CText c, CText d, CText e) override {
        return m_rec.Put<&I::Sound>(m1, type, data, n, m3, fn, a, b, c, d, e);
    }
    bool UID(CText t) override { return m_rec.Put<&I::UID>(t); }
    bool SpeedDial(CText t) override { return m_rec.Put<&I::SpeedDial>(t); }
    bool XUID(CText t) override { return m_rec.Put<&I::XUID>(t); }
    bool XUCI(CText t, int number, unsigned short unsignedNumber) override {
        return m_rec.Put<&I::XUCI>(t, number, unsignedNumber);
    }
    bool Handle(CText t) override { return m_rec.Put<&I::Handle>(t); }
    bool URL(CText t) override { return m_rec.Put<&I::URL>(t); }
    bool Version(CText t) override { return m_rec.Put<&I::Version>(t); }
    bool Classification(CText t) override { return m_rec.Put<&I::Classification>(t); }
    bool ProdID(CText t) override { return m_rec.Put<&I::ProdID>(t); }
    bool Key(CText keyType, CText type, const void* data, const unsigned int& n) override {
        return m_rec.Put<&I::Key>(keyType, type, data, n);
    }
    bool PhotoAvailability(const bool& available) override {
        return m_rec.Put<&I::PhotoAvailability>(available);
    }
    bool NonStandardProperty(CText name, CText value, const void* data, const unsigned int& n,
                             const XParams& x) override {
        return m_rec.Put<&I::NonStandardProperty>(name, value, data, n, x);
    }
    bool TraceMessage(const int& code, const char* text) override {
        return m_rec.Trace(code, text);
    }

  private:
    Recorder& m_rec;
};

std::vector<TypeName> ContactNames() {
    using namespace PimShared;
    using namespace PimShared::ContactTypeIds;
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdPropTypeFormattedName),
        NODE(TypeIdPropTypeName),
        NODE(TypeIdPropTypeNickname),
        NODE(TypeIdPropTypePhoto),
        NODE(TypeIdPropTypeBirthday),
        NODE(TypeIdPropTypeAddress),
        NODE(TypeIdPropTypeLabel),
        NODE(TypeIdPropTypeTelephone),
        NODE(TypeIdPropTypeEmail),
        NODE(TypeIdPropTypeMailer),
        NODE(TypeIdPropTypeTimezone),
        NODE(TypeIdPropTypeTitle),
        NODE(TypeIdPropTypeRole),
        NODE(TypeIdPropTypeLogo),
        NODE(TypeIdPropTypeAgent),
        NODE(TypeIdPropTypeOrganization),
        NODE(TypeIdPropTypeNote),
        NODE(TypeIdPropTypeProdID),
        NODE(TypeIdPropTypeRevision),
        NODE(TypeIdPropTypeSortString),
        NODE(TypeIdPropTypeSound),
        NODE(TypeIdPropTypeUID),
        NODE(TypeIdPropTypeURL),
        NODE(TypeIdPropTypeContactVersion),
        NODE(TypeIdPropTypeContactClassification),
        NODE(TypeIdPropTypeKey),
        NODE(TypeIdPropTypePhotoAvailability),
        NODE(TypeIdPropTypeSpeedDial),
        NODE(TypeIdPropTypeXUID),
        NODE(TypeIdPropTypeXUCI),
        NODE(TypeIdPropTypeHandle),
        NODE(TypeIdPropTypeCategories),
        NODE(TypeIdPropTypeGeographicPosition),
        NODE(TypeIdPropTypeNonStandard),
        LEAF(TypeIdValTypeFormattedName),
        LEAF(TypeIdValTypeNickname),
        LEAF(TypeIdValTypeTitle),
        LEAF(TypeIdValTypeContactRole),
        LEAF(TypeIdValTypeNote),
        LEAF(TypeIdValTypeSortString),
        LEAF(TypeIdValTypeNamePart1),
        LEAF(TypeIdValTypeNamePart2),
        LEAF(TypeIdValTypeNamePart3),
        LEAF(TypeIdValTypeNamePart4),
        LEAF(TypeIdValTypeNamePart5),
        LEAF(TypeIdValTypeMediaType),
        LEAF(TypeIdValTypeMediaText3),
        LEAF(TypeIdValTypeAddressType),
        LEAF(TypeIdValTypeAddressPart1),
        LEAF(TypeIdValTypeAddressPart2),
        LEAF(TypeIdValTypeAddressPart3),
        LEAF(TypeIdValTypeAddressPart4),
        LEAF(TypeIdValTypeAddressPart5),
        LEAF(TypeIdValTypeAddressPart6),
        LEAF(TypeIdValTypeAddressPart7),
        LEAF(TypeIdValTypeLabel),
        LEAF(TypeIdValTypeTelType),
        LEAF(TypeIdValTypeTelNumber),
        LEAF(TypeIdValTypeTelByte),
        LEAF(TypeIdValTypeTelFlags),
        LEAF(TypeIdValTypeTelText),
        LEAF(TypeIdValTypeEmailType),
        LEAF(TypeIdValTypeEmailAddress),
        LEAF(TypeIdValTypeTimezoneText1),
        LEAF(TypeIdValTypeTimezoneText2),
        LEAF(TypeIdValTypeAgentText),
        LEAF(TypeIdValTypeOrgName),
        LEAF(TypeIdValTypeOrgUnit),
        LEAF(TypeIdValTypeKeyType),
        LEAF(TypeIdValTypeMailer),
        LEAF(TypeIdValTypeURL),
        LEAF(TypeIdValTypeProdID),
        LEAF(TypeIdValTypePhotoAvailability),
        LEAF(TypeIdValTypeSpeedDial),
        LEAF(TypeIdValTypeXUID),
        LEAF(TypeIdValTypeXUCIText),
        LEAF(TypeIdValTypeXUCINumber),
        LEAF(TypeIdValTypeMediaText1),
        LEAF(TypeIdValTypeBinaryData),
        LEAF(TypeIdValTypeClassification),
        LEAF(TypeIdValTypeGeoText1),
        LEAF(TypeIdValTypeGeoText2),
        LEAF(TypeIdValTypeNonStandardName),
        LEAF(TypeIdValTypeNonStandardValue),
        LEAF(TypeIdValTypeHandle),
        LEAF(TypeIdValTypeLanguage),
        LEAF(TypeIdValTypeCategory),
        LEAF(TypeIdValTypeDateTime),
        LEAF(TypeIdValTypeDateTimeAlt),
        LEAF(TypeIdValTypeUniqueIdentifier),
        LEAF(TypeIdValTypeXparamName),
        LEAF(TypeIdValTypeXparamValue),
        LEAF(TypeIdValTypeVersion),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kContactItem = {
    "contact",
    ContactNames(),
    ContactOps(),
    &DecodeWith<PimShared::CTLVContactParser, ContactRecorder>,
    &EncodeWith<I, PimShared::CTLVContactCreator>,
    "XUCI comes back with only the low 16 bits of its signed number and without its unsigned "
    "number (the parser drops the 528 leaf); XUID comes back with a null text and Handle not "
    "at all (the parser stores no XUID leaf and refuses the Handle node); a Name or Address "
    "without "
    "components, and Categories without entries, drop their text parameter and x-parameters; "
    "Agent with both or neither text and Birthday, Revision and Timezone with both texts keep "
    "only what the layout has room for.",
};

}  // namespace PimTool
