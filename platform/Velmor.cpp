#include "platform/Velmor.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

struct TraceSinkSlot {
    VelmorTraceSink sink = nullptr;
    void* context = nullptr;
};

// The platform layer's one process-wide setting: where trace records go.
TraceSinkSlot& SinkSlot() {
    static TraceSinkSlot slot;
    return slot;
}

// Length of the valid UTF-8 sequence starting at text[i] (1 to 4), or 0 when
// the byte there does not start one. Strict RFC 3629: the second byte's range
// excludes overlong forms (E0, F0), surrogates (ED) and code points above
// U+10FFFF (F4); C0, C1 and F5..FF never start a sequence.
unsigned int SequenceLength(const unsigned char* text, unsigned int i, unsigned int length) {
    const unsigned char b = text[i];
    if (b < 0x80) return 1;
    unsigned int need = 0;
    unsigned char lo = 0x80;
    unsigned char hi = 0xBF;
    if (b >= 0xC2 && b <= 0xDF) {
        need = 1;
    } else if (b >= 0xE0 && b <= 0xEF) {
        need = 2;
        if (b == 0xE0) lo = 0xA0;
        if (b == 0xED) hi = 0x9F;
    } else if (b >= 0xF0 && b <= 0xF4) {
        need = 3;
        if (b == 0xF0) lo = 0x90;
        if (b == 0xF4) hi = 0x8F;
    } else {
        return 0;
    }
    if (length - i - 1 < need) return 0;
    if (text[i + 1] < lo || text[i + 1] > hi) return 0;
    for (unsigned int k = 2; k <= need; ++k) {
        if ((text[i + k] & 0xC0) != 0x80) return 0;
    }
    return need + 1;
}

// True when none of the eight bytes at p has its top bit set.
inline bool IsAsciiWord(const unsigned char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    return (word & 0x8080808080808080ull) == 0;
}

}  // namespace

extern "C" {

int Velmor_PAL_GetEndianess(void) {
    const std::uint16_t probe = 0x0102;
    unsigned char first = 0;
    std::memcpy(&first, &probe, 1);
    return first == 0x01 ? 1 : 0;
}

unsigned int Velmor_PAL_strlen(const char* text) {
    return text == nullptr ? 0u : static_cast<unsigned int>(std::strlen(text));
}

void* Velmor_PAL_memcpy(void* dest, const void* source, unsigned int count) {
    if (count != 0) std::memcpy(dest, source, count);
    return dest;
}

int Velmor_UTF8_rfc3629_check_string(const char* text, unsigned int length, unsigned int flags) {
    (void)flags;
    if (text == nullptr) return length == 0 ? 1 : 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    // Short all-ASCII texts (names, addresses, identifiers) are the bulk of
    // what is checked: decide them in a word or two, without the loop below.
    if (length <= 16) {
        if (length >= 8) {
            if (IsAsciiWord(bytes) && IsAsciiWord(bytes + length - 8)) return 1;
        } else {
            unsigned int any = 0;
            for (unsigned int k = 0; k < length; ++k) any |= bytes[k];
            if (any < 0x80) return 1;
        }
    }
    unsigned int i = 0;
    while (i < length) {
        // Fast path over plain ASCII, the common case: sixteen or eight bytes
        // at a time while none has its top bit set.
#if defined(__SSE2__)
        while (length - i >= 16) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
            if (_mm_movemask_epi8(block) != 0) break;
            i += 16;
        }
#endif
        while (length - i >= 8) {
            if (!IsAsciiWord(bytes + i)) break;
            i += 8;
        }
        if (i >= length) break;
        // Fewer than eight bytes left: check them as the stream's last word,
        // which overlaps bytes already seen.
        if (length - i < 8 && length >= 8 && IsAsciiWord(bytes + length - 8)) break;
        if (bytes[i] < 0x80) {
            ++i;
            continue;
        }
        const unsigned int n = SequenceLength(bytes, i, length);
        if (n == 0) return 0;
        i += n;
    }
    return 1;
}

int Velmor_UTF8_rfc3629_purge_string(char* text, unsigned int length, unsigned char replacement) {
    if (text == nullptr || replacement >= 0x80) return 0;
    auto* bytes = reinterpret_cast<unsigned char*>(text);
    unsigned int i = 0;
    while (i < length) {
        const unsigned int n = SequenceLength(bytes, i, length);
        if (n == 0) {
            bytes[i] = replacement;
            ++i;
        } else {
            i += n;
        }
    }
    return 1;
}

void Velmor_TraceOut_trace(int level, const char* moduleName, unsigned int flags,
                           const char* sourcePath, const char* moduleId, int line,
                           const char* message) {
    const TraceSinkSlot& slot = SinkSlot();
    if (slot.sink == nullptr) return;
    const VelmorTraceRecord record{level, moduleName, flags, sourcePath, moduleId, line, message};
    slot.sink(&record, slot.context);
}

void Velmor_TraceOut_setSink(VelmorTraceSink sink, void* context) {
    TraceSinkSlot& slot = SinkSlot();
    slot.sink = sink;
    slot.context = context;
}
}
