#include "doc/Document.h"

#include <limits>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "bridges/common/ItemStreams.h"
#include "doc/CallListWriter.h"
#include "pimshared/calendar/CalendarDescription.h"
#include "pimshared/callstack/CallstackDescription.h"
#include "pimshared/common/CalendarTypeIds.h"
#include "pimshared/common/ItemKind.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/contact/ContactDescription.h"
#include "pimshared/email/EmailDescription.h"
#include "pimshared/im/IMDescription.h"
#include "pimshared/note/NoteDescription.h"
#include "pimshared/sms/SMSDescription.h"
#include "pimshared/task/TaskDescription.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimDoc {

const Value* Call::Find(const std::string& name) const {
    for (const Argument& a : args) {
        if (a.name == name) return &a.value;
    }
    return nullptr;
}

namespace {
const char kHexDigits[] = "0123456789abcdef";

int DigitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
}  // namespace

std::string HexOf(const Bytes& bytes) {
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (std::uint8_t b : bytes) {
        hex += kHexDigits[b >> 4];
        hex += kHexDigits[b & 0x0F];
    }
    return hex;
}

bool BytesOfHex(const std::string& text, Bytes& out) {
    int high = -1;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
        const int d = DigitOf(c);
        if (d < 0) return false;
        if (high < 0) {
            high = d;
        } else {
            out.push_back(static_cast<std::uint8_t>(high * 16 + d));
            high = -1;
        }
    }
    return high < 0;
}

namespace {

namespace Desc = PimShared::Description;

template <typename T>
using Bare = std::remove_cv_t<std::remove_reference_t<T>>;

// Where a value is read from, for error messages.
struct Place {
    std::size_t call;
    const char* op;
    const char* arg;
};
[[noreturn]] void Fail(const Place& place, const std::string& what) {
    throw DocumentError("call " + std::to_string(place.call) + " (" + place.op + "): argument '" +
                        place.arg + "' " + what);
}

template <typename T, typename = void>
struct IsRecord : std::false_type {};
template <typename T>
struct IsRecord<T, std::void_t<decltype(Desc::Record<T>::kNames)>> : std::true_type {};

template <typename T>
struct IsList : std::false_type {};
template <typename T>
struct IsList<PAL::TVector<T>> : std::true_type {};

// An argument type T to a Value, and a Holder that owns what a T made from a
// Value points into.
template <typename T, typename = void>
struct Conv;

template <>
struct Conv<const char*> {
    static Value To(const char* t) { return t == nullptr ? Value() : Value(std::string(t)); }
    struct Holder {
        const std::string* text = nullptr;
        const char* Get() const { return text == nullptr ? nullptr : text->c_str(); }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        if (v.IsNull()) return;
        h.text = v.Get<std::string>();
        if (h.text == nullptr) Fail(place, "must be a string or null");
    }
};

template <>
struct Conv<bool> {
    static Value To(bool b) { return Value(b); }
    struct Holder {
        bool value = false;
        bool Get() const { return value; }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        const bool* b = v.Get<bool>();
        if (b == nullptr) Fail(place, "must be true or false");
        h.value = *b;
    }
};

template <typename T>
T IntegerFrom(const Value& v, const Place& place) {
    using Limits = std::numeric_limits<T>;
    const std::int64_t* n = v.Get<std::int64_t>();
    if (n == nullptr || *n < static_cast<std::int64_t>(Limits::min()) ||
        (*n > 0 && static_cast<std::uint64_t>(*n) > static_cast<std::uint64_t>(Limits::max()))) {
        Fail(place, "must be an integer from " + std::to_string(Limits::min()) + " to " +
                        std::to_string(Limits::max()));
    }
    return static_cast<T>(*n);
}

template <typename T>
struct Conv<T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>> {
    static Value To(T n) { return Value(static_cast<std::int64_t>(n)); }
    struct Holder {
        T value{};
        T Get() const { return value; }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        h.value = IntegerFrom<T>(v, place);
    }
};

// Enumerations are their numbers, carried as given; the reply-wanted
// setting's "not given" is null.
template <typename T>
struct Conv<T, std::enable_if_t<std::is_enum_v<T>>> {
    using Number = std::underlying_type_t<T>;
    static constexpr bool kNullable = std::is_same_v<T, PimShared::eRsvpType>;
    static Value To(T e) {
        if constexpr (kNullable) {
            if (e == PimShared::eRsvpNotGiven) return Value();
        }
        return Value(static_cast<std::int64_t>(static_cast<Number>(e)));
    }
    struct Holder {
        T value = Initial();
        T Get() const { return value; }
    };
    static constexpr T Initial() {
        if constexpr (kNullable) return PimShared::eRsvpNotGiven;
        return T{};
    }
    static void From(const Value& v, Holder& h, const Place& place) {
        if (kNullable && v.IsNull()) return;
        h.value = static_cast<T>(IntegerFrom<Number>(v, place));
    }
};

template <>
struct Conv<PAL::CDateAndTime> {
    static std::string Text(const PAL::CDateAndTime& d) {
        PAL::CString text;
        PAL::DateAndTimeUtilities::ToString(d, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar,
                                            0, PAL::DateAndTimeUtilities::STimeZoneOffset(), text);
        return text.c_str();
    }
    static Value To(const PAL::CDateAndTime& d) { return Value(Text(d)); }
    struct Holder {
        PAL::CDateAndTime value;
        const PAL::CDateAndTime& Get() const { return value; }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        const std::string* text = v.Get<std::string>();
        // The unset date-time is written as its all-zero text and must read
        // back as itself.
        if (text != nullptr && *text == Text(PAL::CDateAndTime())) return;
        if (text == nullptr ||
            !PAL::DateAndTimeUtilities::FromString(
                h.value, text->c_str(), PAL::DateAndTimeUtilities::eDateTimeFormatICalendar)) {
            Fail(place, "must be a date-time text such as \"20261122T093000Z\"");
        }
    }
};

template <typename T>
struct Conv<PAL::TVector<T>> {
    static Value To(const PAL::TVector<T>& list) {
        List out;
        out.reserve(list.size());
        for (const T& entry : list) out.push_back(Conv<T>::To(entry));
        return Value(std::move(out));
    }
    struct Holder {
        std::vector<typename Conv<T>::Holder> entries;
        PAL::TVector<T> value;
        const PAL::TVector<T>& Get() {
            value.clear();
            for (auto& entry : entries) value.pushBack(entry.Get());
            return value;
        }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        const List* list = v.Get<List>();
        if (list == nullptr) Fail(place, "must be an array");
        h.entries.resize(list->size());
        for (std::size_t i = 0; i < list->size(); ++i)
            Conv<T>::From((*list)[i], h.entries[i], place);
    }
};

// Records: one field per member, named and ordered as the description says.
template <typename S>
struct Conv<S, std::enable_if_t<IsRecord<S>::value>> {
    using R = Desc::Record<S>;
    static constexpr std::size_t kCount = std::tuple_size_v<decltype(R::kFields)>;
    template <std::size_t I>
    using FieldType = Bare<decltype(std::declval<const S&>().*std::get<I>(R::kFields))>;

