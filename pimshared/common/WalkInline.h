#ifndef PIMTLV_PIMSHARED_COMMON_WALKINLINE_H
#define PIMTLV_PIMSHARED_COMMON_WALKINLINE_H

// The element calls an item engine's walk makes most often are compiled into
// the walk: the walk is the engine's own (a target bound statically), and a
// call per element would cost more than most of the calls do. For functions
// and members defined in the engine's own source only.
#if defined(__GNUC__)
#define PIMTLV_WALK_INLINE inline __attribute__((always_inline))
#define PIMTLV_WALK_INLINE_MEMBER __attribute__((always_inline))
#else
#define PIMTLV_WALK_INLINE inline
#define PIMTLV_WALK_INLINE_MEMBER
#endif

#endif
