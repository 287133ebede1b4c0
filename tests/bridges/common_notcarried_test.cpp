// The receiver bridges derive from: what a bridge does not write is named as
// not carried, so an operation an item gains is never dropped in silence.
#include <gtest/gtest.h>

#include <string>

#include "bridges/common/NotCarried.h"
#include "pimshared/common/ItemDescription.h"

namespace {

// An item as one looks after a property was added that no bridge knows yet.
class IGrownAttributes {
  public:
    virtual ~IGrownAttributes() = default;
    virtual bool Begin(const unsigned int& instance) = 0;
    virtual bool Known(const char* text) = 0;
    virtual bool Added(const char* text, const unsigned int& number) = 0;
    virtual bool AddedFlag() = 0;
};
class IGrownReceiver : public IGrownAttributes {
  public:
    virtual bool TraceMessage(const int& code, const char* text) = 0;
};

#define GROWN_OPERATIONS(OP, OP0, OVERLOAD) \
    OP(Begin, "instance")                   \
    OP(Known, "text")                       \
    OP(Added, "text", "number")             \
    OP0(AddedFlag)

PIMTLV_DESCRIBE_ITEM(GrownItem, "grown", IGrownAttributes, IGrownReceiver, void, void,
                     GrownOperations, TGrownReceiverFor, TGrownSlots, GROWN_OPERATIONS)

// A bridge written before Added and AddedFlag existed.
class OldBridgeReceiver final : public PimBridge::TNotCarriedReceiver<GrownItem> {
  public:
    OldBridgeReceiver() : TNotCarriedReceiver(m_losses) {}
    bool Begin(const unsigned int&) override { return true; }
    bool Known(const char* text) override {
        m_written += text;
        return true;
    }
    bool TraceMessage(const int&, const char*) override { return true; }

    PimBridge::LossCollector m_losses;
    std::string m_written;
};

TEST(NotCarried, NamesEveryOperationTheBridgeDoesNotWriteAndGoesOn) {
    OldBridgeReceiver bridge;
    IGrownReceiver& parserSide = bridge;
    EXPECT_TRUE(parserSide.Begin(1));
    EXPECT_TRUE(parserSide.Known("kept"));
    EXPECT_TRUE(parserSide.Added("a", 1));
    EXPECT_TRUE(parserSide.AddedFlag());
    EXPECT_TRUE(parserSide.Added("b", 2));
    EXPECT_EQ(bridge.m_written, "kept");

    const std::vector<PimBridge::Loss> losses = bridge.m_losses.Take();
    ASSERT_EQ(losses.size(), 2u);
    EXPECT_EQ(losses[0].name, "Added");
    EXPECT_EQ(losses[0].count, 2u);
    EXPECT_EQ(losses[1].name, "AddedFlag");
    EXPECT_EQ(losses[1].count, 1u);
    for (const PimBridge::Loss& loss : losses) {
        EXPECT_EQ(loss.kind, PimBridge::Loss::Kind::NotCarried) << loss.name;
        EXPECT_EQ(loss.line, 0u) << loss.name;
        EXPECT_TRUE(loss.Changes()) << loss.name;
    }
}

}  // namespace
