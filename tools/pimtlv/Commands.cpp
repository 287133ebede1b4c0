#include "Commands.h"

#include <memory>
#include <ostream>
#include <string_view>

#include "Input.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"

namespace pimtlv_tool {

namespace {

// The bytes a command works on: the input as it is, or decoded from hex.
class Stream {
  public:
    explicit Stream(const Options& options) : m_input(options.input) {
        if (options.hex) m_hex = DecodeHex(m_input.Text());
        m_view = options.hex ? ByteView(m_hex) : m_input.View();
    }
    ByteView View() const { return m_view; }

  private:
    InputBytes m_input;
    Bytes m_hex;
    ByteView m_view;
};

const Kind& NamedKind(const std::string& name) {
    const Kind* kind = FindKind(name);
    if (kind == nullptr) {
        throw UsageError("unknown item '" + name + "' (expected one of " + KindNames() + ")");
    }
    return *kind;
}

// --item; empty: none forced (unlike a document's or ops' item, where an
// empty name is just an unknown one).
const Kind* ForcedKind(const Options& options) {
    if (options.item.empty()) return nullptr;
    return &NamedKind(options.item);
}

const ItemAdapter* AdapterFor(const Kind& kind) {
    const ItemAdapter* adapter = FindAdapter(kind.name);
    if (adapter == nullptr) {
        throw UsageError(std::string("the ") + kind.title + " item ('" + kind.name +
                         "') is not available in this build");
    }
    return adapter;
}

// One item of a file: a root node cut from the file, or, where the file
// cannot be cut, the rest of it.
struct ItemPlace {
    std::size_t index = 0;  // from 0
    std::size_t offset = 0;
    std::size_t size = 0;
    bool cut = true;
    std::string why;  // why the rest could not be cut
};

// The items of a file in order, as onItem(const ItemPlace&) takes them; it
// answers false to stop. A file of one item is the stream of that item.
template <typename OnItem>
void ForEachItemOf(ByteView data, OnItem&& onItem) {
    ItemPlace place;
    for (std::size_t pos = 0; pos < data.size; ++place.index) {
        PimBridge::ItemSpan span;
        place.offset = pos;
        place.cut = PimBridge::ReadItemSpan(data.data, data.size, pos, span, &place.why);
        place.size = place.cut ? span.size : data.size - pos;
        if (!onItem(static_cast<const ItemPlace&>(place)) || !place.cut) return;
        pos += span.size;
    }
}

// Whether the file is exactly one item (or one that cannot be cut), which
// the commands show as today's single stream rather than as a list.
bool SingleItem(ByteView data) {
    PimBridge::ItemSpan span;
    return data.size > 0 && (!PimBridge::ReadItemSpan(data.data, data.size, 0, span, nullptr) ||
                             span.size == data.size);
}

std::string ItemName(const ItemPlace& place) {
    return "item " + std::to_string(place.index + 1) + " at offset " + std::to_string(place.offset);
}

// Tells a person where the item's stream breaks.
void ReportFault(const Fault& fault, std::ostream& err) {
    err << "error: malformed stream at offset " << fault.offset << ": " << fault.reason << '\n';
}

// The kind of an item: forced by --item, else told by its frame. Null for a
// rest that could not be cut and cannot be told (it is reported as
// malformed); throws UsageError for an item whose kind is unknown.
const Kind* ItemKind(const Options& options, ByteView data, const ItemPlace& place) {
    if (const Kind* forced = ForcedKind(options)) return forced;
    const StreamFrame frame = ReadFrame(data.Sub(place.offset, place.size));
    if (const Kind* kind = DetectKind(frame)) return kind;
    if (!place.cut) return nullptr;
    std::string seen = "no root node";
    if (frame.hasRoot) {
        seen = "root node " + std::to_string(frame.root) +
               (frame.hasComponent ? ", first inner node " + std::to_string(frame.component)
                                   : ", no inner node");
    }
    throw UsageError("cannot tell the item" +
                     (place.offset > 0 ? " at offset " + std::to_string(place.offset) : "") +
                     " from the stream (" + seen + "); name it with --item");
}

// Says why an item did not parse, or could not be cut from the file.
void ReportItemFailure(ByteView data, const ItemPlace& place, const Kind* kind, const ParseRun* run,
                       std::ostream& err) {
    const Fault fault = WalkStream(data, nullptr, place.offset, place.offset + place.size);
    if (fault.present) {
        ReportFault(fault, err);
    } else if (!place.cut) {
        err << "error: malformed stream at offset " << place.offset << ": " << place.why << '\n';
    } else if (run != nullptr) {
        err << "error: the " << kind->title << " parser stopped at offset "
            << place.offset + run->consumed << '\n';
    }
}

// Runs the parser of every item in turn, with listener hearing each parse
// and calls (null: only counted) receiving its calls' JSON. begin(place,
// kind) comes before an item's parse, end(place, kind, recorder, run) after
// it. Stops at the first item that does not parse; returns false then.
template <typename Begin, typename End>
bool ParseItems(const Options& options, ByteView data, ParseListener& listener, TextOut* calls,
                Begin&& begin, End&& end, std::ostream& err) {
    Progress progress(data.size);
    bool ok = true;
    ForEachItemOf(data, [&](const ItemPlace& place) {
        progress.At(place.offset);
        const Kind* kind = ItemKind(options, data, place);
        if (kind == nullptr) {
            ReportItemFailure(data, place, kind, nullptr, err);
            ok = false;
            return false;
        }
        const ItemAdapter* adapter = AdapterFor(*kind);
        begin(place, *kind);
        Recorder recorder(adapter->ops, listener, calls);
        const ParseRun run = adapter->decode(data.Sub(place.offset, place.size), recorder);
        end(place, *kind, recorder, run);
        if (!run.ok || !place.cut) {
            ReportItemFailure(data, place, kind, &run, err);
            ok = false;
        }
        return ok;
    });
    return ok;
}

// Runs parse (which reads text as JSON), turning the JSON library's errors
// into one line that says where.
template <typename Parse>
void WithJsonErrors(std::string_view text, Parse&& parse) {
    try {
        parse();
    } catch (const nlohmann::json::parse_error& e) {
        std::size_t line = 0, column = 0;
        const std::size_t at = e.byte > 0 ? e.byte - 1 : 0;
        LineAndColumn(text, at, line, column);
        std::string detail = e.what();
        const std::size_t colon = detail.find(": ");
        if (colon != std::string::npos) detail = detail.substr(colon + 2);
        throw UsageError("bad JSON at line " + std::to_string(line) + ", column " +
                         std::to_string(column) + ": " + detail);
    } catch (const nlohmann::json::exception& e) {
        // A number too large for any type: the reader names it, not its place.
        std::string detail = e.what();
        const std::size_t bracket = detail.find("] ");
        if (bracket != std::string::npos) detail = detail.substr(bracket + 2);
        throw UsageError("bad JSON: " + detail);
    }
}

}  // namespace

int Dump(const Options& options, std::ostream& out, std::ostream& err) {
    const Stream stream(options);
    const ByteView data = stream.View();
    const ItemAdapter* forced = nullptr;
    if (const Kind* kind = ForcedKind(options)) forced = FindAdapter(kind->name);
    // Names come from the item each root node starts, so a file of several
    // kinds of items reads right throughout.
    class Sink : public ElementSink {
      public:
        Sink(ByteView d, const ItemAdapter* f, bool color, std::ostream& o)
            : m_data(d), m_forced(f), m_item(f), m_color(color), m_out(o), m_progress(d.size) {}
        void OnElement(const Element& e) override {
            const bool node = e.header.elementClass == ParserCreatorCollection::Node;
            if (node && e.depth == 0 && m_forced == nullptr) {
                const Kind* kind =
                    DetectKind(ReadFrame(m_data.Sub(e.offset, m_data.size - e.offset)));
                m_item = kind != nullptr ? FindAdapter(kind->name) : nullptr;
            }
            m_line =
                DumpLine(e, NameOf(m_item, node, e.parentId, e.header.typeId, e.depth), m_color);
            m_line += '\n';
            m_out.write(m_line.data(), static_cast<std::streamsize>(m_line.size()));
            m_progress.At(e.offset);
        }

      private:
        ByteView m_data;
        const ItemAdapter* m_forced;
        const ItemAdapter* m_item;
        bool m_color;
        std::ostream& m_out;
        Progress m_progress;
        std::string m_line;
    } sink(data, forced, options.color, out);
    const Fault fault = WalkStream(data, &sink);
    out.flush();
    if (!fault.present) return 0;
    ReportFault(fault, err);
    return kExitProblem;
}

int Decode(const Options& options, std::ostream& out, std::ostream& err) {
    const Stream stream(options);
    return DecodeStream(options, stream.View(), out, err);
}

namespace {

// Writes each item's decode document as its parse goes: the calls straight
// out, the diagnostics (which the document lists after them) kept aside.
class DecodeWriter : public ParseListener {
  public:
    DecodeWriter(TextOut& out, bool trace) : m_out(out), m_trace(trace) {}

