// Cutting a file of item streams at its root nodes, and the loss list.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bridges/common/ItemStreams.h"
#include "bridges/common/LossCollector.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Cut {
    const char* what;
    Bytes file;
    std::vector<std::size_t> sizes;  // the items handed out, in order
    const char* why;                 // nullptr: the whole file is cut
};

TEST(ItemStreams, CutsAFileIntoItems) {
    const Bytes event = {0x80, 0x01, 0x13, 0x80, 0x67, 0x10, 0x90, 0x0A, 0x04, 0x00, 0x00,
                         0x00, 0x05, 0x80, 0xCA, 0x06, 0x61, 0x2E, 0x03, 0x41, 0x42, 0x00};
    const auto join = [](std::vector<Bytes> parts) {
        Bytes all;
        for (const Bytes& p : parts) all.insert(all.end(), p.begin(), p.end());
        return all;
    };
    const std::vector<Cut> cases = {
        {"empty file", {}, {}, nullptr},
        {"one item", event, {22}, nullptr},
        {"two items and an empty node",
         join({event, {0x80, 0x05, 0x00}, event}),
         {22, 3, 22},
         nullptr},
        {"long length form, not minimal",
         {0x80, 0x05, 0x82, 0x00, 0x04, 0x20, 0x01, 0x01, 0x07},
         {9},
         nullptr},
        {"leaf at the top",
         {0x20, 0x05, 0x01, 0x07},
         {},
         "item at offset 0: an item starts with a node, not an element of class 2"},
        {"cut after the first item",
         join({event, {0x80, 0x01}}),
         {22},
         "item at offset 22: header cut short"},
        {"length 0x80",
         {0x80, 0x01, 0x80},
         {},
         "item at offset 0: length field 0x80 holds no length"},
        {"long form cut", {0x80, 0x01, 0x83, 0x00}, {}, "item at offset 0: length field cut short"},
        {"runs past the end",
         {0x80, 0x01, 0x05, 0x00},
         {},
         "item at offset 0: the item declares more bytes than the file holds"},
        {"length wraps",
         {0x80, 0x01, 0x85, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF},
         {},
         "item at offset 0: the item declares more bytes than the file holds"},
    };
    for (const Cut& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<std::size_t> sizes;
        std::string why;
        const bool ok = PimBridge::ForEachItem(
            c.file.data(), c.file.size(),
            [&sizes](const PimBridge::ItemSpan& item) {
                sizes.push_back(item.size);
                return true;
            },
            why);
        EXPECT_EQ(ok, c.why == nullptr);
        EXPECT_EQ(why, c.why == nullptr ? "" : c.why);
        EXPECT_EQ(sizes, c.sizes);
    }
    // Every prefix of a valid file is cut cleanly or refused; never read past.
    const Bytes two = join({event, event});
    for (std::size_t n = 0; n <= two.size(); ++n) {
        Bytes prefix(two.begin(), two.begin() + static_cast<long>(n));
        std::string why;
        std::size_t items = 0;
        const bool ok = PimBridge::ForEachItem(
            prefix.data(), prefix.size(),
            [&items](const PimBridge::ItemSpan&) { return ++items > 0; }, why);
        EXPECT_EQ(ok, n == 0 || n == 22 || n == 44) << n;
        EXPECT_EQ(items, n < 22 ? 0u : n < 44 ? 1u : 2u) << n;
    }
}

TEST(LossCollector, CountsEachNameOnceInOrderOfFirstSight) {
    PimBridge::LossCollector losses;
    losses.Add("RRULE", 7);
    losses.Add("VALARM", 9);
    losses.Add("RRULE", 12);
    const std::vector<PimBridge::Loss> taken = losses.Take();
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_EQ(taken[0].name, "RRULE");
    EXPECT_EQ(taken[0].count, 2u);
    EXPECT_EQ(taken[0].line, 7u);
    EXPECT_EQ(taken[1].name, "VALARM");
    EXPECT_TRUE(losses.Empty());
}

}  // namespace
