#ifndef PIMTLV_TESTS_SUPPORT_SMSRECORDER_H
#define PIMTLV_TESTS_SUPPORT_SMSRECORDER_H

#include <string>

#include "pimshared/sms/SMSDescription.h"

namespace TestSupport {

// Writes every receiver call as "Name(args)" into log, blank-separated, the
// arguments comma-separated; null texts as "-", and a refusal text
// "Unexpected <kind> with type ID = <id>", when it has exactly that shape,
// as "<kind> <id>". Answers false to the operation named stopAt, and
// traceAnswer to every TraceMessage.
struct SmsLogSink {
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
        return Log("Trace", std::to_string(code) + "," + brief) && traceAnswer;
    }

  private:
    static std::string Str(const char* t) { return t == nullptr ? "-" : t; }
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
        return op != stopAt;
    }
};

// The sink comes first, so that it exists when the receiver is handed it.
class SmsRecorder : public SmsLogSink, public PimShared::TSmsReceiverFor<SmsLogSink> {
  public:
    SmsRecorder() : PimShared::TSmsReceiverFor<SmsLogSink>(static_cast<SmsLogSink&>(*this)) {}
};

}  // namespace TestSupport

#endif
