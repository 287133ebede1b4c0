#include <gtest/gtest.h>

#include <string>

#include "pim_stream_text.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"
#include "sms_recorder.h"

namespace {

using PimShared::ISMSAttributes;
using PimShared::ISMSCreator;
using pimtest::Bytes;
using pimtest::Stream;

Bytes Take(ISMSCreator& creator) {
    const void* data = nullptr;
    unsigned int length = 0;
    if (!creator.GetData(data, length)) return {};
    return Bytes(static_cast<const unsigned char*>(data),
                 static_cast<const unsigned char*>(data) + length);
}

template <typename Enum>
Enum As(unsigned int value) {
    return static_cast<Enum>(value);
}

TEST(SmsCreator, WritesTheShortestMessageByteForByte) {
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1) && creator.Body("hi") && creator.End());
    const Bytes expected = {0x80, 0x02, 0x10, 0x90, 0x0A, 0x04, 0x00, 0x00, 0x00, 0x01,
                            0x82, 0xBC, 0x06, 0x62, 0xE4, 0x03, 'h',  'i',  0x00};
    EXPECT_EQ(Take(creator), expected);
}

// One operation between Begin(1) and End(): its answer, the leaves it puts in
// node 700, and the calls a parser makes of the stream between Begin(1) and End().
struct Case {
    const char* name;
    bool (*write)(ISMSCreator&);
    bool answer;
    const char* layout;
    const char* calls;
};

const Case kCases[] = {
    {"Body", [](ISMSCreator& c) { return c.Body("hi"); }, true, "s:740=hi", "Body(hi)"},
    {"BodyNull", [](ISMSCreator& c) { return c.Body(nullptr); }, true, "s:740=", "Body()"},
    {"Concat", [](ISMSCreator& c) { return c.Concat(7, 2, 1); }, true,
     "{730 u8:731=7 u8:732=2 u8:733=1 }", "Concat(7,2,1)"},
    {"Destination", [](ISMSCreator& c) { return c.Destination("+491"); }, true, "s:722=+491",
     "Destination(+491)"},
    {"ReadStatusLowByte",
     [](ISMSCreator& c) { return c.ReadStatus(As<ISMSAttributes::eReadStatus>(300)); }, true,
     "u8:725=44", "ReadStatus(44)"},
    {"DownloadState",
     [](ISMSCreator& c) { return c.DownloadState(ISMSAttributes::DownloadStateComplete); }, true,
     "u8:727=3", "DownloadState(3)"},
    {"Folder", [](ISMSCreator& c) { return c.Folder("inbox"); }, true, "s:903=inbox",
     "Folder(inbox)"},
    {"Instance", [](ISMSCreator& c) { return c.Instance("i1"); }, true, "s:904=i1", "Instance(i1)"},
    {"Originator", [](ISMSCreator& c) { return c.Originator("+492"); }, true, "s:721=+492",
     "Originator(+492)"},
    {"OriginatorNameByPosition",
     [](ISMSCreator& c) { return c.OriginatorName("a", "", nullptr, "c", "d", "e"); }, true,
     "s:510=c s:511=d s:512=e",
     "OriginatorName(-,-,-,c,-,-) OriginatorName(-,-,-,-,d,-) OriginatorName(-,-,-,-,-,e)"},
    {"OriginatorNameSecondPart",
     [](ISMSCreator& c) { return c.OriginatorName("a", "b", nullptr, nullptr, nullptr, ""); }, true,
     "s:508=b", "OriginatorName(-,b,-,-,-,-)"},
    {"OriginatorNameNothing",
     [](ISMSCreator& c) { return c.OriginatorName("a", nullptr, "", nullptr, "", nullptr); }, true,
     "", ""},
    {"OriginatorFName", [](ISMSCreator& c) { return c.OriginatorFName("Ann"); }, true, "s:723=Ann",
     "OriginatorFName(Ann)"},
    {"OriginatorFNameEmpty", [](ISMSCreator& c) { return c.OriginatorFName(""); }, false, "", ""},
    {"OriginatorFNameNull", [](ISMSCreator& c) { return c.OriginatorFName(nullptr); }, false, "",
     ""},
    {"DestinationFName", [](ISMSCreator& c) { return c.DestinationFName("Bo"); }, true, "s:724=Bo",
     "DestinationFName(Bo)"},
    {"DestinationFNameEmpty", [](ISMSCreator& c) { return c.DestinationFName(""); }, false, "", ""},
    {"DestinationFNameNull", [](ISMSCreator& c) { return c.DestinationFName(nullptr); }, false, "",
     ""},
    {"ServiceCenter", [](ISMSCreator& c) { return c.ServiceCenter("+493"); }, true, "s:720=+493",
     "ServiceCenter(+493)"},
    {"SMSState", [](ISMSCreator& c) { return c.SMSState(ISMSAttributes::SMSStateSent); }, true,
     "u8:710=4", "SMSState(4)"},
    {"SMSType", [](ISMSCreator& c) { return c.SMSType(As<ISMSAttributes::eSMSType>(0x1FF)); }, true,
     "u8:711=255", "SMSType(255)"},
    {"StorageType", [](ISMSCreator& c) { return c.StorageType(ISMSAttributes::StorageTypeSim); },
     true, "u8:714=1", "StorageType(1)"},
    {"StorageIndex", [](ISMSCreator& c) { return c.StorageIndex(513); }, true, "u16:715=513",
     "StorageIndex(513)"},
    {"SendingState", [](ISMSCreator& c) { return c.SendingState("ok"); }, true, "s:741=ok",
     "SendingState(ok)"},
    {"Subject", [](ISMSCreator& c) { return c.Subject("re"); }, true, "s:716=re", "Subject(re)"},
    {"Timestamp", [](ISMSCreator& c) { return c.Timestamp("20260101T100000Z"); }, true,
     "s:712=20260101T100000Z", "Timestamp(20260101T100000Z)"},
    {"TimestampLocal", [](ISMSCreator& c) { return c.TimestampLocal("t"); }, true, "s:713=t",
     "TimestampLocal(t)"},
    {"Priority", [](ISMSCreator& c) { return c.Priority(ISMSAttributes::PriorityUrgent); }, true,
     "u8:905=3", "Priority(3)"},
};

