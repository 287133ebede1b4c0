#ifndef PIMTLV_TESTS_SUPPORT_TLVSTREAMTEXT_H
#define PIMTLV_TESTS_SUPPORT_TLVSTREAMTEXT_H

// Builds TLV streams for item-parser tests from a compact text, so that a
// table row states its input in one line:
//   "{700" opens node 700, "}" closes the innermost node;
//   "s:740=hi" is a leaf: u8 u16 u32 i8 i16 i32 b8 b16 s bs, ":ID=value"
//   (texts without blanks; "s:740=" is the empty text);
//   "x:77" is an element of the undefined class 12, one value byte;
//   "bad:5" is a UInt16 whose length field says 1, a malformed element.
// The IDs of "x" and "bad" must not appear as another header in the text.

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

namespace TestSupport {

using Bytes = std::vector<unsigned char>;

inline Bytes Stream(const std::string& text) {
    ParserCreatorCollection::CTLVCreator tlv;
    std::vector<unsigned int> open;
    std::vector<std::pair<unsigned int, unsigned char>> patches;  // ID, class written
    std::istringstream in(text);
    for (std::string token; in >> token;) {
        if (token == "}") {
            tlv.NodeEnd(open.back());
            open.pop_back();
        } else if (token[0] == '{') {
            open.push_back(std::stoul(token.substr(1)));
            tlv.NodeBegin(open.back());
        } else {
            const auto colon = token.find(':'), equal = token.find('=');
            const std::string kind = token.substr(0, colon);
            const unsigned int id = std::stoul(token.substr(colon + 1, equal - colon - 1));
            const std::string value = equal == std::string::npos ? "" : token.substr(equal + 1);
            const long n = value.empty() || kind == "s" || kind == "bs" ? 0 : std::stol(value);
            if (kind == "i8") tlv.LeafInt8(id, n);
            if (kind == "i16") tlv.LeafInt16(id, n);
            if (kind == "i32") tlv.LeafInt32(id, n);
            if (kind == "u8") tlv.LeafUInt8(id, n);
            if (kind == "u16") tlv.LeafUInt16(id, n);
            if (kind == "u32") tlv.LeafUInt32(id, n);
            if (kind == "b8") tlv.LeafBitfield8(id, n);
            if (kind == "b16") tlv.LeafBitfield16(id, n);
            if (kind == "s") tlv.LeafString(id, value.c_str());
            if (kind == "bs") tlv.LeafByteStream(id, value.data(), value.size());
            if (kind == "x") tlv.LeafByteStream(id, "\x01", 1), patches.push_back({id, 7});
            if (kind == "bad") tlv.LeafUInt8(id, 0), patches.push_back({id, 2});
        }
    }
    const void* data = nullptr;
    unsigned int length = 0;
    if (!tlv.GetData(data, length)) return {};
    Bytes bytes(static_cast<const unsigned char*>(data),
                static_cast<const unsigned char*>(data) + length);
    for (const auto& [id, cls] : patches) {  // a byte stream becomes class 12, a UInt8 a UInt16
        for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
            if (bytes[i] == ((cls << 4) | (id >> 8)) && bytes[i + 1] == (id & 0xFF)) {
                bytes[i] = static_cast<unsigned char>(((cls == 7 ? 12 : 3) << 4) | (id >> 8));
                break;
            }
        }
    }
    return bytes;
}

}  // namespace TestSupport

#endif
