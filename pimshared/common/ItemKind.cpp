#include "pimshared/common/ItemKind.h"

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
    {ItemKind::Sms, "sms", TypeIdObjTypeMessage, SmsTypeIds::TypeIdCompTypeSMS},
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

const char* ItemKindName(ItemKind kind) noexcept {
    for (const KindForm& f : kForms) {
        if (f.kind == kind) return f.name;
    }
    return "";
}

}  // namespace PimShared
