// RFC 5322 text to e-mail streams. GMime parses the message; this file walks
// what it made and writes each message with CTLVEmailCreator: the message's
// header fields, then its MIME part, then one nested entity per part of a
// multipart and one for the message inside a message/rfc822 part.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bridges/common/LossCollector.h"
#include "bridges/mime/MimeBridge.h"
#include "bridges/mime/private/Charsets.h"
#include "bridges/mime/private/GMime.h"
#include "bridges/mime/private/Mbox.h"
#include "bridges/mime/private/MimeTokens.h"
#include "pimshared/email/TLVEmailCreator.h"
#include "platform/TVector.h"

namespace PimBridge {

namespace {

using namespace Mime;

// The 1-based line of a byte offset of one message's text, counted from
// the line the message starts on in the input. GMime's offsets mostly grow
// as the walk goes on, so counting on from the last answer keeps each
// question cheap.
class LineCounter {
  public:
    void Reset(const char* text, std::size_t size, unsigned int firstLine) {
        m_text = text;
        m_size = size;
        m_first = firstLine;
        m_pos = 0;
        m_line = firstLine;
    }

    unsigned int LineAt(gint64 offset) {
        const std::size_t target =
            offset < 0 ? 0 : std::min(static_cast<std::size_t>(offset), m_size);
        if (target < m_pos) {
            m_pos = 0;
            m_line = m_first;
        }
        const char* p = m_text + m_pos;
        const char* end = m_text + target;
        while (p < end) {
            p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
            if (p == nullptr) break;
            ++m_line;
            ++p;
        }
        m_pos = target;
        return m_line;
    }

  private:
    const char* m_text = nullptr;
    std::size_t m_size = 0;
    unsigned int m_first = 1;
    std::size_t m_pos = 0;
    unsigned int m_line = 1;
};

// Header values as GMime gives them (unfolded, encoded words decoded) lose
// the blanks around them, which belong to the field's syntax, not its value.
std::string Trimmed(const char* value) {
    if (value == nullptr) return std::string();
    const char* begin = value;
    const char* end = value + std::strlen(value);
    while (begin < end && g_ascii_isspace(*begin)) ++begin;
    while (end > begin && g_ascii_isspace(end[-1])) --end;
    return std::string(begin, end);
}

bool HasText(const char* text) {
    if (text == nullptr) return false;
    for (; *text != '\0'; ++text) {
        if (!g_ascii_isspace(*text)) return true;
    }
    return false;
}

class Importer {
  public:
    ImportResult Eml(const char* text, std::size_t size) {
        Start(size);
        if (!Read(text, size, 1, 1) && m_result.error.empty()) {
            m_result.error = "no message: GMime reads none from this text";
            m_result.errorLine = 1;
        }
        m_result.ok = m_result.error.empty();
        return std::move(m_result);
    }

    ImportResult Mbox(const char* text, std::size_t size) {
        Start(size);
        const std::vector<MboxMessage> messages = SplitMbox(text, size);
        if (messages.empty()) {
            m_result.error = "no message: an mbox starts with a \"From \" line";
            m_result.errorLine = 1;
            return std::move(m_result);
        }
        for (const MboxMessage& m : messages) {
            const char* at = text + m.offset;
            // Body lines quoted so as not to read as separators get their
            // text back; the lines stay where they were.
            const std::string unquoted =
                HasQuotedFromLine(at, m.size) ? UnquoteFromLines(at, m.size) : std::string();
            const bool read = unquoted.empty()
                                  ? Read(at, m.size, m.line + 1, m.line)
                                  : Read(unquoted.data(), unquoted.size(), m.line + 1, m.line);
            if (!m_result.error.empty()) return std::move(m_result);
            if (read && m.lookalikes > 0) {
                m_result.items.back().losses.push_back(
                    Loss{"From line", m.lookalikes, m.lookalikeLine, Loss::Kind::Converted,
                         "a separator without an empty line before it, read as body text"});
            }
            if (!read)
                m_result.losses.push_back(Loss{
                    "(message GMime reads nothing of)", 1, m.line, Loss::Kind::NotCarried, {}});
        }
        m_result.ok = true;
        return std::move(m_result);
    }

