// mime-compare A B [--mbox]: whether two files hold the same e-mails as GMime
// reads them: the same MIME tree, the same values of the header fields an
// e-mail item carries, the same decoded content in every part. Header values
// are compared with their runs of blanks made one (folding may differ), type,
// parameter and disposition names in lower case, charset and format values
// too. Exit 0 when equal; 1 with the first difference on stdout; 2 on bad use.
//
// tools/corpus-check.sh runs it on every e-mail file and its export.
#include <gmime/gmime.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

const char* const kAddressHeaders[] = {"From", "Sender", "Reply-To", "To", "Cc", "Bcc"};
const GMimeAddressType kAddressTypes[] = {GMIME_ADDRESS_TYPE_FROM,     GMIME_ADDRESS_TYPE_SENDER,
                                          GMIME_ADDRESS_TYPE_REPLY_TO, GMIME_ADDRESS_TYPE_TO,
                                          GMIME_ADDRESS_TYPE_CC,       GMIME_ADDRESS_TYPE_BCC};
const char* const kTextHeaders[] = {"Subject",     "Date",       "Message-ID",
                                    "In-Reply-To", "References", "Keywords",
                                    "Comments",    "Content-ID", "Content-Description"};

std::string Squeezed(const char* text) {
    std::string out;
    bool blank = true;  // drops leading blanks
    for (const char* p = text != nullptr ? text : ""; *p != '\0'; ++p) {
        if (g_ascii_isspace(*p)) {
            blank = true;
            continue;
        }
        if (blank && !out.empty()) out += ' ';
        blank = false;
        out += *p;
    }
    return out;
}

std::string Lower(const char* text) {
    std::string out = text != nullptr ? text : "";
    for (char& c : out) c = g_ascii_tolower(c);
    return out;
}

void Params(GMimeParamList* params, std::ostream& out) {
    for (int i = 0; params != nullptr && i < g_mime_param_list_length(params); ++i) {
        GMimeParam* p = g_mime_param_list_get_parameter_at(params, i);
        const std::string name = Lower(g_mime_param_get_name(p));
        const char* value = g_mime_param_get_value(p);
        out << "; " << name << '='
            << (name == "charset" || name == "format" ? Lower(value) : Squeezed(value));
    }
}

void Texts(GMimeObject* object, std::ostream& out, const std::string& indent) {
    GMimeHeaderList* headers = g_mime_object_get_header_list(object);
    for (int i = 0; i < g_mime_header_list_get_count(headers); ++i) {
        GMimeHeader* h = g_mime_header_list_get_header_at(headers, i);
        for (const char* name : kTextHeaders) {
            if (g_ascii_strcasecmp(name, g_mime_header_get_name(h)) == 0)
                out << indent << name << ": " << Squeezed(g_mime_header_get_value(h)) << '\n';
        }
    }
}

void Content(GMimeObject* object, std::ostream& out, const std::string& indent);

void Message(GMimeMessage* message, std::ostream& out, const std::string& indent) {
    for (int i = 0; i < 6; ++i) {
        InternetAddressList* list = g_mime_message_get_addresses(message, kAddressTypes[i]);
        if (list == nullptr || internet_address_list_length(list) == 0) continue;
        char* text = internet_address_list_to_string(list, nullptr, FALSE);
        out << indent << kAddressHeaders[i] << ": " << Squeezed(text) << '\n';
        g_free(text);
    }
    Texts(GMIME_OBJECT(message), out, indent);
    // GMime writes "MIME-Version: 1.0" where a message has none.
    const char* version = g_mime_object_get_header(GMIME_OBJECT(message), "MIME-Version");
    out << indent << "MIME-Version: " << (version != nullptr ? Squeezed(version) : "1.0") << '\n';
    GMimeObject* part = g_mime_message_get_mime_part(message);
    if (part != nullptr) Content(part, out, indent);
}

