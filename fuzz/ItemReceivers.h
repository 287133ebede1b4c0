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
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "pimshared/calendar/CalendarDescription.h"
#include "pimshared/callstack/CallstackDescription.h"
#include "pimshared/contact/ContactDescription.h"
#include "pimshared/email/EmailDescription.h"
#include "pimshared/im/IMDescription.h"
#include "pimshared/note/NoteDescription.h"
#include "pimshared/sms/SMSDescription.h"
#include "pimshared/task/TaskDescription.h"
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

    // A call of the receivers generated from the item descriptions: a data
    // pointer and its length are one argument.
    template <typename Op, typename... A>
    bool Call(const A&... args) {
        std::string line = Op::kName;
        line += '(';
        TouchAll<Op>(line, std::index_sequence_for<A...>{}, std::forward_as_tuple(args...));
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
    // Records: their fields in the order the item description gives them.
    template <typename T,
              typename std::enable_if_t<(sizeof(PimShared::Description::Record<T>) > 0), int> = 0>
    void Touch(std::string& line, const T& record) {
        std::apply([&](auto... field) { (Touch(line, record.*field), ...); },
                   PimShared::Description::Record<T>::kFields);
        line += '|';
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

    template <typename Op, std::size_t... I, typename Args>
    void TouchAll(std::string& line, std::index_sequence<I...>, const Args& args) {
        const auto one = [&](auto index) {
            constexpr std::size_t i = decltype(index)::value;
            if constexpr (PimShared::Description::IsDataLength<Op, i>()) {
                return;
            } else if constexpr (std::is_same_v<std::decay_t<std::tuple_element_t<i, Args>>,
                                                const void*>) {
                Touch(line,
                      Bytes{std::get<i>(args), static_cast<unsigned int>(std::get<i + 1>(args))});
            } else {
                Touch(line, std::get<i>(args));
            }
        };
        (one(std::integral_constant<std::size_t, I>{}), ...);
        (void)one;
        (void)args;
    }

    std::size_t m_refuseAt = kNever;
    bool m_keepTraceLines = false;
    std::size_t m_calls = 0;
    const char* m_fault = nullptr;
    std::vector<std::string> m_lines;
};

// The receivers, generated from the item descriptions. Each is a template
// over the interface it implements, so that the same class records both what
// a parser reports (Base = the receiver interface) and what a round trip
// expects (Base = the Attributes interface a creator implements).
template <typename Base, typename... Items>
struct ItemOfBase;
template <typename Base, typename First, typename... Rest>
struct ItemOfBase<Base, First, Rest...> {
    using Type = std::conditional_t<std::is_same_v<Base, typename First::Attributes> ||
                                        std::is_same_v<Base, typename First::Receiver>,
                                    First, typename ItemOfBase<Base, Rest...>::Type>;
};
template <typename Base>
struct ItemOfBase<Base> {
    using Type = void;
};

// The log comes first among the bases, so that it exists when the slots are
// handed it.
struct LogHolder {
    CallLog m_log;
};

template <typename Base,
          typename Item = typename ItemOfBase<Base, PimShared::EventItem, PimShared::TaskItem,
                                              PimShared::NoteItem, PimShared::ContactItem,
                                              PimShared::EmailItem, PimShared::ImItem,
                                              PimShared::SmsItem, PimShared::CallListItem>::Type,
          bool = std::is_same_v<Base, typename Item::Receiver>>
class ItemLog;

// What a parser reports.
template <typename Base, typename Item>
class ItemLog<Base, Item, true> : private LogHolder, public Item::template ReceiverFor<CallLog> {
  public:
    ItemLog() : Item::template ReceiverFor<CallLog>(m_log) {}
    void Start(std::size_t refuseAt, bool keepTraceLines) { m_log.Start(refuseAt, keepTraceLines); }
    const std::vector<std::string>& Lines() const { return m_log.Lines(); }
    std::size_t Calls() const { return m_log.Calls(); }
    const char* Fault() const { return m_log.Fault(); }
    bool Trace(const int& code, const char* text) { return m_log.Trace(code, text); }
};

// What a round trip expects (no diagnostics of its own but those it is told).
template <typename Base, typename Item>
class ItemLog<Base, Item, false> : private LogHolder,
                                   public Item::template SlotsFor<Base, CallLog> {
  public:
    ItemLog() : Item::template SlotsFor<Base, CallLog>(m_log) {}
    void Start(std::size_t refuseAt, bool keepTraceLines) { m_log.Start(refuseAt, keepTraceLines); }
    const std::vector<std::string>& Lines() const { return m_log.Lines(); }
    std::size_t Calls() const { return m_log.Calls(); }
    const char* Fault() const { return m_log.Fault(); }
    bool Trace(const int& code, const char* text) { return m_log.Trace(code, text); }
};

template <typename Base>
using CalendarFamilyLog = ItemLog<Base>;
template <typename Base>
using ContactLog = ItemLog<Base>;
template <typename Base>
using MimeMessageLog = ItemLog<Base>;
template <typename Base>
using SmsLog = ItemLog<Base>;
using CallListLog = ItemLog<PimShared::ICallstackReceiver>;

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
