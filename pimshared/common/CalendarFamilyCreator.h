#ifndef PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYCREATOR_H
#define PIMTLV_PIMSHARED_COMMON_CALENDARFAMILYCREATOR_H

#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/TypeIds.h"
#include "platform/CDateAndTime.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// The writers of the calendar family. Events, tasks and notes share one
/// numbering and one layout per property, so each item creator is a list of
/// one-line operations over these writers; only the frame IDs and the set of
/// properties differ between the items.
///
/// Every writer opens the property node, writes its value leaves (optional ones
/// only when given: a non-null text, a non-empty list, an RSVP that is not
/// eRsvpNotGiven), the extension parameters when there are any, and closes the
/// node. Each step runs only if all before it succeeded; the writer returns
/// the last result. A failed step leaves the node open on purpose, so that
/// GetData refuses the half-written item instead of shipping it.
class PIMTLV_API CCalendarFamilyCreator : public CTLVCreatorFrame {
  protected:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CCalendarFamilyCreator() = default;
    /// @}

    bool WriteBegin(unsigned int root, unsigned int component, unsigned int instance);
    bool WriteEnd(unsigned int root, unsigned int component);

    /// The writers take the property's node; its value IDs and their order
    /// come from the family's layout table, which the parsers read too.
    /// One text leaf, always written (a null text as the empty text).
    bool WriteText(unsigned int property, const char* text, const PAL::TVector<tXParam>& xParams);
    /// Alternate representation and language if given, then the main text.
    bool WriteRichText(unsigned int property, const char* text, const char* altRep,
                       const char* language, const PAL::TVector<tXParam>& xParams);
    bool WriteUInt8(unsigned int property, unsigned char value,
                    const PAL::TVector<tXParam>& xParams);
    bool WriteUInt16(unsigned int property, unsigned short value,
                     const PAL::TVector<tXParam>& xParams);
    /// The date-time text, then the zone text if given.
    bool WriteDateTime(unsigned int property, const PAL::CDateAndTime& dateTime, const char* zone,
                       const PAL::TVector<tXParam>& xParams);
    bool WriteCategories(const PAL::TVector<const char*>& categories, const char* language,
                         const PAL::TVector<tXParam>& xParams);
    bool WriteAttendee(const char* address, const char* cuType,
                       const PAL::TVector<const char*>& members, const char* role,
                       const char* partStat, eRsvpType rsvp,
                       const PAL::TVector<const char*>& delegatedTo,
                       const PAL::TVector<const char*>& delegatedFrom, const char* sentBy,
                       const char* commonName, const char* directory, const char* language,
                       const PAL::TVector<tXParam>& xParams);
    bool WriteOrganizer(const char* address, const char* sentBy, const char* commonName,
                        const char* directory, const char* language,
                        const PAL::TVector<tXParam>& xParams);
    /// The send status has no extension parameters.
    bool WriteSendStatus(unsigned char status);

  private:
    class CRowWriter;
};

/// The operations that events, tasks and notes share, implemented once over
/// the writers for any of the three creator interfaces (their operations of
/// the same name take the same arguments). Root and Component are the item's
/// frame nodes.
template <typename TInterface, unsigned int Root, unsigned int Component>
class TCalendarFamilyCreator : public TInterface, public CCalendarFamilyCreator {
  public:
    using typename TInterface::eRsvpType;
    using typename TInterface::tXParam;

    /// The item's frame nodes.
    static constexpr unsigned int kRoot = Root;
    static constexpr unsigned int kComponent = Component;

