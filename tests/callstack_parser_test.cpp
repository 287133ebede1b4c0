#include <gtest/gtest.h>

#include <string>

#include "pimshared/callstack/TLVCallstackParser.h"
#include "support/TlvStreamText.h"

namespace {

using TestSupport::Bytes;
using TestSupport::Stream;

// Writes every call as "Name(args)", blank-separated; answers traceAnswer to
// reports and stopAnswer to everything else.
class Recorder : public PimShared::ICallstackReceiver {
  public:
    std::string log;
    bool traceAnswer = true;
    bool stopAnswer = true;

    bool Begin(const unsigned int& kind, const unsigned int& instance) override {
        return Log("Begin", std::to_string(kind) + "," + std::to_string(instance));
    }
    // clang-format off
    bool End() override { return Log("End", ""); }
    bool CallByte(const unsigned char& v) override { return Log("CallByte", std::to_string(v)); }
    bool CallFlag(const bool& v) override { return Log("CallFlag", v ? "true" : "false"); }
    bool CallText1(const char* t) override { return Log("CallText1", t); }
    bool CallText2(const char* t) override { return Log("CallText2", t); }
    bool CallText3(const char* t) override { return Log("CallText3", t); }
    bool CallText4(const char* t) override { return Log("CallText4", t); }
    bool CallText5(const char* t) override { return Log("CallText5", t); }
    // clang-format on
    bool TraceMessage(const int& code, const char* text) override {
        Log("Trace", std::to_string(code) + "," + text);
        return traceAnswer;
    }

  private:
    bool Log(const char* op, const std::string& args) {
        log += (log.empty() ? "" : " ") + std::string(op) + "(" + args + ")";
        return stopAnswer;
    }
};

struct Case {
    const char* name;
    const char* stream;
    bool result;
    const char* calls;
    const char* before = nullptr;  // read by the same parser just ahead
};

const Case kCases[] = {
    {"OneEntry", "{5 u32:10=3 {2001 s:2012=x u8:2016=1 } }", true,
     "Begin(2,3) CallText2(x) CallFlag(true) End()"},
    {"EveryProperty",
     "{5 {2000 u8:2010=7 s:2011=a s:2012=b s:2013=c s:2014=d s:2015=e u8:2016=0 } }", true,
     "Begin(1,0) CallByte(7) CallText1(a) CallText2(b) CallText3(c) CallText4(d) CallText5(e) "
     "CallFlag(false) End()"},
    {"EachLeafDeliveredOnce", "{5 {2000 s:2011=a s:2011= u8:2010=1 u8:2010=2 } }", true,
     "Begin(1,0) CallText1(a) CallText1() CallByte(1) CallByte(2) End()"},
    {"PropertyClassNotChecked", "{5 {2000 s:2010=A u16:2016=256 u8:2013=65 } }", true,
     "Begin(1,0) CallByte(65) CallFlag(false) CallText3() End()"},
    // Every other class gives its low byte; an empty byte stream gives 0.
    {"EveryClassGivesItsLowByte",
     "{5 {2000 i8:2010=-1 i16:2010=258 b8:2010=3 b16:2016=256 i32:2016=1 bs:2010= bs:2016=A } }",
     true,
     "Begin(1,0) CallByte(255) CallByte(2) CallByte(3) CallFlag(false) CallFlag(true) CallByte(0) "
     "CallFlag(true) End()"},
    {"EachParseAcceptsItsOwnInstance", "{5 u32:10=2 {2001 } }", true, "Begin(2,2) End()",
     "{5 u32:10=1 {2000 } }"},
    {"EntryBeforeInstance", "{5 {2000 u32:10=9 } u32:10=4 }", true, "Begin(1,0) End()"},
    {"SecondEntry", "{5 {2000 } {2001 s:2011=a u8:2016=1 } }", true,
     "Begin(1,0) End() Trace(5,) Trace(2,) Trace(2,) Trace(9,)"},
    {"EntryPerCallList", "{5 {2000 } } {5 {2001 } }", true, "Begin(1,0) End() Begin(2,0) End()"},
    {"WrongRoot", "{6 }", true, "Trace(1,) Trace(9,)"},
    {"PropertyOutsideEntry", "u8:2010=1 {5 s:2011=a }", true, "Trace(2,) Trace(2,)"},
    {"UnknownPropertyId", "{5 {2000 u8:2017=1 s:2009=a } }", true,
     "Begin(1,0) Trace(2,) Trace(2,) End()"},
    {"NodeInsideEntry", "{5 {2000 {2001 } } }", true, "Begin(1,0) Trace(2,) Trace(9,) End()"},
    {"WrongEntryNode", "{5 {2002 } }", true, "Trace(3,) Trace(9,)"},
    {"SecondInstance", "{5 u32:10=1 u32:10=2 {2000 } }", true, "Trace(4,) Begin(1,1) End()"},
    {"UnknownClass", "{5 x:77 {2000 x:78 } }", true, "Trace(8,) Begin(1,0) Trace(8,) End()"},
    {"MalformedStream", "{5 {2000 s:2011=a bad:5 s:2012=b } }", false,
     "Begin(1,0) CallText1(a) End() Trace(9,)"},
};

bool ParseInto(PimShared::CTLVCallstackParser& parser, const Bytes& bytes) {
    const char* error = nullptr;
    unsigned int consumed = 0;
    return parser.Parse(bytes.data(), bytes.size(), error, consumed);
}

class CallstackParse : public testing::TestWithParam<Case> {};

TEST_P(CallstackParse, ReplaysTheEntryAndReportsTheRest) {
    Recorder receiver;
    PimShared::CTLVCallstackParser parser(receiver);
    if (GetParam().before != nullptr) ParseInto(parser, Stream(GetParam().before));
    receiver.log.clear();
    EXPECT_EQ(ParseInto(parser, Stream(GetParam().stream)), GetParam().result);
    EXPECT_EQ(receiver.log, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(Streams, CallstackParse, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& row) { return row.param.name; });

TEST(CallstackParser, OnlyReportAnswersStopTheWalk) {
    Recorder receiver;
    PimShared::CTLVCallstackParser parser(receiver);
    receiver.stopAnswer = false;
    EXPECT_TRUE(ParseInto(parser, Stream("{5 {2000 s:2011=a u8:2016=1 } }")));
    EXPECT_EQ(receiver.log, "Begin(1,0) CallText1(a) CallFlag(true) End()");

    receiver.log.clear();
    receiver.traceAnswer = false;
    EXPECT_FALSE(ParseInto(parser, Stream("{5 s:2011=a u32:10=1 {2000 } }")));
    EXPECT_EQ(receiver.log, "Trace(2,) Trace(9,)");
}

TEST(CallstackParser, NullStreamCallsNothing) {
    Recorder receiver;
    PimShared::CTLVCallstackParser parser(receiver);
    const char* error = nullptr;
    unsigned int consumed = 3;
    EXPECT_FALSE(parser.Parse(nullptr, 4, error, consumed));
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "");
    EXPECT_EQ(consumed, 0u);
    EXPECT_EQ(receiver.log, "");
}

}  // namespace