    void OnCall(std::size_t index, const char*) override {
        m_out.Text() += index == 0 ? "[\n    " : ",\n    ";
    }
    void OnDiagnostic(int code, const char* text, std::size_t call) override {
        if (!m_trace && code == 0) return;
        m_line = m_diagnostics++ == 0 ? "    " : ",\n    ";
        m_line += "{\"code\":" + std::to_string(code) + ",\"text\":";
        AppendJsonText(m_line, text == nullptr ? "" : text);
        m_line += ",\"call\":" + std::to_string(call) + "}";
        m_kept.Append(m_line);
    }

    void Begin(const Kind& kind) {
        m_out.Text() += "{\n  \"item\": \"";
        m_out.Text() += kind.name;
        m_out.Text() += "\",\n  \"calls\": ";
    }
    void End(const Recorder& recorder, const ParseRun& run) {
        std::string& text = m_out.Text();
        text += recorder.Calls() == 0 ? "[]" : "\n  ]";
        text += ",\n  \"diagnostics\": ";
        if (m_diagnostics == 0) {
            text += "[]";
        } else {
            text += "[\n";
            m_kept.Drain([this](std::string_view piece) {
                m_out.Text().append(piece);
                m_out.Drain();
            });
            m_out.Text() += "\n  ]";
        }
        m_out.Text() += ",\n  \"result\": {\"ok\":" + std::string(run.ok ? "true" : "false") +
                        ",\"consumed\":" + std::to_string(run.consumed) + "}\n}";
        m_diagnostics = 0;
    }

