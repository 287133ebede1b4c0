#ifndef PIMTLV_TESTS_PIM_STREAM_TEXT_H
#define PIMTLV_TESTS_PIM_STREAM_TEXT_H

// Builds TLV streams for item-parser tests from a compact text, so that a
// table row can state its input in one line:
//   "{700"      opens node 700, "}" closes the innermost node;
//   "s:740=hi"  a leaf: i8 i16 u8 u16 b8 b16 s bs u32 i32, then ":ID=value"
//               (texts without blanks; "s:740=" is the empty text);
//   "x:77"      an element of the undefined class 12 (one value byte);
//   "bad:5"     a UInt16 whose length field says 1: a malformed element.
// ID's of "x" and "bad" must not occur as header bytes elsewhere in the text.

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

namespace pimtest {

using Bytes = std::vector<unsigned char>;

inline Bytes Stream(const std::string& text) {
    ParserCreatorCollection::CTLVCreator tlv;
    std::vector<unsigned int> open;
    std::vector<std::pair<unsigned int, unsigned char>> patches;  // ID, class written then
    std::istringstream in(text);
    std::string token;
    while (in >> token) {
        if (token == "}") {
            tlv.NodeEnd(open.back());
            open.pop_back();
            continue;
        }
        if (token[0] == '{') {
            open.push_back(std::stoul(token.substr(1)));
            tlv.NodeBegin(open.back());
            continue;
        }
        const auto colon = token.find(':');
        const auto equal = token.find('=');
        const std::string kind = token.substr(0, colon);
        const unsigned int id = std::stoul(token.substr(colon + 1, equal - colon - 1));
        const std::string value = equal == std::string::npos ? "" : token.substr(equal + 1);
        const bool numeric = kind != "s" && kind != "bs" && kind != "x" && kind != "bad";
        const long n = numeric ? std::stol(value) : 0;
        if (kind == "i8") tlv.LeafInt8(id, n);
        if (kind == "i16") tlv.LeafInt16(id, n);
        if (kind == "u8") tlv.LeafUInt8(id, n);
        if (kind == "u16") tlv.LeafUInt16(id, n);
        if (kind == "b8") tlv.LeafBitfield8(id, n);
        if (kind == "b16") tlv.LeafBitfield16(id, n);
        if (kind == "u32") tlv.LeafUInt32(id, n);
        if (kind == "i32") tlv.LeafInt32(id, n);
        if (kind == "s") tlv.LeafString(id, value.c_str());
        if (kind == "bs") tlv.LeafByteStream(id, value.data(), value.size());
        if (kind == "x") tlv.LeafByteStream(id, "\x01", 1), patches.push_back({id, 7});
        if (kind == "bad") tlv.LeafUInt8(id, 0), patches.push_back({id, 2});
    }
    const void* data = nullptr;
    unsigned int length = 0;
    if (!tlv.GetData(data, length)) return {};
    Bytes bytes(static_cast<const unsigned char*>(data),
                static_cast<const unsigned char*>(data) + length);
    for (const auto& [id, cls] : patches) {
        for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
            if (bytes[i] == ((cls << 4) | (id >> 8)) && bytes[i + 1] == (id & 0xFF)) {
                // A byte stream becomes class 12, a UInt8 becomes a short UInt16.
                bytes[i] = static_cast<unsigned char>(((cls == 7 ? 12 : 3) << 4) | (id >> 8));
                break;
            }
        }
    }
    return bytes;
}

}  // namespace pimtest

#endif
