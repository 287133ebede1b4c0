#include "bridges/mime/private/Mbox.h"

#include <cstring>

namespace PimBridge {
namespace Mime {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The end of the line that starts at pos (its '\n', or size).
std::size_t LineEnd(const char* text, std::size_t size, std::size_t pos) {
    const void* lf = std::memchr(text + pos, '\n', size - pos);
    return lf != nullptr ? static_cast<std::size_t>(static_cast<const char*>(lf) - text) : size;
}

bool IsEmptyLine(const char* line, std::size_t length) {
    return length == 0 || (length == 1 && line[0] == '\r');
}

// "From ", an address, then a date: a time h:mm or hh:mm and a year of four
// digits somewhere after the address.
bool IsSeparator(const char* line, std::size_t length) {
    if (length < 5 || std::memcmp(line, "From ", 5) != 0) return false;
    std::size_t i = 5;
    while (i < length && line[i] == ' ') ++i;
    const std::size_t address = i;
    while (i < length && line[i] != ' ' && line[i] != '\t') ++i;
    if (i == address) return false;
    bool time = false, year = false;
    for (; i < length; ++i) {
        if (!IsDigit(line[i]) || (i > 0 && IsDigit(line[i - 1]))) continue;
        std::size_t digits = 0;
        while (i + digits < length && IsDigit(line[i + digits])) ++digits;
        if (digits <= 2 && i + digits + 2 < length && line[i + digits] == ':' &&
            IsDigit(line[i + digits + 1]) && IsDigit(line[i + digits + 2]))
            time = true;
        if (digits == 4 && (i + 4 == length || line[i + 4] != ':')) year = true;
    }
    return time && year;
}

// The length of the '>' run and "From " at line, or 0 when the line is not
// one to quote.
std::size_t QuotedFrom(const char* line, std::size_t length) {
    std::size_t i = 0;
    while (i < length && line[i] == '>') ++i;
    return length - i >= 5 && std::memcmp(line + i, "From ", 5) == 0 ? i + 5 : 0;
}

}  // namespace

std::vector<MboxMessage> SplitMbox(const char* text, std::size_t size) {
    std::vector<MboxMessage> messages;
    bool previousEmpty = false;
    std::size_t previousStart = 0;
    unsigned int line = 1;
    for (std::size_t pos = 0; pos < size; ++line) {
        const std::size_t end = LineEnd(text, size, pos);
        const bool looksLike = pos != 0 && IsSeparator(text + pos, end - pos);
        const bool separator =
            pos == 0 ? end >= 5 && std::memcmp(text, "From ", 5) == 0 : previousEmpty && looksLike;
        if (looksLike && !separator && !messages.empty()) {
            MboxMessage& m = messages.back();
            if (m.lookalikes++ == 0) m.lookalikeLine = line;
        }
        if (separator) {
            // The empty line before the separator is the container's.
            if (!messages.empty()) messages.back().size = previousStart - messages.back().offset;
            MboxMessage m;
            m.offset = end < size ? end + 1 : size;
            m.line = line;
            messages.push_back(m);
        }
        previousEmpty = IsEmptyLine(text + pos, end - pos);
        previousStart = pos;
        pos = end < size ? end + 1 : size;
    }
    // So is the empty line that ends the file after the last message.
    if (!messages.empty()) {
        MboxMessage& last = messages.back();
        last.size =
            (previousEmpty && previousStart >= last.offset ? previousStart : size) - last.offset;
    }
    return messages;
}

bool HasQuotedFromLine(const char* text, std::size_t size) {
    for (std::size_t pos = 0; pos < size;) {
        const std::size_t end = LineEnd(text, size, pos);
        if (text[pos] == '>' && QuotedFrom(text + pos, end - pos) != 0) return true;
        pos = end + 1;
    }
    return false;
}

std::string UnquoteFromLines(const char* text, std::size_t size) {
    std::string out;
    out.reserve(size);
    for (std::size_t pos = 0; pos < size;) {
        const std::size_t end = LineEnd(text, size, pos);
        const std::size_t skip = text[pos] == '>' && QuotedFrom(text + pos, end - pos) != 0;
        const std::size_t stop = end < size ? end + 1 : size;
        out.append(text + pos + skip, stop - pos - skip);
        pos = stop;
    }
    return out;
}

void QuoteFromLines(std::string& text, std::size_t offset) {
    std::string out;
    bool quoted = false;
    std::size_t copied = offset;
    for (std::size_t pos = offset; pos < text.size();) {
        const std::size_t end = LineEnd(text.data(), text.size(), pos);
        if (QuotedFrom(text.data() + pos, end - pos) != 0) {
            if (!quoted) out.reserve(text.size() - offset + 64);
            quoted = true;
            out.append(text, copied, pos - copied);
            out.push_back('>');
            copied = pos;
        }
        pos = end + 1;
    }
    if (!quoted) return;
    out.append(text, copied, std::string::npos);
    text.replace(offset, std::string::npos, out);
}

}  // namespace Mime
}  // namespace PimBridge