void Content(GMimeObject* object, std::ostream& out, const std::string& indent) {
    GMimeContentType* type = g_mime_object_get_content_type(object);
    out << indent << "type " << Lower(g_mime_content_type_get_media_type(type)) << '/'
        << Lower(g_mime_content_type_get_media_subtype(type));
    Params(g_mime_content_type_get_parameters(type), out);
    out << '\n';
    GMimeContentDisposition* disposition = g_mime_object_get_content_disposition(object);
    if (disposition != nullptr) {
        out << indent << "disposition "
            << Lower(g_mime_content_disposition_get_disposition(disposition));
        Params(g_mime_content_disposition_get_parameters(disposition), out);
        out << '\n';
    }
    Texts(object, out, indent);
    if (GMIME_IS_MULTIPART(object)) {
        const int count = g_mime_multipart_get_count(GMIME_MULTIPART(object));
        out << indent << count << " parts\n";
        for (int i = 0; i < count; ++i)
            Content(g_mime_multipart_get_part(GMIME_MULTIPART(object), i), out, indent + "  ");
    } else if (GMIME_IS_MESSAGE_PART(object)) {
        GMimeMessage* inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
        out << indent << (inner != nullptr ? "message\n" : "no message\n");
        if (inner != nullptr) Message(inner, out, indent + "  ");
    } else if (GMIME_IS_PART(object)) {
        // Line breaks of a body sent as lines are compared as LF, the form
        // GMime writes them in, and those at its end are no difference (GMime
        // ends a message's body with one; a boundary's CRLF may leave a CR).
        const GMimeContentEncoding e = g_mime_part_get_content_encoding(GMIME_PART(object));
        const bool lines = e != GMIME_CONTENT_ENCODING_BASE64 &&
                           e != GMIME_CONTENT_ENCODING_BINARY &&
                           e != GMIME_CONTENT_ENCODING_UUENCODE;
        GMimeStream* bytes = g_mime_stream_mem_new();
        GMimeDataWrapper* content = g_mime_part_get_content(GMIME_PART(object));
        if (content != nullptr) {
            GMimeStream* filtered = g_mime_stream_filter_new(bytes);
            if (lines) {
                GMimeFilter* unix = g_mime_filter_dos2unix_new(FALSE);
                g_mime_stream_filter_add(GMIME_STREAM_FILTER(filtered), unix);
                g_object_unref(unix);
            }
            g_mime_data_wrapper_write_to_stream(content, filtered);
            g_mime_stream_flush(filtered);
            g_object_unref(filtered);
        }
        GByteArray* array = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(bytes));
        guint length = array->len;
        while (lines && length > 0 &&
               (array->data[length - 1] == '\r' || array->data[length - 1] == '\n'))
            --length;
        std::uint64_t hash = 14695981039346656037ull;  // FNV-1a
        for (guint i = 0; i < length; ++i) hash = (hash ^ array->data[i]) * 1099511628211ull;
        out << indent << "content " << length << " bytes, hash " << std::hex << hash << std::dec
            << '\n';
        g_object_unref(bytes);
    }
}

// Each message of the file, written out as the lines compared.
std::vector<std::string> Messages(const std::string& path, bool mbox) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot open " + path);
    std::stringstream buffer;
    buffer << in.rdbuf();
    const std::string text = buffer.str();
    GMimeStream* stream = g_mime_stream_mem_new_with_buffer(text.data(), text.size());
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    g_mime_parser_set_format(parser, mbox ? GMIME_FORMAT_MBOX : GMIME_FORMAT_MESSAGE);
    std::vector<std::string> messages;
    do {
        GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr);
        if (message == nullptr) break;
        std::ostringstream out;
        Message(message, out, "");
        messages.push_back(out.str());
        g_object_unref(message);
    } while (mbox && !g_mime_parser_eos(parser));
    g_object_unref(parser);
    g_object_unref(stream);
    return messages;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> paths;
    bool mbox = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--mbox") == 0)
            mbox = true;
        else
            paths.emplace_back(argv[i]);
    }
    if (paths.size() != 2) {
        std::cerr << "usage: mime-compare A B [--mbox]\n";
        return 2;
    }
    g_mime_init();
    try {
        const std::vector<std::string> a = Messages(paths[0], mbox);
        const std::vector<std::string> b = Messages(paths[1], mbox);
        if (a.size() != b.size()) {
            std::cout << a.size() << " messages against " << b.size() << '\n';
            return 1;
        }
        for (std::size_t m = 0; m < a.size(); ++m) {
            std::istringstream la(a[m]), lb(b[m]);
            std::string x, y;
            while (true) {
                const bool gx = static_cast<bool>(std::getline(la, x));
                const bool gy = static_cast<bool>(std::getline(lb, y));
                if (!gx && !gy) break;
                if (!gx || !gy || x != y) {
                    std::cout << "message " << m + 1 << ": '" << (gx ? x : "(end)") << "' against '"
                              << (gy ? y : "(end)") << "'\n";
                    return 1;
                }
            }
        }
    } catch (const std::exception& e) {
        std::cerr << "mime-compare: " << e.what() << '\n';
        return 2;
    }
    return 0;
}
