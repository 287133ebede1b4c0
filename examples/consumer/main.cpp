// A program outside the tree that finds the installed library with
// find_package(pimtlv) and writes one leaf.
#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

int main() {
    ParserCreatorCollection::CTLVCreator creator;
    const void* data = nullptr;
    unsigned int length = 0;
    return creator.LeafUInt8(1, 2) && creator.GetData(data, length) && length == 4 ? 0 : 1;
}
