#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTATTRIBUTES_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTATTRIBUTES_H

#include "pimshared/common/XParam.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// The properties of one contact, one operation each. A creator writes them; a
/// receiver gets them back from the parser with the same arguments, slot for
/// slot. Texts are zero-terminated and a null text means the value is absent;
/// integers passed by reference are read through the reference. Every
/// operation answers true when it took effect.
class PIMTLV_API IContactAttributes {
  public:
    /// An extension parameter: name and value.
    using tXParam = PimShared::tXParam;

    /// Opens the item; instance is its number among the items of a sync.
    virtual bool Begin(const unsigned int& instance) = 0;
    /// Closes the item.
    virtual bool End() = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool FormattedName(const char* text, const char* textParameter,
                               const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Name(const char* part1, const char* part2, const char* part3, const char* part4,
                      const char* part5, const char* textParameter,
                      const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Nickname(const PAL::TVector<const char*>& nicknames, const char* textParameter,
                          const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Photo(const char* mediaText1, const char* mediaType, const void* data,
                       const unsigned int& length, const char* mediaText3) = 0;
    virtual bool Birthday(const char* dateTime, const char* dateTimeAlt) = 0;
    virtual bool Address(const char* part1, const char* part2, const char* part3, const char* part4,
                         const char* part5, const char* part6, const char* part7,
                         const unsigned char& addressType, const char* textParameter,
                         const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Label(const char* text, const unsigned char& addressType,
                       const char* textParameter, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Telephone(const char* number, const unsigned short& telephoneType,
                           const unsigned char& telephoneByte, const unsigned short& telephoneFlags,
                           const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Email(const char* address, const unsigned char& emailType) = 0;
    virtual bool Mailer(const char* text, const char* textParameter,
                        const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Timezone(const char* text1, const char* text2) = 0;
    virtual bool GeographicPosition(const char* coordinate1, const char* coordinate2) = 0;
    virtual bool Title(const char* text, const char* textParameter,
                       const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Role(const char* text, const char* textParameter,
                      const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Logo(const char* mediaText1, const char* mediaType, const void* data,
                      const unsigned int& length, const char* mediaText3) = 0;
    virtual bool Agent(const char* text1, const char* text2) = 0;
    virtual bool Organization(const char* name, const PAL::TVector<const char*>& units) = 0;
    virtual bool Categories(const PAL::TVector<const char*>& categories, const char* textParameter,
                            const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Note(const char* text, const char* textParameter,
                      const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Revision(const char* dateTime, const char* dateTimeAlt) = 0;
    virtual bool SortString(const char* text, const char* textParameter,
                            const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Sound(const char* mediaText1, const char* mediaType, const void* data,
                       const unsigned int& length, const char* mediaText3,
                       const char* formattedName, const char* namePart1, const char* namePart2,
                       const char* namePart3, const char* namePart4, const char* namePart5) = 0;
    virtual bool UID(const char* text) = 0;
    virtual bool SpeedDial(const char* text) = 0;
    virtual bool XUID(const char* text) = 0;
    virtual bool XUCI(const char* text, int number, unsigned short unsignedNumber) = 0;
    /// @}
    /// Not pure: creators and receivers that do not know this younger property
    /// need not implement it.
    virtual bool Handle(const char* text) {
        (void)text;
        return true;
    }
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool URL(const char* text) = 0;
    virtual bool Version(const char* text) = 0;
    virtual bool Classification(const char* text) = 0;
    virtual bool ProdID(const char* text) = 0;
    virtual bool Key(const char* keyType, const char* mediaType, const void* data,
                     const unsigned int& length) = 0;
    virtual bool PhotoAvailability(const bool& available) = 0;
    virtual bool NonStandardProperty(const char* name, const char* value, const void* data,
                                     const unsigned int& length,
                                     const PAL::TVector<tXParam>& xParams) = 0;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    IContactAttributes() = default;
    IContactAttributes(const IContactAttributes&) = default;
    IContactAttributes& operator=(const IContactAttributes&) = default;
    ~IContactAttributes() = default;
    /// @}
};

/// A contact writer: the properties, then the reset for the next contact and
/// the bytes of the finished one (owned by the writer).
class PIMTLV_API IContactCreator : public IContactAttributes {
  public:
    /// Discards everything written so far, to start the next item.
    virtual bool Reset() = 0;
    /// The finished stream; the bytes stay owned by the creator until its next GetData, Reset or
    /// destruction.
    virtual bool GetData(const void*& data, unsigned int& length) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~IContactCreator() = default;
    /// @}
};

}  // namespace PimShared

#endif
