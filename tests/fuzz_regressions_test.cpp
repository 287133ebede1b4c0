// Replays every fuzz seed and every input that ever broke a fuzz target
// through the TLV walk, with the fuzz target's own checks, refusing each leaf
// in turn. The files live beside the fuzz targets in the source tree.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/TlvWalkCheck.h"

namespace {

namespace fs = std::filesystem;
using PimTlvFuzz::CheckingTarget;

const fs::path kFuzzDir = fs::path(__FILE__).parent_path().parent_path() / "fuzz";

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

// Every leaf refused once (up to a bound that keeps large inputs quick), plus
// the rebuild through the creator.
void Replay(const fs::path& file, bool mustWalk) {
    SCOPED_TRACE(file.string());
    const std::vector<unsigned char> bytes = Read(file);
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

TEST(FuzzRegressions, SeedCorpusWalksCleanly) {
    const std::vector<fs::path> seeds = FilesUnder(kFuzzDir / "corpus" / "tlv_parser");
    // An empty list would mean the tree was not found, not that all is well.
    ASSERT_FALSE(seeds.empty()) << (kFuzzDir / "corpus" / "tlv_parser").string();
    for (const fs::path& file : seeds) Replay(file, true);
}

// Other targets' corpora are not all TLV streams (round-trip targets read
// operations from their bytes); the walk must survive them all the same.
TEST(FuzzRegressions, EveryCorpusAndRegressionFileWalksSafely) {
    for (const char* dir : {"corpus", "regressions"}) {
        for (const fs::path& file : FilesUnder(kFuzzDir / dir)) Replay(file, false);
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

}  // namespace
