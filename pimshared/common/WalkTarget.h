#ifndef PIMTLV_PIMSHARED_COMMON_WALKTARGET_H
#define PIMTLV_PIMSHARED_COMMON_WALKTARGET_H

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "pimshared/common/WalkInline.h"

namespace PimShared {

// The leaf classes an engine takes by value in members of its own, compiled
// into the walk: the ones its items carry most. Any other leaf goes to the
// engine's ITLV override, bound statically.
enum WalkInlinedLeaf : unsigned int {
    kWalkInlinesUInt8 = 1u << 0,
    kWalkInlinesByteStream = 1u << 1,
    kWalkInlinesUInt32 = 1u << 2,
    kWalkInlinesInt32 = 1u << 3,
};

// The walk's target for an item engine: every element call bound statically
// and its arguments by value. The engine provides OnNodeBegin, OnNodeEnd and
// OnString, an On<Class> member for each leaf class named in its
// kWalkInlined, and makes this target a friend.
template <typename Engine>
struct TWalkTarget {
    // The engines never ask the walk where it is.
    static constexpr bool kReadsPosition = false;
    static constexpr unsigned int kInlined = Engine::kWalkInlined;
    Engine& engine;

    PIMTLV_WALK_INLINE_MEMBER bool NodeBegin(unsigned int typeId) {
        return engine.OnNodeBegin(typeId);
    }
    PIMTLV_WALK_INLINE_MEMBER bool NodeEnd(unsigned int typeId) { return engine.OnNodeEnd(typeId); }
    PIMTLV_WALK_INLINE_MEMBER bool LeafString(unsigned int typeId, const char* text) {
        return engine.OnString(typeId, text);
    }
    PIMTLV_WALK_INLINE_MEMBER bool LeafUInt8(unsigned int typeId, unsigned char value) {
        if constexpr ((kInlined & kWalkInlinesUInt8) != 0) {
            return engine.OnUInt8(typeId, value);
        } else {
            return engine.LeafUInt8(typeId, value);
        }
    }
    PIMTLV_WALK_INLINE_MEMBER bool LeafByteStream(unsigned int typeId, const void* data,
                                                  unsigned int length) {
        if constexpr ((kInlined & kWalkInlinesByteStream) != 0) {
            return engine.OnByteStream(typeId, data, length);
        } else {
            return engine.LeafByteStream(typeId, data, length);
        }
    }
    PIMTLV_WALK_INLINE_MEMBER bool LeafUInt32(unsigned int typeId, unsigned int value) {
        if constexpr ((kInlined & kWalkInlinesUInt32) != 0) {
            return engine.OnUInt32(typeId, value);
        } else {
            return engine.LeafUInt32(typeId, value);
        }
    }
    PIMTLV_WALK_INLINE_MEMBER bool LeafInt32(unsigned int typeId, int value) {
        if constexpr ((kInlined & kWalkInlinesInt32) != 0) {
            return engine.OnInt32(typeId, value);
        } else {
            return engine.LeafInt32(typeId, value);
        }
    }
    bool Unknown(ParserCreatorCollection::eClass c, unsigned int typeId, const void* value,
                 unsigned int length) {
        return engine.Unknown(c, typeId, value, length);
    }
    bool LeafInt8(unsigned int typeId, signed char value) { return engine.LeafInt8(typeId, value); }
    bool LeafInt16(unsigned int typeId, short value) { return engine.LeafInt16(typeId, value); }
    bool LeafUInt16(unsigned int typeId, unsigned short value) {
        return engine.LeafUInt16(typeId, value);
    }
    bool LeafBitfield8(unsigned int typeId, unsigned char value) {
        return engine.LeafBitfield8(typeId, value);
    }
    bool LeafBitfield16(unsigned int typeId, unsigned short value) {
        return engine.LeafBitfield16(typeId, value);
    }
};

}  // namespace PimShared

#endif
