#ifndef PIMTLV_FUZZ_ITEMRECEIVERS_H
#define PIMTLV_FUZZ_ITEMRECEIVERS_H

// Receivers for every item parser that read everything they are handed and
// write each call as one line, shared by the item parser targets, the item
// round-trip targets and the test that replays their files.
//
// Every text is measured with strlen and copied byte by byte, every byte
// stream and list is read to its end: under the address sanitizer a dangling
// or unterminated pointer handed to a receiver shows at the call that got it,
// not later. Texts must also be valid UTF-8, as every text of a walk is.
//
// A receiver answers false to the call numbered refuseAt (counting every
// call, diagnostics included, from 0), so refusals land on property calls,
// on calls made at leaves and at node ends, and on diagnostics alike.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "pimshared/calendar/ICalendarReceiver.h"
#include "pimshared/callstack/ICallstackReceiver.h"
#include "pimshared/contact/ContactReceiver.h"
#include "pimshared/email/IEmailReceiver.h"
#include "pimshared/im/IIMReceiver.h"
#include "pimshared/note/INoteReceiver.h"
#include "pimshared/sms/ISMSReceiver.h"
#include "pimshared/task/ITaskReceiver.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"
#include "platform/Velmor.h"

namespace PimTlvFuzz {

// Borrowed bytes handed to a receiver, read as one argument.
struct Bytes {
    const void* data;
    unsigned int length;
};

class CallLog {
  public:
    static constexpr std::size_t kNever = ~static_cast<std::size_t>(0);

    // Forgets what was logged; the call numbered refuseAt answers false.
    // keepTraceLines keeps the code-0 diagnostics (trace lines) in the log.
    void Start(std::size_t refuseAt, bool keepTraceLines) {
        m_refuseAt = refuseAt;
        m_keepTraceLines = keepTraceLines;
        m_calls = 0;
        m_fault = nullptr;
        m_lines.clear();
    }

    const std::vector<std::string>& Lines() const { return m_lines; }
    std::size_t Calls() const { return m_calls; }
    const char* Fault() const { return m_fault; }

    template <typename... A>
    bool Call(const char* name, const A&... args) {
        std::string line = name;
        line += '(';
        (Touch(line, args), ...);
        line += ')';
        m_lines.push_back(std::move(line));
        return Answer();
    }
    bool Trace(const int& code, const char* text) {
        std::string line = "Trace(";
        Touch(line, code);
        Touch(line, text);
        if (code != 0 || m_keepTraceLines) m_lines.push_back(line + ")");
        return Answer();
    }

  private:
    bool Answer() { return m_calls++ != m_refuseAt; }
    void Fault(const char* what) {
        if (m_fault == nullptr) m_fault = what;
    }

