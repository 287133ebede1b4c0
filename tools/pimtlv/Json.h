#ifndef PIMTLV_TOOL_JSON_H
#define PIMTLV_TOOL_JSON_H

// The JSON form of an item: the receiver calls of a parse, each with its
// operation name and named arguments, and the same calls replayed into the
// item's creator. One table per item names every operation and argument once;
// the argument types come from the operation's own signature, so a table
// entry cannot disagree with the interface it describes.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tool.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimTool {

using Json = nlohmann::ordered_json;

// Where an argument came from, for error messages.
struct ArgPlace {
    std::size_t call;
    const char* op;
    const char* arg;
};
[[noreturn]] void ThrowArgError(const ArgPlace& place, const std::string& what);

std::string HexOf(const void* data, std::size_t size);
// Hex text (white space ignored) to bytes; false when it is not hex.
bool BytesOfHex(const std::string& text, std::vector<std::uint8_t>& out);

template <typename T>
using Bare = std::remove_cv_t<std::remove_reference_t<T>>;

// Codec<T>: T to JSON, and a Holder that owns what a T decoded from JSON
// points into. Items add codecs for their own records.
template <typename T, typename Enable = void>
struct Codec;

template <>
struct Codec<const char*> {
    static Json ToJson(const char* text) { return text == nullptr ? Json(nullptr) : Json(text); }
    struct Holder {
        std::string text;
        bool null = true;
        const char* Get() const { return null ? nullptr : text.c_str(); }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        if (j.is_null()) return;
        if (!j.is_string()) ThrowArgError(place, "must be a string or null");
        h.text = j.get<std::string>();
        h.null = false;
    }
};

template <>
struct Codec<bool> {
    static Json ToJson(bool v) { return Json(v); }
    struct Holder {
        bool value = false;
        bool Get() const { return value; }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        if (!j.is_boolean()) ThrowArgError(place, "must be true or false");
        h.value = j.get<bool>();
    }
};

// Reads an integer of type T, refusing non-integers and values out of range.
template <typename T>
T IntegerFromJson(const Json& j, const ArgPlace& place) {
    using Limits = std::numeric_limits<T>;
    const auto range = [&place] {
        ThrowArgError(place, "must be an integer from " + std::to_string(Limits::min()) + " to " +
                                 std::to_string(Limits::max()));
    };
    if (j.is_number_unsigned()) {
        const auto v = j.get<std::uint64_t>();
        if (v > static_cast<std::uint64_t>(Limits::max())) range();
        return static_cast<T>(v);
    }
    if (j.is_number_integer()) {
        const auto v = j.get<std::int64_t>();
        if (v < static_cast<std::int64_t>(Limits::min()) ||
            (v > 0 && static_cast<std::uint64_t>(v) > static_cast<std::uint64_t>(Limits::max()))) {
            range();
        }
        return static_cast<T>(v);
    }
    range();
    return T{};
}

template <typename T>
struct Codec<T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>> {
    static Json ToJson(T v) { return Json(v); }
    struct Holder {
        T value{};
        T Get() const { return value; }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        h.value = IntegerFromJson<T>(j, place);
    }
};

// Enumerations travel as their numbers: the codec carries them as given.
template <typename T>
struct Codec<T, std::enable_if_t<std::is_enum_v<T>>> {
    using Number = std::underlying_type_t<T>;
    static Json ToJson(T v) { return Json(static_cast<Number>(v)); }
    struct Holder {
        T value{};
        T Get() const { return value; }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        h.value = static_cast<T>(IntegerFromJson<Number>(j, place));
    }
};

template <>
struct Codec<PAL::CDateAndTime> {
    static Json ToJson(const PAL::CDateAndTime& v);
    struct Holder {
        PAL::CDateAndTime value;
        const PAL::CDateAndTime& Get() const { return value; }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place);
};

// Lists: a JSON array of the element's form.
template <typename T>
struct Codec<PAL::TVector<T>> {
    static Json ToJson(const PAL::TVector<T>& list) {
        Json j = Json::array();
        for (const T& item : list) j.push_back(Codec<T>::ToJson(item));
        return j;
    }
    struct Holder {
        std::vector<typename Codec<T>::Holder> items;
        PAL::TVector<T> value;
        const PAL::TVector<T>& Get() {
            value.clear();
            for (auto& item : items) value.pushBack(item.Get());
            return value;
        }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        if (!j.is_array()) ThrowArgError(place, "must be an array");
        h.items.resize(j.size());
        for (std::size_t i = 0; i < j.size(); ++i) Codec<T>::FromJson(j[i], h.items[i], place);
    }
};

