#include "bridges/vcard/private/VcardMap.h"

#include <cstdlib>
#include <iterator>
#include <string_view>

#include "bridges/vcard/private/ContentLine.h"

namespace PimBridge::Vcard {

namespace {

using C = IContactAttributes;
using namespace std::string_view_literals;

constexpr PropertyInfo kProperties[] = {
    // name, shape, types, LANGUAGE, x-parameters, operation
    {"FN"sv, Shape::Text, TypeSet::None, true, true, &C::FormattedName, nullptr, nullptr},
    {"N"sv, Shape::Name, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"NICKNAME"sv, Shape::List, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"PHOTO"sv, Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"BDAY"sv, Shape::Date, TypeSet::None, false, false, nullptr, nullptr, &C::Birthday},
    {"ADR"sv, Shape::Address, TypeSet::Address, true, true, nullptr, nullptr, nullptr},
    {"LABEL"sv, Shape::Label, TypeSet::Address, true, true, nullptr, nullptr, nullptr},
    {"TEL"sv, Shape::Telephone, TypeSet::Telephone, false, true, nullptr, nullptr, nullptr},
    {"EMAIL"sv, Shape::Email, TypeSet::Email, false, false, nullptr, nullptr, nullptr},
    {"MAILER"sv, Shape::Text, TypeSet::None, true, true, &C::Mailer, nullptr, nullptr},
    {"TZ"sv, Shape::Timezone, TypeSet::None, false, false, nullptr, nullptr, &C::Timezone},
    {"GEO"sv, Shape::Geo, TypeSet::None, false, false, nullptr, nullptr, &C::GeographicPosition},
    {"TITLE"sv, Shape::Text, TypeSet::None, true, true, &C::Title, nullptr, nullptr},
    {"ROLE"sv, Shape::Text, TypeSet::None, true, true, &C::Role, nullptr, nullptr},
    {"LOGO"sv, Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"AGENT"sv, Shape::Agent, TypeSet::None, false, false, nullptr, nullptr, &C::Agent},
    {"ORG"sv, Shape::Organization, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"CATEGORIES"sv, Shape::List, TypeSet::None, true, true, nullptr, nullptr, nullptr},
    {"NOTE"sv, Shape::Text, TypeSet::None, true, true, &C::Note, nullptr, nullptr},
    {"REV"sv, Shape::Date, TypeSet::None, false, false, nullptr, nullptr, &C::Revision},
    {"SORT-STRING"sv, Shape::Text, TypeSet::None, true, true, &C::SortString, nullptr, nullptr},
    {"SOUND"sv, Shape::Media, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"UID"sv, Shape::Plain, TypeSet::None, false, false, nullptr, &C::UID, nullptr},
    {"URL"sv, Shape::Plain, TypeSet::None, false, false, nullptr, &C::URL, nullptr},
    {"VERSION"sv, Shape::Version, TypeSet::None, false, false, nullptr, nullptr, nullptr},
    {"CLASS"sv, Shape::Plain, TypeSet::None, false, false, nullptr, &C::Classification, nullptr},
    {"PRODID"sv, Shape::Plain, TypeSet::None, false, false, nullptr, &C::ProdID, nullptr},
    {"KEY"sv, Shape::Key, TypeSet::None, false, false, nullptr, nullptr, nullptr},
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

unsigned int BitOf(const TypeTable& table, std::string_view value) {
    for (std::size_t i = 0; i < table.count; ++i) {
        if (SameName(value, table.bits[i].value)) return table.bits[i].bit;
    }
    return 0;
}

}  // namespace PimBridge::Vcard