    void Touch(std::string& line, const char* text) {
        if (text == nullptr) {
            line += "~|";
            return;
        }
        const std::size_t length = std::strlen(text);
        line += '\'';
        for (std::size_t i = 0; i < length; ++i) line += text[i];
        line += "'|";
        if (length != 0 &&
            Velmor_UTF8_rfc3629_check_string(text, static_cast<unsigned int>(length), 0) == 0) {
            Fault("a receiver got a text that is not valid UTF-8");
        }
    }
    void Touch(std::string& line, const Bytes& bytes) {
        static const char kHex[] = "0123456789abcdef";
        if (bytes.length != 0 && bytes.data == nullptr) {
            Fault("a receiver got a null pointer with a length");
            line += "null|";
            return;
        }
        const auto* p = static_cast<const unsigned char*>(bytes.data);
        line += '<';
        for (unsigned int i = 0; i < bytes.length; ++i) {
            line += kHex[p[i] >> 4];
            line += kHex[p[i] & 15];
        }
        line += ">|";
    }
    void Touch(std::string& line, const PAL::CDateAndTime& d) {
        for (unsigned int v : {d.getYear(), d.getMonth(), d.getDay(), d.getHour(), d.getMinute(),
                               d.getSecond(), d.getMicroseconds()}) {
            line += std::to_string(v) + ':';
        }
        line += '|';
    }
    void Touch(std::string& line, const PimShared::tXParam& x) {
        Touch(line, x.name);
        line += '=';
        Touch(line, x.value);
    }
    void Touch(std::string& line, const PimShared::IEmailAttributes::tMailbox& m) {
        Touch(line, m.fieldType);
        Touch(line, m.displayName);
        Touch(line, m.address);
    }
    void Touch(std::string& line, const PimShared::IIMAttributes::tMailbox& m) {
        Touch(line, m.fieldType);
        Touch(line, m.client);
        Touch(line, m.displayName);
        Touch(line, m.address);
    }
    void Touch(std::string& line, const PimShared::IIMAttributes::tExtendedData& e) {
        Touch(line, e.key);
        Touch(line, e.value);
    }
    template <typename T>
    void Touch(std::string& line, const PAL::TVector<T>& list) {
        line += '[';
        for (const T& item : list) Touch(line, item);
        line += "]|";
    }
    template <typename T,
              typename = std::enable_if_t<std::is_arithmetic<T>::value || std::is_enum<T>::value>>
    void Touch(std::string& line, const T& value) {
        if constexpr (std::is_enum<T>::value) {
            line += std::to_string(static_cast<std::underlying_type_t<T>>(value));
        } else {
            line += std::to_string(value);
        }
        line += '|';
    }

