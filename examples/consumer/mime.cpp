// A program outside the tree that finds the installed MIME bridge with
// find_package(pimtlv) and imports one message.
#include <cstring>

#include "bridges/mime/MimeBridge.h"

int main() {
    const char* text = "Subject: hello\n\nbody\n";
    const PimBridge::ImportResult result = PimBridge::ImportEml(text, std::strlen(text));
    return result.ok && result.items.size() == 1 ? 0 : 1;
}
