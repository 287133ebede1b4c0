#ifndef PIMTLV_PIMSHARED_CALENDAR_ICALENDARATTRIBUTES_H
#define PIMTLV_PIMSHARED_CALENDAR_ICALENDARATTRIBUTES_H

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// The properties of a calendar event (VEVENT), one operation each, between
/// Begin and End. A null text means the value is absent; every operation
/// answers true when it took effect.
class PIMTLV_API ICalendarAttributes {
  public:
    /// An extension parameter: name and value.
    using tXParam = PimShared::tXParam;
    /// eRsvpFalse, eRsvpTrue, or eRsvpNotGiven (0xFFFFFFFF: no setting).
    using eRsvpType = PimShared::eRsvpType;

    /// Opens the item; instance is its number among the items of a sync.
    virtual bool Begin(const unsigned int& instance) = 0;
    /// Closes the item.
    virtual bool End() = 0;
    /// One property of the item with its values. A creator writes it; a parser calls it on its
    /// receiver with the values read (texts may be null when not given). True to go on.
    /// @{
    virtual bool ProductIdentifier(const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Version(const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Categories(const PAL::TVector<const char*>& categories, const char* language,
                            const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Classification(const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Description(const char* text, const char* altRep, const char* language,
                             const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Location(const char* text, const char* altRep, const char* language,
                          const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Priority(const unsigned char& priority, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Status(const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Summary(const char* text, const char* altRep, const char* language,
                         const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool DateTimeStart(const PAL::CDateAndTime& dateTime, const char* timeZone,
                               const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool DateTimeEnd(const PAL::CDateAndTime& dateTime, const char* timeZone,
                             const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool DateTimeStartLocal(const PAL::CDateAndTime& dateTime,
                                    const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool DateTimeEndLocal(const PAL::CDateAndTime& dateTime,
                                  const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool UniqueIdentifier(const char* text, const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool DateTimeCreated(const PAL::CDateAndTime& dateTime,
                                 const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool LastModified(const PAL::CDateAndTime& dateTime,
                              const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool SequenceNumber(const unsigned short& number,
                                const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Attendee(const char* address, const char* cuType,
                          const PAL::TVector<const char*>& members, const char* role,
                          const char* partStat, const eRsvpType& rsvp,
                          const PAL::TVector<const char*>& delegatedTo,
                          const PAL::TVector<const char*>& delegatedFrom, const char* sentBy,
                          const char* commonName, const char* directory, const char* language,
                          const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool Organizer(const char* address, const char* sentBy, const char* commonName,
                           const char* directory, const char* language,
                           const PAL::TVector<tXParam>& xParams) = 0;
    virtual bool SendStatus(unsigned char status) = 0;
    virtual bool InstanceName(const char* name) = 0;
    /// @}

  protected:
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    ICalendarAttributes() = default;
    ICalendarAttributes(const ICalendarAttributes&) = default;
    ICalendarAttributes& operator=(const ICalendarAttributes&) = default;
    ~ICalendarAttributes() = default;
    /// @}
};

/// A calendar event writer: the properties plus taking the bytes.
class PIMTLV_API ICalendarCreator : public ICalendarAttributes {
  public:
    /// Discards everything written so far.
    virtual bool Reset() = 0;
    /// The finished stream; the bytes stay owned by the creator until its next
    /// GetData, Reset or destruction.
    virtual bool GetData(const void*& data, unsigned int& length) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ICalendarCreator() = default;
    /// @}
};

}  // namespace PimShared

#endif
