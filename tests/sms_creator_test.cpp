#include <gtest/gtest.h>

#include <string>

#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"
#include "support/SmsRecorder.h"
#include "support/TlvStreamText.h"

namespace {

using PimShared::ISMSAttributes;
using PimShared::ISMSCreator;
using TestSupport::Bytes;
using TestSupport::Stream;

Bytes Take(ISMSCreator& creator) {
    const void* data = nullptr;
    unsigned int length = 0;
    if (!creator.GetData(data, length)) return {};
    const auto* bytes = static_cast<const unsigned char*>(data);
    return Bytes(bytes, bytes + length);
}

// Writes one operation between Begin(1) and End() and checks its answer, the
// leaves it puts into node 700, and the calls a parser makes of the stream.
template <typename Write>
void Check(Write write, bool answer, const std::string& layout, const std::string& calls) {
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1));
    EXPECT_EQ(write(creator), answer);
    ASSERT_TRUE(creator.End());
    const Bytes bytes = Take(creator);
    EXPECT_EQ(bytes, Stream("{2 u32:10=1 {700 " + layout + " } }"));
    TestSupport::SmsRecorder receiver;
    PimShared::CTLVSMSParser parser(receiver);
    const char* error = nullptr;
    unsigned int consumed = 0;
    EXPECT_TRUE(parser.Parse(bytes.data(), bytes.size(), error, consumed));
    EXPECT_EQ(receiver.log, "Begin(1) " + calls + (calls.empty() ? "" : " ") + "End()");
}

TEST(SmsCreator, WritesTheShortestMessageByteForByte) {
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1) && creator.Body("hi") && creator.End());
    const Bytes expected = {0x80, 0x02, 0x10, 0x90, 0x0A, 0x04, 0x00, 0x00, 0x00, 0x01,
                            0x82, 0xBC, 0x06, 0x62, 0xE4, 0x03, 'h',  'i',  0x00};
    EXPECT_EQ(Take(creator), expected);
}

struct TextCase {
    bool (ISMSAttributes::*write)(const char*);
    const char* id;
    const char* name;
    bool refusesEmpty;  // the friendly names are written only when there is one
};
const TextCase kTexts[] = {
    {&ISMSAttributes::Body, "740", "Body", false},
    {&ISMSAttributes::Destination, "722", "Destination", false},
    {&ISMSAttributes::Folder, "903", "Folder", false},
    {&ISMSAttributes::Instance, "904", "Instance", false},
    {&ISMSAttributes::Originator, "721", "Originator", false},
    {&ISMSAttributes::OriginatorFName, "723", "OriginatorFName", true},
    {&ISMSAttributes::DestinationFName, "724", "DestinationFName", true},
    {&ISMSAttributes::ServiceCenter, "720", "ServiceCenter", false},
    {&ISMSAttributes::SendingState, "741", "SendingState", false},
    {&ISMSAttributes::Subject, "716", "Subject", false},
    {&ISMSAttributes::Timestamp, "712", "Timestamp", false},
    {&ISMSAttributes::TimestampLocal, "713", "TimestampLocal", false},
};

TEST(SmsLayout, TextAttributesAreOneStringLeafEach) {
    for (const TextCase& t : kTexts) {
        SCOPED_TRACE(t.name);
        const std::string leaf = std::string("s:") + t.id + "=";
        const std::string call = std::string(t.name) + "(";
        Check([&](ISMSCreator& c) { return (c.*t.write)("v"); }, true, leaf + "v", call + "v)");
        for (const char* empty : {"", static_cast<const char*>(nullptr)}) {
            Check([&](ISMSCreator& c) { return (c.*t.write)(empty); }, !t.refusesEmpty,
                  t.refusesEmpty ? "" : leaf, t.refusesEmpty ? "" : call + ")");
        }
    }
}

TEST(SmsLayout, EnumerationsTravelAsTheirLowByte) {
    using A = ISMSAttributes;
    Check([](ISMSCreator& c) { return c.ReadStatus(static_cast<A::eReadStatus>(300)); }, true,
          "u8:725=44", "ReadStatus(44)");
    Check([](ISMSCreator& c) { return c.DownloadState(A::DownloadStateComplete); }, true,
          "u8:727=3", "DownloadState(3)");
    Check([](ISMSCreator& c) { return c.SMSState(A::SMSStateSent); }, true, "u8:710=4",
          "SMSState(4)");
    Check([](ISMSCreator& c) { return c.SMSType(static_cast<A::eSMSType>(0x1FF)); }, true,
          "u8:711=255", "SMSType(255)");
    Check([](ISMSCreator& c) { return c.StorageType(A::StorageTypeSim); }, true, "u8:714=1",
          "StorageType(1)");
    Check([](ISMSCreator& c) { return c.Priority(A::PriorityUrgent); }, true, "u8:905=3",
          "Priority(3)");
}

TEST(SmsLayout, NumbersAndTheConcatenationNode) {
    Check([](ISMSCreator& c) { return c.StorageIndex(513); }, true, "u16:715=513",
          "StorageIndex(513)");
    Check([](ISMSCreator& c) { return c.Concat(7, 2, 1); }, true,
          "{730 u8:731=7 u8:732=2 u8:733=1 }", "Concat(7,2,1)");
}

TEST(SmsLayout, OriginatorNameIsPositionalAndSkipsEmptyParts) {
    Check([](ISMSCreator& c) { return c.OriginatorName("a", "", nullptr, "c", "d", "e"); }, true,
          "s:510=c s:511=d s:512=e",
          "OriginatorName(-,-,-,c,-,-) OriginatorName(-,-,-,-,d,-) OriginatorName(-,-,-,-,-,e)");
    Check([](ISMSCreator& c) { return c.OriginatorName("a", "b", nullptr, nullptr, nullptr, ""); },
          true, "s:508=b", "OriginatorName(-,b,-,-,-,-)");
    Check([](ISMSCreator& c) { return c.OriginatorName("a", nullptr, "", nullptr, "", nullptr); },
          true, "", "");
}

TEST(SmsCreator, ResetStartsTheNextMessageAfresh) {
    PimShared::CTLVSMSCreator creator;
    ASSERT_TRUE(creator.Begin(1) && creator.Subject("lost"));
    EXPECT_TRUE(Take(creator).empty());  // a message still open cannot be taken
    ASSERT_TRUE(creator.Reset());
    ASSERT_TRUE(creator.Begin(2) && creator.End());
    EXPECT_EQ(Take(creator), Stream("{2 u32:10=2 {700 } }"));
}

}  // namespace
