#ifndef PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H
#define PIMTLV_PIMSHARED_CONTACT_CONTACTRECEIVER_H

#include "pimshared/contact/ContactAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a contact parser calls: the property operations with the values of
/// each property node once it closes (texts and data point into the parsed
/// bytes and are valid only during the call), and TraceMessage for every
/// irregularity, with a numeric code and, except for a broken stream, the
/// empty text. Answer true to let parsing go on.
class PIMTLV_API IContactReceiver : public IContactAttributes {
  public:
    /// Every diagnostic of the parser: a code (listed with the receiver) and a text, which may be
    /// empty. True to go on.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~IContactReceiver() = default;
    /// @}
};

/// A IContactReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CContactReceiverBase : public IContactReceiver {
  public:
    bool Begin(const unsigned int& /*instance*/) override { return true; }
    bool End() override { return true; }
    bool FormattedName(const char* /*text*/, const char* /*textParameter*/,
                       const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Name(const char* /*part1*/, const char* /*part2*/, const char* /*part3*/,
              const char* /*part4*/, const char* /*part5*/, const char* /*textParameter*/,
              const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Nickname(const PAL::TVector<const char*>& /*nicknames*/, const char* /*textParameter*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Photo(const char* /*mediaText1*/, const char* /*mediaType*/, const void* /*data*/,
               const unsigned int& /*length*/, const char* /*mediaText3*/) override {
        return true;
    }
    bool Birthday(const char* /*dateTime*/, const char* /*dateTimeAlt*/) override { return true; }
    bool Address(const char* /*part1*/, const char* /*part2*/, const char* /*part3*/,
                 const char* /*part4*/, const char* /*part5*/, const char* /*part6*/,
                 const char* /*part7*/, const unsigned char& /*addressType*/,
                 const char* /*textParameter*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Label(const char* /*text*/, const unsigned char& /*addressType*/,
               const char* /*textParameter*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Telephone(const char* /*number*/, const unsigned short& /*telephoneType*/,
                   const unsigned char& /*telephoneByte*/, const unsigned short& /*telephoneFlags*/,
                   const char* /*text*/, const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Email(const char* /*address*/, const unsigned char& /*emailType*/) override {
        return true;
    }
    bool Mailer(const char* /*text*/, const char* /*textParameter*/,
                const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Timezone(const char* /*text1*/, const char* /*text2*/) override { return true; }
    bool GeographicPosition(const char* /*coordinate1*/, const char* /*coordinate2*/) override {
        return true;
    }
    bool Title(const char* /*text*/, const char* /*textParameter*/,
               const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Role(const char* /*text*/, const char* /*textParameter*/,
              const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Logo(const char* /*mediaText1*/, const char* /*mediaType*/, const void* /*data*/,
              const unsigned int& /*length*/, const char* /*mediaText3*/) override {
        return true;
    }
    bool Agent(const char* /*text1*/, const char* /*text2*/) override { return true; }
    bool Organization(const char* /*name*/, const PAL::TVector<const char*>& /*units*/) override {
        return true;
    }
    bool Categories(const PAL::TVector<const char*>& /*categories*/, const char* /*textParameter*/,
                    const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Note(const char* /*text*/, const char* /*textParameter*/,
              const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Revision(const char* /*dateTime*/, const char* /*dateTimeAlt*/) override { return true; }
    bool SortString(const char* /*text*/, const char* /*textParameter*/,
                    const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Sound(const char* /*mediaText1*/, const char* /*mediaType*/, const void* /*data*/,
               const unsigned int& /*length*/, const char* /*mediaText3*/,
               const char* /*formattedName*/, const char* /*namePart1*/, const char* /*namePart2*/,
               const char* /*namePart3*/, const char* /*namePart4*/,
               const char* /*namePart5*/) override {
        return true;
    }
    bool UID(const char* /*text*/) override { return true; }
    bool SpeedDial(const char* /*text*/) override { return true; }
    bool XUID(const char* /*text*/) override { return true; }
    bool XUCI(const char* /*text*/, int /*number*/, unsigned short /*unsignedNumber*/) override {
        return true;
    }
    bool URL(const char* /*text*/) override { return true; }
    bool Version(const char* /*text*/) override { return true; }
    bool Classification(const char* /*text*/) override { return true; }
    bool ProdID(const char* /*text*/) override { return true; }
    bool Key(const char* /*keyType*/, const char* /*mediaType*/, const void* /*data*/,
             const unsigned int& /*length*/) override {
        return true;
    }
    bool PhotoAvailability(const bool& /*available*/) override { return true; }
    bool NonStandardProperty(const char* /*name*/, const char* /*value*/, const void* /*data*/,
                             const unsigned int& /*length*/,
                             const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override { return true; }
};

}  // namespace PimShared

#endif