    static Value To(const S& record) { return ToAll(record, std::make_index_sequence<kCount>{}); }
    template <std::size_t... I>
    static Value ToAll(const S& record, std::index_sequence<I...>) {
        Record out;
        out.reserve(kCount);
        (out.push_back(
             Field{R::kNames[I], Conv<FieldType<I>>::To(record.*std::get<I>(R::kFields))}),
         ...);
        return Value(std::move(out));
    }

    template <typename Seq>
    struct HolderOf;
    template <std::size_t... I>
    struct HolderOf<std::index_sequence<I...>> {
        std::tuple<typename Conv<FieldType<I>>::Holder...> fields;
        S Get() {
            S record{};
            ((record.*std::get<I>(R::kFields) = std::get<I>(fields).Get()), ...);
            return record;
        }
    };
    using Holder = HolderOf<std::make_index_sequence<kCount>>;

    static void From(const Value& v, Holder& h, const Place& place) {
        const Record* record = v.Get<Record>();
        if (record == nullptr) Fail(place, "must hold objects with " + FieldList());
        for (const Field& f : *record) {
            bool known = false;
            for (const char* name : R::kNames) known = known || f.name == name;
            if (!known) Fail(place, "has an unknown field '" + f.name + "'");
        }
        FromAll(*record, h, place, std::make_index_sequence<kCount>{});
    }
    template <std::size_t... I>
    static void FromAll(const Record& record, Holder& h, const Place& place,
                        std::index_sequence<I...>) {
        const auto one = [&](auto index) {
            constexpr std::size_t i = decltype(index)::value;
            for (const Field& f : record) {
                if (f.name == R::kNames[i]) {
                    Conv<FieldType<i>>::From(f.value, std::get<i>(h.fields), place);
                }
            }
        };
        (one(std::integral_constant<std::size_t, I>{}), ...);
    }
    static std::string FieldList() {
        std::string list;
        for (const char* name : R::kNames) list += std::string(list.empty() ? "" : ", ") + name;
        return list;
    }
};

// Data: a pointer and the length after it, one Bytes value (null for a null
// pointer). The length has no name of its own; it is taken from the data.
template <>
struct Conv<const void*> {
    struct Holder {
        const Bytes* bytes = nullptr;
        const void* Get() const { return bytes == nullptr ? nullptr : bytes->data(); }
    };
    static void From(const Value& v, Holder& h, const Place& place) {
        if (v.IsNull()) return;
        h.bytes = v.Get<Bytes>();
        if (h.bytes == nullptr) Fail(place, "must be bytes or null");
    }
};

}  // namespace

