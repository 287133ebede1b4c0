#include "Input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace pimtlv_tool {

namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string Printable(char c) {
    const auto u = static_cast<unsigned char>(c);
    if (u >= 0x20 && u < 0x7F) return std::string("'") + c + "'";
    char buf[8];
    std::snprintf(buf, sizeof buf, "0x%02x", u);
    return buf;
}

}  // namespace

std::string ReadInput(const std::string& path) {
    if (path.empty() || path == "-") {
        std::ostringstream all;
        all << std::cin.rdbuf();
        if (std::cin.bad()) throw UsageError("cannot read standard input");
        return all.str();
    }
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        const int err = errno;
        throw UsageError("cannot open '" + path +
                         "': " + (err != 0 ? std::strerror(err) : "unreadable"));
    }
    std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) throw UsageError("cannot read '" + path + "'");
    return data;
}

void LineAndColumn(const std::string& text, std::size_t offset, std::size_t& line,
                   std::size_t& column) {
    line = 1;
    column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
}

Bytes DecodeHex(const std::string& text) {
    Bytes out;
    out.reserve(text.size() / 2);
    int high = -1;
    std::size_t highAt = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (IsSpace(c)) continue;
        const int v = HexValue(c);
        if (v < 0) {
            std::size_t line = 0, column = 0;
            LineAndColumn(text, i, line, column);
            throw UsageError("bad hex input: unexpected character " + Printable(c) + " at line " +
                             std::to_string(line) + ", column " + std::to_string(column));
        }
        if (high < 0) {
            high = v;
            highAt = i;
        } else {
            out.push_back(static_cast<std::uint8_t>((high << 4) | v));
            high = -1;
        }
    }
    if (high >= 0) {
        std::size_t line = 0, column = 0;
        LineAndColumn(text, highAt, line, column);
        throw UsageError("bad hex input: odd number of hex digits (the last one is at line " +
                         std::to_string(line) + ", column " + std::to_string(column) + ")");
    }
    return out;
}

std::string EncodeHex(const std::uint8_t* data, std::size_t size, std::size_t lineWidth) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(size * 3);
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0) out += (lineWidth != 0 && i % lineWidth == 0) ? '\n' : ' ';
        out += digits[data[i] >> 4];
        out += digits[data[i] & 0x0F];
    }
    return out;
}

void WriteOutput(const std::string& path, const std::string& bytes) {
    if (path.empty() || path == "-") {
        std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        std::cout.flush();
        if (!std::cout) throw UsageError("cannot write standard output");
        return;
    }
    errno = 0;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        const int err = errno;
        throw UsageError("cannot create '" + path +
                         "': " + (err != 0 ? std::strerror(err) : "unwritable"));
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw UsageError("cannot write '" + path + "'");
}

}  // namespace pimtlv_tool
