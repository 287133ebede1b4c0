#include <cstdio>
#include <ostream>

#include "Commands.h"
#include "Input.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "platform/Velmor.h"

namespace PimTool {

using namespace ParserCreatorCollection;

namespace {

constexpr std::size_t kShownBytes = 16;      // of a byte stream, in a dump line
constexpr unsigned int kIndentedDepth = 32;  // deeper elements are not indented further

struct Palette {
    const char* offset;
    const char* cls;
    const char* name;
    const char* text;
    const char* number;
    const char* reset;
};
constexpr Palette kColours = {"\033[2m", "\033[36m", "\033[32m", "\033[33m", "\033[35m", "\033[0m"};
constexpr Palette kPlain = {"", "", "", "", "", ""};

// Length of the valid UTF-8 sequence at p (at most left bytes), or 0.
unsigned int Utf8Sequence(const std::uint8_t* p, std::size_t left) {
    const unsigned int lead = p[0];
    const unsigned int n = lead < 0x80             ? 1
                           : (lead & 0xE0) == 0xC0 ? 2
                           : (lead & 0xF0) == 0xE0 ? 3
                           : (lead & 0xF8) == 0xF0 ? 4
                                                   : 0;
    if (n == 0 || n > left) return 0;
    return Velmor_UTF8_rfc3629_check_string(reinterpret_cast<const char*>(p), n, 0) != 0 ? n : 0;
}

void Number(std::string& out, long long v, unsigned int width) {
    // Hex shows the bits as they travel: two's complement at the class width.
    const unsigned long long mask = width >= 8 ? ~0ULL : (1ULL << (8 * width)) - 1;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%lld (0x%0*llx)", v, static_cast<int>(2 * width),
                  static_cast<unsigned long long>(v) & mask);
    out += buf;
}

void Size(std::string& out, std::size_t n) {
    out += std::to_string(n);
    out += n == 1 ? " byte" : " bytes";
}

void FirstBytes(std::string& out, const std::uint8_t* value, std::size_t length) {
    Size(out, length);
    if (length == 0) return;
    out += ": ";
    out += EncodeHex(value, length < kShownBytes ? length : kShownBytes, 0);
    if (length > kShownBytes) out += " ...";
}

}  // namespace

// A text value as a quoted literal: the bytes before the terminator, with
// quotes, backslashes, control bytes and bytes that are not UTF-8 escaped.
void QuoteText(std::string& out, const std::uint8_t* value, std::size_t length) {
    out += '"';
    const std::size_t n = length > 0 ? length - 1 : 0;
    for (std::size_t i = 0; i < n;) {
        const std::uint8_t c = value[i];
        char buf[8];
        switch (c) {
            case '"':
                out += "\\\"";
                ++i;
                continue;
            case '\\':
                out += "\\\\";
                ++i;
                continue;
            case '\n':
                out += "\\n";
                ++i;
                continue;
            case '\r':
                out += "\\r";
                ++i;
                continue;
            case '\t':
                out += "\\t";
                ++i;
                continue;
            default:
                break;
        }
        if (c >= 0x20 && c < 0x7F) {
            out += static_cast<char>(c);
            ++i;
            continue;
        }
        const unsigned int seq = c > 0x7F ? Utf8Sequence(value + i, n - i) : 0;
        if (seq == 0) {
            std::snprintf(buf, sizeof buf, "\\x%02x", c);
            out += buf;
            ++i;
        } else {
            out.append(reinterpret_cast<const char*>(value + i), seq);
            i += seq;
        }
    }
    out += '"';
}

void DumpLine(std::string& line, const Element& e, const char* name, bool color) {
    const Palette& p = color ? kColours : kPlain;
    char offset[32];
    std::snprintf(offset, sizeof offset, "%6zu", e.offset);
    line += p.offset;
    line += offset;
    line += p.reset;
    // Indentation stops growing at some depth, so that a stream of deeply
    // nested nodes cannot make the dump quadratic in its size; deeper lines
    // say their depth instead.
    line.append(2 + 2 * (e.depth < kIndentedDepth ? e.depth : kIndentedDepth), ' ');
    if (e.depth > kIndentedDepth) line += "(depth " + std::to_string(e.depth) + ") ";
    line += p.cls;
    line += ParserCreatorCollection::ElementClassName(e.header.elementClass);
    line += p.reset;
    line += ' ';
    line += std::to_string(e.header.typeId);
    if (name != nullptr) {
        line += ' ';
        line += p.name;
        line += name;
        line += p.reset;
    }
    const unsigned int cls = e.header.elementClass;
    const std::uint32_t length = e.header.length;
    const unsigned int fixed = ParserCreatorCollection::FixedValueSize(cls);
    if (cls == Node || (fixed == 0 && cls != String && cls != ByteStream)) {
        // A node's content size; an undefined class's bytes, as far as shown.
        line += " [";
        if (cls == Node) {
            Size(line, length);
        } else {
            FirstBytes(line, e.value, length);
        }
        line += ']';
        return;
    }
    line += " = ";
    line += cls == String ? p.text : p.number;
    if (cls == String) {
        QuoteText(line, e.value, length);
    } else if (cls == ByteStream) {
        FirstBytes(line, e.value, length);
    } else {
        Number(line, e.number, fixed);
    }
    line += p.reset;
}

}  // namespace PimTool