    bool Begin(const unsigned int& instance) override {
        return WriteBegin(Root, Component, instance);
    }
    bool End() override { return WriteEnd(Root, Component); }
    bool ProductIdentifier(const char* text, const PAL::TVector<tXParam>& xParams) override {
        return WriteText(CalendarTypeIds::TypeIdPropTypeProductIdentifier, text, xParams);
    }
    bool Version(const char* text, const PAL::TVector<tXParam>& xParams) override {
        return WriteText(CalendarTypeIds::TypeIdPropTypeVersion, text, xParams);
    }
    bool Categories(const PAL::TVector<const char*>& categories, const char* language,
                    const PAL::TVector<tXParam>& xParams) override {
        return WriteCategories(categories, language, xParams);
    }
    bool Classification(const char* text, const PAL::TVector<tXParam>& xParams) override {
        return WriteText(CalendarTypeIds::TypeIdPropTypeClassification, text, xParams);
    }
    bool Description(const char* text, const char* altRep, const char* language,
                     const PAL::TVector<tXParam>& xParams) override {
        return WriteRichText(CalendarTypeIds::TypeIdPropTypeDescription, text, altRep, language,
                             xParams);
    }
    /// The status goes out as the caller's text.
    bool Status(const char* text, const PAL::TVector<tXParam>& xParams) override {
        return WriteText(CalendarTypeIds::TypeIdPropTypeStatus, text, xParams);
    }
    bool Summary(const char* text, const char* altRep, const char* language,
                 const PAL::TVector<tXParam>& xParams) override {
        return WriteRichText(CalendarTypeIds::TypeIdPropTypeSummary, text, altRep, language,
                             xParams);
    }
    bool UniqueIdentifier(const char* text, const PAL::TVector<tXParam>& xParams) override {
        return WriteText(CalendarTypeIds::TypeIdPropTypeUniqueIdentifier, text, xParams);
    }
    bool DateTimeCreated(const PAL::CDateAndTime& dateTime,
                         const PAL::TVector<tXParam>& xParams) override {
        return WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeCreated, dateTime, nullptr,
                             xParams);
    }
    bool LastModified(const PAL::CDateAndTime& dateTime,
                      const PAL::TVector<tXParam>& xParams) override {
        return WriteDateTime(CalendarTypeIds::TypeIdPropTypeLastModified, dateTime, nullptr,
                             xParams);
    }
    bool SequenceNumber(const unsigned short& number,
                        const PAL::TVector<tXParam>& xParams) override {
        return WriteUInt16(CalendarTypeIds::TypeIdPropTypeSequenceNumber, number, xParams);
    }
    bool Attendee(const char* address, const char* cuType, const PAL::TVector<const char*>& members,
                  const char* role, const char* partStat, const eRsvpType& rsvp,
                  const PAL::TVector<const char*>& delegatedTo,
                  const PAL::TVector<const char*>& delegatedFrom, const char* sentBy,
                  const char* commonName, const char* directory, const char* language,
                  const PAL::TVector<tXParam>& xParams) override {
        return WriteAttendee(address, cuType, members, role, partStat, rsvp, delegatedTo,
                             delegatedFrom, sentBy, commonName, directory, language, xParams);
    }
    bool Organizer(const char* address, const char* sentBy, const char* commonName,
                   const char* directory, const char* language,
                   const PAL::TVector<tXParam>& xParams) override {
        return WriteOrganizer(address, sentBy, commonName, directory, language, xParams);
    }
    bool SendStatus(unsigned char status) override { return WriteSendStatus(status); }
    /// The instance name is read, never written.
    bool InstanceName(const char*) override { return false; }
    bool Reset() override { return FrameReset(); }
    bool GetData(const void*& data, unsigned int& length) override {
        return FrameGetData(data, length);
    }
};

/// Location, priority and the start times, which events and tasks have and
/// notes do not.
template <typename TInterface, unsigned int Root, unsigned int Component>
class TEventTaskCreator : public TCalendarFamilyCreator<TInterface, Root, Component> {
  public:
    using typename TInterface::tXParam;

    bool Location(const char* text, const char* altRep, const char* language,
                  const PAL::TVector<tXParam>& xParams) override {
        return this->WriteRichText(CalendarTypeIds::TypeIdPropTypeLocation, text, altRep, language,
                                   xParams);
    }
    bool Priority(const unsigned char& priority, const PAL::TVector<tXParam>& xParams) override {
        return this->WriteUInt8(CalendarTypeIds::TypeIdPropTypePriority, priority, xParams);
    }
    bool DateTimeStart(const PAL::CDateAndTime& dateTime, const char* timeZone,
                       const PAL::TVector<tXParam>& xParams) override {
        return this->WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeStart, dateTime, timeZone,
                                   xParams);
    }
    bool DateTimeStartLocal(const PAL::CDateAndTime& dateTime,
                            const PAL::TVector<tXParam>& xParams) override {
        return this->WriteDateTime(CalendarTypeIds::TypeIdPropTypeDateTimeStartLocal, dateTime,
                                   nullptr, xParams);
    }
};

}  // namespace PimShared

#endif
