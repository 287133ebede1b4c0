#ifndef PIMTLV_BRIDGES_VCARD_PRIVATE_VCARDMAP_H
#define PIMTLV_BRIDGES_VCARD_PRIVATE_VCARDMAP_H

// Which vCard property goes to which contact operation, and how the TYPE
// values of addresses, labels, telephones and e-mail addresses map to the
// contact's bit sets. Import and export both read these tables, so the two
// directions cannot drift apart.

#include <cstddef>
#include <string_view>

#include "pimshared/contact/ContactAttributes.h"

namespace PimBridge::Vcard {

using PimShared::IContactAttributes;

// The value shapes the bridge knows how to read and write.
enum class Shape : unsigned char {
    Text,          // one text (escaped), LANGUAGE and x-parameters where the operation takes them
    Plain,         // one text taken as it stands: identifiers, URIs, numbers
    Name,          // N: five components
    List,          // NICKNAME, CATEGORIES: comma-separated texts
    Address,       // ADR: seven components and TYPE bits
    Label,         // LABEL: text and TYPE bits
    Telephone,     // TEL: number and TYPE bits
    Email,         // EMAIL: address and TYPE bits
    Media,         // PHOTO, LOGO, SOUND: inline bytes or a URI, and a media type
    Key,           // KEY: inline bytes or a text, and a type
    Date,          // BDAY, REV: a date-time, or free text (VALUE=text) in the second slot
    Timezone,      // TZ: a UTC offset, or a text (name, URI) in the second slot
    Geo,           // GEO: two coordinates
    Agent,         // AGENT: a URI, or the agent's card as text
    Organization,  // ORG: name and units
    Version,       // VERSION: always written as 3.0, which is what a contact is
};

enum class TypeSet : unsigned char { None, Address, Telephone, Email };

struct TypeBit {
    const char* value;  // as written on export
    unsigned int bit;
};

struct TypeTable {
    const TypeBit* bits;
    std::size_t count;
    unsigned int pref;  // the bit that PREF=n sets
};

using TextOp = bool (IContactAttributes::*)(const char*, const char*,
                                            const PAL::TVector<IContactAttributes::tXParam>&);
using PlainOp = bool (IContactAttributes::*)(const char*);
using PairOp = bool (IContactAttributes::*)(const char*, const char*);

struct PropertyInfo {
    std::string_view name;
    Shape shape;
    TypeSet types;
    bool language;  // takes LANGUAGE as its text parameter
    bool xParams;   // takes extension parameters
    TextOp text;    // for Text and List shapes with a text operation
    PlainOp plain;  // for Plain
    PairOp pair;    // for Date, Timezone, Geo, Agent
};

// Properties by name (upper case); null for one the contact has no place for.
const PropertyInfo* FindProperty(std::string_view name);
// The entry of a property by its name, for export.
const PropertyInfo& Property(std::string_view name);
const TypeTable& Types(TypeSet set);
// The bit of a TYPE value (any case) in table, 0 when it has none.
unsigned int BitOf(const TypeTable& table, std::string_view value);

}  // namespace PimBridge::Vcard

#endif