    std::size_t m_refuseAt = kNever;
    bool m_keepTraceLines = false;
    std::size_t m_calls = 0;
    const char* m_fault = nullptr;
    std::vector<std::string> m_lines;
};

// The receivers. Each is a template over the interface it implements, so that
// the same class records both what a parser reports (Base = the receiver
// interface) and what a round trip expects (Base = the attributes interface
// a creator implements). Operations an instance's Base lacks are never called.
#define PIMTLV_FUZZ_TEXT_OP(Op) \
    bool Op(const char* text) { \
        return Call(#Op, text); \
    }

// Events, tasks and notes.
template <typename Base>
class CalendarFamilyLog : public Base, public CallLog {
  public:
    virtual ~CalendarFamilyLog() = default;
    using X = const PAL::TVector<PimShared::tXParam>&;
    using D = const PAL::CDateAndTime&;
    using T = const char*;
    using L = const PAL::TVector<const char*>&;

    bool TraceMessage(const int& code, const char* text) { return Trace(code, text); }
    bool Begin(const unsigned int& i) { return Call("Begin", i); }
    bool End() { return Call("End"); }
    bool ProductIdentifier(T t, X x) { return Call("ProductIdentifier", t, x); }
    bool Version(T t, X x) { return Call("Version", t, x); }
    bool Categories(L l, T lang, X x) { return Call("Categories", l, lang, x); }
    bool Classification(T t, X x) { return Call("Classification", t, x); }
    bool Description(T t, T a, T l, X x) { return Call("Description", t, a, l, x); }
    bool Location(T t, T a, T l, X x) { return Call("Location", t, a, l, x); }
    bool Priority(const unsigned char& p, X x) { return Call("Priority", p, x); }
    bool Status(T t, X x) { return Call("Status", t, x); }
    bool Summary(T t, T a, T l, X x) { return Call("Summary", t, a, l, x); }
    bool DateTimeStart(D d, T z, X x) { return Call("DateTimeStart", d, z, x); }
    bool DateTimeEnd(D d, T z, X x) { return Call("DateTimeEnd", d, z, x); }
    bool DateTimeStartLocal(D d, X x) { return Call("DateTimeStartLocal", d, x); }
    bool DateTimeEndLocal(D d, X x) { return Call("DateTimeEndLocal", d, x); }
    bool DateTimeDueLocal(D d, X x) { return Call("DateTimeDueLocal", d, x); }
    bool UniqueIdentifier(T t, X x) { return Call("UniqueIdentifier", t, x); }
    bool DateTimeCreated(D d, X x) { return Call("DateTimeCreated", d, x); }
    bool LastModified(D d, X x) { return Call("LastModified", d, x); }
    bool SequenceNumber(const unsigned short& n, X x) { return Call("SequenceNumber", n, x); }
    bool Attendee(T a1, T a2, L a3, T a4, T a5, const PimShared::eRsvpType& a6, L a7, L a8, T a9,
                  T a10, T a11, T a12, X x) {
        return Call("Attendee", a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, x);
    }
    bool Organizer(T a1, T a2, T a3, T a4, T a5, X x) {
        return Call("Organizer", a1, a2, a3, a4, a5, x);
    }
    bool SendStatus(unsigned char s) { return Call("SendStatus", s); }
    bool InstanceName(T t) { return Call("InstanceName", t); }
};

template <typename Base>
class ContactLog : public Base, public CallLog {
  public:
    virtual ~ContactLog() = default;
    using X = const PAL::TVector<PimShared::tXParam>&;
    using T = const char*;
    using L = const PAL::TVector<const char*>&;
    using N = const unsigned int&;

    bool TraceMessage(const int& code, const char* text) { return Trace(code, text); }
    bool Begin(const unsigned int& i) { return Call("Begin", i); }
    bool End() { return Call("End"); }
    bool FormattedName(T t, T p, X x) { return Call("FormattedName", t, p, x); }
    bool Name(T a, T b, T c, T d, T e, T p, X x) { return Call("Name", a, b, c, d, e, p, x); }
    bool Nickname(L l, T p, X x) { return Call("Nickname", l, p, x); }
    bool Photo(T a, T b, const void* d, N n, T c) { return Call("Photo", a, b, Bytes{d, n}, c); }
    bool Birthday(T a, T b) { return Call("Birthday", a, b); }
    bool Address(T a, T b, T c, T d, T e, T f, T g, const unsigned char& type, T p, X x) {
        return Call("Address", a, b, c, d, e, f, g, type, p, x);
    }
    bool Label(T t, const unsigned char& type, T p, X x) { return Call("Label", t, type, p, x); }
    bool Telephone(T t, const unsigned short& type, const unsigned char& b,
                   const unsigned short& flags, T text, X x) {
        return Call("Telephone", t, type, b, flags, text, x);
    }
    bool Email(T t, const unsigned char& type) { return Call("Email", t, type); }
    bool Mailer(T t, T p, X x) { return Call("Mailer", t, p, x); }
    bool Timezone(T a, T b) { return Call("Timezone", a, b); }
    bool GeographicPosition(T a, T b) { return Call("GeographicPosition", a, b); }
    bool Title(T t, T p, X x) { return Call("Title", t, p, x); }
    bool Role(T t, T p, X x) { return Call("Role", t, p, x); }
    bool Logo(T a, T b, const void* d, N n, T c) { return Call("Logo", a, b, Bytes{d, n}, c); }
    bool Agent(T a, T b) { return Call("Agent", a, b); }
    bool Organization(T t, L l) { return Call("Organization", t, l); }
    bool Categories(L l, T p, X x) { return Call("Categories", l, p, x); }
    bool Note(T t, T p, X x) { return Call("Note", t, p, x); }
    bool Revision(T a, T b) { return Call("Revision", a, b); }
    bool SortString(T t, T p, X x) { return Call("SortString", t, p, x); }
    bool Sound(T a, T b, const void* d, N n, T c, T f, T n1, T n2, T n3, T n4, T n5) {
        return Call("Sound", a, b, Bytes{d, n}, c, f, n1, n2, n3, n4, n5);
    }
    PIMTLV_FUZZ_TEXT_OP(UID)
    PIMTLV_FUZZ_TEXT_OP(SpeedDial)
    PIMTLV_FUZZ_TEXT_OP(XUID)
    PIMTLV_FUZZ_TEXT_OP(Handle)
    PIMTLV_FUZZ_TEXT_OP(URL)
    PIMTLV_FUZZ_TEXT_OP(Version)
    PIMTLV_FUZZ_TEXT_OP(Classification)
    PIMTLV_FUZZ_TEXT_OP(ProdID)
    bool XUCI(T t, int n, unsigned short u) { return Call("XUCI", t, n, u); }
    bool Key(T a, T b, const void* d, N n) { return Call("Key", a, b, Bytes{d, n}); }
    bool PhotoAvailability(const bool& b) { return Call("PhotoAvailability", b); }
    bool NonStandardProperty(T a, T b, const void* d, N n, X x) {
        return Call("NonStandardProperty", a, b, Bytes{d, n}, x);
    }
};

// E-mails and instant messages: the shared MIME message operations plus both
// items' own.
template <typename Base>
class MimeMessageLog : public Base, public CallLog {
  public:
    virtual ~MimeMessageLog() = default;
    using M = PimShared::IMimeMessageAttributes;
    using IM = PimShared::IIMAttributes;
    using T = const char*;

    bool TraceMessage(const int& code, const char* text) { return Trace(code, text); }
    bool Begin(const unsigned int& i) { return Call("Begin", i); }
    bool End() { return Call("End"); }
    bool BeginEntity() { return Call("BeginEntity"); }
    bool EndEntity() { return Call("EndEntity"); }
    bool AttachmentAvailable(const M::eAttachmentAvailable& v) {
        return Call("AttachmentAvailable", v);
    }
    bool CutoffState(const unsigned short& v) { return Call("CutoffState", v); }
    PIMTLV_FUZZ_TEXT_OP(Comments)
    PIMTLV_FUZZ_TEXT_OP(ContentDescription)
    PIMTLV_FUZZ_TEXT_OP(ContentId)
    bool ContentTransferEncodingEnum(const M::eContentTransferEncoding& v) {
        return Call("ContentTransferEncodingEnum", v);
    }
    bool ReadStatus(const M::eReadStatus& v) { return Call("ReadStatus", v); }
    bool DownloadState(const M::eDownloadState& v) { return Call("DownloadState", v); }
    PIMTLV_FUZZ_TEXT_OP(Folder)
    PIMTLV_FUZZ_TEXT_OP(InReplyTo)
    PIMTLV_FUZZ_TEXT_OP(Instance)
    PIMTLV_FUZZ_TEXT_OP(Keywords)
    PIMTLV_FUZZ_TEXT_OP(MessageId)
    PIMTLV_FUZZ_TEXT_OP(MimeVersion)
    PIMTLV_FUZZ_TEXT_OP(OrigDate)
    PIMTLV_FUZZ_TEXT_OP(SendingState)
    PIMTLV_FUZZ_TEXT_OP(OrigDateLocal)
    bool Priority(const unsigned char& v) { return Call("PriorityLevel", v); }
    PIMTLV_FUZZ_TEXT_OP(References)
    PIMTLV_FUZZ_TEXT_OP(Subject)
    bool Body(const M::eBodyEncoding& e, const M::eBodyCharset& c, const void* d,
              const unsigned int& n) {
        return Call("BodyContent", e, c, Bytes{d, n});
    }
    bool Body(const M::eBodyEncoding& e, const M::eBodyCharset& c, T link) {
        return Call("BodyLink", e, c, link);
    }
    bool Body(T type, T subtype, T link) { return Call("BodyTypedLink", type, subtype, link); }
    bool ContentDispositionType(const M::eContentDispositionType& t, T token) {
        return Call("ContentDispositionType", t, token);
    }
    bool ContentDispositionTypeParam(const M::eContentDispositionParamName& n, T v, T token) {
        return Call("ContentDispositionTypeParam", n, v, token);
    }
    bool ContentSubtype(const M::eContentSubtype& s, T token) {
        return Call("ContentSubtype", s, token);
    }
    bool ContentType(const M::eContentType& t, T token) { return Call("ContentType", t, token); }
    bool ContentTypeParam(const M::eContentParamName& n, const M::eContentParamValue& v, T nt,
                          T vt) {
        return Call("ContentTypeParam", n, v, nt, vt);
    }
    bool Priority(const M::ePriority& p) { return Call("Priority", p); }
    bool Group(T name, const PAL::TVector<PimShared::IEmailAttributes::tMailbox>& m) {
        return Call("Group", name, m);
    }
    bool Group(T name, const PAL::TVector<IM::tMailbox>& m) { return Call("Group", name, m); }
    bool Mailbox(const M::eMailboxFieldType& f, T name, T address) {
        return Call("Mailbox", f, name, address);
    }
    bool Mailbox(const M::eMailboxFieldType& f, IM::eUCIClient c, T name, T address) {
        return Call("Mailbox", f, c, name, address);
    }
    bool Direction(const IM::eDirection& d) { return Call("Direction", d); }
    bool EntityType(const IM::eEntityType& e) { return Call("EntityType", e); }
    bool ExtendedData(const PAL::TVector<IM::tExtendedData>& d) { return Call("ExtendedData", d); }
    PIMTLV_FUZZ_TEXT_OP(ConversationID)
    PIMTLV_FUZZ_TEXT_OP(ConversationName)
    PIMTLV_FUZZ_TEXT_OP(ConversationLastActivity)
    PIMTLV_FUZZ_TEXT_OP(ConversationVersionCounter)
    PIMTLV_FUZZ_TEXT_OP(ConversationSummary)
    bool OwnerAvailability(IM::ePresenceAvailability a) { return Call("OwnerAvailability", a); }
    PIMTLV_FUZZ_TEXT_OP(OwnerText)
    PIMTLV_FUZZ_TEXT_OP(OwnerLastActivity)
    bool OwnerChatState(IM::eChatState s) { return Call("OwnerChatState", s); }
    bool ConversationParticipant(IM::eUCIClient c, T t1, T t2, IM::eChatState s, T t3, T t4, T t5,
                                 IM::ePresenceAvailability a, T t6, const unsigned char& f) {
        return Call("ConversationParticipant", c, t1, t2, s, t3, t4, t5, a, t6, f);
    }
};

template <typename Base>
class SmsLog : public Base, public CallLog {
  public:
    virtual ~SmsLog() = default;
    using A = PimShared::ISMSAttributes;
    using T = const char*;

    bool TraceMessage(const int& code, const char* text) { return Trace(code, text); }
    bool Begin(const unsigned int& i) { return Call("Begin", i); }
    bool End() { return Call("End"); }
    PIMTLV_FUZZ_TEXT_OP(Body)
    PIMTLV_FUZZ_TEXT_OP(Destination)
    PIMTLV_FUZZ_TEXT_OP(Folder)
    PIMTLV_FUZZ_TEXT_OP(Instance)
    PIMTLV_FUZZ_TEXT_OP(Originator)
    PIMTLV_FUZZ_TEXT_OP(OriginatorFName)
    PIMTLV_FUZZ_TEXT_OP(DestinationFName)
    PIMTLV_FUZZ_TEXT_OP(ServiceCenter)
    PIMTLV_FUZZ_TEXT_OP(SendingState)
    PIMTLV_FUZZ_TEXT_OP(Subject)
    PIMTLV_FUZZ_TEXT_OP(Timestamp)
    PIMTLV_FUZZ_TEXT_OP(TimestampLocal)
    bool Concat(const unsigned char& a, const unsigned char& b, const unsigned char& c) {
        return Call("Concat", a, b, c);
    }
    bool OriginatorName(T p1, T p2, T p3, T p4, T p5, T p6) {
        return Call("OriginatorName", p1, p2, p3, p4, p5, p6);
    }
    bool ReadStatus(const A::eReadStatus& v) { return Call("ReadStatus", v); }
    bool DownloadState(const A::eDownloadState& v) { return Call("DownloadState", v); }
    bool SMSState(const A::eSMSState& v) { return Call("SMSState", v); }
    bool SMSType(const A::eSMSType& v) { return Call("SMSType", v); }
    bool StorageType(const A::eStorageType& v) { return Call("StorageType", v); }
    bool StorageIndex(const unsigned short& v) { return Call("StorageIndex", v); }
    bool Priority(const A::ePriority& v) { return Call("Priority", v); }
};

class CallListLog : public PimShared::ICallstackReceiver, public CallLog {
  public:
    bool TraceMessage(const int& code, const char* text) override { return Trace(code, text); }
    bool Begin(const unsigned int& kind, const unsigned int& instance) override {
        return Call("Begin", kind, instance);
    }
    bool End() override { return Call("End"); }
    bool CallByte(const unsigned char& v) override { return Call("CallByte", v); }
    bool CallText1(const char* t) override { return Call("CallText1", t); }
    bool CallText2(const char* t) override { return Call("CallText2", t); }
    bool CallText3(const char* t) override { return Call("CallText3", t); }
    bool CallText4(const char* t) override { return Call("CallText4", t); }
    bool CallText5(const char* t) override { return Call("CallText5", t); }
    bool CallFlag(const bool& v) override { return Call("CallFlag", v); }
};

#undef PIMTLV_FUZZ_TEXT_OP

// Parses size bytes (at most 4 GiB - 1) with the item parser into receiver;
// false when the receiver saw a broken promise.
template <typename Parser, typename Receiver>
bool ParseInto(Parser& parser, Receiver& receiver, const std::uint8_t* data, std::size_t size,
               bool& ok) {
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    ok = parser.Parse(data, static_cast<unsigned int>(size), errorText, consumed);
    return receiver.Fault() == nullptr && errorText != nullptr && consumed <= size;
}

// The check of an item parser target: any bytes are parsed from a copy with
// every call answered true; the copy is freed, and the same parser object
// parses the bytes again refusing the call chosen by refuseAt (modulo the
// calls made). A parser that kept a pointer into the first buffer reads freed
// memory. Up to the refused call the second parse must report exactly what the
// first did. Parsers that carry values from one stream to the next by design
// (carriesState) are compared on a fresh object instead.
// Returns the first fault, or null.
template <typename Parser, typename Receiver>
const char* CheckItemParse(const std::uint8_t* data, std::size_t size, std::size_t refuseAt,
                           bool carriesState) {
    Receiver receiver;
    Parser parser(receiver);
    bool ok = false;
    receiver.Start(CallLog::kNever, true);
    {
        const std::vector<std::uint8_t> copy(data, data + size);
        if (!ParseInto(parser, receiver, copy.data(), copy.size(), ok)) {
            return receiver.Fault() != nullptr ? receiver.Fault() : "the parser's answer is broken";
        }
    }
    const std::size_t calls = receiver.Calls();
    if (calls == 0) return nullptr;
    const std::vector<std::string> first = receiver.Lines();
    const std::size_t k = refuseAt % calls;
    receiver.Start(k, true);
    if (!ParseInto(parser, receiver, data, size, ok)) {
        return receiver.Fault() != nullptr ? receiver.Fault() : "the parser's answer is broken";
    }
    Receiver fresh;
    Parser freshParser(fresh);
    if (carriesState) {
        fresh.Start(k, true);
        if (!ParseInto(freshParser, fresh, data, size, ok)) {
            return fresh.Fault() != nullptr ? fresh.Fault() : "the parser's answer is broken";
        }
    }
    const std::vector<std::string>& second = carriesState ? fresh.Lines() : receiver.Lines();
    // Every call is a line (trace lines kept), so the k+1 first calls are the
    // k+1 first lines.
    for (std::size_t i = 0; i <= k && i < first.size(); ++i) {
        if (i >= second.size() || first[i] != second[i]) {
            return "a second parse reported other calls before the refusal";
        }
    }
    return nullptr;
}

}  // namespace PimTlvFuzz

#endif
