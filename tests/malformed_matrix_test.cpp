// Damaged streams of every item kind: a well-formed stream of each, cut short
// at every byte and with every header byte, length byte and text terminator
// replaced by a handful of values, read by the item's parser. Cut short, a
// stream must fail or be reported; damaged, it must at least be read without
// harm. The receivers read every text and data byte they are given, so the
// sanitizer builds catch a pointer that dangles or runs past its end.

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "pimshared/calendar/TLVCalendarCreator.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/callstack/TLVCallstackParser.h"
#include "pimshared/contact/TLVContactCreator.h"
#include "pimshared/contact/TLVContactParser.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "pimshared/email/TLVEmailParser.h"
#include "pimshared/im/TLVIMCreator.h"
#include "pimshared/im/TLVIMParser.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"
#include "support/CalendarFamily.h"
#include "support/ContactRecorder.h"
#include "support/EmailRecorder.h"
#include "support/IMRecorder.h"
#include "support/SmsRecorder.h"

namespace {

using TestSupport::Bytes;

struct Outcome {
    bool ok;
    bool diagnosed;  // a report with a code other than 0
};

bool AnyTrace(const std::vector<std::string>& calls) {
    for (const std::string& c : calls) {
        if (c.rfind("Trace(", 0) == 0) return true;
    }
    return false;
}

// How each receiver is emptied between streams and tells a report; the
// recorders read every text when they write it down.
template <typename T>
bool Diagnosed(CalendarFamilyTest::Recorder<T>& r) {
    const bool seen = !r.traces.empty();
    r.calls.clear(), r.traces.clear(), r.all.clear();
    return seen;
}
template <typename T>
bool Diagnosed(MimeTest::TRecorder<T>& r) {
    const bool seen = AnyTrace(r.calls);
    r.calls.clear();
    return seen;
}
bool Diagnosed(TestSupport::RecordingReceiver& r) {
    const bool seen = AnyTrace(r.calls);
    r.calls.clear();
    return seen;
}
bool Diagnosed(TestSupport::SmsRecorder& r) {
    const bool seen = r.log.find("Trace(") != std::string::npos;
    r.log.clear();
    return seen;
}

// The call list has no recorder of its own elsewhere: this one only reads.
class CallListReader : public PimShared::ICallstackReceiver {
  public:
    bool reported = false;
    // clang-format off
    bool Begin(const unsigned int&, const unsigned int&) override { return true; }
    bool End() override { return true; }
    bool CallByte(const unsigned char&) override { return true; }
    bool CallFlag(const bool&) override { return true; }
    bool CallText1(const char* t) override { return Read(t); }
    bool CallText2(const char* t) override { return Read(t); }
    bool CallText3(const char* t) override { return Read(t); }
    bool CallText4(const char* t) override { return Read(t); }
    bool CallText5(const char* t) override { return Read(t); }
    // clang-format on
    bool TraceMessage(const int& code, const char* text) override {
        reported = reported || code != 0;
        return Read(text);
    }

