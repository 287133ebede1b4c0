#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"

#include <cstring>
#include <new>
#include <vector>

#include "parsercreatorcollection/src/tlv/creator/private/ElementArena.h"
#include "platform/Velmor.h"

namespace ParserCreatorCollection {

namespace {

constexpr const char* kModuleName = "TLVCreator";
constexpr const char* kSourcePath = "parsercreatorcollection/src/tlv/creator/private/TLVCreator";
constexpr const char* kModuleId = "7C1E4A9D2F5B48E6A3D0C8B1F4E2967A";

// Trace lines: each identifies one place of failure in the trace output.
enum TraceLine : int {
    LineNodeBegin = 1202,
    LineNodeEnd = 1237,
    LineInt8 = 1258,
    LineInt16 = 1287,
    LineUInt8 = 1316,
    LineUInt16 = 1345,
    LineBitfield8 = 1374,
    LineBitfield16 = 1403,
    LineStringRepaired = 1436,
    LineStringCopy = 1442,
    LineStringPurge = 1452,
    LineString = 1478,
    LineByteStream = 1507,
    LineUInt32 = 1536,
    LineInt32 = 1565,
    LineGetDataOpen = 1592,
    // A top-level node whose content the length field cannot carry.
    LineGetDataTooLarge = 1601,
};

void Trace(int level, int line) {
    Velmor_TraceOut_trace(level, kModuleName, 0, kSourcePath, kModuleId, line, nullptr);
}

}  // namespace

// Makes elements in a creator's arena. Friend of the element classes.
class CTLVElementFactory {
  public:
    template <typename Element, typename... Args>
    static Element* Make(CElementArena& arena, Args&&... args) noexcept {
        void* memory = arena.Allocate(sizeof(Element));
        if (memory == nullptr) return nullptr;
        auto* element = ::new (memory) Element(std::forward<Args>(args)...);
        element->m_inArena = true;
        return element;
    }

    static CTLVObjString* MakeString(CElementArena& arena, unsigned int typeId, const char* text,
                                     unsigned int length) noexcept {
        auto* copy = static_cast<char*>(arena.Allocate(length + 1));
        if (copy == nullptr) return nullptr;
        if (length != 0) std::memcpy(copy, text, length);
        copy[length] = 0;
        return Make<CTLVObjString>(arena, typeId, copy, length, CTLVObjString::ArenaText{});
    }

    static CTLVObjByteStream* MakeBytes(CElementArena& arena, unsigned int typeId, const void* data,
                                        unsigned int length) noexcept {
        unsigned char* copy = nullptr;
        if (length != 0) {
            copy = static_cast<unsigned char*>(arena.Allocate(length));
            if (copy == nullptr) return nullptr;
            std::memcpy(copy, data, length);
        }
        return Make<CTLVObjByteStream>(arena, typeId, copy, length,
                                       CTLVObjByteStream::ArenaBytes{});
    }

    static void Append(CTLVObjNode& node, CTLVObject* child) noexcept { node.Append(child); }
    static void Append(CTLVObjNode& node, CTLVObject* child, unsigned int valueLength) noexcept {
        node.Append(child, 2ull + CTLVObject::WriteLengthField(valueLength, nullptr) + valueLength);
    }
    static void Dispose(CTLVObject* object) noexcept { CTLVObject::Dispose(object); }
    static CTLVObject* FirstChild(const CTLVObjNode& node) noexcept { return node.m_firstChild; }
    static CTLVObject* Next(const CTLVObject& object) noexcept { return object.m_next; }
    static unsigned char* Encode(CTLVObject& object, unsigned char* out) {
        return object.Encode(out);
    }
    static void Forget(CTLVObjNode& node) noexcept {
        node.m_firstChild = node.m_lastChild = nullptr;
        node.m_childCount = 0;
        node.m_contentLength = 0;
    }
};

class CTLVCreator::CTLVCreatorImpl {
  public:
    CTLVCreatorImpl() : m_root(0), m_output(0, 1024) {}
    ~CTLVCreatorImpl() {
        Reset();
        m_output.release();
    }
    CTLVCreatorImpl(const CTLVCreatorImpl&) = delete;
    CTLVCreatorImpl& operator=(const CTLVCreatorImpl&) = delete;

