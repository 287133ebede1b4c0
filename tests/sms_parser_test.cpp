#include <gtest/gtest.h>

#include <string>

#include "pimshared/sms/TLVSMSParser.h"
#include "support/SmsRecorder.h"
#include "support/TlvStreamText.h"

namespace {

using TestSupport::Bytes;
using TestSupport::Stream;

struct Outcome {
    bool result;
    std::string log;
};

Outcome Parse(PimShared::CTLVSMSParser& parser, TestSupport::SmsRecorder& receiver,
              const Bytes& bytes) {
    receiver.log.clear();
    const char* error = nullptr;
    unsigned int consumed = 0;
    const bool result = parser.Parse(bytes.data(), bytes.size(), error, consumed);
    return {result, receiver.log};
}

// A stream, and the receiver calls it makes on a parser that has read the
// stream before (if any) just ahead of it.
struct Case {
    const char* name;
    const char* stream;
    const char* calls;
    const char* before = nullptr;
};

const Case kCases[] = {
    {"SecondObjectNode", "{2 {2 } }", "Trace(2,Node Begin 2) End() Trace(2,Node End 2)"},
    {"FreshParserBeginsWithInstanceZero", "{2 {700 } }", "Begin(0) End()"},
    {"InstanceCarriesOverToAStreamWithoutOne", "{2 {700 } }", "Begin(7) End()",
     "{2 u32:10=7 {700 } }"},
    {"InstanceInsideMessageKeepsTheFirst", "{2 u32:10=4 {700 u32:10=9 } }",
     "Begin(4) Trace(2,UInt32 10) End()"},
    {"NodesOutsideTheirParent", "{700 } {2 {730 } }",
     "Trace(2,Node Begin 700) Trace(2,Node End 700) Trace(2,Node Begin 730) Trace(2,Node End 730) "
     "End()"},
    {"AttributesOutsideMessage", "{2 s:740=hi u8:725=1 u16:715=1 {700 } }",
     "Trace(2,String 740) Trace(2,UInt8 725) Trace(2,UInt16 715) Begin(0) End()"},
    {"AttributesOfAnotherClass", "{2 {700 b8:725=1 s:715=x u16:740=1 } }",
     "Begin(0) Trace(2,Bitfield8 725) Trace(2,String 715) Trace(2,UInt16 740) End()"},
    {"ClassesTheLayoutHasNot", "{2 {700 i8:1=1 i16:2=1 b16:3=1 bs:4=ab i32:5=1 } }",
     "Begin(0) Trace(2,Int8 1) Trace(2,Int16 2) Trace(2,Bitfield16 3) "
     "Trace(2,Byte Stream 4) Trace(2,Int32 5) End()"},
    {"UnknownIds", "{2 {700 s:717=x u8:726=1 u8:731=1 } }",
     "Begin(0) Trace(2,String 717) Trace(2,UInt8 726) Trace(2,UInt8 731) End()"},
    {"ConcatMissingBytesAreZeroAndDoNotLinger",
     "{2 {700 {730 u8:732=5 } {730 {730 } u8:733=7 } } }",
     "Begin(0) Concat(0,5,0) Trace(2,Node Begin 730) Concat(0,0,0) Trace(2,UInt8 733) Trace(2,Node "
     "End 730) End()"},
    {"MessageInsideMessage", "{2 {700 {700 } } }",
     "Begin(0) Trace(2,Node Begin 700) Trace(2,Node End 700) End()"},
    {"UnknownClass", "{2 {700 x:77 } }",
     "Begin(0) Trace(1,Unexpected class ID = 12 with type ID = 77) End()"},
    {"MalformedStream", "{2 {700 s:740=a bad:5 s:716=b } }", "Begin(0) Body(a) End() Trace(3,)"},
};

class SmsParse : public testing::TestWithParam<Case> {};

TEST_P(SmsParse, ReportsWhatIsOutOfPlace) {
    TestSupport::SmsRecorder receiver;
    PimShared::CTLVSMSParser parser(receiver);
    if (GetParam().before != nullptr) Parse(parser, receiver, Stream(GetParam().before));
    const Bytes bytes = Stream(GetParam().stream);
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(Parse(parser, receiver, bytes).log, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(Streams, SmsParse, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& row) { return row.param.name; });

TEST(SmsParser, FalseAnswersEndTheWalk) {
    TestSupport::SmsRecorder receiver;
    PimShared::CTLVSMSParser parser(receiver);
    receiver.stopAt = "Body";
    Outcome run = Parse(parser, receiver, Stream("{2 {700 s:740=a s:716=b } }"));
    EXPECT_FALSE(run.result);
    EXPECT_EQ(run.log, "Begin(0) Body(a) End() Trace(3,)");

    receiver.stopAt.clear();
    receiver.traceAnswer = false;
    run = Parse(parser, receiver, Stream("{2 {700 i8:1=1 s:716=b } }"));
    EXPECT_FALSE(run.result);
    EXPECT_EQ(run.log, "Begin(0) Trace(2,Int8 1) End() Trace(3,)");

    // The object is usable again after a stopped walk.
    receiver.traceAnswer = true;
    run = Parse(parser, receiver, Stream("{2 {700 s:716=b } }"));
    EXPECT_TRUE(run.result);
    EXPECT_EQ(run.log, "Begin(0) Subject(b) End()");
}

TEST(SmsParser, NullStreamCallsNothing) {
    TestSupport::SmsRecorder receiver;
    PimShared::CTLVSMSParser parser(receiver);
    Parse(parser, receiver, Stream("{2 {700 i8:1=1 } }"));  // a diagnostic first
    receiver.log.clear();
    const char* error = nullptr;
    unsigned int consumed = 5;
    EXPECT_FALSE(parser.Parse(nullptr, 10, error, consumed));
    ASSERT_NE(error, nullptr);
    EXPECT_STREQ(error, "");
    EXPECT_EQ(consumed, 0u);
    EXPECT_EQ(receiver.log, "");
}

}  // namespace
