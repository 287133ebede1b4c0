#include "pimshared/common/CalendarFamilyCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/common/CalendarLayout.h"
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

namespace {

using CalendarLayout::eWrite;
using CalendarLayout::tValue;

}  // namespace

// One property node written by its row of the layout table: each call writes
// the row's next written column with the column's ID (columns only read are
// passed over), each only if every step before it succeeded.
class CCalendarFamilyCreator::CRowWriter {
  public:
    CRowWriter(CCalendarFamilyCreator& owner, unsigned int node)
        : m_owner(owner),
          m_tlv(owner.Writer()),
          m_row(CalendarLayout::Row(
              static_cast<CalendarLayout::eProperty>(CalendarLayout::RowOfNode(node)))) {
        m_ok = m_tlv != nullptr && m_tlv->NodeBegin(m_row.node);
    }

    // A text: always written for the main column (a null text as the empty
    // text), otherwise only when given.
    CRowWriter& Text(const char* text) {
        const tValue& column = Next();
        if (m_ok && (text != nullptr || column.write == eWrite::Always)) {
            m_ok = m_tlv->LeafString(column.id, text);
        }
        return *this;
    }
    // What attendees and organizers share at their end: who sends for them,
    // their name, directory entry and language, then the address.
    CRowWriter& Party(const char* sentBy, const char* commonName, const char* directory,
                      const char* language, const char* address) {
        return Text(sentBy).Text(commonName).Text(directory).Text(language).Text(address);
    }
    // One leaf per entry.
    CRowWriter& List(const PAL::TVector<const char*>& texts) {
        const tValue& column = Next();
        for (const char* text : texts) {
            if (m_ok) m_ok = m_tlv->LeafString(column.id, text);
        }
        return *this;
    }
    CRowWriter& UInt8(unsigned char value, bool given = true) {
        const tValue& column = Next();
        if (m_ok && given) m_ok = m_tlv->LeafUInt8(column.id, value);
        return *this;
    }
    CRowWriter& UInt16(unsigned short value) {
        const tValue& column = Next();
        if (m_ok) m_ok = m_tlv->LeafUInt16(column.id, value);
        return *this;
    }
    // The date-time text and, where the row has a zone column, the zone if
    // given: the frame's date writer, whose IDs the rows are checked against.
    CRowWriter& DateTime(const PAL::CDateAndTime& dateTime, const char* zone) {
        Next();
        if (m_at < CalendarLayout::ColumnCount(m_row) &&
            m_row.values[m_at].id == TypeIdValTypeDateTimeZone) {
            Next();
        }
        if (m_ok) m_ok = m_owner.AddDateTime(dateTime, zone);
        return *this;
    }
    // The extension parameters where the row takes them, then the node's end;
    // a failed step leaves the node open.
    bool Close(const PAL::TVector<tXParam>& xParams) {
        if (m_ok && m_row.xParams && !xParams.isEmpty()) m_ok = m_owner.AddXParams(xParams);
        return m_ok && m_tlv->NodeEnd(m_row.node);
    }
    bool Close() { return m_ok && m_tlv->NodeEnd(m_row.node); }

  private:
    const tValue& Next() {
        while (m_row.values[m_at].write == eWrite::ReadOnly) ++m_at;
        return m_row.values[m_at++];
    }

    CCalendarFamilyCreator& m_owner;
    TlvWriter* m_tlv;
    const CalendarLayout::tProperty& m_row;
    unsigned int m_at = 0;
    bool m_ok = false;
};

bool CCalendarFamilyCreator::WriteText(unsigned int property, const char* text,
                                       const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, property).Text(text).Close(xParams);
}

bool CCalendarFamilyCreator::WriteRichText(unsigned int property, const char* text,
                                           const char* altRep, const char* language,
                                           const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, property).Text(altRep).Text(language).Text(text).Close(xParams);
}

bool CCalendarFamilyCreator::WriteUInt8(unsigned int property, unsigned char value,
                                        const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, property).UInt8(value).Close(xParams);
}

bool CCalendarFamilyCreator::WriteUInt16(unsigned int property, unsigned short value,
                                         const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, property).UInt16(value).Close(xParams);
}

bool CCalendarFamilyCreator::WriteDateTime(unsigned int property, const PAL::CDateAndTime& dateTime,
                                           const char* zone, const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, property).DateTime(dateTime, zone).Close(xParams);
}

bool CCalendarFamilyCreator::WriteCategories(const PAL::TVector<const char*>& categories,
                                             const char* language,
                                             const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, TypeIdPropTypeCategories)
        .List(categories)
        .Text(language)
        .Close(xParams);
}

bool CCalendarFamilyCreator::WriteAttendee(const char* address, const char* cuType,
                                           const PAL::TVector<const char*>& members,
                                           const char* role, const char* partStat, eRsvpType rsvp,
                                           const PAL::TVector<const char*>& delegatedTo,
                                           const PAL::TVector<const char*>& delegatedFrom,
                                           const char* sentBy, const char* commonName,
                                           const char* directory, const char* language,
                                           const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, TypeIdPropTypeAttendee)
        .Text(cuType)
        .List(members)
        .Text(role)
        .Text(partStat)
        .UInt8(static_cast<unsigned char>(rsvp & 0xFFu), rsvp != eRsvpNotGiven)
        .List(delegatedTo)
        .List(delegatedFrom)
        .Party(sentBy, commonName, directory, language, address)
        .Close(xParams);
}

bool CCalendarFamilyCreator::WriteOrganizer(const char* address, const char* sentBy,
                                            const char* commonName, const char* directory,
                                            const char* language,
                                            const PAL::TVector<tXParam>& xParams) {
    return CRowWriter(*this, TypeIdPropTypeOrganizer)
        .Party(sentBy, commonName, directory, language, address)
        .Close(xParams);
}

bool CCalendarFamilyCreator::WriteSendStatus(unsigned char status) {
    return CRowWriter(*this, TypeIdPropTypeSendStatus).UInt8(status).Close();
}

}  // namespace PimShared