  private:
    void Start(std::size_t size) {
        EnsureGMime();
        // 8-bit header text without a charset: UTF-8 where it is valid, else
        // windows-1252, which reads every byte (reported as converted).
        m_options.reset(g_mime_parser_options_new());
        const char* fallback[] = {"utf-8", kFallbackCharset, nullptr};
        g_mime_parser_options_set_fallback_charsets(m_options.get(), fallback);
        m_decoded.reset(g_mime_stream_mem_new());
        // Bodies travel decoded, so the streams are seldom larger than the
        // text: room for them at once spares copying them as they grow.
        m_result.streams.reserve(size + 64);
    }

    // One message's text, which starts on line firstLine of the input; the
    // item is said to start on itemLine. Each item's instance is its
    // position in the file, from 0. False when GMime read no message (or
    // the codec failed: then the result's error says why).
    bool Read(const char* text, std::size_t size, unsigned int firstLine, unsigned int itemLine) {
        m_lines.Reset(text, size, firstLine);
        m_text = text;
        m_size = size;
        Ref<GMimeStream> stream = MemoryStream(text, size);
        Ref<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
        g_mime_parser_set_format(parser.get(), GMIME_FORMAT_MESSAGE);
        Ref<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), m_options.get()));
        if (!message) return false;
        if (!Item(message.get(), static_cast<unsigned int>(m_result.items.size()))) {
            m_result.error = "the e-mail codec refused a value of this message";
            m_result.errorLine = itemLine;
            return false;
        }
        const void* data = nullptr;
        unsigned int length = 0;
        if (!m_creator.GetData(data, length)) {
            m_result.error = "the e-mail codec could not finish this message";
            m_result.errorLine = itemLine;
            return false;
        }
        m_result.AddItem("email", itemLine, data, length, m_losses.Take());
        m_creator.Reset();
        return true;
    }

  private:
    bool Put(bool written) {
        m_ok = m_ok && written;
        return m_ok;
    }

    void Lose(const char* name, gint64 offset) { m_losses.Add(name, m_lines.LineAt(offset)); }

    bool Item(GMimeMessage* message, unsigned int instance) {
        m_ok = true;
        Put(m_creator.Begin(instance));
        Message(message);
        Put(m_creator.End());
        return m_ok;
    }

    // A message's own header fields, then its content.
    void Message(GMimeMessage* message) {
        GMimeHeaderList* headers = g_mime_object_get_header_list(GMIME_OBJECT(message));
        for (const AddressField& field : kAddressFields) {
            InternetAddressList* list = g_mime_message_get_addresses(message, field.type);
            // A field in one header whose encoded words GMime cannot read is
            // read again relabelled in the fallback charset.
            Ref<InternetAddressList> relabelled;
            const std::string text = Relabelled(headers, field.header);
            if (!text.empty() && OnlyHeader(headers, field.header)) {
                relabelled.reset(internet_address_list_parse(m_options.get(), text.c_str()));
                if (relabelled) list = relabelled.get();
            }
            const int count = list != nullptr ? internet_address_list_length(list) : 0;
            for (int i = 0; i < count; ++i)
                Address(field.member, internet_address_list_get_address(list, i));
        }
        // GMime writes "MIME-Version: 1.0" into every message that has none, so
        // a message without the field is read as what any export of it holds:
        // version 1.0, the only one MIME has.
        if (!Headers(GMIME_OBJECT(message), true)) Put(m_creator.MimeVersion("1.0"));
        GMimeObject* part = g_mime_message_get_mime_part(message);
        if (part != nullptr) Content(part, true);
    }

    void Address(A::eMailboxFieldType type, InternetAddress* address) {
        if (INTERNET_ADDRESS_IS_MAILBOX(address)) {
            Put(m_creator.Mailbox(
                type, internet_address_get_name(address),
                internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address))));
            return;
        }
        PAL::TVector<A::tMailbox> members;
        Members(type, internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), members);
        // A group's field is told by its members; an empty group
        // ("undisclosed-recipients:;") keeps its field with one member that has
        // neither name nor address, which export reads as no member.
        if (members.isEmpty()) members.pushBack(A::tMailbox{type, "", ""});
        const char* name = internet_address_get_name(address);
        Put(m_creator.Group(name != nullptr ? name : "", members));
    }

    // Groups cannot nest in RFC 5322; GMime reads a nested one anyway, and its
    // members join the outer group.
    static void Members(A::eMailboxFieldType type, InternetAddressList* list,
                        PAL::TVector<A::tMailbox>& out) {
        const int count = list != nullptr ? internet_address_list_length(list) : 0;
        for (int i = 0; i < count; ++i) {
            InternetAddress* a = internet_address_list_get_address(list, i);
            if (INTERNET_ADDRESS_IS_MAILBOX(a)) {
                out.pushBack(
                    A::tMailbox{type, internet_address_get_name(a),
                                internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(a))});
            } else {
                Members(type, internet_address_group_get_members(INTERNET_ADDRESS_GROUP(a)), out);
            }
        }
    }

    // The fields of one header block that are neither addresses nor the
    // content fields Content() reads: texts where the item has a place,
    // losses otherwise. Returns whether MIME-Version was among them.
    bool Headers(GMimeObject* object, bool message) {
        bool version = false;
        GMimeHeaderList* headers = g_mime_object_get_header_list(object);
        const int count = g_mime_header_list_get_count(headers);
        for (int i = 0; i < count; ++i) {
            GMimeHeader* header = g_mime_header_list_get_header_at(headers, i);
            const char* name = g_mime_header_get_name(header);
            // A part's content fields are its own: its pass looks at them.
            const bool content = g_ascii_strncasecmp(name, "Content-", 8) == 0;
            const CharsetTrouble trouble =
                message && content ? CharsetTrouble()
                                   : FindCharsetTrouble(g_mime_header_get_raw_value(header));
            const TextField* field = TextFieldOf(name);
            if (!trouble.what.empty()) {
                // Texts and content fields are read again relabelled (below,
                // and in Content()); for the rest GMime's reading stands.
                const bool relabelled =
                    (field != nullptr && field->unstructured) ||
                    (message && IsAddressHeader(name) && OnlyHeader(headers, name)) ||
                    g_ascii_strcasecmp(name, "Content-Type") == 0 ||
                    g_ascii_strcasecmp(name, "Content-Disposition") == 0;
                m_losses.Add(name, m_lines.LineAt(g_mime_header_get_offset(header)),
                             Loss::Kind::Converted,
                             trouble.what + (relabelled || trouble.fallsBack
                                                 ? std::string(", read as ") + kFallbackCharset
                                                 : ", its bytes dropped or read as '?'"));
            }
            if (message && IsAddressHeader(name)) continue;
            if (g_ascii_strcasecmp(name, "Content-Type") == 0 ||
                g_ascii_strcasecmp(name, "Content-Disposition") == 0 ||
                g_ascii_strcasecmp(name, "Content-Transfer-Encoding") == 0)
                continue;
            if (field == nullptr) {
                Lose(name, g_mime_header_get_offset(header));
                continue;
            }
            version = version || field->op == &A::MimeVersion;
            const std::string value =
                trouble.what.empty() || !field->unstructured
                    ? Trimmed(g_mime_header_get_value(header))
                    : Trimmed(
                          GText(
                              g_mime_utils_header_decode_text(
                                  m_options.get(),
                                  GText(g_mime_utils_header_unfold(
                                            WithFallbackCharset(g_mime_header_get_raw_value(header))
                                                .c_str()))
                                      .get()))
                              .get());
            Put((m_creator.*(field->op))(value.c_str()));
        }
        return version;
    }

    // One MIME part: its content fields, then its body or its entities.
    void Content(GMimeObject* object, bool ofMessage) {
        GMimeHeaderList* headers = g_mime_object_get_header_list(object);
        const std::string typeText = Relabelled(headers, "Content-Type");
        if (!typeText.empty()) {
            Ref<GMimeContentType> type(
                g_mime_content_type_parse(m_options.get(), typeText.c_str()));
            ContentType(type.get());
        } else {
            ContentType(g_mime_object_get_content_type(object));
        }
        const std::string dispositionText = Relabelled(headers, "Content-Disposition");
        GMimeContentDisposition* disposition = g_mime_object_get_content_disposition(object);
        if (!dispositionText.empty()) {
            Ref<GMimeContentDisposition> relabelled(
                g_mime_content_disposition_parse(m_options.get(), dispositionText.c_str()));
            Disposition(relabelled.get());
        } else if (disposition != nullptr) {
            Disposition(disposition);
        }
        Headers(object, false);
        GMimeHeader* type =
            g_mime_header_list_get_header(g_mime_object_get_header_list(object), "Content-Type");
        const gint64 typeAt = type != nullptr ? g_mime_header_get_offset(type) : 0;
        if (GMIME_IS_MULTIPART(object)) {
            GMimeMultipart* multipart = GMIME_MULTIPART(object);
            const int count = g_mime_multipart_get_count(multipart);
            const char* prologue = g_mime_multipart_get_prologue(multipart);
            if (count == 0 && m_depth >= kGMimeDepth && HasText(prologue)) {
                // GMime reads no parts this deep and keeps their text as the
                // preamble: it travels as the body, which export writes
                // back as it came.
                DepthLimit(typeAt);
                Put(m_creator.Body(A::eBodyEncoding7Bit, A::eBodyCharsetUnknown, prologue,
                                   static_cast<unsigned int>(std::strlen(prologue))));
                return;
            }
            // Text around the parts is for readers without MIME; the item has
            // no place for it.
            if (HasText(prologue)) Lose("(preamble)", BodyStart(typeAt));
            if (HasText(g_mime_multipart_get_epilogue(multipart))) Lose("(epilogue)", typeAt);
            for (int i = 0; i < count && m_ok; ++i) {
                Nested([&] { Content(g_mime_multipart_get_part(multipart, i), false); });
            }
        } else if (GMIME_IS_MESSAGE_PART(object)) {
            GMimeMessage* inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
            if (inner != nullptr) Nested([&] { Message(inner); });
        } else if (GMIME_IS_PART(object)) {
            // A multipart or message this deep GMime keeps as one body of
            // its text, which travels and is written back as it came.
            GMimeContentType* contentType = g_mime_object_get_content_type(object);
            if (m_depth >= kGMimeDepth &&
                (g_mime_content_type_is_type(contentType, "multipart", "*") ||
                 g_mime_content_type_is_type(contentType, "message", "*")))
                DepthLimit(typeAt);
            Body(GMIME_PART(object), ofMessage);
        }
    }

    static bool OnlyHeader(GMimeHeaderList* headers, const char* name) {
        int found = 0;
        const int count = g_mime_header_list_get_count(headers);
        for (int i = 0; i < count && found < 2; ++i) {
            found += g_ascii_strcasecmp(
                         g_mime_header_get_name(g_mime_header_list_get_header_at(headers, i)),
                         name) == 0;
        }
        return found == 1;
    }

    // The unfolded value of the field, relabelled in the fallback charset,
    // when its charsets are in trouble; else empty. Its 8-bit bytes are read
    // by the fallback too: GMime keeps those of a plain parameter value as
    // they were sent, and drops a last one that looks like a cut character.
    static std::string Relabelled(GMimeHeaderList* headers, const char* name) {
        GMimeHeader* header = g_mime_header_list_get_header(headers, name);
        const char* raw = header != nullptr ? g_mime_header_get_raw_value(header) : nullptr;
        if (FindCharsetTrouble(raw).what.empty()) return std::string();
        std::string text = WithFallbackCharset(raw);
        ReadAsUtf8(text);
        return GText(g_mime_utils_header_unfold(text.c_str())).get();
    }

    template <typename Walk>
    void Nested(Walk&& walk) {
        Put(m_creator.BeginEntity());
        ++m_depth;
        walk();
        --m_depth;
        Put(m_creator.EndEntity());
    }

    void DepthLimit(gint64 offset) {
        m_losses.Add("(parts)", m_lines.LineAt(offset), Loss::Kind::Limit,
                     "nested deeper than GMime reads (1024 levels, a message part counting "
                     "two): kept as one body, as it was sent");
    }

    // Where the body of the part whose header field starts at offset
    // begins: after the first empty line.
    gint64 BodyStart(gint64 offset) const {
        const std::size_t from =
            offset < 0 ? 0 : std::min(static_cast<std::size_t>(offset), m_size);
        for (std::size_t i = from; i + 1 < m_size; ++i) {
            if (m_text[i] != '\n') continue;
            if (m_text[i + 1] == '\n') return static_cast<gint64>(i + 2);
            if (m_text[i + 1] == '\r' && i + 2 < m_size && m_text[i + 2] == '\n')
                return static_cast<gint64>(i + 3);
        }
        return static_cast<gint64>(from);
    }

    void ContentType(GMimeContentType* type) {
        if (type == nullptr) return;
        const char* media = g_mime_content_type_get_media_type(type);
        const char* subtype = g_mime_content_type_get_media_subtype(type);
        const auto typeMember =
            static_cast<A::eContentType>(kContentTypes.MemberOf(media, A::eContentTypeExtension));
        Put(m_creator.ContentType(typeMember, media != nullptr ? media : ""));
        const auto subtypeMember = static_cast<A::eContentSubtype>(
            kContentSubtypes.MemberOf(subtype, A::eContentSubtypeExtension));
        Put(m_creator.ContentSubtype(subtypeMember, subtype != nullptr ? subtype : ""));
        ForEachParam(
            g_mime_content_type_get_parameters(type), [this](const char* name, const char* value) {
                const unsigned int nameMember =
                    kContentParamNames.MemberOf(name, A::eContentParamNameExtension);
                const auto valueMember =
                    static_cast<A::eContentParamValue>(ContentParamValueOf(nameMember, value));
                Put(m_creator.ContentTypeParam(static_cast<A::eContentParamName>(nameMember),
                                               valueMember, name, value));
            });
    }

    void Disposition(GMimeContentDisposition* disposition) {
        const char* kind = g_mime_content_disposition_get_disposition(disposition);
        const auto member = static_cast<A::eContentDispositionType>(
            kDispositionTypes.MemberOf(kind, A::eContentDispositionTypeExtension));
        Put(m_creator.ContentDispositionType(member, kind != nullptr ? kind : ""));
        ForEachParam(
            g_mime_content_disposition_get_parameters(disposition),
            [this](const char* name, const char* value) {
                const auto nameMember = static_cast<A::eContentDispositionParamName>(
                    kDispositionParams.MemberOf(name, A::eContentDispositionParamNameExtension));
                Put(m_creator.ContentDispositionTypeParam(nameMember, value, name));
            });
    }

    // Each parameter's name and value (decoded, never null), in order.
    template <typename OnParam>
    static void ForEachParam(GMimeParamList* params, OnParam&& onParam) {
        const int count = params != nullptr ? g_mime_param_list_length(params) : 0;
        for (int i = 0; i < count; ++i) {
            GMimeParam* param = g_mime_param_list_get_parameter_at(params, i);
            const char* name = g_mime_param_get_name(param);
            const char* value = g_mime_param_get_value(param);
            onParam(name != nullptr ? name : "", value != nullptr ? value : "");
        }
    }

    // The body travels decoded from its transfer encoding, in its own
    // charset; the encoding it was sent in travels beside it (and as the
    // Content-Transfer-Encoding when the part names one), so export encodes
    // it the same way again.
    void Body(GMimePart* part, bool ofMessage) {
        GMimeObject* object = GMIME_OBJECT(part);
        const GMimeContentEncoding encoding = g_mime_part_get_content_encoding(part);
        GMimeHeader* header = g_mime_header_list_get_header(g_mime_object_get_header_list(object),
                                                            "Content-Transfer-Encoding");
        unsigned int member = kTransferEncodings.MemberOf(
            g_mime_content_encoding_to_string(encoding), A::eContentTransferEncodingNone);
        if (header != nullptr && member == A::eContentTransferEncodingNone) {
            // An encoding without a member: uuencode is decoded and travels
            // as base64; one GMime does not know travels as sent.
            Lose("Content-Transfer-Encoding", g_mime_header_get_offset(header));
            if (encoding == GMIME_CONTENT_ENCODING_UUENCODE)
                member = A::eContentTransferEncodingBase64;
        }
        if (member != A::eContentTransferEncodingNone) {
            Put(m_creator.ContentTransferEncodingEnum(
                static_cast<A::eContentTransferEncoding>(member)));
        }
        const auto bodyEncoding = static_cast<A::eBodyEncoding>(
            member != A::eContentTransferEncodingNone ? member : A::eBodyEncoding7Bit);
        const char* charsetName = g_mime_object_get_content_type_parameter(object, "charset");
        A::eBodyCharset charset = A::eBodyCharsetUnknown;
        if (charsetName != nullptr) {
            charset = BodyCharsetOf(charsetName);
        } else if (g_mime_content_type_is_type(g_mime_object_get_content_type(object), "text",
                                               "*")) {
            charset = A::eBodyCharsetUsAscii;
        }
        // One buffer serves every body of the import: attachments are large,
        // and a fresh buffer for each costs its allocation and page faults.
        GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(m_decoded.get()));
        g_byte_array_set_size(bytes, 0);
        g_mime_stream_reset(m_decoded.get());
        GMimeDataWrapper* content = g_mime_part_get_content(part);
        if (content != nullptr) {
            // Sent as lines (7bit, 8bit, quoted-printable), a body's line
            // breaks are the text's, not content: GMime writes them as LF, and
            // so they travel; GMime also ends a message's own body with one.
            // base64 and binary bodies travel byte for byte.
            if (bodyEncoding != A::eBodyEncodingBase64 && bodyEncoding != A::eBodyEncodingBinary) {
                Ref<GMimeStream> filtered(g_mime_stream_filter_new(m_decoded.get()));
                Ref<GMimeFilter> unix(g_mime_filter_dos2unix_new(ofMessage));
                g_mime_stream_filter_add(GMIME_STREAM_FILTER(filtered.get()), unix.get());
                g_mime_data_wrapper_write_to_stream(content, filtered.get());
                g_mime_stream_flush(filtered.get());
            } else {
                g_mime_data_wrapper_write_to_stream(content, m_decoded.get());
            }
        }
        const unsigned int length = bytes->len;
        const std::string_view text(reinterpret_cast<const char*>(bytes->data), length);
        // Text in a charset no reader can decode travels as sent, and is said;
        // so does 8-bit text that names no charset (the item calls it unknown).
        std::string fault;
        if (g_mime_content_type_is_type(g_mime_object_get_content_type(object), "text", "*")) {
            if (charsetName != nullptr) {
                fault = Unreadable(charsetName, text, false);
            } else if (std::any_of(text.begin(), text.end(),
                                   [](char c) { return (c & 0x80) != 0; })) {
                fault = "8-bit text without a charset";
                charset = A::eBodyCharsetUnknown;
            }
        }
        if (!fault.empty()) {
            GMimeHeader* at = g_mime_header_list_get_header(g_mime_object_get_header_list(object),
                                                            "Content-Type");
            m_losses.Add("Body", m_lines.LineAt(at != nullptr ? g_mime_header_get_offset(at) : 0),
                         Loss::Kind::Converted, fault + ": kept as sent, undecoded");
        }
        Put(m_creator.Body(bodyEncoding, charset, bytes->data, length));
    }

    // GMime reads parts nested 1,024 levels deep, a message part counting
    // two (itself and its message); below, at least this many entities are
    // open.
    static constexpr unsigned int kGMimeDepth = 512;

    ImportResult m_result;
    struct FreeOptions {
        void operator()(GMimeParserOptions* options) const { g_mime_parser_options_free(options); }
    };
    std::unique_ptr<GMimeParserOptions, FreeOptions> m_options;
    const char* m_text = nullptr;  // the message being read
    std::size_t m_size = 0;
    unsigned int m_depth = 0;  // entities open
    LineCounter m_lines;
    PimShared::CTLVEmailCreator m_creator;
    LossCollector m_losses;
    bool m_ok = true;
    Ref<GMimeStream> m_decoded;  // made once GMime is set up
};

}  // namespace

ImportResult ImportEml(const char* text, std::size_t size) {
    return Importer().Eml(text, size);
}

ImportResult ImportMbox(const char* text, std::size_t size) {
    return Importer().Mbox(text, size);
}

}  // namespace PimBridge
