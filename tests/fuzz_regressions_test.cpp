// Replays every fuzz seed and every input that ever broke a fuzz target
// through the TLV walk, with the fuzz target's own checks, refusing each leaf
// in turn. The files live beside the fuzz targets in the source tree.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/ItemParserChecks.h"
#include "fuzz/ItemRoundTripChecks.h"
#include "fuzz/TlvRoundTrip.h"
#include "fuzz/TlvWalkCheck.h"
#ifdef PIMTLV_REPLAY_TOOL
#include "fuzz/ToolEncodeCheck.h"
#endif
#ifdef PIMTLV_REPLAY_ICAL
#include "fuzz/IcalChecks.h"
#endif
#ifdef PIMTLV_REPLAY_VCARD
#include "fuzz/VcardChecks.h"
#endif
#ifdef PIMTLV_REPLAY_MIME
#include "fuzz/MimeChecks.h"
#endif

namespace {

namespace fs = std::filesystem;
using PimTlvFuzz::CheckingTarget;

const fs::path kFuzzDir = PIMTLV_FUZZ_DIR;

std::vector<fs::path> FilesUnder(const fs::path& dir) {
    std::vector<fs::path> files;
    std::error_code ec;
    if (!fs::is_directory(dir, ec)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(dir, ec)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    return files;
}

std::vector<unsigned char> Read(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The walk: every leaf refused once (up to a bound that keeps large inputs
// quick), plus the rebuild through the creator.
void ReplayWalk(const std::vector<unsigned char>& bytes, bool mustWalk) {
    const PimTlvFuzz::WalkResult first = PimTlvFuzz::CheckWalk(bytes.data(), bytes.size(), 0);
    ASSERT_EQ(first.fault, nullptr) << first.fault;
    if (mustWalk) {
        EXPECT_TRUE(first.ok) << "a seed that does not walk to its end";
    }
    const std::size_t refusals = first.leaves < 256 ? first.leaves : 256;
    for (std::size_t k = 1; k < refusals; ++k) {
        const PimTlvFuzz::WalkResult r = PimTlvFuzz::CheckWalk(bytes.data(), bytes.size(), k);
        ASSERT_EQ(r.fault, nullptr) << r.fault << " (refusing leaf " << k << ")";
    }
    if (first.ok) {
        const char* fault = PimTlvFuzz::CheckRebuild(bytes.data(), bytes.size());
        EXPECT_EQ(fault, nullptr) << fault;
    }
}

void ReplayRoundTrip(const std::vector<unsigned char>& bytes, bool) {
    const char* fault = PimTlvFuzz::CheckRoundTrip(bytes.data(), bytes.size());
    EXPECT_EQ(fault, nullptr) << fault;
}

template <PimTlvFuzz::ItemCheck check>
void ReplayItem(const std::vector<unsigned char>& bytes, bool) {
    const char* fault = check(bytes.data(), bytes.size());
    EXPECT_EQ(fault, nullptr) << fault;
}

// Each target's files go through that target's checks. Files of targets not
// listed here still go through the walk,
// which must survive any bytes, TLV or not.
struct Target {
    const char* name;
    void (*replay)(const std::vector<unsigned char>&, bool mustWalk);
    bool seedsAreStreams;  // its seeds are well-formed streams on purpose
};
using namespace PimTlvFuzz;
constexpr Target kTargets[] = {
    {"tlv_parser", ReplayWalk, true},
    {"tlv_roundtrip", ReplayRoundTrip, false},
    {"event_parser", ReplayItem<kEventParser>, false},
    {"task_parser", ReplayItem<kTaskParser>, false},
    {"note_parser", ReplayItem<kNoteParser>, false},
    {"contact_parser", ReplayItem<kContactParser>, false},
    {"email_parser", ReplayItem<kEmailParser>, false},
    {"im_parser", ReplayItem<kImParser>, false},
    {"sms_parser", ReplayItem<kSmsParser>, false},
    {"calllist_parser", ReplayItem<kCallListParser>, false},
    {"event_roundtrip", ReplayItem<kEventRoundTrip>, false},
    {"contact_roundtrip", ReplayItem<kContactRoundTrip>, false},
    {"email_roundtrip", ReplayItem<kEmailRoundTrip>, false},
    {"im_roundtrip", ReplayItem<kImRoundTrip>, false},
    {"task_roundtrip", ReplayItem<kTaskRoundTrip>, false},
    {"note_roundtrip", ReplayItem<kNoteRoundTrip>, false},
    {"sms_roundtrip", ReplayItem<kSmsRoundTrip>, false},
#ifdef PIMTLV_REPLAY_TOOL
    {"tool_encode", ReplayItem<CheckToolEncode>, false},
#endif
#ifdef PIMTLV_REPLAY_ICAL
    {"ical_import", ReplayItem<CheckIcalImport>, false},
    {"ical_export", ReplayItem<CheckIcalExport>, false},
    {"ical_merge", ReplayItem<CheckIcalMerge>, false},
#endif
#ifdef PIMTLV_REPLAY_VCARD
    {"vcard_import", ReplayItem<PimTlvFuzz::CheckVcardImport>, false},
    {"vcard_export", ReplayItem<PimTlvFuzz::CheckVcardExport>, false},
    {"vcard_merge", ReplayItem<PimTlvFuzz::CheckVcardMerge>, false},
#endif
#ifdef PIMTLV_REPLAY_MIME
    {"mime_import", ReplayItem<PimTlvFuzz::CheckMimeImport>, false},
    {"mime_export", ReplayItem<PimTlvFuzz::CheckMimeExport>, false},
#endif
};
constexpr Target kOtherTarget = {"", ReplayWalk, false};

TEST(FuzzRegressions, EveryTargetHasSeeds) {
    // An empty list would mean the tree was not found, not that all is well.
    for (const Target& t : kTargets) {
        EXPECT_FALSE(FilesUnder(kFuzzDir / "corpus" / t.name).empty())
            << (kFuzzDir / "corpus" / t.name).string();
    }
}

TEST(FuzzRegressions, EverySeedAndRegressionReplaysCleanly) {
    for (const char* kind : {"corpus", "regressions"}) {
        for (const fs::path& file : FilesUnder(kFuzzDir / kind)) {
            SCOPED_TRACE(file.string());
            const std::string name = file.lexically_relative(kFuzzDir / kind).begin()->string();
            const Target* target = &kOtherTarget;
            for (const Target& t : kTargets) {
                if (name == t.name) target = &t;
            }
            target->replay(Read(file), target->seedsAreStreams && std::string(kind) == "corpus");
        }
    }
}

// The checks must see the faults they exist for, or the replay proves nothing.
TEST(FuzzRegressions, CheckingTargetSeesBrokenPromises) {
    const unsigned char stream[] = {0x61, 0x2E, 0x03, 0x41, 0x42, 0x00};
    struct Case {
        const char* name;
        void (*events)(CheckingTarget&, const unsigned char*);
    };
    const Case cases[] = {
        {"NodeEnd names another node",
         [](CheckingTarget& t, const unsigned char*) {
             t.NodeBegin(1);
             t.NodeEnd(2);
         }},
        {"a node was never closed",
         [](CheckingTarget& t, const unsigned char*) { t.NodeBegin(1); }},
        {"NodeEnd without an open node",
         [](CheckingTarget& t, const unsigned char*) { t.NodeEnd(1); }},
        {"an event after a refused leaf",
         [](CheckingTarget& t, const unsigned char*) {
             t.LeafUInt8(1, 1);  // refused: leaf 0
             t.LeafUInt8(2, 2);
         }},
        {"a text runs past the stream",
         [](CheckingTarget& t, const unsigned char* s) {
             t.LeafString(1, reinterpret_cast<const char*>(s + 3));
         }},
        {"a byte stream lies outside the stream",
         [](CheckingTarget& t, const unsigned char* s) { t.LeafByteStream(1, s + 4, 3); }},
        {"a defined class reached Unknown",
         [](CheckingTarget& t, const unsigned char* s) {
             t.Unknown(ParserCreatorCollection::String, 1, s, 1);
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CheckingTarget target;
        const bool refuseFirst = std::string(c.name) == "an event after a refused leaf";
        // The target is told the stream ends one byte early, so the text
        // "B" has its terminator just outside.
        target.Start(stream, sizeof stream - 1, refuseFirst ? 0 : CheckingTarget::kNever, false);
        c.events(target, stream);
        const char* fault = target.Finish();
        ASSERT_NE(fault, nullptr);
        EXPECT_STREQ(fault, c.name);
    }
}

// The item receivers count every call, diagnostics too, and see what they
// exist to catch.
TEST(FuzzRegressions, ItemReceiversSeeBrokenPromises) {
    SmsLog<PimShared::ISMSReceiver> sms;
    sms.Start(1, false);
    EXPECT_TRUE(sms.Body("a"));
    EXPECT_FALSE(sms.TraceMessage(0, "refused"));
    EXPECT_TRUE(sms.Body("\xC3\x28"));
    EXPECT_STREQ(sms.Fault(), "a receiver got a text that is not valid UTF-8");
    EXPECT_EQ(sms.Lines(), (std::vector<std::string>{"Body('a'|)", "Body('\xC3\x28'|)"}));

    ContactLog<PimShared::IContactReceiver> contact;
    contact.Start(CallLog::kNever, false);
    const unsigned int three = 3;
    EXPECT_TRUE(contact.Key("a", nullptr, nullptr, three));
    EXPECT_STREQ(contact.Fault(), "a receiver got a null pointer with a length");
}

// A short message whose subject is expected back as a body, and one that
// leaves out an asymmetry its operations rely on.
struct MislabelledSms : SmsItem {
    static constexpr Op<Attributes> kOps[] = {
        {"Subject", [](Attributes& t, OpArgs& a) { return t.Subject(a.Text(kText)); },
         [](Attributes& t, OpArgs& a) { return t.Body(a.Text(kText)); }}};
};
struct UndeclaredSms : SmsItem {
    static constexpr Asymmetry kAsymmetries[] = {{Asym::LowByte, "enumerations"}};
};
// The event without its rule for an item that has no properties.
struct EventWithoutEmptyRule : EventItem {
    static constexpr Asymmetry kAsymmetries[] = {kCalendarFamilyAsymmetries[0],
                                                 kCalendarFamilyAsymmetries[1]};
};

// A contact whose XUID is expected with the wrong report, one that does not
// declare reports at all, and an e-mail that expects its plain-byte priority
// level to pass unreported.
struct MisreportedContact : ContactItem {
    static constexpr Diagnostic kWrong[] = {{2, ""}};
    static constexpr Op<A> kOps[] = {{"XUID", Single<&A::XUID>,
                                      [](A& t, OpArgs& a) {
                                          a.Text();
                                          return t.XUID(nullptr);
                                      },
                                      0, Reported(kWrong)}};
};
struct ContactWithoutReports : ContactItem {
    static constexpr Asymmetry kAsymmetries[] = {ContactItem::kAsymmetries[0]};
};
struct EmailTakingPriorityLevel : EmailItem {
    static constexpr Op<A> kOps[] = {{"PriorityLevel", [](A& t, OpArgs& a) {
                                          return t.Priority(static_cast<unsigned char>(a.Number()));
                                      }}};
};

TEST(FuzzRegressions, ItemRoundTripsSeeMismatches) {
    // Instance 1, operation 0 with the text "abc".
    const unsigned char ops[] = {0, 1, 0, 3, 'a', 'b', 'c'};
    // Instance 1, operation 0 with an absent text (or the number 0: its last
    // four bytes are missing).
    const unsigned char absent[] = {0, 1, 0, 0xF0};
    // The contact's XUID and Handle, the e-mail's priority level.
    const unsigned char xuid[] = {0, 1, 24, 1, 'x'};
    const unsigned char handle[] = {0, 1, 26, 1, 'h', 22, 1, 'u'};
    const unsigned char level[] = {0, 1, 19, 5, 21, 0};
    struct Case {
        ItemCheck check;
        const unsigned char* data;
        std::size_t size;
        const char* fault;
    };
    const Case cases[] = {
        {CheckItemRoundTrip<MislabelledSms>, ops, sizeof ops,
         "call 1 written as Body('abc'|) read as Subject('abc'|)"},
        {CheckItemRoundTrip<UndeclaredSms>, ops, sizeof ops,
         "an operation uses an asymmetry its item does not declare"},
        {CheckItemRoundTrip<EventWithoutEmptyRule>, ops, 2,
         "call 1 written as End() read as Trace(2|'NodeEnd(): [state ParsingStatePropertyContext] "
         "Unexpected typeId: 103  Expected: -1 (current property)'|)"},
        {CheckItemRoundTrip<MisreportedContact>, absent, sizeof absent,
         "call 1 written as Trace(2|''|) read as Trace(6|''|)"},
        {CheckItemRoundTrip<ContactWithoutReports>, xuid, sizeof xuid,
         "an operation uses an asymmetry its item does not declare"},
        {CheckItemRoundTrip<EmailTakingPriorityLevel>, absent, sizeof absent,
         "call 1 written as PriorityLevel(0|) read as Trace(2|'Unexpected UInt8 with type ID = "
         "623'|)"},
        {kSmsRoundTrip, ops, sizeof ops, nullptr},
        {kEventRoundTrip, ops, 2, nullptr},
        {kContactRoundTrip, xuid, sizeof xuid, nullptr},
        {kContactRoundTrip, handle, sizeof handle, nullptr},
        {kEmailRoundTrip, level, sizeof level, nullptr},
    };
    for (const Case& c : cases) {
        const char* fault = c.check(c.data, c.size);
        EXPECT_STREQ(fault, c.fault);
    }
}

// Every item check on a few thousand fixed pseudo-random inputs, so that a
// change in a creator or parser that breaks a round trip shows in the
// ordinary suite, not only when the fuzzers run.
TEST(FuzzRegressions, ItemChecksHoldOnFixedInputs) {
    std::uint32_t state = 0x2545F491u;
    std::vector<unsigned char> input;
    for (const Target& t : kTargets) {
        if (t.replay == ReplayWalk || t.replay == ReplayRoundTrip) continue;
        SCOPED_TRACE(t.name);
        for (int n = 0; n < 300; ++n) {
            input.resize(8 + n % 120);
            for (unsigned char& b : input) {
                state = state * 1664525u + 1013904223u;
                b = static_cast<unsigned char>(state >> 24);
            }
            t.replay(input, false);
            if (HasFailure()) return;
        }
    }
}

#ifdef PIMTLV_REPLAY_TOOL
// The tool's check holds the shipped samples to all it can: a narrower table
// of asymmetries or a wrong reading of a document's shape would let every
// stream pass unseen.
TEST(FuzzRegressions, ToolEncodeCheckGoesAsFarAsEachSeedAllows) {
    struct Case {
        const char* file;
        Reached reached;
    };
    const Case cases[] = {
        {"corpus/tool_encode/sample-task.json", Reached::SameBytes},
        {"corpus/tool_encode/sample-note.json", Reached::SameBytes},
        {"corpus/tool_encode/sample-email.json", Reached::SameBytes},
        {"corpus/tool_encode/sample-im.json", Reached::SameBytes},
        {"corpus/tool_encode/sample-calllist.json", Reached::SameBytes},
        {"corpus/tool_encode/sample-event.json", Reached::Read},  // SendStatus
        {"corpus/tool_encode/sample-contact.json", Reached::Read},
        {"corpus/tool_encode/sample-sms.json", Reached::Read},
        {"regressions/tool_encode/empty-event.json", Reached::Read},
        {"regressions/tool_encode/unpaired-entity-email.json", Reached::Stream},
        {"regressions/tool_encode/refused-begin-calllist.json", Reached::Stream},
        {"regressions/tool_encode/empty-stream.json", Reached::Stream},
        {"regressions/tool_encode/empty-item.json", Reached::Refused},
        {"corpus/tool_encode/wrong-types.json", Reached::Refused},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const std::vector<unsigned char> bytes = Read(kFuzzDir / c.file);
        ASSERT_FALSE(bytes.empty());
        Reached reached = Reached::Refused;
        EXPECT_EQ(CheckToolEncodeReaching(bytes.data(), bytes.size(), reached), nullptr);
        EXPECT_EQ(static_cast<int>(reached), static_cast<int>(c.reached));
    }
}
#endif

}  // namespace
