// E-mail streams to RFC 5322 text. CTLVEmailParser reads each item into a
// tree of entities; GMime builds a message of it and writes it: header
// folding and encoded words, address lists, multipart boundaries and
// transfer encodings are all GMime's.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bridges/common/ItemStreams.h"
#include "bridges/common/LossCollector.h"
#include "bridges/common/NotCarried.h"
#include "bridges/mime/MimeBridge.h"
#include "bridges/mime/private/GMime.h"
#include "bridges/mime/private/Mbox.h"
#include "bridges/mime/private/MimeTokens.h"
#include "pimshared/email/EmailDescription.h"

namespace PimBridge {

namespace {

using namespace Mime;

struct Mailbox {
    unsigned int field = 0;
    bool named = false;
    std::string name;
    std::string address;
};

// A mailbox, or a group with its members.
struct Address {
    bool group = false;
    std::string groupName;
    std::vector<Mailbox> members;
};

struct Param {
    std::string name;
    std::string value;
};

// What the item says about one message or MIME part. Texts are copied (the
// parser's texts live only during each call); body bytes are not: they are
// the input's own bytes, alive for the whole export.
struct Entity {
    Entity* parent = nullptr;
    std::vector<std::pair<const TextField*, std::string>> texts;
    std::vector<Address> addresses;
    const char* type = nullptr;
    const char* subtype = nullptr;
    std::string typeToken, subtypeToken;  // extension members' tokens
    std::vector<Param> params;
    const char* disposition = nullptr;
    std::string dispositionToken;
    std::vector<Param> dispositionParams;
    unsigned int transferEncoding = A::eContentTransferEncodingNone;
    bool hasBody = false;
    unsigned int bodyEncoding = A::eBodyEncoding7Bit;
    unsigned int bodyCharset = A::eBodyCharsetUsAscii;
    const void* content = nullptr;
    unsigned int length = 0;
    std::vector<std::unique_ptr<Entity>> children;
};

// A value GMime writes into a header as it is. A line break in it would end
// the field and start another of the stream's choosing; a blank takes its
// place.
std::string OneLine(const char* text) {
    std::string line = text != nullptr ? text : "";
    for (char& c : line) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    return line;
}

// A token of one of our members, or the extension member's own token.
const char* TokenOr(const TokenTable& table, unsigned int member, const char* token,
                    std::string& keep) {
    if (member != 1) return table.TokenOf(member);
    keep = OneLine(token);
    return keep.c_str();
}

// Device-side state (where the device keeps the message and what it did
// with it: AttachmentAvailable, CutoffState, ReadStatus, DownloadState,
// Folder, Instance, SendingState, OrigDateLocal, both Priority forms) has no
// place in a file: those operations, and any the e-mail gains, are left to
// the base, which reports them as not carried by their names.
class EntityReceiver : public TNotCarriedReceiver<PimShared::EmailItem> {
  public:
    using TNotCarriedReceiver::Body;

    EntityReceiver() : TNotCarriedReceiver(m_losses) {}

    std::unique_ptr<Entity> TakeRoot() { return std::move(m_root); }
    std::vector<Diagnostic> TakeDiagnostics() { return std::exchange(m_diagnostics, {}); }
    LossCollector& Losses() { return m_losses; }

    bool Begin(const unsigned int&) override {
        m_root = std::make_unique<Entity>();
        m_current = m_root.get();
        return true;
    }
    bool End() override { return true; }
    // Entities nest as deep as GMime reads them (1,024 parts); deeper ones,
    // which no reader would get back, go to a sink with all they hold. That
    // also bounds the depth of the builder's recursion whatever the stream.
    bool BeginEntity() override {
        if (m_current == nullptr) return true;
        if (m_skipped > 0 || m_depth == kMaxDepth) {
            if (m_skipped++ == 0) {
                m_losses.Add("Entity", 0, Loss::Kind::Limit,
                             "nested deeper than 1024 levels, with all it holds");
                m_resume = m_current;
                m_current = &m_sink;
            }
            return true;
        }
        m_current->children.push_back(std::make_unique<Entity>());
        m_current->children.back()->parent = m_current;
        m_current = m_current->children.back().get();
        ++m_depth;
        return true;
    }
    bool EndEntity() override {
        if (m_skipped > 0) {
            if (--m_skipped == 0) {
                m_current = m_resume;
                m_sink = Entity();
            }
        } else if (m_current != nullptr && m_current->parent != nullptr) {
            m_current = m_current->parent;
            --m_depth;
        }
        return true;
    }

