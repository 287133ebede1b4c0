#include "Commands.h"

#include <ostream>

#include "Input.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"

namespace pimtlv_tool {

namespace {

Bytes LoadStream(const Options& options) {
    const std::string raw = ReadInput(options.input);
    if (options.hex) return DecodeHex(raw);
    return Bytes(raw.begin(), raw.end());
}

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

// The item of a stream: forced by --item, else told by its frame.
const Kind& StreamKind(const Options& options, const Bytes& data) {
    if (const Kind* forced = ForcedKind(options)) return *forced;
    const StreamFrame frame = ReadFrame(data);
    if (const Kind* kind = DetectKind(frame)) return *kind;
    std::string seen = "no root node";
    if (frame.hasRoot) {
        seen = "root node " + std::to_string(frame.root) +
               (frame.hasComponent ? ", first inner node " + std::to_string(frame.component)
                                   : ", no inner node");
    }
    throw UsageError("cannot tell the item from the stream (" + seen + "); name it with --item");
}

void ReportFault(const Fault& fault, std::ostream& err) {
    err << "error: malformed stream at offset " << fault.offset << ": " << fault.reason << '\n';
}

struct Decoded {
    const Kind* kind = nullptr;
    ParseRun run;
    Json document;
    bool failed = false;  // the stream is malformed or the parser stopped early
};

Decoded RunDecode(const Options& options, const Bytes& data, bool trace, std::ostream& err) {
    Decoded d;
    d.kind = &StreamKind(options, data);
    const ItemAdapter* adapter = AdapterFor(*d.kind);
    Recorder recorder(adapter->ops);
    d.run = adapter->decode(data, recorder);
    Json diagnostics = Json::array();
    for (const Json& diag : recorder.Diagnostics()) {
        if (trace || diag["code"].get<int>() != 0) diagnostics.push_back(diag);
    }
    d.document["item"] = d.kind->name;
    d.document["calls"] = recorder.Calls();
    d.document["diagnostics"] = std::move(diagnostics);
    d.document["result"] = Json{{"ok", d.run.ok}, {"consumed", d.run.consumed}};
    if (!d.run.ok) {
        d.failed = true;
        const Fault fault = WalkStream(data, nullptr);
        if (fault.present) {
            ReportFault(fault, err);
        } else {
            err << "error: the " << d.kind->title << " parser stopped at offset " << d.run.consumed
                << '\n';
        }
    }
    return d;
}

Json ParseJson(const std::string& text) {
    try {
        return Json::parse(text);
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

std::string Compact(const Json& j) {
    return j.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The decode document with one call and one diagnostic a line: long enough
// to read as a list, short enough to diff.
std::string DocumentText(const Json& document) {
    std::string text = "{\n";
    bool first = true;
    for (const auto& entry : document.items()) {
        text += first ? "  " : ",\n  ";
        first = false;
        text += Compact(entry.key()) + ": ";
        const Json& value = entry.value();
        if (!value.is_array() || value.empty()) {
            text += Compact(value);
            continue;
        }
        text += "[\n";
        for (std::size_t i = 0; i < value.size(); ++i) {
            text += "    " + Compact(value[i]) + (i + 1 < value.size() ? ",\n" : "\n");
        }
        text += "  ]";
    }
    return text + "\n}\n";
}

}  // namespace

int Dump(const Options& options, std::ostream& out, std::ostream& err) {
    const Bytes data = LoadStream(options);
    const Kind* kind = ForcedKind(options);
    if (kind == nullptr) kind = DetectKind(ReadFrame(data));
    const ItemAdapter* adapter = kind != nullptr ? FindAdapter(kind->name) : nullptr;
    class Sink : public ElementSink {
      public:
        Sink(const ItemAdapter* item, bool color, std::ostream& o)
            : m_item(item), m_color(color), m_out(o) {}
        void OnElement(const Element& e) override {
            const bool node = e.header.elementClass == ParserCreatorCollection::Node;
            m_out << DumpLine(e, NameOf(m_item, node, e.parentId, e.header.typeId, e.depth),
                              m_color)
                  << '\n';
        }

      private:
        const ItemAdapter* m_item;
        bool m_color;
        std::ostream& m_out;
    } sink(adapter, options.color, out);
    const Fault fault = WalkStream(data, &sink);
    out.flush();
    if (!fault.present) return 0;
    ReportFault(fault, err);
    return kExitProblem;
}

int Decode(const Options& options, std::ostream& out, std::ostream& err) {
    return DecodeStream(options, LoadStream(options), out, err);
}

int DecodeStream(const Options& options, const Bytes& data, std::ostream& out, std::ostream& err) {
    const Decoded d = RunDecode(options, data, options.trace, err);
    out << DocumentText(d.document);
    return d.failed ? kExitProblem : 0;
}

int Check(const Options& options, std::ostream& out, std::ostream& err) {
    const Bytes data = LoadStream(options);
    const Decoded d = RunDecode(options, data, false, err);
    const Json& diagnostics = d.document["diagnostics"];
    const Json& calls = d.document["calls"];
    for (const Json& diag : diagnostics) {
        const std::size_t call = diag["call"].get<std::size_t>();
        out << "code " << diag["code"].get<int>();
        if (call < calls.size()) {
            out << " (before call " << call << ", " << calls[call]["op"].get<std::string>() << ")";
        } else {
            out << " (after the last call)";
        }
        const std::string text = diag["text"].get<std::string>();
        out << ": " << (text.empty() ? "(no text)" : text) << '\n';
    }
    out << d.kind->title << ": " << calls.size() << " receiver calls, " << diagnostics.size()
        << (diagnostics.size() == 1 ? " diagnostic" : " diagnostics") << '\n';
    return d.failed || !diagnostics.empty() ? kExitProblem : 0;
}

Encoded EncodeDocument(const std::string& text) {
    const Json document = ParseJson(text);
    if (!document.is_object()) throw UsageError("the JSON document must be an object");
    for (const auto& entry : document.items()) {
        const std::string& key = entry.key();
        if (key != "item" && key != "calls" && key != "diagnostics" && key != "result") {
            throw UsageError("unknown key '" + key + "' in the JSON document");
        }
    }
    if (!document.contains("item") || !document["item"].is_string()) {
        throw UsageError("the JSON document needs \"item\" (one of " + KindNames() + ")");
    }
    const ItemAdapter* adapter = AdapterFor(NamedKind(document["item"].get<std::string>()));
    if (!document.contains("calls")) throw UsageError("the JSON document needs \"calls\"");
    Encoded encoded;
    encoded.item = adapter->kind;
    encoded.bytes = adapter->encode(adapter->ops, document["calls"], encoded.refused);
    return encoded;
}

int Encode(const Options& options, std::ostream& err) {
    const Encoded encoded = EncodeDocument(ReadInput(options.input));
    const Bytes& bytes = encoded.bytes;
    const std::vector<std::string>& refused = encoded.refused;
    for (const std::string& r : refused) err << "warning: the creator refused " << r << '\n';
    std::string text;
    if (options.hex) {
        text = EncodeHex(bytes.data(), bytes.size(), 16) + "\n";
    } else {
        text.assign(bytes.begin(), bytes.end());
    }
    WriteOutput(options.output, text);
    return refused.empty() ? 0 : kExitProblem;
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
