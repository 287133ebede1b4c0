#include "bridges/mime/private/GMime.h"

#include <mutex>

namespace PimBridge {
namespace mime {

void EnsureGMime() {
    static std::once_flag once;
    std::call_once(once, [] { g_mime_init(); });
}

Ref<GMimeStream> MemoryStream(const void* data, std::size_t size) {
    return Ref<GMimeStream>(
        g_mime_stream_mem_new_with_buffer(static_cast<const char*>(data), size));
}

std::string StreamBytes(GMimeStream* stream) {
    GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
    return std::string(reinterpret_cast<const char*>(bytes->data), bytes->len);
}

}  // namespace mime
}  // namespace PimBridge
