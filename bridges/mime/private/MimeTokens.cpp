#include "bridges/mime/private/MimeTokens.h"

namespace PimBridge {
namespace Mime {

namespace {

template <std::size_t N>
constexpr TokenTable Table(const Token (&tokens)[N]) {
    return TokenTable{tokens, N};
}

const Token kContentTypeTokens[] = {
    {A::eContentTypeText, "text"},
    {A::eContentTypeImage, "image"},
    {A::eContentTypeAudio, "audio"},
    {A::eContentTypeVideo, "video"},
    {A::eContentTypeApplication, "application"},
    {A::eContentTypeMultipart, "multipart"},
    {A::eContentTypeMessage, "message"},
};
const Token kContentSubtypeTokens[] = {
    {A::eContentSubtypePlain, "plain"},
    {A::eContentSubtypeHtml, "html"},
    {A::eContentSubtypeMixed, "mixed"},
    {A::eContentSubtypeAlternative, "alternative"},
    {A::eContentSubtypeRelated, "related"},
    {A::eContentSubtypeJpeg, "jpeg"},
    {A::eContentSubtypePng, "png"},
    {A::eContentSubtypeGif, "gif"},
    {A::eContentSubtypeOctetStream, "octet-stream"},
    {A::eContentSubtypePdf, "pdf"},
    {A::eContentSubtypeRfc822, "rfc822"},
};
const Token kDispositionTypeTokens[] = {
    {A::eContentDispositionTypeInline, "inline"},
    {A::eContentDispositionTypeAttachment, "attachment"},
};
const Token kDispositionParamTokens[] = {
    {A::eContentDispositionParamNameFilename, "filename"},
    {A::eContentDispositionParamNameCreationDate, "creation-date"},
    {A::eContentDispositionParamNameModificationDate, "modification-date"},
    {A::eContentDispositionParamNameReadDate, "read-date"},
    {A::eContentDispositionParamNameSize, "size"},
};
const Token kContentParamNameTokens[] = {
    {A::eContentParamNameCharset, "charset"},
    {A::eContentParamNameBoundary, "boundary"},
    {A::eContentParamNameName, "name"},
    {A::eContentParamNameFormat, "format"},
};
const Token kTransferEncodingTokens[] = {
    {A::eContentTransferEncoding7Bit, "7bit"},
    {A::eContentTransferEncoding8Bit, "8bit"},
    {A::eContentTransferEncodingBinary, "binary"},
    {A::eContentTransferEncodingQuotedPrintable, "quoted-printable"},
    {A::eContentTransferEncodingBase64, "base64"},
};
const Token kCharsetValueTokens[] = {
    {A::eContentParamValueUsAscii, "us-ascii"},
    {A::eContentParamValueUtf8, "utf-8"},
    {A::eContentParamValueIso8859_1, "iso-8859-1"},
};
const Token kFormatValueTokens[] = {
    {A::eContentParamValueFlowed, "flowed"},
    {A::eContentParamValueFixed, "fixed"},
};
const Token kBodyCharsetTokens[] = {
    {A::eBodyCharsetUsAscii, "us-ascii"},         {A::eBodyCharsetUtf8, "utf-8"},
    {A::eBodyCharsetIso8859_1, "iso-8859-1"},     {A::eBodyCharsetUtf16, "utf-16"},
    {A::eBodyCharsetWindows1252, "windows-1252"},
};

const TokenTable kCharsetValues = Table(kCharsetValueTokens);
const TokenTable kFormatValues = Table(kFormatValueTokens);
const TokenTable kBodyCharsets = Table(kBodyCharsetTokens);

}  // namespace

unsigned int TokenTable::MemberOf(const char* token, unsigned int other) const {
    if (token == nullptr) return other;
    for (std::size_t i = 0; i < count; ++i) {
        if (g_ascii_strcasecmp(token, tokens[i].token) == 0) return tokens[i].member;
    }
    return other;
}

const char* TokenTable::TokenOf(unsigned int member) const {
    for (std::size_t i = 0; i < count; ++i) {
        if (tokens[i].member == member) return tokens[i].token;
    }
    return nullptr;
}

const TokenTable kContentTypes = Table(kContentTypeTokens);
const TokenTable kContentSubtypes = Table(kContentSubtypeTokens);
const TokenTable kDispositionTypes = Table(kDispositionTypeTokens);
const TokenTable kDispositionParams = Table(kDispositionParamTokens);
const TokenTable kContentParamNames = Table(kContentParamNameTokens);
const TokenTable kTransferEncodings = Table(kTransferEncodingTokens);

unsigned int ContentParamValueOf(unsigned int nameMember, const char* value) {
    switch (nameMember) {
        case A::eContentParamNameCharset:
            return kCharsetValues.MemberOf(value, A::eContentParamValueExtension);
        case A::eContentParamNameFormat:
            return kFormatValues.MemberOf(value, A::eContentParamValueExtension);
        default:
            return A::eContentParamValueExtension;
    }
}

const char* ContentParamValueToken(unsigned int member) {
    const char* token = kCharsetValues.TokenOf(member);
    return token != nullptr ? token : kFormatValues.TokenOf(member);
}

A::eBodyCharset BodyCharsetOf(const char* charset) {
    const char* canon = g_mime_charset_canon_name(charset);
    for (const Token& t : kBodyCharsetTokens) {
        if (g_ascii_strcasecmp(canon, g_mime_charset_canon_name(t.token)) == 0)
            return static_cast<A::eBodyCharset>(t.member);
    }
    return A::eBodyCharsetUnknown;
}

const char* BodyCharsetToken(unsigned int member) {
    return kBodyCharsets.TokenOf(member);
}

const AddressField kAddressFields[6] = {
    {GMIME_ADDRESS_TYPE_FROM, A::eMailboxFieldTypeFrom, "From"},
    {GMIME_ADDRESS_TYPE_SENDER, A::eMailboxFieldTypeSender, "Sender"},
    {GMIME_ADDRESS_TYPE_REPLY_TO, A::eMailboxFieldTypeReplyTo, "Reply-To"},
    {GMIME_ADDRESS_TYPE_TO, A::eMailboxFieldTypeTo, "To"},
    {GMIME_ADDRESS_TYPE_CC, A::eMailboxFieldTypeCc, "Cc"},
    {GMIME_ADDRESS_TYPE_BCC, A::eMailboxFieldTypeBcc, "Bcc"},
};

const AddressField* AddressFieldOf(unsigned int member) {
    for (const AddressField& f : kAddressFields) {
        if (f.member == member) return &f;
    }
    return nullptr;
}

bool IsAddressHeader(const char* name) {
    for (const AddressField& f : kAddressFields) {
        if (g_ascii_strcasecmp(name, f.header) == 0) return true;
    }
    return false;
}

const TextField kTextFields[10] = {
    {"Subject", &A::Subject, false, true},
    {"Date", &A::OrigDate, false, false},
    {"Message-ID", &A::MessageId, false, false},
    {"In-Reply-To", &A::InReplyTo, false, false},
    {"References", &A::References, false, false},
    {"Keywords", &A::Keywords, false, false},
    {"Comments", &A::Comments, false, true},
    {"MIME-Version", &A::MimeVersion, false, false},
    {"Content-ID", &A::ContentId, true, false},
    {"Content-Description", &A::ContentDescription, true, true},
};

const TextField* TextFieldOf(const char* header) {
    for (const TextField& f : kTextFields) {
        if (g_ascii_strcasecmp(header, f.header) == 0) return &f;
    }
    return nullptr;
}

const TextField* TextFieldOf(bool (A::*op)(const char*)) {
    for (const TextField& f : kTextFields) {
        if (f.op == op) return &f;
    }
    return nullptr;
}

}  // namespace Mime
}  // namespace PimBridge