    bool Comments(const char* t) override { return Text(&A::Comments, t); }
    bool ContentDescription(const char* t) override { return Text(&A::ContentDescription, t); }
    bool ContentId(const char* t) override { return Text(&A::ContentId, t); }
    bool InReplyTo(const char* t) override { return Text(&A::InReplyTo, t); }
    bool Keywords(const char* t) override { return Text(&A::Keywords, t); }
    bool MessageId(const char* t) override { return Text(&A::MessageId, t); }
    bool MimeVersion(const char* t) override { return Text(&A::MimeVersion, t); }
    bool OrigDate(const char* t) override { return Text(&A::OrigDate, t); }
    bool References(const char* t) override { return Text(&A::References, t); }
    bool Subject(const char* t) override { return Text(&A::Subject, t); }

    bool ContentTransferEncodingEnum(const eContentTransferEncoding& value) override {
        if (m_current == nullptr) return true;
        if (kTransferEncodings.TokenOf(value) == nullptr) return Lose("ContentTransferEncoding");
        m_current->transferEncoding = value;
        return true;
    }
    bool Body(const eBodyEncoding& encoding, const eBodyCharset& charset, const void* content,
              const unsigned int& length) override {
        if (m_current == nullptr) return true;
        m_current->hasBody = true;
        m_current->bodyEncoding = encoding;
        m_current->bodyCharset = charset;
        m_current->content = content;
        m_current->length = length;
        return true;
    }
    // MIME has no body that is only a link to content kept elsewhere.
    bool Body(const eBodyEncoding&, const eBodyCharset&, const char*) override {
        return Lose("Body content link");
    }
    bool Body(const char*, const char*, const char*) override { return Lose("Body content link"); }

    bool ContentType(const eContentType& type, const char* token) override {
        if (m_current == nullptr) return true;
        m_current->type = TokenOr(kContentTypes, type, token, m_current->typeToken);
        return m_current->type != nullptr || Lose("ContentType");
    }
    bool ContentSubtype(const eContentSubtype& subtype, const char* token) override {
        if (m_current == nullptr) return true;
        m_current->subtype = TokenOr(kContentSubtypes, subtype, token, m_current->subtypeToken);
        return m_current->subtype != nullptr || Lose("ContentSubtype");
    }
    bool ContentDispositionType(const eContentDispositionType& type, const char* token) override {
        if (m_current == nullptr) return true;
        m_current->disposition =
            TokenOr(kDispositionTypes, type, token, m_current->dispositionToken);
        return m_current->disposition != nullptr || Lose("ContentDispositionType");
    }
    bool ContentTypeParam(const eContentParamName& name, const eContentParamValue& value,
                          const char* nameToken, const char* valueToken) override {
        if (m_current == nullptr) return true;
        const char* n = name == 1 ? nameToken : kContentParamNames.TokenOf(name);
        const char* v = value == 1 ? valueToken : ContentParamValueToken(value);
        if (n == nullptr || v == nullptr) return Lose("ContentTypeParam");
        m_current->params.push_back(Param{OneLine(n), OneLine(v)});
        return true;
    }
    bool ContentDispositionTypeParam(const eContentDispositionParamName& name, const char* value,
                                     const char* nameToken) override {
        if (m_current == nullptr) return true;
        const char* n = name == 1 ? nameToken : kDispositionParams.TokenOf(name);
        if (n == nullptr) return Lose("ContentDispositionTypeParam");
        m_current->dispositionParams.push_back(Param{OneLine(n), OneLine(value)});
        return true;
    }
    bool Mailbox(const eMailboxFieldType& field, const char* name, const char* address) override {
        if (m_current == nullptr) return true;
        Address a;
        a.members.push_back(Copy(field, name, address));
        m_current->addresses.push_back(std::move(a));
        return true;
    }
    bool Group(const char* name, const PAL::TVector<tMailbox>& mailboxes) override {
        if (m_current == nullptr) return true;
        Address a;
        a.group = true;
        a.groupName = name != nullptr ? name : "";
        for (unsigned int i = 0; i < mailboxes.size(); ++i) {
            const tMailbox* m = mailboxes.at(i);
            a.members.push_back(Copy(m->fieldType, m->displayName, m->address));
        }
        m_current->addresses.push_back(std::move(a));
        return true;
    }

    bool TraceMessage(const int& code, const char* text) override {
        m_diagnostics.push_back(Diagnostic{code, text != nullptr ? text : ""});
        return true;
    }

