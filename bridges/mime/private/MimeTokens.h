#ifndef PIMTLV_BRIDGES_MIME_PRIVATE_MIMETOKENS_H
#define PIMTLV_BRIDGES_MIME_PRIVATE_MIMETOKENS_H

// The MIME tokens that the e-mail item's enumerations name, one table per
// enumeration, read by import and export alike. A token no table names
// travels as text beside the extension member.

#include <gmime/gmime.h>

#include <cstddef>

#include "pimshared/email/IEmailAttributes.h"

namespace PimBridge {
namespace Mime {

using A = PimShared::IEmailAttributes;

struct Token {
    unsigned int member;
    const char* token;  // lower case, as export writes it
};

struct TokenTable {
    const Token* tokens;
    std::size_t count;
    // The member naming token (in any case), or other.
    unsigned int MemberOf(const char* token, unsigned int other) const;
    // The token of member, or null when the table has none.
    const char* TokenOf(unsigned int member) const;
};

extern const TokenTable kContentTypes;
extern const TokenTable kContentSubtypes;
extern const TokenTable kDispositionTypes;
extern const TokenTable kDispositionParams;
extern const TokenTable kContentParamNames;
// Content-Transfer-Encoding; the body encoding has the same members.
extern const TokenTable kTransferEncodings;

// Parameter values are named only where their parameter gives them a meaning:
// the charsets of charset, flowed and fixed of format.
unsigned int ContentParamValueOf(unsigned int nameMember, const char* value);
const char* ContentParamValueToken(unsigned int member);

// The body charset of a charset name, by GMime's canonical charset names
// ("latin1" is iso-8859-1): a member, or unknown (0) for other charsets.
A::eBodyCharset BodyCharsetOf(const char* charset);
const char* BodyCharsetToken(unsigned int member);

struct AddressField {
    GMimeAddressType type;
    A::eMailboxFieldType member;
    const char* header;
};
// In the order import writes them.
extern const AddressField kAddressFields[6];
const AddressField* AddressFieldOf(unsigned int member);
bool IsAddressHeader(const char* name);

// The unstructured and identifier header fields the item carries as text, and
// the operation of each. Content-ID and Content-Description describe a part,
// the others a message (a part may carry them too). GMime writes the
// unstructured ones in encoded words where they need it (a line break
// included); the others it writes as they are.
struct TextField {
    const char* header;
    bool (A::*op)(const char*);
    bool content;
    bool unstructured;
};
extern const TextField kTextFields[10];
const TextField* TextFieldOf(const char* header);
const TextField* TextFieldOf(bool (A::*op)(const char*));

}  // namespace Mime
}  // namespace PimBridge

#endif
