#ifndef PIMTLV_FUZZ_ITEMROUNDTRIPCHECKS_H
#define PIMTLV_FUZZ_ITEMROUNDTRIPCHECKS_H

// The operation tables of the items with a creator, and one round-trip check
// per item in the shape of ItemParserChecks.h.

#include <array>
#include <cstddef>
#include <cstdint>

#include "fuzz/DescribedOps.h"
#include "fuzz/ItemParserChecks.h"
#include "fuzz/ItemRoundTrip.h"
#include "pimshared/calendar/CalendarDescription.h"
#include "pimshared/contact/ContactDescription.h"
#include "pimshared/email/EmailDescription.h"
#include "pimshared/im/IMDescription.h"
#include "pimshared/note/NoteDescription.h"
#include "pimshared/sms/SMSDescription.h"
#include "pimshared/task/TaskDescription.h"

namespace PimTlvFuzz {

template <typename T, std::size_t N, std::size_t M>
constexpr std::array<T, N + M> Join(const std::array<T, N>& a, const std::array<T, M>& b) {
    std::array<T, N + M> all{};
    for (std::size_t i = 0; i < N; ++i) all[i] = a[i];
    for (std::size_t i = 0; i < M; ++i) all[N + i] = b[i];
    return all;
}

// ---- Events, tasks and notes ------------------------------------------------

constexpr Asymmetry kCalendarFamilyAsymmetries[] = {
    {Asym::NullTextEmpty,
     "a property's main text, list entries and x-parameters are always written, an absent text "
     "as empty"},
    {Asym::LowByte, "an attendee's reply setting travels as its low byte"},
    {Asym::EmptyItemUnclosed, "an item without properties is not closed when read"},
};

constexpr Asym kMain = Asym::NullTextEmpty;

// A property's main text (its first argument), list entries and x-parameters
// are written even when absent.
struct MainTextFirst {
    template <typename P>
    static constexpr Asym Default(std::size_t index) {
        if constexpr (std::is_same_v<P, const char*>) {
            return index == 0 ? kMain : Asym::None;
        } else if constexpr (std::is_same_v<P, PAL::TVector<const char*>> ||
                             std::is_same_v<P, PAL::TVector<PimShared::tXParam>>) {
            return kMain;
        } else {
            return Asym::None;
        }
    }
};

template <typename A>
struct CalendarFamilyRules : MainTextFirst {
    static constexpr std::array<ArgRule, 0> kArgRules{};
    static constexpr std::array<Op<A>, 0> kSpecial{};
};

struct EventItem {
    using Attributes = PimShared::ICalendarAttributes;
    using Creator = PimShared::CTLVCalendarCreator;
    using Parser = PimShared::CTLVCalendarParser;
    using Receiver = PimShared::ICalendarReceiver;
    template <typename Base>
    using Log = CalendarFamilyLog<Base>;
    static constexpr const Asymmetry (&kAsymmetries)[3] = kCalendarFamilyAsymmetries;
    static constexpr auto kOps =
        DescribedOps<PimShared::EventItem, CalendarFamilyRules<Attributes>>();
};

struct TaskItem {
    using Attributes = PimShared::ITaskAttributes;
    using Creator = PimShared::CTLVTaskCreator;
    using Parser = PimShared::CTLVTaskParser;
    using Receiver = PimShared::ITaskReceiver;
    template <typename Base>
    using Log = CalendarFamilyLog<Base>;
    static constexpr const Asymmetry (&kAsymmetries)[3] = kCalendarFamilyAsymmetries;
    static constexpr auto kOps =
        DescribedOps<PimShared::TaskItem, CalendarFamilyRules<Attributes>>();
};

struct NoteItem {
    using Attributes = PimShared::INoteAttributes;
    using Creator = PimShared::CTLVNoteCreator;
    using Parser = PimShared::CTLVNoteParser;
    using Receiver = PimShared::INoteReceiver;
    template <typename Base>
    using Log = CalendarFamilyLog<Base>;
    static constexpr const Asymmetry (&kAsymmetries)[3] = kCalendarFamilyAsymmetries;
    static constexpr auto kOps =
        DescribedOps<PimShared::NoteItem, CalendarFamilyRules<Attributes>>();
};

// Every text is written, an absent one as empty; enumerations travel as
// their low byte.
struct EveryTextLowBytes {
    template <typename P>
    static constexpr Asym Default(std::size_t) {
        if constexpr (std::is_same_v<P, const char*>) return Asym::NullTextEmpty;
        if constexpr (std::is_enum_v<P>) return Asym::LowByte;
        return Asym::None;
    }
};

// ---- Short messages ---------------------------------------------------------

struct SmsItem {
    using Attributes = PimShared::ISMSAttributes;
    using Creator = PimShared::CTLVSMSCreator;
    using Parser = PimShared::CTLVSMSParser;
    using Receiver = PimShared::ISMSReceiver;
    template <typename Base>
    using Log = SmsLog<Base>;
    using A = Attributes;
    static constexpr Asymmetry kAsymmetries[] = {
        {Asym::NullTextEmpty, "every text leaf is written, an absent text as empty"},
        {Asym::LowByte, "the enumerations travel as their low byte"},
    };
    static constexpr Asym kText = Asym::NullTextEmpty;
    static constexpr Asym kByte = Asym::LowByte;
    // Every text is written, absent ones as empty, but the friendly names,
    // which are refused when empty or absent; enumerations as their low byte.
    struct Rules : EveryTextLowBytes {
        static constexpr std::array<ArgRule, 2> kArgRules{{
            {"OriginatorFName", 0, Asym::None},
            {"DestinationFName", 0, Asym::None},
        }};
        static constexpr std::array<Op<A>, 1> kSpecial{{
            // Written as one call with six parts, read as one call per non-empty
            // part from the second on, that part at its place and the rest null;
            // the first part is not carried.
            {"OriginatorName",
             [](A& t, OpArgs& a) {
                 const char* p[6];
                 for (const char*& part : p) part = a.Text();
                 return t.OriginatorName(p[0], p[1], p[2], p[3], p[4], p[5]);
             },
             [](A& t, OpArgs& a) {
                 const char* p[6];
                 for (const char*& part : p) part = a.Text();
                 for (int i = 1; i < 6; ++i) {
                     if (p[i] == nullptr || p[i][0] == 0) continue;
                     const char* one[6] = {};
                     one[i] = p[i];
                     t.OriginatorName(one[0], one[1], one[2], one[3], one[4], one[5]);
                 }
                 return true;
             }},
        }};
    };
    static constexpr auto kOps = DescribedOps<PimShared::SmsItem, Rules>();
};

// ---- Contacts ---------------------------------------------------------------

// Two texts of which only one is written: the first if given.
template <typename Write>
bool FirstOfTwo(OpArgs& a, Write write) {
    const char* first = a.Text();
    const char* second = a.Text();
    return first != nullptr ? write(first, nullptr) : write(nullptr, second);
}

struct ContactItem : MainTextFirst {
    using Attributes = PimShared::IContactAttributes;
    using A = Attributes;
    using Creator = PimShared::CTLVContactCreator;
    using Parser = PimShared::CTLVContactParser;
    using Receiver = PimShared::IContactReceiver;
    template <typename Base>
    using Log = ContactLog<Base>;
    static constexpr Asymmetry kAsymmetries[] = {
        {Asym::NullTextEmpty,
         "a property's main text, list entries and x-parameters are always written, an absent "
         "text as empty"},
        {Asym::ReadAsDiagnostic,
         "the XUID's leaf has no place to go and the Handle's node is refused by readers"},
    };
    static constexpr Asym kMain = Asym::NullTextEmpty;
    // The reader reports with codes only, every text empty. The XUID's leaf is
    // reported (code 6) and its call comes with a null text; the Handle's
    // node is refused (2), then its leaf, now outside any property (2), then
    // its end (6), and no call comes.
    static constexpr Diagnostic kXuidLeaf[] = {{6, ""}};
    static constexpr Diagnostic kHandleNode[] = {{2, ""}, {2, ""}, {6, ""}};
    template <bool (A::*op)(const char*)>
    static bool Single(A& t, OpArgs& a) {
        return (t.*op)(a.Text(kMain));
    }
    template <bool (A::*op)(const char*, const char*)>
    static bool Both(A& t, OpArgs& a) {
        const char* first = a.Text();
        return (t.*op)(first, a.Text());
    }
    template <bool (A::*op)(const char*, const char*)>
    static bool FirstWins(A& t, OpArgs& a) {
        return FirstOfTwo(a, [&t](const char* x, const char* y) { return (t.*op)(x, y); });
    }
    // Written as every text given; a node with no part at all is read without
    // its text parameter and x-parameters.
    static bool Parts(OpArgs& a, const char* (&parts)[7], int count) {
        bool any = false;
        for (int i = 0; i < count; ++i) any = (parts[i] = a.Text()) != nullptr || any;
        return any;
    }

