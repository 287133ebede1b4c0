#include "bridges/vcard/private/VcardMap.h"

#include <cstdlib>
#include <iterator>

#include "bridges/vcard/private/ContentLine.h"

namespace PimBridge::Vcard {

namespace {

using C = IContactAttributes;

constexpr PropertyInfo kProperties[] = {
    // name, shape, types, LANGUAGE, x-parameters, operation
    {"FN", Shape::Text, TypeSet::None, true, true, &C::FormattedName, nullptr, nullptr},
    {"N", Shape::Name, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"NICKNAME", Shape::List, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"PHOTO", Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"BDAY", Shape::Date, TypeSet::None, false, false, nullptr, nullptr, &C::Birthday},
    {"ADR", Shape::Address, TypeSet::Address, true, true, nullptr, nullptr, nullptr},
    {"LABEL", Shape::Label, TypeSet::Address, true, true, nullptr, nullptr, nullptr},
    {"TEL", Shape::Telephone, TypeSet::Telephone, false, true, nullptr, nullptr, nullptr},
    {"EMAIL", Shape::Email, TypeSet::Email, false, false, nullptr, nullptr, nullptr},
    {"MAILER", Shape::Text, TypeSet::None, true, true, &C::Mailer, nullptr, nullptr},
    {"TZ", Shape::Timezone, TypeSet::None, false, false, nullptr, nullptr, &C::Timezone},
    {"GEO", Shape::Geo, TypeSet::None, false, false, nullptr, nullptr, &C::GeographicPosition},
    {"TITLE", Shape::Text, TypeSet::None, true, true, &C::Title, nullptr, nullptr},
    {"ROLE", Shape::Text, TypeSet::None, true, true, &C::Role, nullptr, nullptr},
    {"LOGO", Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"AGENT", Shape::Agent, TypeSet::None, false, false, nullptr, nullptr, &C::Agent},
    {"ORG", Shape::Organization, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"CATEGORIES", Shape::List, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"NOTE", Shape::Text, TypeSet::None, true, true, &C::Note, nullptr, nullptr},
    {"REV", Shape::Date, TypeSet::None, false, false, nullptr, nullptr, &C::Revision},
    {"SORT-STRING", Shape::Text, TypeSet::None, true, true, &C::SortString, nullptr, nullptr},
    {"SOUND", Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"UID", Shape::Plain, TypeSet::None, false, false, nullptr, &C::UID, nullptr},
    {"URL", Shape::Plain, TypeSet::None, false, false, nullptr, &C::URL, nullptr},
    {"VERSION", Shape::Version, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"CLASS", Shape::Plain, TypeSet::None, false, false, nullptr, &C::Classification, nullptr},
    {"PRODID", Shape::Plain, TypeSet::None, false, false, nullptr, &C::ProdID, nullptr},
    {"KEY", Shape::Key, TypeSet::None, false, false, nullptr, nullptr, nullptr},
};

// The bits are this bridge's own: the contact stream carries the sets as
// given. One bit per TYPE value of vCard 3.0, plus the telephone values that
// vCard 4.0 added.
constexpr TypeBit kAddressBits[] = {
    {"dom", 0x01},  {"intl", 0x02}, {"postal", 0x04}, {"parcel", 0x08},
    {"home", 0x10}, {"work", 0x20}, {"pref", 0x40},
};
constexpr TypeBit kTelephoneBits[] = {
    {"home", 0x0001},  {"msg", 0x0002}, {"work", 0x0004},  {"pref", 0x0008},
    {"voice", 0x0010}, {"fax", 0x0020}, {"cell", 0x0040},  {"video", 0x0080},
    {"pager", 0x0100}, {"bbs", 0x0200}, {"modem", 0x0400}, {"car", 0x0800},
    {"isdn", 0x1000},  {"pcs", 0x2000}, {"text", 0x4000},  {"textphone", 0x8000},
};
constexpr TypeBit kEmailBits[] = {
    {"internet", 0x01}, {"x400", 0x02}, {"pref", 0x04}, {"home", 0x08}, {"work", 0x10},
};

constexpr TypeTable kTypeTables[] = {
    {nullptr, 0, 0},
    {kAddressBits, std::size(kAddressBits), 0x40},
    {kTelephoneBits, std::size(kTelephoneBits), 0x0008},
    {kEmailBits, std::size(kEmailBits), 0x04},
};

}  // namespace

const PropertyInfo* FindProperty(std::string_view name) {
    for (const PropertyInfo& p : kProperties) {
        if (name == p.name) return &p;
    }
    return nullptr;
}

const PropertyInfo& Property(std::string_view name) {
    const PropertyInfo* p = FindProperty(name);
    if (p == nullptr) std::abort();  // a name missing from the table is a bug of this file
    return *p;
}

const TypeTable& Types(TypeSet set) {
    return kTypeTables[static_cast<std::size_t>(set)];
}

}  // namespace PimBridge::Vcard