// One creator being driven, whatever its item.
struct Encoder::Session {
    virtual ~Session() = default;
    virtual bool Call(const PimDoc::Call& call, std::size_t index) = 0;
    virtual Bytes Finish() = 0;
};

namespace {

// Records one item's receiver calls into a document.
class DocumentSink {
  public:
    DocumentSink(Document& document, bool trace) : m_document(document), m_trace(trace) {}

    template <typename Op, typename... A>
    bool Call(const A&... args) {
        PimDoc::Call call;
        call.op = Op::kName;
        call.args.reserve(sizeof...(A));
        Put<Op>(call, std::index_sequence_for<A...>{}, args...);
        m_document.calls.push_back(std::move(call));
        return true;
    }

    bool Trace(const int& code, const char* text) {
        if (m_trace || code != 0) {
            m_document.diagnostics.push_back(
                Diagnostic{code, text == nullptr ? "" : text, m_document.calls.size()});
        }
        return true;
    }

  private:
    template <typename Op, std::size_t... I, typename... A>
    void Put(PimDoc::Call& call, std::index_sequence<I...>, const A&... args) {
        const auto all = std::forward_as_tuple(args...);
        const auto put = [&](auto index) {
            constexpr std::size_t i = decltype(index)::value;
            using P = Bare<typename Op::template Param<i>>;
            if constexpr (Desc::IsDataLength<Op, i>()) {
                return;
            } else if constexpr (std::is_same_v<P, const void*>) {
                const auto* data = static_cast<const std::uint8_t*>(std::get<i>(all));
                const auto size = static_cast<std::size_t>(std::get<i + 1>(all));
                call.args.push_back(Argument{
                    Op::kArgs[i], data == nullptr ? Value() : Value(Bytes(data, data + size))});
            } else {
                call.args.push_back(Argument{Op::kArgs[i], Conv<P>::To(std::get<i>(all))});
            }
        };
        (put(std::integral_constant<std::size_t, I>{}), ...);
        (void)put;  // operations without arguments
        (void)all;
    }

    Document& m_document;
    bool m_trace;
};

// Makes one call of a document on target, the item's Attributes interface
// (or, for the call list, its writer).
template <typename Op, typename Target, std::size_t... I>
bool Invoke(Target& target, const Call& call, std::size_t index, std::index_sequence<I...>) {
    for (const Argument& a : call.args) {
        bool known = false;
        for (const char* name : Op::kArgs) known = known || (name != nullptr && a.name == name);
        if (!known) {
            throw DocumentError("call " + std::to_string(index) + " (" + Op::kName +
                                "): unknown argument '" + a.name + "'");
        }
    }
    std::tuple<typename Conv<Bare<typename Op::template Param<I>>>::Holder...> holders;
    // Arguments left out take their empty value: null text, empty list, 0.
    const auto fill = [&](auto i) {
        constexpr std::size_t n = decltype(i)::value;
        if constexpr (Desc::IsDataLength<Op, n>()) {
            const Bytes* bytes = std::get<n - 1>(holders).bytes;
            std::get<n>(holders).value = static_cast<Bare<typename Op::template Param<n>>>(
                bytes == nullptr ? 0 : bytes->size());
        } else if (const Value* v = call.Find(Op::kArgs[n])) {
            Conv<Bare<typename Op::template Param<n>>>::From(*v, std::get<n>(holders),
                                                             {index, Op::kName, Op::kArgs[n]});
        }
    };
    (fill(std::integral_constant<std::size_t, I>{}), ...);
    (void)fill;
    return (target.*Op::kFn)(std::get<I>(holders).Get()...);
}

// Everything the registry needs of one item, made from its description.
template <typename Item>
struct Codec {
    using Ops = typename Item::Operations;

