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
#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/TVector.h"

namespace PimTool {

using Json = nlohmann::ordered_json;

std::string HexOf(const void* data, std::size_t size);

template <typename T>
using Bare = std::remove_cv_t<std::remove_reference_t<T>>;

// Codec<T>: an argument of type T as JSON, for the decode output. (Reading
// documents back is the document library's.)
template <typename T, typename Enable = void>
struct Codec;

template <>
struct Codec<const char*> {
    static Json ToJson(const char* text) { return text == nullptr ? Json(nullptr) : Json(text); }
};

template <>
struct Codec<bool> {
    static Json ToJson(bool v) { return Json(v); }
};

template <typename T>
struct Codec<T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>>> {
    static Json ToJson(T v) { return Json(v); }
};

// Enumerations travel as their numbers: the codec carries them as given.
template <typename T>
struct Codec<T, std::enable_if_t<std::is_enum_v<T>>> {
    using Number = std::underlying_type_t<T>;
    static Json ToJson(T v) { return Json(static_cast<Number>(v)); }
};

template <>
struct Codec<PAL::CDateAndTime> {
    static Json ToJson(const PAL::CDateAndTime& v);
};

// Lists: a JSON array of the element's form.
template <typename T>
struct Codec<PAL::TVector<T>> {
    static Json ToJson(const PAL::TVector<T>& list) {
        Json j = Json::array();
        for (const T& item : list) j.push_back(Codec<T>::ToJson(item));
        return j;
    }
};

template <typename S, typename = void>
struct IsDescribedRecord : std::false_type {};
template <typename S>
struct IsDescribedRecord<S, std::void_t<decltype(PimShared::Description::Record<S>::kNames)>>
    : std::true_type {};

// Records (an extension parameter, a mailbox, ...): an object with one
// member per field, named and ordered as the item's description says.
template <typename S>
struct Codec<S, std::enable_if_t<IsDescribedRecord<S>::value>> {
    using R = PimShared::Description::Record<S>;
    static Json ToJson(const S& record) {
        Json j = Json::object();
        std::size_t i = 0;
        std::apply(
            [&](auto... field) {
                ((j[R::kNames[i++]] = Codec<Bare<decltype(record.*field)>>::ToJson(record.*field)),
                 ...);
            },
            R::kFields);
        return j;
    }
};

template <typename T>
constexpr bool kIsBytePointer = std::is_same_v<Bare<T>, const void*>;

// One operation of an item: its name and its argument names in order (null
// for the length that follows a data pointer).
struct OpEntry {
    const char* name;
    std::vector<const char*> args;
    const void* key;  // identifies the member function, for the receiver side
};

namespace detail {

template <auto Fn>
struct Key {
    static constexpr char id = 0;
};

}  // namespace detail

// The table of an item's operations, from the item's description: Ops is
// the description's operations struct (PimShared::SmsOperations, say).
template <typename Ops>
std::vector<OpEntry> OperationsOf() {
    std::vector<OpEntry> ops;
    Ops::List::Any([&ops](auto op) {
        using O = decltype(op);
        ops.push_back(OpEntry{O::kName, std::vector<const char*>(O::kArgs.begin(), O::kArgs.end()),
                              &detail::Key<O::kFn>::id});
        return false;
    });
    return ops;
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
        static_assert(sizeof...(A) == PimShared::Description::MemberTraits<decltype(Fn)>::kArity,
                      "receiver slot arity");
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

    // The sink protocol of the receivers generated from an item's
    // description: operation Op with its arguments.
    template <typename Op, typename... A>
    bool Call(const A&... args) {
        return Put<Op::kFn>(args...);
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
            using P = Bare<std::tuple_element_t<
                i, typename PimShared::Description::MemberTraits<decltype(Fn)>::Params>>;
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