// Records (plain structs of an interface): a JSON object with one member
// per field. Self names the fields in kFields, in the order of Members.
template <typename Self, typename S, auto... Members>
struct RecordCodec {
    template <auto M>
    using Field = Bare<decltype(std::declval<const S&>().*M)>;
    using Fields = std::tuple<Field<Members>...>;
    static constexpr std::size_t kCount = sizeof...(Members);

    static Json ToJson(const S& record) {
        Json j = Json::object();
        std::size_t i = 0;
        ((j[Self::kFields[i++]] = Codec<Field<Members>>::ToJson(record.*Members)), ...);
        return j;
    }
    struct Holder {
        std::tuple<typename Codec<Field<Members>>::Holder...> fields;
        S Get() { return Build(std::make_index_sequence<kCount>{}); }
        template <std::size_t... I>
        S Build(std::index_sequence<I...>) {
            S record{};
            ((record.*Members = std::get<I>(fields).Get()), ...);
            return record;
        }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place) {
        if (!j.is_object()) ThrowArgError(place, "must hold objects with " + FieldList());
        for (const auto& entry : j.items()) {
            bool known = false;
            for (const char* name : Self::kFields) known = known || entry.key() == name;
            if (!known) ThrowArgError(place, "has an unknown field '" + entry.key() + "'");
        }
        Fill(j, h, place, std::make_index_sequence<kCount>{});
    }

  private:
    static std::string FieldList() {
        std::string list;
        for (const char* name : Self::kFields) list += std::string(list.empty() ? "" : ", ") + name;
        return list;
    }
    template <std::size_t... I>
    static void Fill(const Json& j, Holder& h, const ArgPlace& place, std::index_sequence<I...>) {
        const auto one = [&](auto index) {
            constexpr std::size_t i = decltype(index)::value;
            using F = std::tuple_element_t<i, Fields>;
            if (j.contains(Self::kFields[i])) {
                Codec<F>::FromJson(j[Self::kFields[i]], std::get<i>(h.fields), place);
            }
        };
        (one(std::integral_constant<std::size_t, I>{}), ...);
    }
};

template <>
struct Codec<PimShared::tXParam>
    : RecordCodec<Codec<PimShared::tXParam>, PimShared::tXParam, &PimShared::tXParam::name,
                  &PimShared::tXParam::value> {
    static constexpr const char* kFields[] = {"name", "value"};
};

// Binary data: a pointer argument followed by its length argument, written
// as one hex string (null for a null pointer). The length slot has no name
// in an operation's table; it is taken from the data.
template <>
struct Codec<const void*> {
    struct Holder {
        std::vector<std::uint8_t> bytes;
        bool null = true;
        const void* Get() const { return null ? nullptr : bytes.data(); }
    };
    static void FromJson(const Json& j, Holder& h, const ArgPlace& place);
};
template <typename T>
constexpr bool kIsBytePointer = std::is_same_v<Bare<T>, const void*>;

template <typename F>
struct MemberFn;
template <typename C, typename... P>
struct MemberFn<bool (C::*)(P...)> {
    using Class = C;
    using Params = std::tuple<P...>;
    static constexpr std::size_t kArity = sizeof...(P);
};
template <typename F, std::size_t I>
using ParamAt = Bare<std::tuple_element_t<I, typename MemberFn<F>::Params>>;

// One operation of an item: its name, its argument names in order (null for
// the length that follows a data pointer) and the replay into the creator.
struct OpEntry {
    const char* name;
    std::vector<const char*> args;
    // Calls the operation on target (the item's Attributes interface) with
    // arguments read from JSON; null for an operation that only a parser has.
    bool (*invoke)(void* target, const Json& args, const OpEntry& op, std::size_t call);
    const void* key;  // identifies the member function, for the receiver side
};