    // The first text is not the main one here: both or neither are written.
    static constexpr std::array<ArgRule, 6> kArgRules{{
        {"Photo", 0, Asym::None},
        {"Logo", 0, Asym::None},
        {"Sound", 0, Asym::None},
        {"Key", 0, Asym::None},
        {"Label", 0, Asym::None},
        {"GeographicPosition", 0, Asym::None},
    }};
    // Read back in another shape, or reported.
    static constexpr std::array<Op<A>, 10> kSpecial{{
        {"Name",
         [](A& t, OpArgs& a) {
             const char* p[7];
             Parts(a, p, 5);
             const char* parameter = a.Text();
             return t.Name(p[0], p[1], p[2], p[3], p[4], parameter, a.XParams(kMain));
         },
         [](A& t, OpArgs& a) {
             const char* p[7];
             const bool any = Parts(a, p, 5);
             const char* parameter = a.Text();
             const auto& x = a.XParams(kMain);
             return any ? t.Name(p[0], p[1], p[2], p[3], p[4], parameter, x)
                        : t.Name(p[0], p[1], p[2], p[3], p[4], nullptr, {});
         }},
        {"Birthday", Both<&A::Birthday>, FirstWins<&A::Birthday>},
        {"Address",
         [](A& t, OpArgs& a) {
             const char* p[7];
             Parts(a, p, 7);
             const auto type = static_cast<unsigned char>(a.Number());
             const char* parameter = a.Text();
             return t.Address(p[0], p[1], p[2], p[3], p[4], p[5], p[6], type, parameter,
                              a.XParams(kMain));
         },
         [](A& t, OpArgs& a) {
             const char* p[7];
             const bool any = Parts(a, p, 7);
             const auto type = static_cast<unsigned char>(a.Number());
             const char* parameter = a.Text();
             const auto& x = a.XParams(kMain);
             return any ? t.Address(p[0], p[1], p[2], p[3], p[4], p[5], p[6], type, parameter, x)
                        : t.Address(p[0], p[1], p[2], p[3], p[4], p[5], p[6], type, nullptr, {});
         }},
        {"Timezone", Both<&A::Timezone>, FirstWins<&A::Timezone>},
        // Exactly one text travels: both or neither given leave the node empty.
        {"Agent",
         [](A& t, OpArgs& a) {
             const char* first = a.Text();
             return t.Agent(first, a.Text());
         },
         [](A& t, OpArgs& a) {
             const char* first = a.Text();
             const char* second = a.Text();
             return (first == nullptr) != (second == nullptr) ? t.Agent(first, second)
                                                              : t.Agent(nullptr, nullptr);
         }},
        {"Categories",
         [](A& t, OpArgs& a) {
             const auto& list = a.Texts(kMain);
             const char* parameter = a.Text();
             return t.Categories(list, parameter, a.XParams(kMain));
         },
         [](A& t, OpArgs& a) {
             const auto& list = a.Texts(kMain);
             const char* parameter = a.Text();
             const auto& x = a.XParams(kMain);
             return list.isEmpty() ? t.Categories(list, nullptr, {})
                                   : t.Categories(list, parameter, x);
         }},
        {"Revision", Both<&A::Revision>, FirstWins<&A::Revision>},
        {"XUID", Single<&A::XUID>,
         [](A& t, OpArgs& a) {
             a.Text();
             return t.XUID(nullptr);
         },
         0, Reported(kXuidLeaf)},
        // Read back: the number's low 16 bits, the unsigned number not at all.
        {"XUCI",
         [](A& t, OpArgs& a) {
             const char* text = a.Text(kMain);
             const auto number = static_cast<int>(a.Number());
             return t.XUCI(text, number, static_cast<unsigned short>(a.Number()));
         },
         [](A& t, OpArgs& a) {
             const char* text = a.Text(kMain);
             const auto number = static_cast<int>(a.Number() & 0xFFFFu);
             a.Number();
             return t.XUCI(text, number, 0);
         }},
        {"Handle", Single<&A::Handle>, NotCalled<A>, 0, Reported(kHandleNode)},
    }};
    static constexpr auto kOps = DescribedOps<PimShared::ContactItem, ContactItem>();
};

// ---- E-mails and instant messages -------------------------------------------

constexpr Asym kMimeText = Asym::NullTextEmpty;
constexpr Asym kMimeByte = Asym::LowByte;

// A value with an extension member (1) whose token travels only for it; the
// value itself as its low byte.
struct Extensible {
    std::uint32_t value;
    const char* token;
};
inline Extensible ReadExtensible(OpArgs& a) {
    const std::uint32_t raw = a.Number();
    const std::uint32_t value = a.Through(kMimeByte, raw);
    const char* token = a.Text(raw == 1 ? kMimeText : Asym::None);
    return {value, !a.Expecting() || raw == 1 ? token : nullptr};
}

// The operations e-mails and instant messages share that bring rows of their
// own. Reports names what the item's reader says of the elements it refuses
// by design: the plain-byte priority level (kPriorityLevel), and the type and
// subtype tokens that the token form of Body writes straight into the body
// node (kBodyTokens), after which the body arrives as a link with the default
// encoding and charset.
template <typename A, typename Reports>
constexpr std::array<Op<A>, 9> MimeMessageSpecialOps() {
    using M = PimShared::IMimeMessageAttributes;
    return {{
        {"BeginEntity", [](A& t, OpArgs&) { return t.BeginEntity(); }, nullptr, 1},
        {"EndEntity", [](A& t, OpArgs&) { return t.EndEntity(); }, nullptr, -1},
        {"PriorityLevel",
         [](A& t, OpArgs& a) { return t.Priority(static_cast<unsigned char>(a.Number())); },
         NotCalled<A>, 0, Reported(Reports::kPriorityLevel)},
        {"BodyTypedLink",
         [](A& t, OpArgs& a) {
             const char* type = a.Text();
             const char* subtype = a.Text();
             return t.Body(type, subtype, a.Text());
         },
         [](A& t, OpArgs& a) {
             a.Text();
             a.Text();
             return t.Body(M::eBodyEncoding7Bit, M::eBodyCharsetUsAscii, a.Text(kMimeText));
         },
         0, Reported(Reports::kBodyTokens)},
        {"ContentDispositionType",
         [](A& t, OpArgs& a) {
             const Extensible e = ReadExtensible(a);
             return t.ContentDispositionType(static_cast<M::eContentDispositionType>(e.value),
                                             e.token);
         }},
        {"ContentDispositionTypeParam",
         [](A& t, OpArgs& a) {
             const char* value = a.Text(kMimeText);
             const Extensible name = ReadExtensible(a);
             return t.ContentDispositionTypeParam(
                 static_cast<M::eContentDispositionParamName>(name.value), value, name.token);
         }},
        {"ContentSubtype",
         [](A& t, OpArgs& a) {
             const Extensible e = ReadExtensible(a);
             return t.ContentSubtype(static_cast<M::eContentSubtype>(e.value), e.token);
         }},
        {"ContentType",
         [](A& t, OpArgs& a) {
             const Extensible e = ReadExtensible(a);
             return t.ContentType(static_cast<M::eContentType>(e.value), e.token);
         }},
        {"ContentTypeParam",
         [](A& t, OpArgs& a) {
             const Extensible name = ReadExtensible(a);
             const Extensible value = ReadExtensible(a);
             return t.ContentTypeParam(static_cast<M::eContentParamName>(name.value),
                                       static_cast<M::eContentParamValue>(value.value), name.token,
                                       value.token);
         }},
    }};
}

struct MimeMessageRules : EveryTextLowBytes {
    static constexpr std::array<ArgRule, 0> kArgRules{};
};

constexpr Asymmetry kMimeMessageAsymmetries[] = {
    {Asym::NullTextEmpty, "text leaves are always written, an absent text as empty"},
    {Asym::LowByte, "enumerations travel as their low byte"},
    {Asym::ReadAsDiagnostic,
     "readers refuse the plain-byte priority level and the body's own type and subtype tokens"},
};

struct EmailReports {
    static constexpr Diagnostic kPriorityLevel[] = {{2, "Unexpected UInt8 with type ID = 623"}};
    static constexpr Diagnostic kBodyTokens[] = {{2, "Unexpected String with type ID = 642"},
                                                 {2, "Unexpected String with type ID = 647"}};
};
struct ImReports {
    static constexpr Diagnostic kPriorityLevel[] = {{2, "Unexpected UInt8 with type ID = 925"}};
    static constexpr Diagnostic kBodyTokens[] = {{2, "Unexpected String with type ID = 937"},
                                                 {2, "Unexpected String with type ID = 947"}};
};

struct EmailItem : MimeMessageRules {
    using Attributes = PimShared::IEmailAttributes;
    using A = Attributes;
    using Creator = PimShared::CTLVEmailCreator;
    using Parser = PimShared::CTLVEmailParser;
    using Receiver = PimShared::IEmailReceiver;
    template <typename Base>
    using Log = MimeMessageLog<Base>;
    static constexpr const Asymmetry (&kAsymmetries)[3] = kMimeMessageAsymmetries;
    static constexpr std::array<Op<A>, 2> kOwnOps{{
        // Only given texts are written.
        {"Mailbox",
         [](A& t, OpArgs& a) {
             const auto field = a.Enum<A::eMailboxFieldType>(kMimeByte);
             const char* name = a.Text();
             return t.Mailbox(field, name, a.Text());
         }},
        // Members' texts are always written, absent ones as empty.
        {"Group",
         [](A& t, OpArgs& a) {
             const char* name = a.Text(kMimeText);
             auto& members = a.NewList<A::tMailbox>();
             for (std::uint32_t n = a.Number() % 3; n > 0; --n) {
                 const auto field = a.Enum<A::eMailboxFieldType>(kMimeByte);
                 const char* display = a.Text(kMimeText);
                 members.pushBack({field, display, a.Text(kMimeText)});
             }
             return t.Group(name, members);
         }},
    }};
    static constexpr auto kSpecial = Join(MimeMessageSpecialOps<A, EmailReports>(), kOwnOps);
    static constexpr auto kOps = DescribedOps<PimShared::EmailItem, EmailItem>();
};

struct ImItem : MimeMessageRules {
    using Attributes = PimShared::IIMAttributes;
    using A = Attributes;
    using Creator = PimShared::CTLVIMCreator;
    using Parser = PimShared::CTLVIMParser;
    using Receiver = PimShared::IIMReceiver;
    template <typename Base>
    using Log = MimeMessageLog<Base>;
    static constexpr const Asymmetry (&kAsymmetries)[3] = kMimeMessageAsymmetries;
    static constexpr Asym kText = kMimeText;
    static constexpr std::array<Op<A>, 4> kOwnOps{{
        // The client only when given, the texts only when given.
        {"Mailbox",
         [](A& t, OpArgs& a) {
             const auto field = a.Enum<A::eMailboxFieldType>(kMimeByte);
             const auto client = Optional<A::eUCIClient>(a);
             const char* name = a.Text();
             return t.Mailbox(field, client, name, a.Text());
         }},
        // Members' clients do not travel; their texts are always written.
        {"Group",
         [](A& t, OpArgs& a) {
             const char* name = a.Text(kText);
             auto& members = a.NewList<A::tMailbox>();
             for (std::uint32_t n = a.Number() % 3; n > 0; --n) {
                 const auto field = a.Enum<A::eMailboxFieldType>(kMimeByte);
                 const auto client = Optional<A::eUCIClient>(a);
                 const char* display = a.Text(kText);
                 members.pushBack({field, a.Expecting() ? A::eUCIClientNotGiven : client, display,
                                   a.Text(kText)});
             }
             return t.Group(name, members);
         }},
        {"ExtendedData",
         [](A& t, OpArgs& a) {
             auto& list = a.NewList<A::tExtendedData>();
             for (std::uint32_t n = a.Number() % 4; n > 0; --n) {
                 const auto key = a.Enum<A::eExtendedDataKey>(kMimeByte);
                 list.pushBack({key, static_cast<int>(a.Number())});
             }
             return t.ExtendedData(list);
         }},
        // The client does not travel; everything else only when given.
        {"ConversationParticipant",
         [](A& t, OpArgs& a) {
             const auto client = Optional<A::eUCIClient>(a);
             const char* t1 = a.Text();
             const char* t2 = a.Text();
             const auto chat = Optional<A::eChatState>(a);
             const char* t3 = a.Text();
             const char* t4 = a.Text();
             const char* t5 = a.Text();
             const auto availability = Optional<A::ePresenceAvailability>(a);
             const char* t6 = a.Text();
             const auto flags = static_cast<unsigned char>(a.Number());
             return t.ConversationParticipant(a.Expecting() ? A::eUCIClientNotGiven : client, t1,
                                              t2, chat, t3, t4, t5, availability, t6, flags);
         }},
    }};
    static constexpr auto kSpecial = Join(MimeMessageSpecialOps<A, ImReports>(), kOwnOps);
    static constexpr auto kOps = DescribedOps<PimShared::ImItem, ImItem>();
};

constexpr ItemCheck kImRoundTrip = CheckItemRoundTrip<ImItem>;
constexpr ItemCheck kEmailRoundTrip = CheckItemRoundTrip<EmailItem>;
constexpr ItemCheck kContactRoundTrip = CheckItemRoundTrip<ContactItem>;
constexpr ItemCheck kEventRoundTrip = CheckItemRoundTrip<EventItem>;
constexpr ItemCheck kTaskRoundTrip = CheckItemRoundTrip<TaskItem>;
constexpr ItemCheck kNoteRoundTrip = CheckItemRoundTrip<NoteItem>;
constexpr ItemCheck kSmsRoundTrip = CheckItemRoundTrip<SmsItem>;

}  // namespace PimTlvFuzz

#endif