    bool NodeBegin(unsigned int typeId) {
        CTLVObjNode* node = CTLVElementFactory::Make<CTLVObjNode>(m_arena, typeId);
        if (node == nullptr || !PushOpen(node)) {
            CTLVElementFactory::Dispose(node);
            Trace(3, LineNodeBegin);
            return false;
        }
        return true;
    }

    bool NodeEnd(unsigned int typeId) {
        if (m_open.empty() || m_open.back()->GetType() != typeId) {
            Trace(3, LineNodeEnd);
            return false;
        }
        // A node joins its parent only once complete: nothing can be added
        // beside it while it is innermost, so the order is the order of
        // NodeBegin, and the parent counts the node's final length once.
        CTLVObjNode* node = m_open.back();
        m_open.pop_back();
        Attach(node);
        return true;
    }

    template <typename Element, typename Value>
    bool Leaf(unsigned int typeId, const Value& value, int line) {
        Element* leaf = CTLVElementFactory::Make<Element>(m_arena, typeId, value);
        if (leaf == nullptr) {
            Trace(3, line);
            return false;
        }
        Attach(leaf, leaf->Element::GetValueLength());  // the leaf's own width, no virtual call
        return true;
    }

    bool LeafString(unsigned int typeId, const char* text) {
        const unsigned int length = Velmor_PAL_strlen(text);
        if (length >= CTLVObject::MaxValueLength) {
            Trace(3, LineString);
            return false;
        }
        CTLVObjString* leaf = nullptr;
        if (length == 0 || Velmor_UTF8_rfc3629_check_string(text, length, 0) != 0) {
            leaf = CTLVElementFactory::MakeString(m_arena, typeId, text, length);
        } else {
            Trace(2, LineStringRepaired);
            std::unique_ptr<char[]> copy(new (std::nothrow) char[length + 1]);
            if (!copy) {
                Trace(3, LineStringCopy);
                Trace(3, LineString);
                return false;
            }
            Velmor_PAL_memcpy(copy.get(), text, length);
            copy[length] = 0;
            if (Velmor_UTF8_rfc3629_purge_string(copy.get(), length, 63) == 0) {
                Trace(3, LineStringPurge);
                Trace(3, LineString);
                return false;
            }
            leaf = CTLVElementFactory::MakeString(m_arena, typeId, copy.get(), length);
        }
        if (leaf == nullptr) {
            Trace(3, LineString);
            return false;
        }
        Attach(leaf, length + 1);
        return true;
    }

    bool LeafByteStream(unsigned int typeId, const void* data, unsigned int length) {
        if (length > CTLVObject::MaxValueLength || (data == nullptr && length != 0)) {
            Trace(3, LineByteStream);
            return false;
        }
        CTLVObjByteStream* leaf = CTLVElementFactory::MakeBytes(m_arena, typeId, data, length);
        if (leaf == nullptr) {
            Trace(3, LineByteStream);
            return false;
        }
        Attach(leaf, length);
        return true;
    }

    bool GetData(const void*& data, unsigned int& length) {
        if (!m_open.empty()) {
            Trace(3, LineGetDataOpen);
            return false;
        }
        unsigned long long total = 0;
        for (CTLVObject* e = CTLVElementFactory::FirstChild(m_root); e != nullptr;
             e = CTLVElementFactory::Next(*e)) {
            if (e->GetClass() == Node &&
                static_cast<CTLVObjNode*>(e)->GetContentLength() > CTLVObject::MaxValueLength) {
                Trace(3, LineGetDataTooLarge);
                return false;
            }
        }
        total = m_root.GetContentLength();
        unsigned char* out =
            total > 0xFFFFFFFFull ? nullptr : m_output.prepare(static_cast<unsigned int>(total));
        if (out == nullptr && total != 0) {
            Trace(3, LineGetDataTooLarge);
            return false;
        }
        CTLVObject* e = CTLVElementFactory::FirstChild(m_root);
        CTLVElementFactory::Forget(m_root);
        while (e != nullptr) {
            CTLVObject* next = CTLVElementFactory::Next(*e);
            out = CTLVElementFactory::Encode(*e, out);
            CTLVElementFactory::Dispose(e);
            e = next;
        }
        m_arena.Rewind();
        data = m_output.getData();
        length = m_output.getSize();
        return true;
    }