namespace detail {

template <auto Fn>
struct Key {
    static constexpr char id = 0;
};

template <auto Fn, typename Target, std::size_t... I>
bool InvokeWith(void* target, const Json& args, const OpEntry& op, std::size_t call,
                std::index_sequence<I...>) {
    using F = decltype(Fn);
    using C = typename MemberFn<F>::Class;
    std::tuple<typename Codec<ParamAt<F, I>>::Holder...> holders;
    if (!args.is_null() && !args.is_object()) {
        ThrowArgError({call, op.name, "args"}, "must be an object");
    }
    if (args.is_object()) {
        for (const auto& entry : args.items()) {
            bool known = false;
            for (const char* name : op.args)
                known = known || (name != nullptr && entry.key() == name);
            if (!known) {
                throw UsageError("call " + std::to_string(call) + " (" + op.name +
                                 "): unknown argument '" + entry.key() + "'");
            }
        }
    }
    // Arguments left out take their empty value: null text, empty list, 0.
    const auto fill = [&](auto index) {
        constexpr std::size_t i = decltype(index)::value;
        const char* name = op.args[i];
        if (name != nullptr && args.is_object() && args.contains(name)) {
            Codec<ParamAt<F, i>>::FromJson(args[name], std::get<i>(holders), {call, op.name, name});
        }
        if constexpr (i > 0) {
            if constexpr (kIsBytePointer<ParamAt<F, i - 1>> && std::is_integral_v<ParamAt<F, i>>) {
                std::get<i>(holders).value =
                    static_cast<ParamAt<F, i>>(std::get<i - 1>(holders).bytes.size());
            }
        }
    };
    (fill(std::integral_constant<std::size_t, I>{}), ...);
    (void)fill;  // operations without arguments
    C* object = static_cast<Target*>(target);
    return (object->*Fn)(std::get<I>(holders).Get()...);
}

template <auto Fn, typename Target>
bool Invoke(void* target, const Json& args, const OpEntry& op, std::size_t call) {
    return InvokeWith<Fn, Target>(target, args, op, call,
                                  std::make_index_sequence<MemberFn<decltype(Fn)>::kArity>{});
}

}  // namespace detail

// A table entry for member function Fn, with one name per argument (null
// for a length that follows a data pointer). Target is the interface the
// replay hands over, when Fn is declared in a base of it.
template <auto Fn, typename Target = typename MemberFn<decltype(Fn)>::Class, typename... Names>
OpEntry Op(const char* name, Names... argNames) {
    static_assert(sizeof...(Names) == MemberFn<decltype(Fn)>::kArity,
                  "one name per argument of the operation");
    return OpEntry{name, {argNames...}, &detail::Invoke<Fn, Target>, &detail::Key<Fn>::id};
}

// Text made as it goes and handed to a stream in large pieces, so that no
// output, not even one call with a list of a million entries, is held whole.
class TextOut {
  public:
    explicit TextOut(std::ostream& out) : m_out(out) {}
    ~TextOut() { Flush(); }
    TextOut(const TextOut&) = delete;
    TextOut& operator=(const TextOut&) = delete;

    std::string& Text() { return m_text; }
    void Drain() {
        if (m_text.size() >= kPiece) Flush();
    }
    void Flush();

  private:
    static constexpr std::size_t kPiece = std::size_t{1} << 16;
    std::ostream& m_out;
    std::string m_text;
};

// Text kept for later: in memory up to a bound, beyond it in an unnamed
// temporary file, so that what a parse reports before it can be shown (a
// million diagnostics, say) costs no memory.
class Spill {
  public:
    Spill() = default;
    ~Spill();
    Spill(const Spill&) = delete;
    Spill& operator=(const Spill&) = delete;

    void Append(std::string_view text);
    // Hands everything kept to piece, in order and in pieces, then starts
    // empty again.
    void Drain(const std::function<void(std::string_view)>& piece);

  private:
    static constexpr std::size_t kInMemory = std::size_t{4} << 20;
    std::string m_memory;
    std::FILE* m_file = nullptr;
    std::size_t m_fileSize = 0;
};

// Diagnostics a parse reported, held until they can be shown (check shows
// each with the call that follows it, decode lists them after the calls). A
// run of the same diagnostic, which is what a stream of many refused
// elements gives, is held once with its count; the rest in a Spill.
class HeldDiagnostics {
  public:
    void Add(int code, const char* text, std::size_t call);
    bool Empty() const { return m_last.count == 0; }
    // Hands each held run to show(code, text, call, count), in order, then
    // holds nothing.
    void Drain(const std::function<void(int, std::string_view, std::size_t, std::size_t)>& show);

  private:
    struct Run {
        int code = 0;
        std::size_t call = 0;
        std::size_t count = 0;
        std::string text;
    };
    void Keep(const Run& run);

