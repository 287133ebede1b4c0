#ifndef PIMTLV_TOOL_ITEMS_CALENDARFAMILY_H
#define PIMTLV_TOOL_ITEMS_CALENDARFAMILY_H

// What the adapters of events, tasks and notes share. The three items have
// one numbering and, for the properties they have in common, operations of
// the same name and arguments, so the tables and recorders here are written
// once over the item's interface type.

#include <vector>

#include "Items.h"
#include "pimshared/common/CalendarFamily.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/CreatorFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimTool {

// The reply-wanted setting: null when not given, else its number.
template <>
struct Codec<PimShared::eRsvpType> {
    static Json ToJson(PimShared::eRsvpType v) {
        return v == PimShared::eRsvpNotGiven ? Json(nullptr) : Json(static_cast<unsigned int>(v));
    }
    struct Holder {
        PimShared::eRsvpType value = PimShared::eRsvpNotGiven;
        PimShared::eRsvpType Get() const { return value; }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        if (!j.is_null())
            h.value = static_cast<PimShared::eRsvpType>(IntegerFromJson<unsigned int>(j, place));
    }
};

// Type-ID names of the whole family; an item simply never uses the others.
std::vector<TypeName> CalendarFamilyNames();

// Operations that events, tasks and notes all have.
template <typename I>
std::vector<OpEntry> CalendarCommonOps() {
    return {
        Op<&I::Begin>("Begin", "instance"),
        Op<&I::End>("End"),
        Op<&I::ProductIdentifier>("ProductIdentifier", "text", "xParams"),
        Op<&I::Version>("Version", "text", "xParams"),
        Op<&I::Categories>("Categories", "categories", "language", "xParams"),
        Op<&I::Classification>("Classification", "text", "xParams"),
        Op<&I::Description>("Description", "text", "altRep", "language", "xParams"),
        Op<&I::Status>("Status", "text", "xParams"),
        Op<&I::Summary>("Summary", "text", "altRep", "language", "xParams"),
        Op<&I::UniqueIdentifier>("UniqueIdentifier", "text", "xParams"),
        Op<&I::DateTimeCreated>("DateTimeCreated", "dateTime", "xParams"),
        Op<&I::LastModified>("LastModified", "dateTime", "xParams"),
        Op<&I::SequenceNumber>("SequenceNumber", "number", "xParams"),
        Op<&I::Attendee>("Attendee", "address", "cuType", "members", "role", "partStat", "rsvp",
                         "delegatedTo", "delegatedFrom", "sentBy", "commonName", "directory",
                         "language", "xParams"),
        Op<&I::Organizer>("Organizer", "address", "sentBy", "commonName", "directory", "language",
                          "xParams"),
        Op<&I::SendStatus>("SendStatus", "status"),
        Op<&I::InstanceName>("InstanceName", "name"),
    };
}

// Operations that events and tasks have beyond the common ones.
template <typename I>
std::vector<OpEntry> EventTaskOps() {
    return {
        Op<&I::Location>("Location", "text", "altRep", "language", "xParams"),
        Op<&I::Priority>("Priority", "priority", "xParams"),
        Op<&I::DateTimeStart>("DateTimeStart", "dateTime", "timeZone", "xParams"),
        Op<&I::DateTimeStartLocal>("DateTimeStartLocal", "dateTime", "xParams"),
    };
}

