#include "pimshared/contact/TLVContactCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/contact/ContactLayout.h"

namespace PimShared {

using namespace ContactTypeIds;
using ContactLayout::eFailureRule;
using ContactLayout::eProperty;

// One property node: NodeBegin, then each step only while every earlier one
// succeeded, then the close that the property's failure rule prescribes.
class CTLVContactCreator::CPropertyWriter {
  public:
    CPropertyWriter(CTLVContactCreator& owner, eProperty property)
        : m_owner(owner), m_tlv(owner.Writer()), m_row(ContactLayout::Row(property)) {
        m_open = m_tlv != nullptr && m_tlv->NodeBegin(m_row.node);
        m_ok = m_open;
    }

    CPropertyWriter& Text(unsigned int id, const char* text) {
        if (m_ok) m_ok = m_tlv->LeafString(id, text);
        return *this;
    }
    CPropertyWriter& TextIfSet(unsigned int id, const char* text) {
        return text != nullptr ? Text(id, text) : *this;
    }
    // Consecutive IDs from firstId, one per text that is set.
    template <std::size_t N>
    CPropertyWriter& TextsIfSet(unsigned int firstId, const char* const (&texts)[N]) {
        for (std::size_t i = 0; i < N; ++i)
            TextIfSet(firstId + static_cast<unsigned int>(i), texts[i]);
        return *this;
    }
    CPropertyWriter& TextList(unsigned int id, const PAL::TVector<const char*>& texts) {
        for (const char* text : texts) Text(id, text);
        return *this;
    }
    CPropertyWriter& Bits8(unsigned int id, unsigned char value) {
        if (m_ok) m_ok = m_tlv->LeafBitfield8(id, value);
        return *this;
    }
    CPropertyWriter& Bits8IfNonZero(unsigned int id, unsigned char value) {
        return value != 0 ? Bits8(id, value) : *this;
    }
    CPropertyWriter& Bits16IfNonZero(unsigned int id, unsigned short value) {
        if (m_ok && value != 0) m_ok = m_tlv->LeafBitfield16(id, value);
        return *this;
    }
    CPropertyWriter& UInt8(unsigned int id, unsigned char value) {
        if (m_ok) m_ok = m_tlv->LeafUInt8(id, value);
        return *this;
    }
    CPropertyWriter& UInt8IfNonZero(unsigned int id, unsigned char value) {
        return value != 0 ? UInt8(id, value) : *this;
    }
    CPropertyWriter& UInt16(unsigned int id, unsigned short value) {
        if (m_ok) m_ok = m_tlv->LeafUInt16(id, value);
        return *this;
    }
    CPropertyWriter& UInt16IfNonZero(unsigned int id, unsigned short value) {
        return value != 0 ? UInt16(id, value) : *this;
    }
    CPropertyWriter& BytesIfSet(unsigned int id, const void* data, unsigned int length) {
        if (m_ok && data != nullptr) m_ok = m_tlv->LeafByteStream(id, data, length);
        return *this;
    }
    CPropertyWriter& XParams(const PAL::TVector<tXParam>& xParams) {
        if (m_ok) m_ok = m_owner.AddXParams(xParams);
        return *this;
    }

    bool Done() {
        switch (m_row.rule) {
            case eFailureRule::LeaveOpen:
                return m_ok && m_tlv->NodeEnd(m_row.node);
            case eFailureRule::CloseNodeAllLeaves: {
                if (!m_open) return false;
                const bool closed = m_tlv->NodeEnd(m_row.node);
                return m_ok && closed;
            }
            case eFailureRule::CloseNode:
                break;
        }
        return m_open && m_tlv->NodeEnd(m_row.node);
    }

  private:
    CTLVContactCreator& m_owner;
    TlvWriter* m_tlv;
    const ContactLayout::tProperty& m_row;
    bool m_open = false;
    bool m_ok = false;
};

namespace {

template <std::size_t N>
bool AllNull(const char* const (&texts)[N]) {
    for (const char* text : texts) {
        if (text != nullptr) return false;
    }
    return true;
}

}  // namespace

bool CTLVContactCreator::Begin(const unsigned int& instance) {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdObjTypeContact) &&
           tlv->LeafUInt32(TypeIdValTypeInstance, instance);
}

