#ifndef PIMTLV_PIMSHARED_CONTACT_TLVCONTACTCREATOR_H
#define PIMTLV_PIMSHARED_CONTACT_TLVCONTACTCREATOR_H

#include "pimshared/common/CreatorFrame.h"
#include "pimshared/contact/ContactAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one contact as node 0 { UInt32 10 = instance, property nodes ... }:
/// no component node, one node per property call, in call order.
class PIMTLV_API CTLVContactCreator : public IContactCreator, public CTLVCreatorFrame {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVContactCreator() = default;
    /// @}
    ~CTLVContactCreator() override = default;
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVContactCreator(const CTLVContactCreator&) = delete;
    CTLVContactCreator& operator=(const CTLVContactCreator&) = delete;
    /// @}

    bool Begin(const unsigned int& instance) override;
    bool End() override;
    bool FormattedName(const char* text, const char* textParameter,
                       const PAL::TVector<tXParam>& xParams) override;
    bool Name(const char* part1, const char* part2, const char* part3, const char* part4,
              const char* part5, const char* textParameter,
              const PAL::TVector<tXParam>& xParams) override;
    bool Nickname(const PAL::TVector<const char*>& nicknames, const char* textParameter,
                  const PAL::TVector<tXParam>& xParams) override;
    bool Photo(const char* mediaText1, const char* mediaType, const void* data,
               const unsigned int& length, const char* mediaText3) override;
    bool Birthday(const char* dateTime, const char* dateTimeAlt) override;
    bool Address(const char* part1, const char* part2, const char* part3, const char* part4,
                 const char* part5, const char* part6, const char* part7,
                 const unsigned char& addressType, const char* textParameter,
                 const PAL::TVector<tXParam>& xParams) override;
    bool Label(const char* text, const unsigned char& addressType, const char* textParameter,
               const PAL::TVector<tXParam>& xParams) override;
    bool Telephone(const char* number, const unsigned short& telephoneType,
                   const unsigned char& telephoneByte, const unsigned short& telephoneFlags,
                   const char* text, const PAL::TVector<tXParam>& xParams) override;
    bool Email(const char* address, const unsigned char& emailType) override;
    bool Mailer(const char* text, const char* textParameter,
                const PAL::TVector<tXParam>& xParams) override;
    bool Timezone(const char* text1, const char* text2) override;
    bool GeographicPosition(const char* coordinate1, const char* coordinate2) override;
    bool Title(const char* text, const char* textParameter,
               const PAL::TVector<tXParam>& xParams) override;
    bool Role(const char* text, const char* textParameter,
              const PAL::TVector<tXParam>& xParams) override;
    bool Logo(const char* mediaText1, const char* mediaType, const void* data,
              const unsigned int& length, const char* mediaText3) override;
    bool Agent(const char* text1, const char* text2) override;
    bool Organization(const char* name, const PAL::TVector<const char*>& units) override;
    bool Categories(const PAL::TVector<const char*>& categories, const char* textParameter,
                    const PAL::TVector<tXParam>& xParams) override;
    bool Note(const char* text, const char* textParameter,
              const PAL::TVector<tXParam>& xParams) override;
    bool Revision(const char* dateTime, const char* dateTimeAlt) override;
    bool SortString(const char* text, const char* textParameter,
                    const PAL::TVector<tXParam>& xParams) override;
    bool Sound(const char* mediaText1, const char* mediaType, const void* data,
               const unsigned int& length, const char* mediaText3, const char* formattedName,
               const char* namePart1, const char* namePart2, const char* namePart3,
               const char* namePart4, const char* namePart5) override;
    bool UID(const char* text) override;
    bool SpeedDial(const char* text) override;
    bool XUID(const char* text) override;
    bool XUCI(const char* text, int number, unsigned short unsignedNumber) override;
    bool Handle(const char* text) override;
    bool URL(const char* text) override;
    bool Version(const char* text) override;
    bool Classification(const char* text) override;
    bool ProdID(const char* text) override;
    bool Key(const char* keyType, const char* mediaType, const void* data,
             const unsigned int& length) override;
    bool PhotoAvailability(const bool& available) override;
    bool NonStandardProperty(const char* name, const char* value, const void* data,
                             const unsigned int& length,
                             const PAL::TVector<tXParam>& xParams) override;

    bool Reset() override;
    bool GetData(const void*& data, unsigned int& length) override;

    /// For each pair in order: LeafString(1013, name), then LeafString(1014,
    /// value); false at the first refused leaf; an empty list writes nothing.
    virtual bool AddXParams(const PAL::TVector<tXParam>& xParams);

  private:
    /// Writes one property node under its failure rule.
    class CPropertyWriter;
};

}  // namespace PimShared

#endif