  private:
    bool Lose(const char* name) {
        m_losses.Add(name, 0);
        return true;
    }
    bool Text(bool (A::*op)(const char*), const char* text) {
        if (m_current == nullptr) return true;
        const TextField* field = TextFieldOf(op);
        m_current->texts.emplace_back(
            field, field->unstructured ? std::string(text ? text : "") : OneLine(text));
        return true;
    }
    static ::PimBridge::Mailbox Copy(unsigned int field, const char* name, const char* address) {
        ::PimBridge::Mailbox m;
        m.field = field;
        m.named = name != nullptr;
        m.name = name != nullptr ? name : "";
        m.address = OneLine(address);
        return m;
    }

    static constexpr unsigned int kMaxDepth = 1024;

    std::unique_ptr<Entity> m_root;
    Entity* m_current = nullptr;
    unsigned int m_depth = 0;
    unsigned int m_skipped = 0;  // entities open in the sink
    Entity m_sink;
    Entity* m_resume = nullptr;
    std::vector<Diagnostic> m_diagnostics;
    LossCollector m_losses;
};

// Builds GMime's objects of an entity tree.
class Builder {
  public:
    explicit Builder(LossCollector& losses) : m_losses(losses) {}

    Ref<GMimeMessage> Message(const Entity& e) {
        Ref<GMimeMessage> message(g_mime_message_new(FALSE));
        // A message re-encodes an address field each time its list changes:
        // the addresses are gathered apart and handed over once per field,
        // or a message with many would take time quadratic in them.
        Ref<InternetAddressList> lists[std::size(kAddressFields)];
        for (auto& list : lists) list.reset(internet_address_list_new());
        for (const Address& a : e.addresses) AddAddress(lists, a);
        for (std::size_t i = 0; i < std::size(kAddressFields); ++i) {
            if (internet_address_list_length(lists[i].get()) > 0)
                internet_address_list_append(
                    g_mime_message_get_addresses(message.get(), kAddressFields[i].type),
                    lists[i].get());
        }
        for (const auto& text : e.texts) {
            if (!text.first->content)
                g_mime_object_append_header(GMIME_OBJECT(message.get()), text.first->header,
                                            text.second.c_str(), nullptr);
        }
        Ref<GMimeObject> part = Content(e, true);
        g_mime_message_set_mime_part(message.get(), part.get());
        return message;
    }

  private:
    void AddAddress(Ref<InternetAddressList>* lists, const Address& a) {
        const AddressField* field =
            a.members.empty() ? nullptr : AddressFieldOf(a.members.front().field);
        if (field == nullptr) {
            m_losses.Add(a.group ? "Group" : "Mailbox", 0);
            return;
        }
        InternetAddressList* list = lists[field - kAddressFields].get();
        if (!a.group) {
            const Mailbox& m = a.members.front();
            Ref<InternetAddress> mailbox(internet_address_mailbox_new(
                m.named ? m.name.c_str() : nullptr, m.address.c_str()));
            internet_address_list_add(list, mailbox.get());
            return;
        }
        Ref<InternetAddress> group(internet_address_group_new(a.groupName.c_str()));
        for (const Mailbox& m : a.members) {
            // The member with neither name nor address keeps an empty group's field.
            if (m.name.empty() && m.address.empty()) continue;
            Ref<InternetAddress> mailbox(internet_address_mailbox_new(
                m.named ? m.name.c_str() : nullptr, m.address.c_str()));
            internet_address_group_add_member(INTERNET_ADDRESS_GROUP(group.get()), mailbox.get());
        }
        internet_address_list_add(list, group.get());
    }