  private:
    TextOut& m_out;
    bool m_trace;
    Spill m_kept;
    std::size_t m_diagnostics = 0;
    std::string m_line;
};

}  // namespace

int DecodeStream(const Options& options, ByteView data, std::ostream& out, std::ostream& err) {
    ForcedKind(options);  // an unknown --item is refused even when there are no items
    // One item: its document. Several (or none): a JSON array of them.
    const bool single = SingleItem(data);
    TextOut text(out);
    DecodeWriter writer(text, options.trace);
    if (!single) text.Text() += "[";
    const bool ok = ParseItems(
        options, data, writer, &text,
        [&](const ItemPlace& place, const Kind& kind) {
            if (!single) text.Text() += place.index == 0 ? "\n" : ",\n";
            writer.Begin(kind);
        },
        [&](const ItemPlace&, const Kind&, const Recorder& recorder, const ParseRun& run) {
            writer.End(recorder, run);
            text.Flush();
        },
        err);
    text.Text() += single || data.size == 0 ? "\n" : "\n]\n";
    if (!single && data.size == 0) text.Text() = "[]\n";
    text.Flush();
    out.flush();
    return ok ? 0 : kExitProblem;
}

namespace {

// Prints each diagnostic of check as soon as the call after it is known.
class CheckWriter : public ParseListener {
  public:
    explicit CheckWriter(std::ostream& out) : m_out(out) {}

    void OnCall(std::size_t index, const char* op) override {
        if (m_pending) Flush(" (before call " + std::to_string(index) + ", " + op + ")");
    }
    void OnDiagnostic(int code, const char* text, std::size_t) override {
        if (code == 0) return;  // the calendar parsers' trace lines
        ++m_diagnostics;
        m_pending = true;
        // Kept as "code N", zero, ": text\n", zero: the part between them
        // waits for the next call.
        m_line = "code " + std::to_string(code);
        m_line += '\0';
        m_line += ": ";
        m_line += text == nullptr || *text == 0 ? "(no text)" : text;
        m_line += "\n";
        m_line += '\0';
        m_kept.Append(m_line);
    }

