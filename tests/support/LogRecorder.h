#ifndef PIMTLV_TESTS_SUPPORT_LOGRECORDER_H
#define PIMTLV_TESTS_SUPPORT_LOGRECORDER_H

#include <string>

#include "pimshared/callstack/CallstackDescription.h"
#include "pimshared/sms/SMSDescription.h"

namespace TestSupport {

// Writes every receiver call as "Name(args)" into log, blank-separated, the
// arguments comma-separated; null texts as "-", and a refusal text
// "Unexpected <kind> with type ID = <id>", when it has exactly that shape,
// as "<kind> <id>"; flags as true or false. Answers false to the operation
// named stopAt (to every operation for "*"), and traceAnswer to every
// TraceMessage.
struct LogSink {
    std::string log;
    std::string stopAt;
    bool traceAnswer = true;

    template <typename Op, typename... A>
    bool Call(const A&... args) {
        return Log(Op::kName, Joined(Str(args)...));
    }
    bool Trace(const int& code, const char* text) {
        std::string brief = Str(text);
        const std::string head = "Unexpected ", tail = " with type ID = ";
        const auto cut = brief.find(tail);
        if (brief.rfind(head, 0) == 0 && cut != std::string::npos && code == 2) {
            brief = brief.substr(head.size(), cut - head.size()) + " " +
                    brief.substr(cut + tail.size());
        }
        Log("Trace", std::to_string(code) + "," + brief);
        return traceAnswer;
    }

  private:
    static std::string Str(const char* t) { return t == nullptr ? "-" : t; }
    static std::string Str(bool flag) { return flag ? "true" : "false"; }
    template <typename T>
    static std::string Str(const T& number) {
        return std::to_string(number);
    }
    static std::string Joined() { return ""; }
    template <typename... S>
    static std::string Joined(const std::string& first, const S&... rest) {
        std::string text = first;
        ((text += "," + rest), ...);
        return text;
    }
    bool Log(const std::string& op, const std::string& args) {
        log += (log.empty() ? "" : " ") + op + "(" + args + ")";
        return op != stopAt && stopAt != "*";
    }
};

// The recorder of an item's receiver. The sink comes first, so that it
// exists when the receiver is handed it.
template <typename Item>
class TLogRecorder : public LogSink, public Item::template ReceiverFor<LogSink> {
  public:
    TLogRecorder() : Item::template ReceiverFor<LogSink>(static_cast<LogSink&>(*this)) {}
};
using SmsRecorder = TLogRecorder<PimShared::SmsItem>;
using CallListRecorder = TLogRecorder<PimShared::CallListItem>;

}  // namespace TestSupport

#endif