    Ref<GMimeObject> Content(const Entity& e, bool ofMessage) {
        const bool nested = !e.children.empty();
        Ref<GMimeContentType> type(g_mime_content_type_new(
            e.type != nullptr ? e.type : (nested ? "multipart" : "text"),
            e.subtype != nullptr ? e.subtype : (nested ? "mixed" : "plain")));
        for (const Param& p : Bounded(e.params, "ContentTypeParam"))
            g_mime_content_type_set_parameter(type.get(), p.name.c_str(), p.value.c_str());
        // A charset told only beside the body becomes the parameter that says it.
        const char* charset = BodyCharsetToken(e.bodyCharset);
        if (e.hasBody && charset != nullptr && e.bodyCharset != A::eBodyCharsetUsAscii &&
            g_mime_content_type_is_type(type.get(), "text", "*") &&
            g_mime_content_type_get_parameter(type.get(), "charset") == nullptr)
            g_mime_content_type_set_parameter(type.get(), "charset", charset);
        Ref<GMimeObject> object(g_mime_object_new(nullptr, type.get()));
        if (e.hasBody && !nested &&
            (GMIME_IS_MULTIPART(object.get()) || GMIME_IS_MESSAGE_PART(object.get()))) {
            // A multipart or message kept as one body (import keeps what is
            // nested deeper than GMime reads that way) is written as it came:
            // its body is its parts' text.
            object.reset(GMIME_OBJECT(g_object_new(GMIME_TYPE_PART, nullptr)));
            g_mime_object_set_content_type(object.get(), type.get());
        }
        if (e.disposition != nullptr) {
            Ref<GMimeContentDisposition> disposition(g_mime_content_disposition_new());
            g_mime_content_disposition_set_disposition(disposition.get(), e.disposition);
            for (const Param& p : Bounded(e.dispositionParams, "ContentDispositionTypeParam"))
                g_mime_content_disposition_set_parameter(disposition.get(), p.name.c_str(),
                                                         p.value.c_str());
            g_mime_object_set_content_disposition(object.get(), disposition.get());
        }
        for (const auto& text : e.texts) {
            if (text.first->content || !ofMessage)
                g_mime_object_append_header(object.get(), text.first->header, text.second.c_str(),
                                            nullptr);
        }
        if (!ofMessage) {
            for (const Address& a : e.addresses) {
                const AddressField* f =
                    a.members.empty() ? nullptr : AddressFieldOf(a.members.front().field);
                m_losses.Add(f != nullptr ? f->header : "Mailbox", 0);
            }
        }
        if (GMIME_IS_MULTIPART(object.get())) {
            for (const auto& child : e.children) {
                Ref<GMimeObject> part = Content(*child, false);
                g_mime_multipart_add(GMIME_MULTIPART(object.get()), part.get());
            }
            if (e.hasBody) m_losses.Add("Body of a multipart", 0);
        } else if (GMIME_IS_MESSAGE_PART(object.get())) {
            if (nested) {
                Ref<GMimeMessage> inner = Message(*e.children.front());
                g_mime_message_part_set_message(GMIME_MESSAGE_PART(object.get()), inner.get());
            }
            if (e.children.size() > 1) m_losses.Add("Entity beside a message", 0);
            if (e.hasBody) m_losses.Add("Body of a message part", 0);
        } else if (GMIME_IS_PART(object.get())) {
            Part(GMIME_PART(object.get()), e);
        }
        return object;
    }