    void Begin(std::string prefix) {
        m_prefix = std::move(prefix);
        m_diagnostics = 0;
    }
    std::size_t End() {
        if (m_pending) Flush(" (after the last call)");
        return m_diagnostics;
    }
    std::string_view Prefix() const { return m_prefix; }

  private:
    void Flush(const std::string& where) {
        std::string head;
        bool inHead = true;
        m_kept.Drain([&](std::string_view piece) {
            for (const char c : piece) {
                if (c != '\0') {
                    head += c;
                    continue;
                }
                m_out << (inHead ? m_prefix : std::string()) << head << (inHead ? where : "");
                head.clear();
                inHead = !inHead;
            }
        });
        m_pending = false;
    }

    std::ostream& m_out;
    Spill m_kept;
    bool m_pending = false;
    std::size_t m_diagnostics = 0;
    std::string m_prefix;
    std::string m_line;
};

std::string Plural(std::size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

}  // namespace

int Check(const Options& options, std::ostream& out, std::ostream& err) {
    const Stream stream(options);
    const ByteView data = stream.View();
    ForcedKind(options);
    const bool single = SingleItem(data);
    CheckWriter writer(out);
    std::size_t items = 0, calls = 0, diagnostics = 0;
    const bool ok = ParseItems(
        options, data, writer, nullptr,
        [&](const ItemPlace& place, const Kind&) {
            writer.Begin(single ? std::string() : ItemName(place) + ": ");
        },
        [&](const ItemPlace&, const Kind& kind, const Recorder& recorder, const ParseRun&) {
            const std::size_t found = writer.End();
            out << writer.Prefix() << kind.title << ": " << recorder.Calls() << " receiver calls, "
                << Plural(found, "diagnostic", "diagnostics") << '\n';
            ++items;
            calls += recorder.Calls();
            diagnostics += found;
        },
        err);
    if (!single) {
        out << "total: " << Plural(items, "item", "items") << ", " << calls << " receiver calls, "
            << Plural(diagnostics, "diagnostic", "diagnostics") << '\n';
    }
    out.flush();
    return ok && diagnostics == 0 ? 0 : kExitProblem;
}

namespace {

Encoded EncodeItem(const Json& document, const std::string& where) {
    if (!document.is_object()) throw UsageError("the JSON document must be an object" + where);
    for (const auto& entry : document.items()) {
        const std::string& key = entry.key();
        if (key != "item" && key != "calls" && key != "diagnostics" && key != "result") {
            throw UsageError("unknown key '" + key + "' in the JSON document" + where);
        }
    }
    if (!document.contains("item") || !document["item"].is_string()) {
        throw UsageError("the JSON document needs \"item\" (one of " + KindNames() + ")" + where);
    }
    const ItemAdapter* adapter = AdapterFor(NamedKind(document["item"].get<std::string>()));
    if (!document.contains("calls")) throw UsageError("the JSON document needs \"calls\"" + where);
    Encoded encoded;
    encoded.item = adapter->kind;
    try {
        encoded.bytes = adapter->encode(adapter->ops, document["calls"], encoded.refused);
    } catch (const UsageError& e) {
        if (where.empty()) throw;
        throw UsageError(e.what() + where);
    }
    return encoded;
}

// Reads a JSON text of one document, or of an array of documents, handing
// each document to onDocument(Json&, index) as soon as it is complete: only
// one item's document is held at a time.
template <typename OnDocument>
class DocumentReader {
  public:
    explicit DocumentReader(OnDocument& onDocument) : m_onDocument(onDocument) {}

