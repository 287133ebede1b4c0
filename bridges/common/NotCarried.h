#ifndef PIMTLV_BRIDGES_COMMON_NOTCARRIED_H
#define PIMTLV_BRIDGES_COMMON_NOTCARRIED_H

// The receiver an export derives from: made from the item's description, it
// reports every operation as content the text format does not carry, by the
// operation's name, until the bridge overrides the operation with what it
// writes. A property added to an item then reaches every bridge as a named
// loss, never as a compile error or a silent drop.

#include "bridges/common/LossCollector.h"

namespace PimBridge {

// Takes every call it is handed as not carried.
class NotCarriedSink {
  public:
    explicit NotCarriedSink(LossCollector& losses) : m_losses(losses) {}
    template <typename Op, typename... A>
    bool Call(const A&...) {
        m_losses.Add(Op::kName, 0);
        return true;
    }

  private:
    LossCollector& m_losses;
};

namespace Detail {
// Holds the sink ahead of the slots that use it (bases are built in order).
struct NotCarriedSinkHolder {
    NotCarriedSink m_notCarried;
};
}  // namespace Detail

// Item is an item's description (PimShared::EventItem, ContactItem, ...).
// The derived bridge receiver still answers TraceMessage itself.
template <typename Item>
class TNotCarriedReceiver
    : private Detail::NotCarriedSinkHolder,
      public Item::template SlotsFor<typename Item::Receiver, NotCarriedSink> {
    using Slots = typename Item::template SlotsFor<typename Item::Receiver, NotCarriedSink>;

  public:
    explicit TNotCarriedReceiver(LossCollector& losses)
        : Detail::NotCarriedSinkHolder{NotCarriedSink(losses)}, Slots(m_notCarried) {}
};

}  // namespace PimBridge

#endif
