#include "pimshared/common/ItemKind.h"

#include <algorithm>

#include "pimshared/callstack/CallstackTypeIds.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/email/EmailTypeIds.h"
#include "pimshared/im/IMTypeIds.h"
#include "pimshared/sms/SMSTypeIds.h"

namespace PimShared {

namespace {

struct KindForm {
    ItemKind kind;
    const char* name;
    unsigned int root;
    unsigned int component;  // kNoComponent: the root alone tells the item
};

constexpr unsigned int kNoComponent = 0xFFFFFFFFu;

constexpr KindForm kForms[] = {
    {ItemKind::Event, "event", TypeIdObjTypeCalendarTask, TypeIdCompTypeVevent},
    {ItemKind::Task, "task", TypeIdObjTypeCalendarTask, TypeIdCompTypeVtodo},
    {ItemKind::Note, "note", TypeIdObjTypeNote, TypeIdCompTypeVJournal},
    {ItemKind::Contact, "contact", TypeIdObjTypeContact, kNoComponent},
    {ItemKind::Email, "email", TypeIdObjTypeMessage, EmailTypeIds::TypeIdCompTypeEmail},
    {ItemKind::InstantMessage, "im", TypeIdObjTypeMessage, IMTypeIds::TypeIdCompTypeIm},
    {ItemKind::Sms, "sms", TypeIdObjTypeMessage, SMSTypeIds::TypeIdCompTypeSMS},
    {ItemKind::CallList, "calllist", TypeIdObjTypeCallstack,
     CallstackTypeIds::TypeIdCompTypeCallEntry1},
    {ItemKind::CallList, "calllist", TypeIdObjTypeCallstack,
     CallstackTypeIds::TypeIdCompTypeCallEntry2},
};

}  // namespace

ItemKind KindOfFrame(const ParserCreatorCollection::ItemFrame& frame) noexcept {
    if (!frame.hasRoot) return ItemKind::Unknown;
    for (const KindForm& f : kForms) {
        if (f.root != frame.root) continue;
        if (f.component == kNoComponent || (frame.hasComponent && frame.component == f.component)) {
            return f.kind;
        }
    }
    return ItemKind::Unknown;
}

ItemKind DetectItemKind(const std::uint8_t* data, std::size_t size) noexcept {
    return KindOfFrame(ParserCreatorCollection::ReadItemFrame(data, size));
}

bool ReadItemInstance(const std::uint8_t* data, std::size_t size, unsigned int& instance) noexcept {
    using namespace ParserCreatorCollection;
    ElementHeader h;
    if (data == nullptr || ReadElementHeader(data, size, h) != HeaderFault::None ||
        h.elementClass != Node) {
        return false;
    }
    // Into the root, then into its first node, never deeper.
    std::size_t pos = h.headerSize;
    std::size_t end = std::min(size, pos + std::size_t{h.length});
    for (int depth = 1; pos < end && ReadElementHeader(data + pos, end - pos, h) == HeaderFault::None;) {
        const std::size_t value = pos + h.headerSize;
        if (h.elementClass == Node) {
            if (depth == 2) return false;
            depth = 2;
            end = std::min(end, value + std::size_t{h.length});
            pos = value;
            continue;
        }
        if (h.elementClass == UInt32 && h.typeId == TypeIdValTypeInstance && h.length == 4 &&
            end - value >= 4) {
            instance = (static_cast<unsigned int>(data[value]) << 24) |
                       (static_cast<unsigned int>(data[value + 1]) << 16) |
                       (static_cast<unsigned int>(data[value + 2]) << 8) | data[value + 3];
            return true;
        }
        pos = value + std::size_t{h.length};
    }
    return false;
}

const char* ItemKindName(ItemKind kind) noexcept {
    for (const KindForm& f : kForms) {
        if (f.kind == kind) return f.name;
    }
    return "";
}

}  // namespace PimShared