    bool Reset() {
        for (CTLVObjNode* node : m_open) CTLVElementFactory::Dispose(node);
        m_open.clear();
        m_root.DisposeChildrenForReset();
        // The output is emptied but its memory kept: a creator is usually reset
        // to write the next item of similar size. The destructor frees it.
        m_output.shrink(0);
        m_arena.Rewind();
        return true;
    }

  private:
    // The top level is held as the children of a node that is never written.
    struct Root : CTLVObjNode {
        explicit Root(unsigned int id) : CTLVObjNode(id) {}
        void DisposeChildrenForReset() noexcept {
            CTLVObject* e = CTLVElementFactory::FirstChild(*this);
            CTLVElementFactory::Forget(*this);
            while (e != nullptr) {
                CTLVObject* next = CTLVElementFactory::Next(*e);
                CTLVElementFactory::Dispose(e);
                e = next;
            }
        }
    };

    bool PushOpen(CTLVObjNode* node) noexcept {
        try {
            m_open.push_back(node);
            return true;
        } catch (...) {
            return false;
        }
    }

    void Attach(CTLVObject* element) noexcept {
        CTLVElementFactory::Append(m_open.empty() ? m_root : *m_open.back(), element);
    }
    // A leaf, whose value length the caller knows.
    void Attach(CTLVObject* leaf, unsigned int valueLength) noexcept {
        CTLVElementFactory::Append(m_open.empty() ? m_root : *m_open.back(), leaf, valueLength);
    }

    Root m_root;                       // top-level elements, in the order created
    std::vector<CTLVObjNode*> m_open;  // open nodes, innermost last; owned until closed
    PAL::CBuffer m_output;
    CElementArena m_arena;  // storage of every element above
};

CTLVCreator::CTLVCreator() : m_impl(new (std::nothrow) CTLVCreatorImpl()) {}

CTLVCreator::~CTLVCreator() = default;

bool CTLVCreator::Unknown(const eClass&, const unsigned int&, const void*, const unsigned int&) {
    return false;
}

bool CTLVCreator::NodeBegin(const unsigned int& typeId) {
    return m_impl && m_impl->NodeBegin(typeId);
}

bool CTLVCreator::NodeEnd(const unsigned int& typeId) {
    return m_impl && m_impl->NodeEnd(typeId);
}

bool CTLVCreator::LeafInt8(const unsigned int& typeId, const signed char& value) {
    return m_impl && m_impl->Leaf<CTLVObjInt8>(typeId, value, LineInt8);
}

bool CTLVCreator::LeafInt16(const unsigned int& typeId, const short& value) {
    return m_impl && m_impl->Leaf<CTLVObjInt16>(typeId, value, LineInt16);
}

bool CTLVCreator::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->Leaf<CTLVObjUInt8>(typeId, value, LineUInt8);
}

bool CTLVCreator::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->Leaf<CTLVObjUInt16>(typeId, value, LineUInt16);
}

bool CTLVCreator::LeafBitfield8(const unsigned int& typeId, const unsigned char& value) {
    return m_impl && m_impl->Leaf<CTLVObjBitfield8>(typeId, value, LineBitfield8);
}

bool CTLVCreator::LeafBitfield16(const unsigned int& typeId, const unsigned short& value) {
    return m_impl && m_impl->Leaf<CTLVObjBitfield16>(typeId, value, LineBitfield16);
}

bool CTLVCreator::LeafString(const unsigned int& typeId, const char* text) {
    return m_impl && m_impl->LeafString(typeId, text);
}

bool CTLVCreator::LeafByteStream(const unsigned int& typeId, const void* data,
                                 const unsigned int& length) {
    return m_impl && m_impl->LeafByteStream(typeId, data, length);
}

bool CTLVCreator::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    return m_impl && m_impl->Leaf<CTLVObjUInt32>(typeId, value, LineUInt32);
}

bool CTLVCreator::LeafInt32(const unsigned int& typeId, const int& value) {
    return m_impl && m_impl->Leaf<CTLVObjInt32>(typeId, value, LineInt32);
}

bool CTLVCreator::Reset() {
    return m_impl && m_impl->Reset();
}

bool CTLVCreator::GetData(const void*& data, unsigned int& length) {
    return m_impl && m_impl->GetData(data, length);
}

}  // namespace ParserCreatorCollection
