// Host platform layer: UTF-8 validation and repair, date-time text, buffers,
// vectors and the trace sink.
#include <gtest/gtest.h>

#include <string>

#include "pimshared/common/DiagnosticFormat.h"
#include "platform/CBuffer.h"
#include "platform/CDateAndTime.h"
#include "platform/CString.h"
#include "platform/TVector.h"
#include "platform/Velmor.h"
#include "support/TlvRecorder.h"

using namespace PAL;

TEST(Utf8, StrictRfc3629) {
    struct Case {
        const char* bytes;
        bool valid;
        const char* purged;
    } const cases[] = {
        {"plain", true, "plain"},
        {"\xC3\xA9t\xC3\xA9", true, "\xC3\xA9t\xC3\xA9"},  // two-byte
        {"\xE2\x82\xAC", true, "\xE2\x82\xAC"},            // euro sign
        {"\xF0\x9F\x98\x80", true, "\xF0\x9F\x98\x80"},    // four-byte
        {"\xF4\x8F\xBF\xBF", true, "\xF4\x8F\xBF\xBF"},    // U+10FFFF
        {"\xC0\xAF", false, "??"},                         // overlong '/'
        {"\xE0\x80\xAF", false, "???"},                    // overlong three-byte
        {"\xF0\x80\x80\xAF", false, "????"},               // overlong four-byte
        {"\xED\xA0\x80", false, "???"},                    // surrogate D800
        {"\xF4\x90\x80\x80", false, "????"},               // above U+10FFFF
        {"\xF8\x88\x80\x80\x80", false, "?????"},          // five-byte form
        {"ab\xE2\x82", false, "ab??"},                     // truncated at the end
        {"\xE2\x82x", false, "??x"},                       // truncated in the middle
        {"\x80", false, "?"},                              // lone continuation
        {"ok\xFF\xC3\xA9", false, "ok?\xC3\xA9"},          // valid after invalid kept
        // Long texts go through the block and word paths; faults sit at every
        // place those paths treat differently.
        {"0123456789abcdef0123456789", true, "0123456789abcdef0123456789"},
        {"0123456789abcdef\x80"
         "123456789",
         false, "0123456789abcdef?123456789"},
        {"01234567\xFF", false, "01234567?"},
        {"0123456789\xE2\x82", false, "0123456789??"},
        {"0123456789abcdef\xC3\xA9tail", true, "0123456789abcdef\xC3\xA9tail"},
    };
    for (const Case& c : cases) {
        std::string text = c.bytes;
        const auto n = static_cast<unsigned int>(text.size());
        EXPECT_EQ(Velmor_UTF8_rfc3629_check_string(text.c_str(), n, 0) != 0, c.valid) << c.purged;
        EXPECT_NE(Velmor_UTF8_rfc3629_purge_string(&text[0], n, '?'), 0);
        EXPECT_EQ(text, c.purged);
        EXPECT_NE(Velmor_UTF8_rfc3629_check_string(text.c_str(), n, 0), 0);
    }
    EXPECT_EQ(Velmor_UTF8_rfc3629_purge_string(nullptr, 3, '?'), 0);
}

// The check decides short texts, words and blocks by different paths; a lone
// invalid byte or a valid two-byte sequence at every position of every length
// up to three blocks must be judged the same by all of them.
TEST(Utf8, EveryPositionOfEveryLength) {
    for (unsigned int length = 1; length <= 48; ++length) {
        for (unsigned int at = 0; at < length; ++at) {
            std::string text(length, 'a');
            text[at] = '\xFF';
            EXPECT_EQ(Velmor_UTF8_rfc3629_check_string(text.data(), length, 0), 0)
                << length << " " << at;
            if (at + 1 < length) {
                text[at] = '\xC3';
                text[at + 1] = '\xA9';
                EXPECT_NE(Velmor_UTF8_rfc3629_check_string(text.data(), length, 0), 0)
                    << length << " " << at;
            }
        }
    }
}