    bool null() {
        return Value([](Dom& d) { return d.null(); });
    }
    bool boolean(bool v) {
        return Value([v](Dom& d) { return d.boolean(v); });
    }
    bool number_integer(Json::number_integer_t v) {
        return Value([v](Dom& d) { return d.number_integer(v); });
    }
    bool number_unsigned(Json::number_unsigned_t v) {
        return Value([v](Dom& d) { return d.number_unsigned(v); });
    }
    bool number_float(Json::number_float_t v, const Json::string_t& s) {
        return Value([v, &s](Dom& d) { return d.number_float(v, s); });
    }
    bool string(Json::string_t& v) {
        return Value([&v](Dom& d) { return d.string(v); });
    }
    bool binary(Json::binary_t& v) {
        return Value([&v](Dom& d) { return d.binary(v); });
    }
    bool key(Json::string_t& v) { return m_dom->key(v); }
    bool start_object(std::size_t n) {
        if (m_depth++ == m_itemDepth) Open();
        return m_dom->start_object(n);
    }
    bool end_object() {
        m_dom->end_object();
        if (--m_depth == m_itemDepth) Close();
        return true;
    }
    bool start_array(std::size_t n) {
        if (m_depth == 0) {
            m_itemDepth = 1;  // an array of documents
            ++m_depth;
            return true;
        }
        if (m_depth++ == m_itemDepth) NotAnObject();
        return m_dom->start_array(n);
    }
    bool end_array() {
        if (--m_depth == 0) return true;
        return m_dom->end_array();
    }
    template <typename Exception>
    bool parse_error(std::size_t, const std::string&, const Exception& e) {
        throw e;
    }

  private:
    using Dom = nlohmann::detail::json_sax_dom_parser<Json>;

    template <typename Event>
    bool Value(Event&& event) {
        if (m_depth == m_itemDepth) NotAnObject();
        return event(*m_dom);
    }
    [[noreturn]] void NotAnObject() const {
        throw UsageError(
            std::string("the JSON document must be an object") +
            (m_itemDepth == 1 ? " (entry " + std::to_string(m_index + 1) + " of the array)" : ""));
    }
    void Open() {
        m_document = Json();
        m_dom = std::make_unique<Dom>(m_document);
    }
    void Close() {
        m_dom.reset();
        m_onDocument(m_document, m_index++, m_itemDepth == 1);
        m_document = Json();
    }

    OnDocument& m_onDocument;
    std::unique_ptr<Dom> m_dom;
    Json m_document;
    std::size_t m_depth = 0;
    std::size_t m_itemDepth = 0;  // 0: the text is one document; 1: an array of them
    std::size_t m_index = 0;
};

}  // namespace

Encoded EncodeDocument(const std::string& text) {
    Json document;
    WithJsonErrors(text, [&] { document = Json::parse(text); });
    return EncodeItem(document, "");
}

int Encode(const Options& options, std::ostream& err) {
    const InputBytes input(options.input);
    const std::string_view text = input.Text();
    OutputFile output(options.output);
    bool refused = false;
    std::string hex;
    auto onDocument = [&](const Json& document, std::size_t index, bool many) {
        const std::string where = many ? " (item " + std::to_string(index + 1) + ")" : "";
        const Encoded encoded = EncodeItem(document, where);
        for (const std::string& r : encoded.refused) {
            err << "warning: " << (many ? "item " + std::to_string(index + 1) + ": " : "")
                << "the creator refused " << r << '\n';
        }
        refused = refused || !encoded.refused.empty();
        if (options.hex) {
            hex = EncodeHex(encoded.bytes.data(), encoded.bytes.size(), 16);
            hex += '\n';
            output.Write(hex.data(), hex.size());
        } else {
            output.Write(encoded.bytes.data(), encoded.bytes.size());
        }
    };
    DocumentReader<decltype(onDocument)> reader(onDocument);
    WithJsonErrors(text, [&] { Json::sax_parse(text.begin(), text.end(), &reader); });
    output.Close();
    return refused ? kExitProblem : 0;
}

}  // namespace pimtlv_tool

namespace pimtlv_tool {

int ListOps(const std::string& item, std::ostream& out) {
    for (const OpEntry& op : AdapterFor(NamedKind(item))->ops) {
        std::string line = std::string(op.name) + "(";
        bool first = true;
        for (const char* arg : op.args) {
            if (arg == nullptr) continue;  // a length, carried by its data
            line += std::string(first ? "" : ", ") + arg;
            first = false;
        }
        out << line << ")\n";
    }
    return 0;
}

}  // namespace pimtlv_tool
