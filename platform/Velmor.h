#ifndef PIMTLV_PLATFORM_VELMOR_H
#define PIMTLV_PLATFORM_VELMOR_H

// The C entry points of the platform library, implemented here on the host's
// standard library. Everything the codec needs from the device platform goes
// through these few calls.

#include <cstddef>

#include "platform/PalExport.h"

extern "C" {

/// Host byte order: non-zero on a big-endian host, 0 on a little-endian one.
PIMTLV_API int Velmor_PAL_GetEndianess(void);

/// Length of a zero-terminated text; 0 for a null pointer.
PIMTLV_API unsigned int Velmor_PAL_strlen(const char* text);

/// Copies count bytes; does nothing when count is 0. Returns dest.
PIMTLV_API void* Velmor_PAL_memcpy(void* dest, const void* source, unsigned int count);

/// Strict RFC 3629 check of length bytes of text (no overlong forms, no
/// surrogates, nothing above U+10FFFF, no truncated sequence). A zero byte
/// inside the range is accepted as U+0000. flags is reserved and must be 0.
/// Returns non-zero when the bytes are valid UTF-8.
PIMTLV_API int Velmor_UTF8_rfc3629_check_string(const char* text, unsigned int length,
                                                unsigned int flags);

/// Replaces, in place, every byte of text that is not part of a valid sequence
/// with the replacement character (an ASCII byte, so the length is kept).
/// Returns non-zero on success, 0 when text is null or the replacement is not
/// an ASCII character.
PIMTLV_API int Velmor_UTF8_rfc3629_purge_string(char* text, unsigned int length,
                                                unsigned char replacement);

/// One trace record. Levels: 0 debug, 1 info, 2 warning, 3 error.
typedef struct VelmorTraceRecord {
    /// Level, module, flags, the source file and module ID of the call, and its line.
    /// @{
    int level;
    const char* moduleName;
    unsigned int flags;
    const char* sourcePath;
    const char* moduleId;
    int line;
    /// @}
    const char* message;  ///< may be null
} VelmorTraceRecord;

typedef void (*VelmorTraceSink)(const VelmorTraceRecord* record, void* context);

/// Forwards one record to the installed sink; silent when none is installed.
PIMTLV_API void Velmor_TraceOut_trace(int level, const char* moduleName, unsigned int flags,
                                      const char* sourcePath, const char* moduleId, int line,
                                      const char* message);

/// Installs the process-wide sink (null removes it). This is the platform
/// layer's one process-wide setting; a host installs it once at start-up.
PIMTLV_API void Velmor_TraceOut_setSink(VelmorTraceSink sink, void* context);
}

#endif
