#include "pimshared/common/CalendarFamilyCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

using namespace CalendarTypeIds;

bool CCalendarFamilyCreator::WriteBegin(unsigned int root, unsigned int component,
                                        unsigned int instance) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(root) && tlv->NodeBegin(component) &&
           tlv->LeafUInt32(TypeIdValTypeInstance, instance);
}

bool CCalendarFamilyCreator::WriteEnd(unsigned int root, unsigned int component) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeEnd(component) && tlv->NodeEnd(root);
}

bool CCalendarFamilyCreator::OptionalText(unsigned int valueId, const char* text) {
    return text == nullptr || Writer()->LeafString(valueId, text);
}

bool CCalendarFamilyCreator::TextList(unsigned int valueId,
                                      const PAL::TVector<const char*>& texts) {
    for (const char* text : texts) {
        if (!Writer()->LeafString(valueId, text)) return false;
    }
    return true;
}

bool CCalendarFamilyCreator::Close(unsigned int property, const PAL::TVector<tXParam>& xParams) {
    return (xParams.isEmpty() || AddXParams(xParams)) && Writer()->NodeEnd(property);
}

bool CCalendarFamilyCreator::WriteText(unsigned int property, unsigned int valueId,
                                       const char* text, const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(property) && tlv->LeafString(valueId, text) &&
           Close(property, xParams);
}

bool CCalendarFamilyCreator::WriteRichText(unsigned int property, unsigned int valueId,
                                           const char* text, const char* altRep,
                                           const char* language,
                                           const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(property) &&
           OptionalText(TypeIdValTypeAltRep, altRep) &&
           OptionalText(TypeIdValTypeLanguage, language) && tlv->LeafString(valueId, text) &&
           Close(property, xParams);
}

bool CCalendarFamilyCreator::WriteUInt8(unsigned int property, unsigned int valueId,
                                        unsigned char value, const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(property) && tlv->LeafUInt8(valueId, value) &&
           Close(property, xParams);
}

bool CCalendarFamilyCreator::WriteUInt16(unsigned int property, unsigned int valueId,
                                         unsigned short value,
                                         const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(property) && tlv->LeafUInt16(valueId, value) &&
           Close(property, xParams);
}

bool CCalendarFamilyCreator::WriteDateTime(unsigned int property, const PAL::CDateAndTime& dateTime,
                                           const char* zone, const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(property) && AddDateTime(dateTime, zone) &&
           Close(property, xParams);
}

bool CCalendarFamilyCreator::WriteCategories(const PAL::TVector<const char*>& categories,
                                             const char* language,
                                             const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdPropTypeCategories) &&
           TextList(TypeIdValTypeCategory, categories) &&
           OptionalText(TypeIdValTypeLanguage, language) &&
           Close(TypeIdPropTypeCategories, xParams);
}

bool CCalendarFamilyCreator::WriteAttendee(const char* address, const char* cuType,
                                           const PAL::TVector<const char*>& members,
                                           const char* role, const char* partStat, eRsvpType rsvp,
                                           const PAL::TVector<const char*>& delegatedTo,
                                           const PAL::TVector<const char*>& delegatedFrom,
                                           const char* sentBy, const char* commonName,
                                           const char* directory, const char* language,
                                           const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    if (tlv == nullptr || !tlv->NodeBegin(TypeIdPropTypeAttendee)) return false;
    bool ok = OptionalText(TypeIdValTypeCuType, cuType) && TextList(TypeIdValTypeMember, members) &&
              OptionalText(TypeIdValTypeRole, role) &&
              OptionalText(TypeIdValTypePartStat, partStat);
    if (ok && rsvp != eRsvpNotGiven) {
        ok = tlv->LeafUInt8(TypeIdValTypeRsvp, static_cast<unsigned char>(rsvp & 0xFFu));
    }
    return ok && TextList(TypeIdValTypeDelegatedTo, delegatedTo) &&
           TextList(TypeIdValTypeDelegatedFrom, delegatedFrom) &&
           OptionalText(TypeIdValTypeSentBy, sentBy) &&
           OptionalText(TypeIdValTypeCommonName, commonName) &&
           OptionalText(TypeIdValTypeDirectory, directory) &&
           OptionalText(TypeIdValTypeLanguage, language) &&
           tlv->LeafString(TypeIdValTypeCalAddress, address) &&
           Close(TypeIdPropTypeAttendee, xParams);
}

bool CCalendarFamilyCreator::WriteOrganizer(const char* address, const char* sentBy,
                                            const char* commonName, const char* directory,
                                            const char* language,
                                            const PAL::TVector<tXParam>& xParams) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdPropTypeOrganizer) &&
           OptionalText(TypeIdValTypeSentBy, sentBy) &&
           OptionalText(TypeIdValTypeCommonName, commonName) &&
           OptionalText(TypeIdValTypeDirectory, directory) &&
           OptionalText(TypeIdValTypeLanguage, language) &&
           tlv->LeafString(TypeIdValTypeCalAddress, address) &&
           Close(TypeIdPropTypeOrganizer, xParams);
}

bool CCalendarFamilyCreator::WriteSendStatus(unsigned char status) {
    auto* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdPropTypeSendStatus) &&
           tlv->LeafUInt8(TypeIdValTypeSendStatus, status) &&
           tlv->NodeEnd(TypeIdPropTypeSendStatus);
}

}  // namespace PimShared