TEST(DateAndTime, ICalendarTextBothWays) {
    using namespace DateAndTimeUtilities;
    const STimeZoneOffset zero;
    EXPECT_STREQ(
        ToString(CDateAndTime(2026, 11, 22, 9, 30, 0, 123), eDateTimeFormatICalendar, 0, zero)
            .c_str(),
        "20261122T093000Z");
    EXPECT_STREQ(ToString(CDateAndTime(7, 1, 2), eDateTimeFormatICalendar, 0, zero).c_str(),
                 "00070102T000000Z");
    EXPECT_TRUE(ToString(CDateAndTime(2026, 1, 1), eDateTimeFormatNone, 0, zero).isEmpty());

    struct Case {
        const char* text;
        bool ok;
        CDateAndTime value;
    } const cases[] = {
        {"20261122T093000Z", true, CDateAndTime(2026, 11, 22, 9, 30, 0)},
        {"20261122T093000", true, CDateAndTime(2026, 11, 22, 9, 30, 0)},
        {"20240229", true, CDateAndTime(2024, 2, 29)},
        {"20230229", false, {}},
        {"20261322T093000Z", false, {}},
        {"20261122T243000Z", false, {}},
        {"20261122T093000X", false, {}},
        {"20261122 093000Z", false, {}},
        {"2026-11-22", false, {}},
        {"", false, {}},
        {"20261122T093000Z ", false, {}},
    };
    for (const Case& c : cases) {
        const CDateAndTime before(1999, 9, 9, 9, 9, 9, 9);
        CDateAndTime value = before;
        EXPECT_EQ(FromString(value, CString(c.text), eDateTimeFormatICalendar), c.ok) << c.text;
        EXPECT_EQ(value, c.ok ? c.value : before) << c.text;
    }
}

TEST(Containers, BufferVectorAndString) {
    CBuffer buffer(0, 4);
    EXPECT_TRUE(buffer.copyTo("ab", 2, 3));  // gap before the position is zero-filled
    ASSERT_EQ(buffer.getSize(), 5u);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer.getData()), 5),
              std::string("\0\0\0ab", 5));
    EXPECT_FALSE(buffer.copyTo("x", 2, 0xFFFFFFFFu));  // position + count overflows
    buffer.shrink(1);
    EXPECT_EQ(buffer.getSize(), 1u);

    TVector<int> v;
    int out = 42;
    EXPECT_FALSE(v.getAt(0, out));
    EXPECT_EQ(out, 42);
    EXPECT_EQ(v.at(0), nullptr);
    EXPECT_TRUE(v.pushBack(1) && v.pushBack(2));
    EXPECT_TRUE(v.getAt(1, out));
    EXPECT_EQ(out, 2);
    EXPECT_EQ(v.at(2), nullptr);

    CString s;
    EXPECT_TRUE(s.format("%s=%d", "n", -5));
    EXPECT_EQ(s, "n=-5");
    const std::string longText(1000, 'q');
    EXPECT_TRUE(s.format("%s", longText.c_str()));
    EXPECT_EQ(s.length(), 1000u);
    s.truncate(3);
    EXPECT_EQ(s, "qqq");
    // Appending a string to itself, growing each time, reads the old text
    // before its memory goes.
    EXPECT_TRUE(s.assign("ab"));
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(s.append(s.c_str(), s.length()));
    EXPECT_EQ(s.length(), 2048u);
    std::string expected;
    for (int i = 0; i < 1024; ++i) expected += "ab";
    EXPECT_EQ(std::string(s.c_str()), expected);
    EXPECT_TRUE(s.assign(s.c_str() + 2, 4));  // a piece of itself
    EXPECT_EQ(s, "abab");
}

TEST(Trace, SinkReceivesRecordsAndSilenceWithout) {
    Velmor_TraceOut_trace(3, "M", 0, "p", "id", 1, "nobody listens");  // no sink: silent
    TestSupport::TraceCapture capture;
    Velmor_TraceOut_trace(2, "Mod", 0, "path/x", "0123456789ABCDEF0123456789ABCDEF", 42, nullptr);
    ASSERT_EQ(capture.entries.size(), 1u);
    EXPECT_EQ(capture.entries[0].level, 2);
    EXPECT_EQ(capture.entries[0].module, "Mod");
    EXPECT_EQ(capture.entries[0].line, 42);
}

// Trace lines take their digits from a table for type IDs and compute the
// rest; both must print what printf prints, across every digit count.
TEST(Trace, LineNumbersAsPrintfPrintsThem) {
    PimShared::CTraceLine line{"NodeEnd():  typeId: %d"};
    for (int n : {0, 7, 9, 10, 99, 100, 202, 999, 1000, 4095, 4096, 65535, 2147483647, -1, -4096,
                  -2147483647 - 1}) {
        EXPECT_EQ(std::string(line.Format(n)), "NodeEnd():  typeId: " + std::to_string(n)) << n;
    }
}