  private:
    static bool Read(const char* t) {
        TestSupport::ReadEvery(t, std::strlen(t));
        return true;
    }
};
bool Diagnosed(CallListReader& r) {
    const bool seen = r.reported;
    r.reported = false;
    return seen;
}

// One parser and receiver kept for all the streams of an item, so that state
// left over from a damaged stream meets the next one.
using Reader = std::function<Outcome(const Bytes&)>;

template <typename TParser, typename TReceiver>
Reader ReaderOf() {
    struct Pair {
        TReceiver receiver;
        TParser parser{receiver};
    };
    auto pair = std::make_shared<Pair>();
    return [pair](const Bytes& bytes) {
        const char* error = nullptr;
        unsigned int consumed = 0;
        const bool ok = pair->parser.Parse(bytes.data(), static_cast<unsigned int>(bytes.size()),
                                           error, consumed);
        EXPECT_TRUE(error != nullptr && std::strlen(error) < 512);
        EXPECT_LE(consumed, bytes.size());
        return Outcome{ok, Diagnosed(pair->receiver)};
    };
}

template <typename TCreator>
Bytes Finish(TCreator& c, bool allWritten) {
    return allWritten ? CalendarFamilyTest::Take(c) : Bytes{};
}

const std::string kLong(200, 'L');  // a value with a long-form length field
const PAL::CDateAndTime kTime(2026, 11, 22, 9, 30, 0);

// Begin, every shared calendar property, the item's own ones, End.
template <typename TCreator>
Bytes CalendarFamilyItem(const std::function<bool(TCreator&)>& own) {
    TCreator c;
    bool ok = c.Begin(7);
    for (const auto& row : CalendarFamilyTest::SharedRows<TCreator>()) ok = ok && row.write(c);
    ok = ok && c.Summary(kLong.c_str(), "alt", "en", CalendarFamilyTest::TwoX()) && own(c) &&
         c.End();
    return Finish(c, ok);
}

Bytes Event() {
    return CalendarFamilyItem<PimShared::CTLVCalendarCreator>([](auto& c) {
        return c.Location("Room", "alt", "de", CalendarFamilyTest::TwoX()) &&
               c.Priority(3, CalendarFamilyTest::NoX()) &&
               c.DateTimeStart(kTime, "Europe/Berlin", CalendarFamilyTest::TwoX()) &&
               c.DateTimeEnd(kTime, nullptr, CalendarFamilyTest::NoX()) &&
               c.DateTimeStartLocal(kTime, CalendarFamilyTest::NoX()) &&
               c.DateTimeEndLocal(kTime, CalendarFamilyTest::TwoX());
    });
}

Bytes Task() {
    return CalendarFamilyItem<PimShared::CTLVTaskCreator>([](auto& c) {
        return c.Location("Desk", nullptr, nullptr, CalendarFamilyTest::NoX()) &&
               c.Priority(1, CalendarFamilyTest::TwoX()) &&
               c.DateTimeStart(kTime, "UTC", CalendarFamilyTest::NoX()) &&
               c.DateTimeDueLocal(kTime, CalendarFamilyTest::TwoX());
    });
}

Bytes Note() {
    return CalendarFamilyItem<PimShared::CTLVNoteCreator>([](auto&) { return true; });
}

// XUID and Handle stay out: the reader reports their nodes by design.
Bytes Contact() {
    const TestSupport::XParams x{{"X-A", "1"}, {"X-B", ""}};
    const TestSupport::Texts two{"a", "b"};
    const unsigned char data[3] = {0xCA, 0xFE, 0x01};
    PimShared::CTLVContactCreator c;
    const bool ok =
        c.Begin(9) && c.FormattedName("Ann Example", "en", x) &&
        c.Name("Example", "Ann", nullptr, "Dr", "", "en", x) && c.Nickname(two, nullptr, x) &&
        c.Photo("url", "image/png", kLong.data(), static_cast<unsigned int>(kLong.size()), "t") &&
        c.Birthday("20000101", "alt") &&
        c.Address("a1", "a2", "a3", "a4", "a5", "a6", "a7", 5, "fr", x) &&
        c.Label("label", 2, "de", x) && c.Telephone("+49 1", 9, 3, 0x102, "work", x) &&
        c.Email("ann@x", 1) && c.Mailer("m", nullptr, x) && c.Timezone("+01:00", "CET") &&
        c.GeographicPosition("1.5", "2.5") && c.Title("t", "en", x) && c.Role("r", nullptr, x) &&
        c.Logo("u", "image/gif", data, 3, nullptr) && c.Agent("a", "b") &&
        c.Organization("Org", two) && c.Categories(two, "en", x) &&
        c.Note(kLong.c_str(), nullptr, x) && c.Revision("20260101T000000Z", nullptr) &&
        c.SortString("s", nullptr, x) &&
        c.Sound("m1", "audio/x", data, 3, "m3", "fn", "n1", nullptr, "n3", nullptr, "n5") &&
        c.UID("uid") && c.SpeedDial("1") && c.XUCI("xuci", -5, 7) && c.URL("http://x") &&
        c.Version("3.0") && c.Classification("PUBLIC") && c.ProdID("p") &&
        c.Key("PGP", "app/pgp", data, 3) && c.PhotoAvailability(true) &&
        c.NonStandardProperty("X-N", "v", data, 3, x) && c.End();
    return Finish(c, ok);
}

// Entities three deep, with a body content and a body link (the token form
// of a body is read back differently by design).
template <typename TCreator, typename A>
bool MimeParts(TCreator& c) {
    return c.Subject(kLong.c_str()) && c.MimeVersion("1.0") && c.ReadStatus(A::eReadStatusRead) &&
           c.CutoffState(0xBEEF) && c.Folder("Inbox") && c.Instance("acct") &&
           c.ContentType(A::eContentTypeMultipart, nullptr) &&
           c.ContentSubtype(A::eContentSubtypeMixed, nullptr) &&
           c.Body(A::eBodyEncoding7Bit, A::eBodyCharsetUsAscii, "Hi", 2u) && c.BeginEntity() &&
           c.ContentType(A::eContentTypeExtension, "x-app") &&
           c.ContentTypeParam(A::eContentParamNameExtension, A::eContentParamValueExtension, "n",
                              "v") &&
           c.ContentDispositionType(A::eContentDispositionTypeAttachment, nullptr) &&
           c.ContentDispositionTypeParam(A::eContentDispositionParamNameFilename, "a.bin",
                                         nullptr) &&
           c.Body(A::eBodyEncodingBase64, A::eBodyCharsetUtf8, kLong.data(),
                  static_cast<unsigned int>(kLong.size())) &&
           c.BeginEntity() && c.DownloadState(A::eDownloadStatePartial) &&
           c.AttachmentAvailable(A::eAttachmentAvailableYes) && c.BeginEntity() &&
           c.Body(A::eBodyEncodingBase64, A::eBodyCharsetUtf8, "cid:x") && c.Comments("c") &&
           c.ContentId("id") && c.MessageId("mid") && c.OrigDate("od") && c.References("r") &&
           c.EndEntity() && c.EndEntity() && c.EndEntity();
}

Bytes Email() {
    using E = PimShared::IEmailAttributes;
    const PAL::TVector<E::tMailbox> team{{E::eMailboxFieldTypeTo, "C", "c@x"},
                                         {E::eMailboxFieldTypeCc, nullptr, "d@x"}};
    PimShared::CTLVEmailCreator c;
    const bool ok = c.Begin(42) && c.Mailbox(E::eMailboxFieldTypeFrom, "Ann", "ann@x") &&
                    c.Group("team", team) && c.Priority(E::ePriorityHigh) &&
                    MimeParts<PimShared::CTLVEmailCreator, E>(c) && c.End();
    return Finish(c, ok);
}

Bytes InstantMessage() {
    using I = PimShared::IIMAttributes;
    const PAL::TVector<I::tMailbox> members{
        {I::eMailboxFieldTypeTo, I::eUCIClientNotGiven, "C", "c@x"}};
    const PAL::TVector<I::tExtendedData> extended{{I::eExtendedDataKeyUnreadCount, 3},
                                                  {I::eExtendedDataKeyDeliveryReport, -1}};
    PimShared::CTLVIMCreator c;
    const bool ok =
        c.Begin(5) && c.ConversationID("conv") && c.ConversationName("name") &&
        c.ConversationLastActivity("last") && c.ConversationVersionCounter("12") &&
        c.ConversationSummary("sum") && c.OwnerAvailability(I::ePresenceAvailabilityAway) &&
        c.OwnerText("busy") && c.OwnerLastActivity("now") && c.OwnerChatState(I::eChatStateGone) &&
        c.Direction(I::eDirectionOutgoing) && c.EntityType(I::eEntityTypeFileTransfer) &&
        c.Priority(I::ePriorityHigh) &&
        c.Mailbox(I::eMailboxFieldTypeFrom, I::eUCIClientXmpp, "Ann", "ann@x") &&
        c.Group("g", members) &&
        c.ConversationParticipant(I::eUCIClientNotGiven, "1", nullptr, I::eChatStateGone, nullptr,
                                  "4", nullptr, I::ePresenceAvailabilityAway, "6",
                                  static_cast<unsigned char>(3)) &&
        c.ExtendedData(extended) && MimeParts<PimShared::CTLVIMCreator, I>(c) && c.End();
    return Finish(c, ok);
}

Bytes Sms() {
    using S = PimShared::ISMSAttributes;
    PimShared::CTLVSMSCreator c;
    const bool ok = c.Begin(3) && c.Body(kLong.c_str()) && c.Concat(1, 2, 3) &&
                    c.Destination("+1") && c.ReadStatus(S::ReadStatusRead) &&
                    c.DownloadState(S::DownloadStatePartial) && c.Folder("f") && c.Instance("i") &&
                    c.Originator("+2") && c.OriginatorName("a", nullptr, "c", "d", nullptr, "f") &&
                    c.OriginatorFName("of") && c.DestinationFName("df") && c.ServiceCenter("sc") &&
                    c.SMSState(S::SMSStateSent) && c.SMSType(S::SMSTypeSubmit) &&
                    c.StorageType(S::StorageTypeSim) && c.StorageIndex(513) &&
                    c.SendingState("ss") && c.Subject("sub") && c.Timestamp("ts") &&
                    c.TimestampLocal("tl") && c.Priority(S::PriorityUrgent) && c.End();
    return Finish(c, ok);
}

// No creator writes call lists; devices do, in this layout.
Bytes CallList() {
    ParserCreatorCollection::CTLVCreator c;
    bool ok = c.NodeBegin(5) && c.LeafUInt32(10, 4) && c.NodeBegin(2001) && c.LeafUInt8(2010, 7);
    for (unsigned int id = 2011; id <= 2015; ++id) ok = ok && c.LeafString(id, kLong.c_str());
    ok = ok && c.LeafUInt8(2016, 1) && c.NodeEnd(2001) && c.NodeEnd(5);
    return Finish(c, ok);
}

struct Item {
    const char* name;
    Bytes (*build)();
    Reader (*reader)();
};

const Item kItems[] = {
    {"Event", Event,
     ReaderOf<PimShared::CTLVCalendarParser,
              CalendarFamilyTest::Recorder<PimShared::ICalendarReceiver>>},
    {"Task", Task,
     ReaderOf<PimShared::CTLVTaskParser, CalendarFamilyTest::Recorder<PimShared::ITaskReceiver>>},
    {"Note", Note,
     ReaderOf<PimShared::CTLVNoteParser, CalendarFamilyTest::Recorder<PimShared::INoteReceiver>>},
    {"Contact", Contact, ReaderOf<PimShared::CTLVContactParser, TestSupport::RecordingReceiver>},
    {"Email", Email, ReaderOf<PimShared::CTLVEmailParser, MimeTest::EmailRecorder>},
    {"InstantMessage", InstantMessage, ReaderOf<PimShared::CTLVIMParser, MimeTest::IMRecorder>},
    {"Sms", Sms, ReaderOf<PimShared::CTLVSMSParser, TestSupport::SmsRecorder>},
    {"CallList", CallList, ReaderOf<PimShared::CTLVCallstackParser, CallListReader>},
};

// Offsets of the header bytes, length bytes and text terminators of the
// well-formed elements in [from, to); false if they do not tile it exactly.
bool Structure(const Bytes& b, std::size_t from, std::size_t to, std::vector<std::size_t>& out) {
    std::size_t p = from;
    while (p < to) {
        if (p + 3 > to) return false;
        const unsigned cls = b[p] >> 4;
        std::size_t q = p + 2, length = b[q];
        out.insert(out.end(), {p, p + 1, q++});
        if (length & 0x80) {
            const std::size_t n = length & 0x7F;
            length = 0;
            for (std::size_t i = 0; i < n && q < to; ++i)
                out.push_back(q), length = length << 8 | b[q++];
        }
        if (q + length > to) return false;
        if (cls == 8 && !Structure(b, q, q + length, out)) return false;
        if (cls == 6) out.push_back(q + length - 1);
        p = q + length;
    }
    return p == to;
}

}  // namespace

