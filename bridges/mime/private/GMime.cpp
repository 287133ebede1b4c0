#include "bridges/mime/private/GMime.h"

#include <mutex>

namespace PimBridge {
namespace Mime {

void EnsureGMime() {
    static std::once_flag once;
    std::call_once(once, [] { g_mime_init(); });
}

Ref<GMimeStream> MemoryStream(const void* data, std::size_t size) {
    return Ref<GMimeStream>(
        g_mime_stream_mem_new_with_buffer(static_cast<const char*>(data), size));
}

namespace {

struct StringStreamObject {
    GMimeStream parent;
    std::string* text;
};
struct StringStreamClass {
    GMimeStreamClass parent;
};

std::string& TextOf(GMimeStream* stream) {
    return *reinterpret_cast<StringStreamObject*>(stream)->text;
}

ssize_t StringWrite(GMimeStream* stream, const char* buffer, size_t length) {
    TextOf(stream).append(buffer, length);
    stream->position = static_cast<gint64>(TextOf(stream).size());
    return static_cast<ssize_t>(length);
}

gint64 StringSeek(GMimeStream* stream, gint64 offset, GMimeSeekWhence whence) {
    std::string& text = TextOf(stream);
    const gint64 size = static_cast<gint64>(text.size());
    const gint64 to = whence == GMIME_STREAM_SEEK_SET   ? offset
                      : whence == GMIME_STREAM_SEEK_CUR ? stream->position + offset
                                                        : size + offset;
    if (to < 0 || to > size) return -1;
    text.resize(static_cast<std::size_t>(to));
    stream->position = to;
    return to;
}

int StringFlush(GMimeStream*) {
    return 0;
}
gint64 StringTell(GMimeStream* stream) {
    return stream->position;
}
gint64 StringLength(GMimeStream* stream) {
    return static_cast<gint64>(TextOf(stream).size());
}

void StringStreamClassInit(gpointer klass, gpointer) {
    auto* stream = static_cast<GMimeStreamClass*>(klass);
    stream->write = StringWrite;
    stream->flush = StringFlush;
    stream->seek = StringSeek;
    stream->tell = StringTell;
    stream->length = StringLength;
}

GType StringStreamType() {
    // A function's static is set up once even when threads race to it.
    static const GType type = g_type_register_static_simple(
        GMIME_TYPE_STREAM, "PimtlvStringStream", sizeof(StringStreamClass), StringStreamClassInit,
        sizeof(StringStreamObject), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

}  // namespace

Ref<GMimeStream> StringStream(std::string& text) {
    auto* object = static_cast<StringStreamObject*>(g_object_new(StringStreamType(), nullptr));
    object->text = &text;
    g_mime_stream_construct(&object->parent, 0, -1);
    return Ref<GMimeStream>(&object->parent);
}

}  // namespace Mime
}  // namespace PimBridge