inline std::vector<OpEntry> Joined(std::vector<OpEntry> a, const std::vector<OpEntry>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A receiver that records the common operations. R is the item's receiver
// interface, which derives from its Attributes interface.
template <typename R>
class CalendarCommonRecorder : public R {
  public:
    using XParams = PAL::TVector<typename R::tXParam>;
    using Texts = PAL::TVector<const char*>;
    using Rsvp = typename R::eRsvpType;

    explicit CalendarCommonRecorder(Recorder& recorder) : m_rec(recorder) {}

    bool Begin(const unsigned int& instance) override { return m_rec.Put<&R::Begin>(instance); }
    bool End() override { return m_rec.Put<&R::End>(); }
    bool ProductIdentifier(const char* t, const XParams& x) override {
        return m_rec.Put<&R::ProductIdentifier>(t, x);
    }
    bool Version(const char* t, const XParams& x) override { return m_rec.Put<&R::Version>(t, x); }
    bool Categories(const Texts& list, const char* language, const XParams& x) override {
        return m_rec.Put<&R::Categories>(list, language, x);
    }
    bool Classification(const char* t, const XParams& x) override {
        return m_rec.Put<&R::Classification>(t, x);
    }
    bool Description(const char* t, const char* alt, const char* lang, const XParams& x) override {
        return m_rec.Put<&R::Description>(t, alt, lang, x);
    }
    bool Status(const char* t, const XParams& x) override { return m_rec.Put<&R::Status>(t, x); }
    bool Summary(const char* t, const char* alt, const char* lang, const XParams& x) override {
        return m_rec.Put<&R::Summary>(t, alt, lang, x);
    }
    bool UniqueIdentifier(const char* t, const XParams& x) override {
        return m_rec.Put<&R::UniqueIdentifier>(t, x);
    }
    bool DateTimeCreated(const PAL::CDateAndTime& dt, const XParams& x) override {
        return m_rec.Put<&R::DateTimeCreated>(dt, x);
    }
    bool LastModified(const PAL::CDateAndTime& dt, const XParams& x) override {
        return m_rec.Put<&R::LastModified>(dt, x);
    }
    bool SequenceNumber(const unsigned short& n, const XParams& x) override {
        return m_rec.Put<&R::SequenceNumber>(n, x);
    }
    bool Attendee(const char* a1, const char* a2, const Texts& a3, const char* a4, const char* a5,
                  const Rsvp& a6, const Texts& a7, const Texts& a8, const char* a9, const char* a10,
                  const char* a11, const char* a12, const XParams& x) override {
        return m_rec.Put<&R::Attendee>(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, x);
    }
    bool Organizer(const char* a1, const char* a2, const char* a3, const char* a4, const char* a5,
                   const XParams& x) override {
        return m_rec.Put<&R::Organizer>(a1, a2, a3, a4, a5, x);
    }
    bool SendStatus(unsigned char status) override { return m_rec.Put<&R::SendStatus>(status); }
    bool InstanceName(const char* name) override { return m_rec.Put<&R::InstanceName>(name); }
    bool TraceMessage(const int& code, const char* text) override {
        return m_rec.Trace(code, text);
    }

  protected:
    Recorder& m_rec;
};

// Adds the operations of events and tasks.
template <typename R>
class EventTaskRecorder : public CalendarCommonRecorder<R> {
  public:
    using Base = CalendarCommonRecorder<R>;
    using Base::Base;
    using typename Base::XParams;

    bool Location(const char* t, const char* alt, const char* lang, const XParams& x) override {
        return this->m_rec.template Put<&R::Location>(t, alt, lang, x);
    }
    bool Priority(const unsigned char& p, const XParams& x) override {
        return this->m_rec.template Put<&R::Priority>(p, x);
    }
    bool DateTimeStart(const PAL::CDateAndTime& dt, const char* zone, const XParams& x) override {
        return this->m_rec.template Put<&R::DateTimeStart>(dt, zone, x);
    }
    bool DateTimeStartLocal(const PAL::CDateAndTime& dt, const XParams& x) override {
        return this->m_rec.template Put<&R::DateTimeStartLocal>(dt, x);
    }
};

// The family's parser and creator stay apart on purpose in a few places; the
// tool's help lists them.
constexpr const char* kCalendarAsymmetries =
    "InstanceName is read but never written (the creator refuses it); a status "
    "sent as a one-byte code comes back as its text; 1008 date-times and "
    "date-times without the final Z are written back as 1007 UTC texts; an item "
    "without properties comes back without its End (the parser reports its "
    "closing nodes).";

}  // namespace PimTool

#endif
