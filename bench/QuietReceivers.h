#ifndef PIMTLV_BENCH_QUIETRECEIVERS_H
#define PIMTLV_BENCH_QUIETRECEIVERS_H

// Receivers for the reading benchmarks: they answer true to everything and
// keep nothing, so what is measured is the codec, not a receiver. They are
// generated from the items' descriptions.

#include <benchmark/benchmark.h>

#include "pimshared/calendar/CalendarDescription.h"
#include "pimshared/email/EmailDescription.h"
#include "pimshared/im/IMDescription.h"
#include "pimshared/note/NoteDescription.h"
#include "pimshared/sms/SMSDescription.h"
#include "pimshared/task/TaskDescription.h"

namespace PimTlvBench {

// Takes every call; only data pointers are kept from the optimiser, so that
// a body's bytes count as delivered.
struct QuietSink {
    template <typename Op, typename... A>
    bool Call(const A&... args) {
        (Touch(args), ...);
        return true;
    }
    bool Trace(const int&, const char*) { return true; }

  private:
    template <typename T>
    static void Touch(const T& value) {
        if constexpr (std::is_same_v<T, const void*>) benchmark::DoNotOptimize(value);
    }
};

// The sink comes first, so that it exists when the receiver is handed it.
struct QuietSinkHolder {
    QuietSink m_quietSink;
};

template <typename Item>
class TQuietItem : private QuietSinkHolder, public Item::template ReceiverFor<QuietSink> {
  public:
    TQuietItem() : Item::template ReceiverFor<QuietSink>(m_quietSink) {}
};

// The quiet receiver of a calendar-family receiver interface.
template <typename TReceiver>
using Quiet = TQuietItem<typename PimShared::ItemOfReceiver<TReceiver>::Type>;
using QuietEmail = TQuietItem<PimShared::EmailItem>;
using QuietIM = TQuietItem<PimShared::ImItem>;
using QuietSMS = TQuietItem<PimShared::SmsItem>;

}  // namespace PimTlvBench

#endif