    void Part(GMimePart* part, const Entity& e) {
        // The encoding the part was sent in; a body told to travel in one
        // without the field naming it is written in that one.
        unsigned int encoding = e.transferEncoding;
        if (encoding == A::eContentTransferEncodingNone && e.hasBody &&
            e.bodyEncoding != A::eBodyEncoding7Bit)
            encoding = e.bodyEncoding;
        const char* token = kTransferEncodings.TokenOf(encoding);
        if (token != nullptr)
            g_mime_part_set_content_encoding(part, g_mime_content_encoding_from_string(token));
        if (e.hasBody) {
            Ref<GMimeStream> stream = MemoryStream(e.content, e.length);
            Ref<GMimeDataWrapper> content(
                g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
            g_mime_part_set_content(part, content.get());
        }
        if (!e.children.empty()) m_losses.Add("Entity inside a single part", 0);
    }

    // The parameters GMime is given. It looks each one up by name as it is
    // set, so their number is bounded; and it splits a long value into
    // continuations whose room shrinks with the name's length, so that a
    // name near a line's width makes it write without end. Real names are
    // short MIME tokens; others are left out and said.
    const std::vector<Param>& Bounded(const std::vector<Param>& params, const char* what) {
        bool fits = params.size() <= kMaxParams;
        for (std::size_t i = 0; fits && i < params.size(); ++i) fits = IsParamName(params[i].name);
        if (fits) return params;
        m_kept.clear();
        for (const Param& p : params) {
            if (!IsParamName(p.name)) {
                m_losses.Add(std::string(what) + " name", 0, Loss::Kind::Limit,
                             "a name that is no MIME token of at most " +
                                 std::to_string(kMaxParamName) + " bytes");
            } else if (m_kept.size() == kMaxParams) {
                m_losses.Add(what, 0, Loss::Kind::Limit,
                             "more than " + std::to_string(kMaxParams) + " parameters in a field");
            } else {
                m_kept.push_back(p);
            }
        }
        return m_kept;
    }

    static bool IsParamName(const std::string& name) {
        if (name.empty() || name.size() > kMaxParamName) return false;
        for (char c : name) {
            if (c <= ' ' || c >= 127 || std::strchr("()<>@,;:\\\"/[]?=", c) != nullptr)
                return false;
        }
        return true;
    }

    static constexpr std::size_t kMaxParams = 512;
    static constexpr std::size_t kMaxParamName = 40;

    LossCollector& m_losses;
    std::vector<Param> m_kept;
};

// The mbox separator line: "From", the sender and the date in the fixed
// form of asctime.
std::string MboxFromLine(GMimeMessage* message) {
    std::string sender = "MAILER-DAEMON";
    InternetAddressList* from = g_mime_message_get_from(message);
    for (int i = 0; from != nullptr && i < internet_address_list_length(from); ++i) {
        InternetAddress* a = internet_address_list_get_address(from, i);
        if (INTERNET_ADDRESS_IS_MAILBOX(a)) {
            const char* addr = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(a));
            if (addr != nullptr && *addr != '\0' && std::strpbrk(addr, " \t\r\n") == nullptr)
                sender = addr;
            break;
        }
    }
    std::string date = "Thu Jan  1 00:00:00 1970";
    GDateTime* when = g_mime_message_get_date(message);
    if (when != nullptr) {
        GText text(g_date_time_format(when, "%a %b %e %H:%M:%S %Y"));
        if (text) date = text.get();
    }
    return "From " + sender + " " + date + "\n";
}

void Write(GMimeMessage* message, bool mbox, GMimeStream* out, std::string& text) {
    if (!mbox) {
        g_mime_object_write_to_stream(GMIME_OBJECT(message), nullptr, out);
        return;
    }
    const std::string from = MboxFromLine(message);
    g_mime_stream_write(out, from.data(), from.size());
    const std::size_t start = text.size();
    g_mime_object_write_to_stream(GMIME_OBJECT(message), nullptr, out);
    QuoteFromLines(text, start);
    // An empty line after each message: the reader takes it for the
    // container's, so the message keeps its own end.
    text += text.back() == '\n' ? "\n" : "\n\n";
    g_mime_stream_seek(out, 0, GMIME_STREAM_SEEK_END);  // the stream learns the new length
}

ExportResult Export(const std::uint8_t* data, std::size_t size, bool mbox) {
    EnsureGMime();
    ExportResult result;
    std::vector<ItemSpan> spans;
    std::string why;
    if (!ForEachItem(
            data, size, [&spans](const ItemSpan& s) { return spans.push_back(s), true; }, why)) {
        result.error = why;
        return result;
    }
    for (const ItemSpan& s : spans) {
        if (KindOf(s) != ItemKind::Email) {
            result.error = "the item at offset " + std::to_string(s.offset) + " is no e-mail";
            return result;
        }
    }
    if (!mbox && spans.size() > 1) {
        result.error = std::to_string(spans.size()) +
                       " e-mails: an .eml file holds one message (write an mbox for several)";
        return result;
    }
    // GMime writes into the text handed out, with room for it at once:
    // bodies grow by a third in base64.
    result.text.reserve(std::min<std::size_t>(size + size / 2 + 4096, 1u << 30));
    Ref<GMimeStream> out = StringStream(result.text);
    for (const ItemSpan& s : spans) {
        EntityReceiver receiver;
        PimShared::CTLVEmailParser parser(receiver);
        const char* error = nullptr;
        unsigned int consumed = 0;
        ExportedItem item;
        item.kind = "email";
        item.offset = s.offset;
        item.malformed =
            !parser.Parse(data + s.offset, static_cast<unsigned int>(s.size), error, consumed);
        item.diagnostics = receiver.TakeDiagnostics();
        const std::unique_ptr<Entity> root = receiver.TakeRoot();
        if (root != nullptr) {
            Ref<GMimeMessage> message = Builder(receiver.Losses()).Message(*root);
            Write(message.get(), mbox, out.get(), result.text);
        }
        item.losses = receiver.Losses().Take();
        result.items.push_back(std::move(item));
    }
    result.ok = true;
    return result;
}

}  // namespace

ExportResult ExportEml(const std::uint8_t* data, std::size_t size) {
    return Export(data, size, false);
}

ExportResult ExportMbox(const std::uint8_t* data, std::size_t size) {
    return Export(data, size, true);
}

}  // namespace PimBridge
