#include "Items.h"

#include <utility>
#include "doc/DocumentJson.h"

#include "pimshared/common/TypeIds.h"

namespace PimTool {

const std::vector<const ItemAdapter*>& Adapters() {
    // The one registry: an item's adapter is listed here and built when the
    // library has that item's codec.
    static const std::vector<const ItemAdapter*> adapters = {
#ifdef PIMTLV_TOOL_ITEM_EVENT
        &kEventItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_TASK
        &kTaskItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_NOTE
        &kNoteItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_CONTACT
        &kContactItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_EMAIL
        &kEmailItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_IM
        &kImItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_SMS
        &kSmsItem,
#endif
#ifdef PIMTLV_TOOL_ITEM_CALLLIST
        &kCallListItem,
#endif
    };
    return adapters;
}

const std::vector<Kind>& Kinds() {
    using PimShared::ItemKind;
    static const std::vector<Kind> kinds = {
        {"event", "calendar event", ItemKind::Event},
        {"task", "task", ItemKind::Task},
        {"note", "note", ItemKind::Note},
        {"contact", "contact", ItemKind::Contact},
        {"email", "e-mail", ItemKind::Email},
        {"im", "instant message", ItemKind::InstantMessage},
        {"sms", "SMS", ItemKind::Sms},
        {"calllist", "call list", ItemKind::CallList},
    };
    return kinds;
}

const Kind* FindKind(const std::string& name) {
    for (const Kind& k : Kinds()) {
        if (name == k.name) return &k;
    }
    return nullptr;
}

const Kind* DetectKind(const ParserCreatorCollection::ItemFrame& frame) {
    const PimShared::ItemKind detected = PimShared::KindOfFrame(frame);
    for (const Kind& k : Kinds()) {
        if (k.kind == detected) return &k;
    }
    return nullptr;
}

std::string KindNames() {
    std::string names;
    for (const Kind& k : Kinds()) {
        if (!names.empty()) names += ", ";
        names += k.name;
    }
    return names;
}

const ItemAdapter* FindAdapter(const std::string& kind) {
    for (const ItemAdapter* a : Adapters()) {
        if (kind == a->kind) return a;
    }
    return nullptr;
}

namespace {

#define PIMTLV_FRAME_NAME(node, constant)               \
    TypeName {                                          \
        PimShared::constant, node, kNoParent, #constant \
    }

// Names that hold in every item's frame.
const TypeName* FrameName(bool node, unsigned int id, unsigned int depth) {
    static const TypeName roots[] = {
        PIMTLV_FRAME_NAME(true, TypeIdObjTypeContact),
        PIMTLV_FRAME_NAME(true, TypeIdObjTypeCalendarTask),
        PIMTLV_FRAME_NAME(true, TypeIdObjTypeMessage),
        PIMTLV_FRAME_NAME(true, TypeIdObjTypeNote),
        PIMTLV_FRAME_NAME(true, TypeIdObjTypeCallstack),
    };
    static const TypeName inner[] = {
        PIMTLV_FRAME_NAME(true, TypeIdCompTypeVevent),
        PIMTLV_FRAME_NAME(true, TypeIdCompTypeVtodo),
        PIMTLV_FRAME_NAME(true, TypeIdCompTypeVJournal),
        PIMTLV_FRAME_NAME(false, TypeIdValTypeInstance),
    };
    if (depth == 0) {
        for (const TypeName& t : roots) {
            if (t.node == node && t.id == id) return &t;
        }
    } else if (depth <= 2) {
        for (const TypeName& t : inner) {
            if (t.node == node && t.id == id) return &t;
        }
    }
    return nullptr;
}

#undef PIMTLV_FRAME_NAME

}  // namespace

const char* NameOf(const ItemAdapter* item, bool node, unsigned int parent, unsigned int id,
                   unsigned int depth) {
    if (item != nullptr && depth > 0) {
        const TypeName* anywhere = nullptr;
        for (const TypeName& t : item->names) {
            if (t.node != node || t.id != id) continue;
            if (t.parent == parent) return t.name;
            if (t.parent == kNoParent && anywhere == nullptr) anywhere = &t;
        }
        if (anywhere != nullptr) return anywhere->name;
    }
    const TypeName* frame = FrameName(node, id, depth);
    return frame != nullptr ? frame->name : nullptr;
}

EncodeSession::EncodeSession(const char* kind)
    : m_item(*PimDoc::FindItem(kind)), m_encoder(m_item) {}

void EncodeSession::Call(const Json& call, std::size_t index, std::vector<std::string>& refused) {
    try {
        const PimDoc::Call made = PimDoc::CallFromJson(call, index, m_item);
        if (!m_encoder.Call(made, index)) {
            refused.push_back("call " + std::to_string(index) + " (" + made.op + ")");
        }
    } catch (const PimDoc::DocumentError& e) {
        throw UsageError(e.what());
    }
}

Bytes EncodeSession::Finish() {
    try {
        return m_encoder.Finish();
    } catch (const PimDoc::DocumentError& e) {
        throw UsageError(e.what());
    }
}

}  // namespace PimTool
