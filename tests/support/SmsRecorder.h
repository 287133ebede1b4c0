#ifndef PIMTLV_TESTS_SUPPORT_SMSRECORDER_H
#define PIMTLV_TESTS_SUPPORT_SMSRECORDER_H

#include <string>

#include "pimshared/sms/ISMSReceiver.h"

namespace testsupport {

// Writes every receiver call as "Name(args)" into log, blank-separated; null
// texts as "-", and a refusal text "Unexpected <kind> with type ID = <id>",
// when it has exactly that shape, as "<kind> <id>". Answers false to the
// operation named stopAt, and traceAnswer to every TraceMessage.
class SmsRecorder : public PimShared::ISMSReceiver {
  public:
    std::string log;
    std::string stopAt;
    bool traceAnswer = true;

    // clang-format off
#define PIMTEST_TEXT(Op) bool Op(const char* t) override { return Log(#Op, Text(t)); }
#define PIMTEST_NUMBER(Op, Type) bool Op(const Type& v) override { return Log(#Op, std::to_string(v)); }
    PIMTEST_TEXT(Body) PIMTEST_TEXT(Destination) PIMTEST_TEXT(Folder) PIMTEST_TEXT(Instance)
    PIMTEST_TEXT(Originator) PIMTEST_TEXT(OriginatorFName) PIMTEST_TEXT(DestinationFName)
    PIMTEST_TEXT(ServiceCenter) PIMTEST_TEXT(SendingState) PIMTEST_TEXT(Subject)
    PIMTEST_TEXT(Timestamp) PIMTEST_TEXT(TimestampLocal)
    PIMTEST_NUMBER(Begin, unsigned int) PIMTEST_NUMBER(ReadStatus, eReadStatus)
    PIMTEST_NUMBER(DownloadState, eDownloadState) PIMTEST_NUMBER(SMSState, eSMSState)
    PIMTEST_NUMBER(SMSType, eSMSType) PIMTEST_NUMBER(StorageType, eStorageType)
    PIMTEST_NUMBER(StorageIndex, unsigned short) PIMTEST_NUMBER(Priority, ePriority)
#undef PIMTEST_TEXT
#undef PIMTEST_NUMBER
        // clang-format on

        bool End() override {
        return Log("End", "");
    }
    bool Concat(const unsigned char& a, const unsigned char& b, const unsigned char& c) override {
        return Log("Concat", std::to_string(a) + "," + std::to_string(b) + "," + std::to_string(c));
    }
    bool OriginatorName(const char* p1, const char* p2, const char* p3, const char* p4,
                        const char* p5, const char* p6) override {
        return Log("OriginatorName", Text(p1) + "," + Text(p2) + "," + Text(p3) + "," + Text(p4) +
                                         "," + Text(p5) + "," + Text(p6));
    }
    bool TraceMessage(const int& code, const char* text) override {
        std::string brief = Text(text);
        const std::string head = "Unexpected ", tail = " with type ID = ";
        const auto cut = brief.find(tail);
        if (brief.rfind(head, 0) == 0 && cut != std::string::npos && code == 2) {
            brief = brief.substr(head.size(), cut - head.size()) + " " +
                    brief.substr(cut + tail.size());
        }
        return Log("Trace", std::to_string(code) + "," + brief) && traceAnswer;
    }

  private:
    static std::string Text(const char* t) {
        return t == nullptr ? "-" : t;
    }
    bool Log(const std::string& op, const std::string& args) {
        log += (log.empty() ? "" : " ") + op + "(" + args + ")";
        return op != stopAt;
    }
};

}  // namespace testsupport

#endif
