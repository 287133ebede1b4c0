#ifndef PIMTLV_PLATFORM_PALEXPORT_H
#define PIMTLV_PLATFORM_PALEXPORT_H

// The library is built with hidden visibility; only what carries this mark is
// part of its binary interface.
#if defined(_WIN32)
#if defined(PIMTLV_BUILDING_LIBRARY)
#define PIMTLV_API __declspec(dllexport)
#else
#define PIMTLV_API __declspec(dllimport)
#endif
#else
#define PIMTLV_API __attribute__((visibility("default")))
#endif

#endif