    Run m_last;  // the run being counted; those before it are in m_earlier
    Spill m_earlier;
};

// Compact JSON, as nlohmann's dump writes it (invalid UTF-8 replaced).
void AppendJson(std::string& out, const Json& value);
// A text as a JSON string, or null for a null pointer.
void AppendJsonText(std::string& out, const char* text);

template <typename T>
struct IsList : std::false_type {};
template <typename T>
struct IsList<PAL::TVector<T>> : std::true_type {};

// One argument value as JSON; a list entry by entry, handing out the text
// as it grows.
template <typename P>
void WriteValue(TextOut& out, const P& value) {
    std::string& text = out.Text();
    if constexpr (std::is_same_v<P, const char*>) {
        AppendJsonText(text, value);
    } else if constexpr (std::is_same_v<P, bool>) {
        text += value ? "true" : "false";
    } else if constexpr (std::is_integral_v<P>) {
        text += std::to_string(value);
    } else if constexpr (IsList<P>::value) {
        text += '[';
        bool first = true;
        for (const auto& entry : value) {
            if (!first) out.Text() += ',';
            first = false;
            WriteValue(out, entry);
            out.Drain();
        }
        out.Text() += ']';
    } else {
        AppendJson(text, Codec<P>::ToJson(value));
    }
}

// Hears a parse as the parser makes it.
class ParseListener {
  public:
    virtual ~ParseListener() = default;
    // Receiver call number index (from 0) is about to be written.
    virtual void OnCall(std::size_t index, const char* op) = 0;
    // A TraceMessage; call is the index of the receiver call that follows it.
    virtual void OnDiagnostic(int code, const char* text, std::size_t call) = 0;
};

// Turns one parse's receiver calls into their JSON form, one compact object
// a call, written to calls as they come (or only counted and named to the
// listener, when calls is null); keeps nothing per call.
class Recorder {
  public:
    Recorder(const std::vector<OpEntry>& ops, ParseListener& listener, TextOut* calls)
        : m_ops(ops), m_listener(listener), m_out(calls) {}

    // Records receiver operation Fn (the Attributes member the receiver slot
    // mirrors) with its arguments; answers true so that parsing goes on.
    template <auto Fn, typename... A>
    bool Put(const A&... args) {
        static_assert(sizeof...(A) == MemberFn<decltype(Fn)>::kArity, "receiver slot arity");
        const OpEntry& op = Find(&detail::Key<Fn>::id);
        m_listener.OnCall(m_count++, op.name);
        if (m_out == nullptr) return true;
        std::string& text = m_out->Text();
        text += "{\"op\":\"";
        text += op.name;
        text += '"';
        bool named = false;
        PutArgs<Fn>(op, named, std::make_index_sequence<sizeof...(A)>{}, args...);
        text += named ? "}}" : "}";
        m_out->Drain();
        return true;
    }

    bool Trace(int code, const char* text) {
        m_listener.OnDiagnostic(code, text, m_count);
        return true;
    }

    std::size_t Calls() const { return m_count; }

  private:
    const OpEntry& Find(const void* key) const;

    template <auto Fn, std::size_t... I, typename... A>
    void PutArgs(const OpEntry& op, bool& named, std::index_sequence<I...>, const A&... args) {
        const auto all = std::forward_as_tuple(args...);
        const auto put = [&](auto index) {
            constexpr std::size_t i = decltype(index)::value;
            using P = ParamAt<decltype(Fn), i>;
            if (op.args[i] == nullptr) return;  // a length, carried by its data
            std::string& text = m_out->Text();
            text += named ? ",\"" : ",\"args\":{\"";
            named = true;
            text += op.args[i];
            text += "\":";
            if constexpr (kIsBytePointer<P>) {
                if constexpr (i + 1 < sizeof...(A)) {
                    const auto* data = std::get<i>(all);
                    const auto size = static_cast<std::size_t>(std::get<i + 1>(all));
                    if (data == nullptr) {
                        text += "null";
                    } else {
                        text += '"';
                        text += HexOf(data, size);
                        text += '"';
                    }
                }
            } else {
                WriteValue<P>(*m_out, std::get<i>(all));
            }
        };
        (put(std::integral_constant<std::size_t, I>{}), ...);
        (void)put;  // operations without arguments
    }

    const std::vector<OpEntry>& m_ops;
    ParseListener& m_listener;
    TextOut* m_out;
    std::size_t m_count = 0;
};

}  // namespace PimTool

#endif