class SmsLayout : public testing::TestWithParam<Case> {};

TEST_P(SmsLayout, WritesItsLeavesAndReadsBackAsTheSameCalls) {
    const Case& c = GetParam();
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1));
    EXPECT_EQ(c.write(creator), c.answer);
    ASSERT_TRUE(creator.End());
    const Bytes bytes = Take(creator);
    EXPECT_EQ(bytes, Stream(std::string("{2 u32:10=1 {700 ") + c.layout + " } }"));

    pimtest::SmsRecorder receiver;
    PimShared::CTLVSMSParser parser(receiver);
    const char* error = nullptr;
    unsigned int consumed = 0;
    EXPECT_TRUE(parser.Parse(bytes.data(), bytes.size(), error, consumed));
    EXPECT_EQ(consumed, bytes.size());
    const std::string calls = c.calls;
    EXPECT_EQ(receiver.log, "Begin(1) " + calls + (calls.empty() ? "" : " ") + "End()");
}

INSTANTIATE_TEST_SUITE_P(EveryOperation, SmsLayout, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Case>& row) { return row.param.name; });

TEST(SmsCreator, ResetStartsTheNextMessageAfresh) {
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1) && creator.Subject("lost"));
    EXPECT_TRUE(Take(creator).empty());  // a message still open cannot be taken
    ASSERT_TRUE(creator.Reset());
    ASSERT_TRUE(creator.Begin(2) && creator.End());
    EXPECT_EQ(Take(creator), Stream("{2 u32:10=2 {700 } }"));
}

}  // namespace