    static Document Decode(const std::uint8_t* data, std::size_t size, bool trace) {
        Document document;
        document.item = Item::kKind;
        DocumentSink sink(document, trace);
        typename Item::template ReceiverFor<DocumentSink> receiver(sink);
        typename Item::Parser parser(receiver);
        static const std::uint8_t empty = 0;
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        document.result.ok = parser.Parse(size == 0 ? &empty : data,
                                          static_cast<unsigned int>(size), errorText, consumed);
        document.result.consumed = consumed;
        return document;
    }

    using Writer = std::conditional_t<std::is_void_v<typename Item::Creator>, CCallListWriter,
                                      typename Item::Creator>;
    using Target = std::conditional_t<std::is_void_v<typename Item::Creator>,
                                      typename Item::Receiver, typename Item::Attributes>;

    class Session : public Encoder::Session {
      public:
        bool Call(const PimDoc::Call& call, std::size_t index) override {
            Target& target = m_writer;
            bool found = false;
            bool ok = false;
            Ops::List::Any([&](auto op) {
                using O = decltype(op);
                if (call.op != O::kName) return false;
                found = true;
                ok = Invoke<O>(target, call, index, std::make_index_sequence<O::Traits::kArity>{});
                return true;
            });
            if (!found) {
                throw DocumentError("call " + std::to_string(index) + ": unknown operation '" +
                                    call.op + "'");
            }
            return ok;
        }
        Bytes Finish() override {
            const void* data = nullptr;
            unsigned int length = 0;
            if (!m_writer.GetData(data, length)) {
                throw DocumentError(
                    "the creator could not finish the stream (a property node is left open "
                    "after a refused call, or Begin/End are missing)");
            }
            const auto* bytes = static_cast<const std::uint8_t*>(data);
            return Bytes(bytes, bytes + length);
        }

      private:
        Writer m_writer;
    };

    static std::unique_ptr<Encoder::Session> Start() { return std::make_unique<Session>(); }
};

struct Entry {
    ItemInfo info;
    Document (*decode)(const std::uint8_t*, std::size_t, bool);
    std::unique_ptr<Encoder::Session> (*encode)();
};

template <typename Item>
Entry EntryOf(unsigned int root, std::vector<unsigned int> components) {
    using Ops = typename Item::Operations;
    return Entry{
        ItemInfo{Item::kKind, Ops::List::Infos(), Ops::List::kCount, root, std::move(components)},
        &Codec<Item>::Decode, &Codec<Item>::Start};
}

const std::vector<Entry>& Registry() {
    using namespace PimShared;
    static const std::vector<Entry> entries = {
        EntryOf<EventItem>(TypeIdObjTypeCalendarTask, {TypeIdCompTypeVevent}),
        EntryOf<TaskItem>(TypeIdObjTypeCalendarTask, {TypeIdCompTypeVtodo}),
        EntryOf<NoteItem>(TypeIdObjTypeNote, {TypeIdCompTypeVJournal}),
        EntryOf<ContactItem>(TypeIdObjTypeContact, {}),
        EntryOf<EmailItem>(TypeIdObjTypeMessage, {600}),
        EntryOf<ImItem>(TypeIdObjTypeMessage, {900}),
        EntryOf<SmsItem>(TypeIdObjTypeMessage, {700}),
        EntryOf<CallListItem>(TypeIdObjTypeCallstack, {CallstackTypeIds::TypeIdCompTypeCallEntry1,
                                                       CallstackTypeIds::TypeIdCompTypeCallEntry2}),
    };
    return entries;
}

// The entry of an ItemInfo of the registry.
const Entry* EntryFor(const ItemInfo& item) {
    for (const Entry& e : Registry()) {
        if (&e.info == &item) return &e;
    }
    return nullptr;
}

}  // namespace

namespace {

// An item's kind by the library's one rule for it.
const ItemInfo* DetectSpan(const std::uint8_t* data, const PimBridge::ItemSpan& span) {
    const char* name =
        PimShared::ItemKindName(PimShared::DetectItemKind(data + span.offset, span.size));
    return *name == '\0' ? nullptr : FindItem(name);
}

}  // namespace