bool CTLVContactCreator::End() {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeEnd(TypeIdObjTypeContact);
}

bool CTLVContactCreator::FormattedName(const char* text, const char* textParameter,
                                       const PAL::TVector<tXParam>& xParams) {
    CPropertyWriter w(*this, ContactLayout::FormattedName);
    w.Text(TypeIdValTypeFormattedName, text).TextIfSet(TypeIdValTypeLanguage, textParameter);
    // Unlike every other property, the x-parameter writer is not even called
    // for an empty list.
    if (!xParams.isEmpty()) w.XParams(xParams);
    return w.Done();
}

bool CTLVContactCreator::Name(const char* part1, const char* part2, const char* part3,
                              const char* part4, const char* part5, const char* textParameter,
                              const PAL::TVector<tXParam>& xParams) {
    const char* const parts[] = {part1, part2, part3, part4, part5};
    CPropertyWriter w(*this, ContactLayout::Name);
    // A name without components is an empty node: parameter and
    // x-parameters go with the components.
    if (!AllNull(parts)) {
        w.TextsIfSet(TypeIdValTypeNamePart1, parts)
            .TextIfSet(TypeIdValTypeLanguage, textParameter)
            .XParams(xParams);
    }
    return w.Done();
}

bool CTLVContactCreator::Nickname(const PAL::TVector<const char*>& nicknames,
                                  const char* textParameter, const PAL::TVector<tXParam>& xParams) {
    // An empty list still carries its parameter and x-parameters.
    return CPropertyWriter(*this, ContactLayout::Nickname)
        .TextList(TypeIdValTypeNickname, nicknames)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Photo(const char* mediaText1, const char* mediaType, const void* data,
                               const unsigned int& length, const char* mediaText3) {
    return CPropertyWriter(*this, ContactLayout::Photo)
        .TextIfSet(TypeIdValTypeMediaText1, mediaText1)
        .TextIfSet(TypeIdValTypeMediaType, mediaType)
        .BytesIfSet(TypeIdValTypeBinaryData, data, length)
        .TextIfSet(TypeIdValTypeMediaText3, mediaText3)
        .Done();
}

bool CTLVContactCreator::Birthday(const char* dateTime, const char* dateTimeAlt) {
    CPropertyWriter w(*this, ContactLayout::Birthday);
    if (dateTime != nullptr) {
        w.Text(TypeIdValTypeDateTime, dateTime);
    } else {
        w.TextIfSet(TypeIdValTypeDateTimeAlt, dateTimeAlt);
    }
    return w.Done();
}

bool CTLVContactCreator::Address(const char* part1, const char* part2, const char* part3,
                                 const char* part4, const char* part5, const char* part6,
                                 const char* part7, const unsigned char& addressType,
                                 const char* textParameter, const PAL::TVector<tXParam>& xParams) {
    const char* const parts[] = {part1, part2, part3, part4, part5, part6, part7};
    CPropertyWriter w(*this, ContactLayout::Address);
    w.Bits8(TypeIdValTypeAddressType, addressType);
    if (!AllNull(parts)) {
        w.TextsIfSet(TypeIdValTypeAddressPart1, parts)
            .TextIfSet(TypeIdValTypeLanguage, textParameter)
            .XParams(xParams);
    }
    return w.Done();
}

bool CTLVContactCreator::Label(const char* text, const unsigned char& addressType,
                               const char* textParameter, const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Label)
        .Bits8IfNonZero(TypeIdValTypeAddressType, addressType)
        .TextIfSet(TypeIdValTypeLabel, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Telephone(const char* number, const unsigned short& telephoneType,
                                   const unsigned char& telephoneByte,
                                   const unsigned short& telephoneFlags, const char* text,
                                   const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Telephone)
        .Bits16IfNonZero(TypeIdValTypeTelType, telephoneType)
        .Text(TypeIdValTypeTelNumber, number)
        .UInt8IfNonZero(TypeIdValTypeTelByte, telephoneByte)
        .Bits16IfNonZero(TypeIdValTypeTelFlags, telephoneFlags)
        .TextIfSet(TypeIdValTypeTelText, text)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Email(const char* address, const unsigned char& emailType) {
    return CPropertyWriter(*this, ContactLayout::Email)
        .Bits8IfNonZero(TypeIdValTypeEmailType, emailType)
        .Text(TypeIdValTypeEmailAddress, address)
        .Done();
}

bool CTLVContactCreator::Mailer(const char* text, const char* textParameter,
                                const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Mailer)
        .Text(TypeIdValTypeMailer, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Timezone(const char* text1, const char* text2) {
    CPropertyWriter w(*this, ContactLayout::Timezone);
    if (text1 != nullptr) {
        w.Text(TypeIdValTypeTimezoneText1, text1);
    } else {
        w.TextIfSet(TypeIdValTypeTimezoneText2, text2);
    }
    return w.Done();
}

bool CTLVContactCreator::GeographicPosition(const char* coordinate1, const char* coordinate2) {
    return CPropertyWriter(*this, ContactLayout::GeographicPosition)
        .TextIfSet(TypeIdValTypeGeoText1, coordinate1)
        .TextIfSet(TypeIdValTypeGeoText2, coordinate2)
        .Done();
}

bool CTLVContactCreator::Title(const char* text, const char* textParameter,
                               const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Title)
        .Text(TypeIdValTypeTitle, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Role(const char* text, const char* textParameter,
                              const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Role)
        .Text(TypeIdValTypeContactRole, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Logo(const char* mediaText1, const char* mediaType, const void* data,
                              const unsigned int& length, const char* mediaText3) {
    return CPropertyWriter(*this, ContactLayout::Logo)
        .TextIfSet(TypeIdValTypeMediaText1, mediaText1)
        .TextIfSet(TypeIdValTypeMediaType, mediaType)
        .BytesIfSet(TypeIdValTypeBinaryData, data, length)
        .TextIfSet(TypeIdValTypeMediaText3, mediaText3)
        .Done();
}

bool CTLVContactCreator::Agent(const char* text1, const char* text2) {
    CPropertyWriter w(*this, ContactLayout::Agent);
    // Exactly one text or none: both set is as ambiguous as neither.
    if (text1 != nullptr && text2 == nullptr) w.Text(TypeIdValTypeMediaText1, text1);
    if (text1 == nullptr && text2 != nullptr) w.Text(TypeIdValTypeAgentText, text2);
    return w.Done();
}

bool CTLVContactCreator::Organization(const char* name, const PAL::TVector<const char*>& units) {
    return CPropertyWriter(*this, ContactLayout::Organization)
        .Text(TypeIdValTypeOrgName, name)
        .TextList(TypeIdValTypeOrgUnit, units)
        .Done();
}

bool CTLVContactCreator::Categories(const PAL::TVector<const char*>& categories,
                                    const char* textParameter,
                                    const PAL::TVector<tXParam>& xParams) {
    CPropertyWriter w(*this, ContactLayout::Categories);
    if (!categories.isEmpty()) {
        w.TextList(TypeIdValTypeCategory, categories)
            .TextIfSet(TypeIdValTypeLanguage, textParameter)
            .XParams(xParams);
    }
    return w.Done();
}

bool CTLVContactCreator::Note(const char* text, const char* textParameter,
                              const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::Note)
        .Text(TypeIdValTypeNote, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Revision(const char* dateTime, const char* dateTimeAlt) {
    CPropertyWriter w(*this, ContactLayout::Revision);
    if (dateTime != nullptr) {
        w.Text(TypeIdValTypeDateTime, dateTime);
    } else {
        w.TextIfSet(TypeIdValTypeDateTimeAlt, dateTimeAlt);
    }
    return w.Done();
}

bool CTLVContactCreator::SortString(const char* text, const char* textParameter,
                                    const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::SortString)
        .Text(TypeIdValTypeSortString, text)
        .TextIfSet(TypeIdValTypeLanguage, textParameter)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Sound(const char* mediaText1, const char* mediaType, const void* data,
                               const unsigned int& length, const char* mediaText3,
                               const char* formattedName, const char* namePart1,
                               const char* namePart2, const char* namePart3, const char* namePart4,
                               const char* namePart5) {
    const char* const nameParts[] = {namePart1, namePart2, namePart3, namePart4, namePart5};
    // The sound's data comes first, before its texts, unlike the other media.
    return CPropertyWriter(*this, ContactLayout::Sound)
        .BytesIfSet(TypeIdValTypeBinaryData, data, length)
        .TextIfSet(TypeIdValTypeMediaText1, mediaText1)
        .TextIfSet(TypeIdValTypeMediaType, mediaType)
        .TextIfSet(TypeIdValTypeMediaText3, mediaText3)
        .TextIfSet(TypeIdValTypeFormattedName, formattedName)
        .TextsIfSet(TypeIdValTypeNamePart1, nameParts)
        .Done();
}

bool CTLVContactCreator::UID(const char* text) {
    return CPropertyWriter(*this, ContactLayout::UID)
        .Text(TypeIdValTypeUniqueIdentifier, text)
        .Done();
}

bool CTLVContactCreator::SpeedDial(const char* text) {
    return CPropertyWriter(*this, ContactLayout::SpeedDial)
        .Text(TypeIdValTypeSpeedDial, text)
        .Done();
}

bool CTLVContactCreator::XUID(const char* text) {
    return CPropertyWriter(*this, ContactLayout::XUID).Text(TypeIdValTypeXUID, text).Done();
}

bool CTLVContactCreator::XUCI(const char* text, int number, unsigned short unsignedNumber) {
    // The unsigned number reuses the telephone type's ID, as a UInt16; the
    // signed one travels as its low 16 bits.
    return CPropertyWriter(*this, ContactLayout::XUCI)
        .UInt16IfNonZero(TypeIdValTypeTelType, unsignedNumber)
        .Text(TypeIdValTypeXUCIText, text)
        .UInt16(TypeIdValTypeXUCINumber, static_cast<unsigned short>(number & 0xFFFF))
        .Done();
}

bool CTLVContactCreator::Handle(const char* text) {
    return CPropertyWriter(*this, ContactLayout::Handle).Text(TypeIdValTypeHandle, text).Done();
}

bool CTLVContactCreator::URL(const char* text) {
    return CPropertyWriter(*this, ContactLayout::URL).Text(TypeIdValTypeURL, text).Done();
}

bool CTLVContactCreator::Version(const char* text) {
    return CPropertyWriter(*this, ContactLayout::Version).Text(TypeIdValTypeVersion, text).Done();
}

bool CTLVContactCreator::Classification(const char* text) {
    return CPropertyWriter(*this, ContactLayout::Classification)
        .Text(TypeIdValTypeClassification, text)
        .Done();
}

bool CTLVContactCreator::ProdID(const char* text) {
    return CPropertyWriter(*this, ContactLayout::ProdID).Text(TypeIdValTypeProdID, text).Done();
}

bool CTLVContactCreator::Key(const char* keyType, const char* mediaType, const void* data,
                             const unsigned int& length) {
    return CPropertyWriter(*this, ContactLayout::Key)
        .TextIfSet(TypeIdValTypeKeyType, keyType)
        .TextIfSet(TypeIdValTypeMediaType, mediaType)
        .BytesIfSet(TypeIdValTypeBinaryData, data, length)
        .Done();
}

bool CTLVContactCreator::PhotoAvailability(const bool& available) {
    return CPropertyWriter(*this, ContactLayout::PhotoAvailability)
        .UInt8(TypeIdValTypePhotoAvailability, available ? 1 : 0)
        .Done();
}

bool CTLVContactCreator::NonStandardProperty(const char* name, const char* value, const void* data,
                                             const unsigned int& length,
                                             const PAL::TVector<tXParam>& xParams) {
    return CPropertyWriter(*this, ContactLayout::NonStandardProperty)
        .Text(TypeIdValTypeNonStandardName, name)
        .TextIfSet(TypeIdValTypeNonStandardValue, value)
        .BytesIfSet(TypeIdValTypeBinaryData, data, length)
        .XParams(xParams)
        .Done();
}

bool CTLVContactCreator::Reset() {
    return FrameReset();
}

bool CTLVContactCreator::GetData(const void*& data, unsigned int& length) {
    return FrameGetData(data, length);
}

bool CTLVContactCreator::AddXParams(const PAL::TVector<tXParam>& xParams) {
    return CTLVCreatorFrame::AddXParams(xParams);
}

}  // namespace PimShared
