// The do-nothing receiver bases: a receiver that overrides only what it needs
// reads every shipped sample to its end, and the calls it overrides arrive.
// Included by the public paths an embedder uses.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include <pimtlv/calendar/TLVCalendarParser.h>
#include <pimtlv/callstack/TLVCallstackParser.h>
#include <pimtlv/contact/TLVContactParser.h>
#include <pimtlv/email/TLVEmailParser.h>
#include <pimtlv/im/TLVIMParser.h>
#include <pimtlv/note/TLVNoteParser.h>
#include <pimtlv/sms/TLVSMSParser.h>
#include <pimtlv/task/TLVTaskParser.h>
#include <pimtlv/tlv/TLVParser.h>

using namespace PimShared;

namespace {

std::string Sample(const std::string& item) {
    std::ifstream in(std::string(PIMTLV_SAMPLES_DIR) + "/" + item + ".tlv", std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// Counts Begin and End and the diagnostics; everything else is the base's.
template <typename Base>
struct Counting : Base {
    int begins = 0, ends = 0, diagnostics = 0;
    bool Begin(const unsigned int&) override { return ++begins, true; }
    bool End() override { return ++ends, true; }
    bool TraceMessage(const int& code, const char*) override {
        if (code != 0) ++diagnostics;  // code 0 is the calendar family's trace line
        return true;
    }
};

struct CallstackCounting : CCallstackReceiverBase {
    int begins = 0, ends = 0, diagnostics = 0;
    bool Begin(const unsigned int&, const unsigned int&) override { return ++begins, true; }
    bool End() override { return ++ends, true; }
    bool TraceMessage(const int&, const char*) override { return ++diagnostics, true; }
};

template <typename Parser, typename Receiver>
void ExpectReadToTheEnd(const std::string& item) {
    SCOPED_TRACE(item);
    const std::string bytes = Sample(item);
    ASSERT_FALSE(bytes.empty());
    Receiver receiver;
    Parser parser(receiver);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    EXPECT_TRUE(parser.Parse(bytes.data(), length, errorText, consumed));
    EXPECT_EQ(consumed, length);
    EXPECT_EQ(receiver.begins, 1);
    EXPECT_EQ(receiver.ends, 1);
    EXPECT_EQ(receiver.diagnostics, 0);
}

TEST(ReceiverBase, EveryItemReadsToItsEndOverridingOnlyBeginAndEnd) {
    ExpectReadToTheEnd<CTLVCalendarParser, Counting<CCalendarReceiverBase>>("event");
    ExpectReadToTheEnd<CTLVTaskParser, Counting<CTaskReceiverBase>>("task");
    ExpectReadToTheEnd<CTLVNoteParser, Counting<CNoteReceiverBase>>("note");
    ExpectReadToTheEnd<CTLVContactParser, Counting<CContactReceiverBase>>("contact");
    ExpectReadToTheEnd<CTLVEmailParser, Counting<CEmailReceiverBase>>("email");
    ExpectReadToTheEnd<CTLVIMParser, Counting<CIMReceiverBase>>("im");
    ExpectReadToTheEnd<CTLVSMSParser, Counting<CSMSReceiverBase>>("sms");
    ExpectReadToTheEnd<CTLVCallstackParser, CallstackCounting>("calllist");
}

// The walk's base: the nodes balance and the walk reaches the end.
TEST(ReceiverBase, TlvBaseWalksAWholeStream) {
    struct Nodes : ParserCreatorCollection::CTLVBase {
        int open = 0, opened = 0;
        bool NodeBegin(const unsigned int&) override { return ++open, ++opened, true; }
        bool NodeEnd(const unsigned int&) override { return --open, true; }
    } nodes;
    const std::string bytes = Sample("email");
    ParserCreatorCollection::CTLVParser parser(nodes);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    EXPECT_TRUE(parser.Parse(bytes.data(), length, errorText, consumed));
    EXPECT_EQ(nodes.open, 0);
    EXPECT_GT(nodes.opened, 2);
}

}  // namespace