const std::vector<ItemInfo>& Items() {
    static const std::vector<ItemInfo> items = [] {
        std::vector<ItemInfo> out;
        for (const Entry& e : Registry()) out.push_back(e.info);
        return out;
    }();
    return items;
}

const ItemInfo* FindItem(const std::string& kind) {
    for (const Entry& e : Registry()) {
        if (kind == e.info.kind) return &e.info;
    }
    return nullptr;
}

const ItemInfo* DetectItem(unsigned int root, bool hasComponent, unsigned int component) {
    for (const Entry& e : Registry()) {
        if (e.info.root != root) continue;
        if (e.info.components.empty()) return &e.info;
        if (!hasComponent) continue;
        for (unsigned int c : e.info.components) {
            if (c == component) return &e.info;
        }
    }
    return nullptr;
}

Document DecodeItem(const ItemInfo& item, const std::uint8_t* data, std::size_t size, bool trace) {
    // item may be a copy (from Items()); the registry's own entry decodes.
    const ItemInfo* known = FindItem(item.kind);
    if (known == nullptr) throw DocumentError(std::string("unknown item '") + item.kind + "'");
    return EntryFor(*known)->decode(data, size, trace);
}

DecodeResult Decode(const std::uint8_t* data, std::size_t size, const DecodeOptions& options,
                    const std::function<void(Document&&)>& onDocument) {
    DecodeResult result;
    const ItemInfo* forced = nullptr;
    if (!options.item.empty()) {
        forced = FindItem(options.item);
        if (forced == nullptr) throw DocumentError("unknown item '" + options.item + "'");
    }
    std::string why;
    std::size_t next = 0;  // where the item after the last one cut starts
    const bool cut = PimBridge::ForEachItem(
        data, size,
        [&](const PimBridge::ItemSpan& span) {
            const ItemInfo* item = forced;
            if (item == nullptr) item = DetectSpan(data, span);
            if (item == nullptr) {
                result.ok = false;
                result.errorOffset = span.offset;
                result.error = "item at offset " + std::to_string(span.offset) +
                               ": its kind cannot be told from its frame";
                return false;
            }
            next = span.offset + span.size;
            Document document = DecodeItem(*item, data + span.offset, span.size, options.trace);
            const Result parsed = document.result;
            onDocument(std::move(document));
            if (!parsed.ok) {
                result.ok = false;
                result.errorOffset = span.offset;
                result.error = "item at offset " + std::to_string(span.offset) + ": the " +
                               item->kind + " parser stopped after " +
                               std::to_string(parsed.consumed) + " bytes";
                return false;
            }
            return true;
        },
        why);
    if (!cut) {
        result.ok = false;
        result.error = why;
        result.errorOffset = next;
    }
    return result;
}

DecodeResult Decode(const std::uint8_t* data, std::size_t size, const DecodeOptions& options) {
    std::vector<Document> documents;
    DecodeResult result = Decode(data, size, options, [&documents](Document&& document) {
        documents.push_back(std::move(document));
    });
    result.documents = std::move(documents);
    return result;
}

Encoder::Encoder(const ItemInfo& item) {
    const ItemInfo* known = FindItem(item.kind);
    if (known == nullptr) throw DocumentError(std::string("unknown item '") + item.kind + "'");
    m_session = EntryFor(*known)->encode();
}

Encoder::~Encoder() = default;

bool Encoder::Call(const PimDoc::Call& call, std::size_t index) {
    return m_session->Call(call, index);
}

Bytes Encoder::Finish() {
    return m_session->Finish();
}

EncodeResult Encode(const std::vector<Document>& documents) {
    EncodeResult result;
    for (const Document& document : documents) {
        const ItemInfo* item = FindItem(document.item);
        if (item == nullptr) throw DocumentError("unknown item '" + document.item + "'");
        Encoder encoder(*item);
        for (std::size_t i = 0; i < document.calls.size(); ++i) {
            if (!encoder.Call(document.calls[i], i)) {
                result.refused.push_back("call " + std::to_string(i) + " (" + document.calls[i].op +
                                         ")");
            }
        }
        const Bytes bytes = encoder.Finish();
        result.bytes.insert(result.bytes.end(), bytes.begin(), bytes.end());
    }
    return result;
}

EncodeResult Encode(const Document& document) {
    return Encode(std::vector<Document>{document});
}

}  // namespace PimDoc
