#ifndef PIMTLV_FUZZ_ITEMPARSERCHECKS_H
#define PIMTLV_FUZZ_ITEMPARSERCHECKS_H

// One check per item parser, in the shape every fuzz target and the replay
// test call: bytes in, the first fault (or null) out. The last two input
// bytes choose the call a receiver refuses, as in the TLV walk's target.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/ItemReceivers.h"
#include "pimshared/calendar/TLVCalendarParser.h"
#include "pimshared/callstack/TLVCallstackParser.h"
#include "pimshared/contact/TLVContactParser.h"
#include "pimshared/email/TLVEmailParser.h"
#include "pimshared/im/TLVIMParser.h"
#include "pimshared/note/TLVNoteParser.h"
#include "pimshared/sms/TLVSMSParser.h"
#include "pimshared/task/TLVTaskParser.h"

namespace PimTlvFuzz {

using ItemCheck = const char* (*)(const std::uint8_t* data, std::size_t size);

inline std::size_t RefusalFrom(const std::uint8_t* data, std::size_t size) {
    std::size_t refuseAt = 0;
    for (std::size_t i = size > 2 ? size - 2 : 0; i < size; ++i)
        refuseAt = refuseAt * 256 + data[i];
    return refuseAt;
}

template <typename Parser, typename Receiver, bool carriesState = false>
const char* CheckParser(const std::uint8_t* data, std::size_t size) {
    return CheckItemParse<Parser, Receiver>(data, size, RefusalFrom(data, size), carriesState);
}

namespace PS = PimShared;
// The calendar family keeps the date of a date-time property from stream to
// stream (a property without its date leaf reports the last date read), and
// its current property and skip flag after a stream that broke off; the task
// also a 1013 name still waiting for its value.
constexpr ItemCheck kEventParser =
    CheckParser<PS::CTLVCalendarParser, CalendarFamilyLog<PS::ICalendarReceiver>, true>;
constexpr ItemCheck kTaskParser =
    CheckParser<PS::CTLVTaskParser, CalendarFamilyLog<PS::ITaskReceiver>, true>;
constexpr ItemCheck kNoteParser =
    CheckParser<PS::CTLVNoteParser, CalendarFamilyLog<PS::INoteReceiver>, true>;
constexpr ItemCheck kContactParser =
    CheckParser<PS::CTLVContactParser, ContactLog<PS::IContactReceiver>>;
constexpr ItemCheck kEmailParser =
    CheckParser<PS::CTLVEmailParser, MimeMessageLog<PS::IEmailReceiver>>;
constexpr ItemCheck kImParser = CheckParser<PS::CTLVIMParser, MimeMessageLog<PS::IIMReceiver>>;
// A message without its instance leaf takes the previous message's number.
constexpr ItemCheck kSmsParser = CheckParser<PS::CTLVSMSParser, SmsLog<PS::ISMSReceiver>, true>;
constexpr ItemCheck kCallListParser = CheckParser<PS::CTLVCallstackParser, CallListLog>;

// The body of every item target: a fault is printed and aborts, which
// libFuzzer records as a crash.
inline int RunItemCheck(ItemCheck check, const std::uint8_t* data, std::size_t size) {
    if (const char* fault = check(data, size)) {
        std::fprintf(stderr, "item fault: %s\n", fault);
        std::abort();
    }
    return 0;
}

}  // namespace PimTlvFuzz

#define PIMTLV_ITEM_FUZZ_TARGET(check)                                                  \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
        return PimTlvFuzz::RunItemCheck(check, data, size);                             \
    }

#endif