TEST(MalformedMatrix, EveryItemSurvivesEveryCutAndEveryDamagedHeader) {
    const auto start = std::chrono::steady_clock::now();
    std::size_t parses = 0;
    for (const Item& item : kItems) {
        SCOPED_TRACE(item.name);
        const Bytes good = item.build();
        ASSERT_FALSE(good.empty());
        std::vector<std::size_t> places;
        ASSERT_TRUE(Structure(good, 0, good.size(), places));
        const Reader read = item.reader();
        const Outcome clean = read(good);
        ASSERT_TRUE(clean.ok && !clean.diagnosed);

        // Each cut copy is its own allocation of exactly its length, so a
        // read past the end lands outside it.
        for (std::size_t cut = 0; cut < good.size(); ++cut) {
            const Outcome o = read(Bytes(good.begin(), good.begin() + cut));
            EXPECT_TRUE(!o.ok || o.diagnosed) << "cut at " << cut;
        }
        for (const std::size_t at : places) {
            const unsigned char was = good[at];
            for (const unsigned char to : {0x00, 0x01, 0x7F, 0x80, 0x81, 0xFF, was ^ 0x01}) {
                if (to == was) continue;
                Bytes bad = good;
                bad[at] = to;
                read(bad);
                ++parses;
            }
        }
        parses += good.size() + 1;
        // The damage leaves the reader fit for a good stream.
        const Outcome after = read(good);
        EXPECT_TRUE(after.ok && !after.diagnosed);
        std::printf("[ matrix   ] %-14s %5zu bytes, %4zu places\n", item.name, good.size(),
                    places.size());
    }
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                        std::chrono::steady_clock::now() - start)
                        .count();
    std::printf("[ matrix   ] %zu parses in %lld ms\n", parses, static_cast<long long>(ms));
}
