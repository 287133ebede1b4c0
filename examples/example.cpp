// Builds a small calendar stream with CTLVCreator, prints it as hex, then
// walks it back with CTLVParser and prints the element tree.
#include <cstdio>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"

namespace {

using namespace ParserCreatorCollection;

class TreePrinter : public ITLV {
  public:
    bool Unknown(const eClass& c, const unsigned int& id, const void*,
                 const unsigned int& n) override {
        return Line("unknown class %u, id %u, %u bytes", static_cast<unsigned>(c), id, n);
    }
    bool NodeBegin(const unsigned int& id) override {
        Line("node %u {", id, 0, 0);
        ++m_depth;
        return true;
    }
    bool NodeEnd(const unsigned int&) override {
        --m_depth;
        return Line("}", 0, 0, 0);
    }
    bool LeafInt8(const unsigned int& id, const signed char& v) override {
        return Num("Int8", id, v);
    }
    bool LeafInt16(const unsigned int& id, const short& v) override { return Num("Int16", id, v); }
    bool LeafUInt8(const unsigned int& id, const unsigned char& v) override {
        return Num("UInt8", id, v);
    }
    bool LeafUInt16(const unsigned int& id, const unsigned short& v) override {
        return Num("UInt16", id, v);
    }
    bool LeafBitfield8(const unsigned int& id, const unsigned char& v) override {
        return Num("Bitfield8", id, v);
    }
    bool LeafBitfield16(const unsigned int& id, const unsigned short& v) override {
        return Num("Bitfield16", id, v);
    }
    bool LeafString(const unsigned int& id, const char* text) override {
        std::printf("%*sString %u = \"%s\"\n", m_depth * 2, "", id, text);
        return true;
    }
    bool LeafByteStream(const unsigned int& id, const void*, const unsigned int& n) override {
        return Line("Byte Stream %u, %u bytes", id, n, 0);
    }
    bool LeafUInt32(const unsigned int& id, const unsigned int& v) override {
        return Num("UInt32", id, v);
    }
    bool LeafInt32(const unsigned int& id, const int& v) override { return Num("Int32", id, v); }

  private:
    bool Line(const char* fmt, unsigned a, unsigned b, unsigned c) {
        std::printf("%*s", m_depth * 2, "");
        std::printf(fmt, a, b, c);
        std::printf("\n");
        return true;
    }
    bool Num(const char* cls, unsigned id, long long v) {
        std::printf("%*s%s %u = %lld\n", m_depth * 2, "", cls, id, v);
        return true;
    }
    int m_depth = 0;
};

}  // namespace

int main() {
    CTLVCreator creator;
    const bool built = creator.NodeBegin(1) && creator.NodeBegin(103) &&
                       creator.LeafUInt32(10, 5) && creator.NodeBegin(202) &&
                       creator.LeafString(302, "AB") && creator.NodeEnd(202) &&
                       creator.NodeEnd(103) && creator.NodeEnd(1);
    const void* data = nullptr;
    unsigned int length = 0;
    if (!built || !creator.GetData(data, length)) {
        std::fprintf(stderr, "error: could not build the stream\n");
        return 1;
    }
    std::printf("%u bytes:", length);
    for (unsigned int i = 0; i < length; ++i)
        std::printf(" %02X", static_cast<const unsigned char*>(data)[i]);
    std::printf("\n");
    TreePrinter printer;
    CTLVParser parser(printer);
    const char* errorText = nullptr;
    unsigned int consumed = 0;
    return parser.Parse(data, length, errorText, consumed) ? 0 : 1;
}
