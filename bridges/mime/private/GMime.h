#ifndef PIMTLV_BRIDGES_MIME_PRIVATE_GMIME_H
#define PIMTLV_BRIDGES_MIME_PRIVATE_GMIME_H

// GMime objects are reference counted GObjects: every one this bridge makes
// or is given ownership of lives in a Ref, so no path (an early return on bad
// input included) leaves one behind.

#include <gmime/gmime.h>

#include <memory>
#include <string>

namespace PimBridge {
namespace Mime {

struct Unref {
    void operator()(gpointer object) const {
        if (object != nullptr) g_object_unref(object);
    }
};
template <typename T>
using Ref = std::unique_ptr<T, Unref>;

struct GFree {
    void operator()(gpointer p) const { g_free(p); }
};
using GText = std::unique_ptr<char, GFree>;

// g_mime_init is process-wide and not reentrant: the first caller runs it,
// every other caller waits for that. GMime stays set up until the process
// ends (g_mime_shutdown would pull it from under other threads).
void EnsureGMime();

// A memory stream over a copy of the bytes.
Ref<GMimeStream> MemoryStream(const void* data, std::size_t size);
// A stream that appends what is written to text, which must outlive it, so
// that GMime writes straight into the string handed out. It only appends: a
// seek back drops what follows.
Ref<GMimeStream> StringStream(std::string& text);

}  // namespace Mime
}  // namespace PimBridge

#endif
