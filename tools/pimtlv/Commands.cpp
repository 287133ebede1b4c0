#include "Commands.h"

#include <iterator>
#include <memory>
#include <ostream>
#include <string_view>

#include "Input.h"
#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "pimshared/common/TypeIds.h"
#include "platform/CDateAndTime.h"
#include "platform/Utf8.h"

namespace PimTool {

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
        ParserCreatorCollection::ItemSpan span;
        place.offset = pos;
        place.cut = ParserCreatorCollection::ReadItemSpan(data.data, data.size, pos, span) ==
                    ParserCreatorCollection::CutFault::None;
        place.size = place.cut ? span.size : data.size - pos;
        if (!place.cut)
            place.why = ParserCreatorCollection::DescribeCutFault(data.data, data.size, pos);
        if (!onItem(static_cast<const ItemPlace&>(place)) || !place.cut) return;
        pos += span.size;
    }
}

// Whether the file is exactly one item (or one that cannot be cut), which
// the commands show as today's single stream rather than as a list.
bool SingleItem(ByteView data) {
    ParserCreatorCollection::ItemSpan span;
    return data.size > 0 && (ParserCreatorCollection::ReadItemSpan(data.data, data.size, 0, span) !=
                                 ParserCreatorCollection::CutFault::None ||
                             span.size == data.size);
}

// The frame of an item, which tells its kind.
ParserCreatorCollection::ItemFrame FrameOf(ByteView data, const ItemPlace& place) {
    return ParserCreatorCollection::ReadItemFrame(data.data + place.offset, place.size);
}

std::string ItemName(const ItemPlace& place) {
    return "item " + std::to_string(place.index + 1) + " at offset " + std::to_string(place.offset);
}

// The sentence that tells a person where the item's stream breaks.
StreamError FaultError(const Fault& fault) {
    return {true, fault.offset,
            "malformed stream at offset " + std::to_string(fault.offset) + ": " + fault.reason};
}

void ReportError(const StreamError& error, std::ostream& err) {
    err << "error: " << error.sentence << '\n';
}

// The kind of an item: forced by --item, else told by its frame. Null for a
// rest that could not be cut and cannot be told (it is reported as
// malformed); throws UsageError for an item whose kind is unknown.
const Kind* ItemKind(const Options& options, ByteView data, const ItemPlace& place) {
    if (const Kind* forced = ForcedKind(options)) return forced;
    const ParserCreatorCollection::ItemFrame frame = FrameOf(data, place);
    if (const Kind* kind = DetectKind(frame)) return kind;
    if (!place.cut) return nullptr;
    std::string seen = "no root node";
    if (frame.hasRoot) {
        seen = "root node " + std::to_string(frame.root) +
               (frame.hasComponent ? ", first inner node " + std::to_string(frame.component)
                                   : ", no inner node");
    }
    throw UnknownItemError(
        "cannot tell the item" +
            (place.offset > 0 ? " at offset " + std::to_string(place.offset) : "") +
            " from the stream (" + seen + "); name it with --item",
        place.offset);
}

// Why an item did not parse, or could not be cut from the file: the parser's
// own account of where its walk stopped when the bytes are at fault.
StreamError ItemFailure(ByteView data, const ItemPlace& place, const Kind* kind,
                        const ParseRun* run) {
    const ParserCreatorCollection::TLVError error =
        run != nullptr ? run->error
                       : ParserCreatorCollection::ExplainTLV(data.data + place.offset,
                                                             static_cast<unsigned int>(place.size));
    if (error.IsMalformed()) return FaultError(FaultOf(error, place.offset));
    if (!place.cut) {
        return {true, place.offset,
                "malformed stream at offset " + std::to_string(place.offset) + ": " + place.why};
    }
    if (run == nullptr) return {};
    const std::size_t at = place.offset + run->consumed;
    return {true, at,
            std::string("the ") + kind->title + " parser stopped at offset " + std::to_string(at)};
}

// Runs the parser of every item in turn, with listener hearing each parse
// and calls (null: only counted) receiving its calls' JSON. begin(place,
// kind) comes before an item's parse, end(place, kind, recorder, run) after
// it. Stops at the first item that does not parse; returns false then, with
// why on err and in error (when not null).
template <typename Begin, typename End>
bool ParseItems(const Options& options, ByteView data, ParseListener& listener, TextOut* calls,
                Begin&& begin, End&& end, std::ostream& err, StreamError* error = nullptr) {
    const auto fail = [&](const StreamError& why) {
        if (why.present) ReportError(why, err);
        if (error != nullptr) *error = why;
    };
    Progress progress(data.size);
    bool ok = true;
    ForEachItemOf(data, [&](const ItemPlace& place) {
        progress.At(place.offset);
        const Kind* kind = ItemKind(options, data, place);
        if (kind == nullptr) {
            fail(ItemFailure(data, place, kind, nullptr));
            ok = false;
            return false;
        }
        const ItemAdapter* adapter = AdapterFor(*kind);
        begin(place, *kind);
        Recorder recorder(adapter->ops, listener, calls);
        const ParseRun run = adapter->decode(data.Sub(place.offset, place.size), recorder);
        end(place, *kind, recorder, run);
        if (!run.ok || !place.cut) {
            fail(ItemFailure(data, place, kind, &run));
            ok = false;
        }
        return ok;
    });
    return ok;
}

// Runs parse (which reads text as JSON), turning the JSON library's errors
// into one line that says where.
// locate(offset, line, column) finds the place of a byte.
template <typename Parse, typename Locate>
void WithJsonErrors(Parse&& parse, Locate&& locate) {
    try {
        parse();
    } catch (const nlohmann::json::parse_error& e) {
        std::size_t line = 0, column = 0;
        locate(e.byte > 0 ? e.byte - 1 : 0, line, column);
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

Fault WalkItems(ByteView data, const std::string& forcedItem, NamedElementSink& sink) {
    const Kind* forced = forcedItem.empty() ? nullptr : &NamedKind(forcedItem);
    class Naming : public ElementSink {
      public:
        explicit Naming(NamedElementSink& s) : m_sink(s) {}
        void OnElement(const Element& e) override {
            const bool node = e.header.elementClass == ParserCreatorCollection::Node;
            m_sink.OnElement(e, NameOf(item, node, e.parentId, e.header.typeId, e.depth));
        }
        const ItemAdapter* item = nullptr;  // whose names the elements get

      private:
        NamedElementSink& m_sink;
    } naming(sink);
    // Item by item, each named in its own kind; what cannot be cut into
    // items (elements outside any root node, say) is walked as it stands.
    Fault fault;
    ForEachItemOf(data, [&](const ItemPlace& place) {
        const Kind* kind = forced;
        if (kind == nullptr) kind = DetectKind(FrameOf(data, place));
        naming.item = kind != nullptr ? FindAdapter(kind->name) : nullptr;
        fault = WalkStream(data, naming, place.offset, place.offset + place.size);
        return !fault.present;
    });
    return fault;
}

std::vector<std::size_t> ItemOffsets(ByteView data) {
    std::vector<std::size_t> offsets;
    ForEachItemOf(data, [&](const ItemPlace& place) {
        offsets.push_back(place.offset);
        return true;
    });
    return offsets;
}

int Dump(const Options& options, std::ostream& out, std::ostream& err) {
    const Stream stream(options);
    const ByteView data = stream.View();
    class Sink : public NamedElementSink {
      public:
        Sink(std::size_t size, bool color, std::ostream& o)
            : m_color(color), m_out(o), m_progress(size) {}
        void OnElement(const Element& e, const char* name) override {
            std::string& text = m_out.Text();
            DumpLine(text, e, name, m_color);
            text += '\n';
            m_out.Drain();
            m_progress.At(e.offset);
        }
        TextOut& Out() { return m_out; }

      private:
        bool m_color;
        TextOut m_out;
        Progress m_progress;
    } sink(data.size, options.color, out);
    const Fault fault = WalkItems(data, options.item, sink);
    sink.Out().Flush();
    out.flush();
    if (!fault.present) return 0;
    ReportError(FaultError(fault), err);
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
        if (m_trace || code != 0) m_held.Add(code, text, call);
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
        if (m_held.Empty()) {
            text += "[]";
        } else {
            text += "[\n";
            bool first = true;
            m_held.Drain([&](int code, std::string_view said, std::size_t call, std::size_t count) {
                std::string line = "{\"code\":" + std::to_string(code) + ",\"text\":";
                AppendJsonText(line, std::string(said).c_str());
                line += ",\"call\":" + std::to_string(call) + "}";
                for (std::size_t i = 0; i < count; ++i) {
                    m_out.Text() += first ? "    " : ",\n    ";
                    m_out.Text() += line;
                    m_out.Drain();
                    first = false;
                }
            });
            m_out.Text() += "\n  ]";
        }
        m_out.Text() += ",\n  \"result\": {\"ok\":" + std::string(run.ok ? "true" : "false") +
                        ",\"consumed\":" + std::to_string(run.consumed) + "}\n}";
    }

  private:
    TextOut& m_out;
    bool m_trace;
    HeldDiagnostics m_held;
};

}  // namespace

int DecodeStream(const Options& options, ByteView data, std::ostream& out, std::ostream& err,
                 StreamError* error) {
    ForcedKind(options);  // an unknown --item is refused even when there are no items
    // One item: its document. Several (or none): a JSON array of them.
    const bool single = SingleItem(data);
    TextOut text(out);
    DecodeWriter writer(text, options.trace);
    bool any = false;
    if (!single) text.Text() += "[";
    const bool ok = ParseItems(
        options, data, writer, &text,
        [&](const ItemPlace&, const Kind& kind) {
            if (!single) text.Text() += any ? ",\n" : "\n";
            any = true;
            writer.Begin(kind);
        },
        [&](const ItemPlace&, const Kind&, const Recorder& recorder, const ParseRun& run) {
            writer.End(recorder, run);
            if (single) text.Text() += "\n";
            text.Flush();
        },
        err, error);
    if (!single) text.Text() += any ? "\n]\n" : "]\n";
    text.Flush();
    out.flush();
    return ok ? 0 : kExitProblem;
}

namespace {

// Prints each diagnostic of check as soon as the call after it is known.
class CheckWriter : public ParseListener {
  public:
    explicit CheckWriter(TextOut& out) : m_out(out) {}

    void OnCall(std::size_t index, const char* op) override {
        if (!m_held.Empty()) Show("before call " + std::to_string(index) + ", " + op);
    }
    void OnDiagnostic(int code, const char* text, std::size_t) override {
        if (code == 0) return;  // the calendar parsers' trace lines
        ++m_diagnostics;
        m_held.Add(code, text, 0);
    }

    // item: what names the item in a file of several ("item 2 at offset
    // 120"), else empty. Diagnostic lines keep "code N" first, so that they
    // read (and grep) alike in both.
    void Begin(std::string item) {
        m_item = std::move(item);
        m_diagnostics = 0;
    }
    std::size_t End() {
        if (!m_held.Empty()) Show("after the last call");
        return m_diagnostics;
    }
    std::string Label() const { return m_item.empty() ? m_item : m_item + ": "; }

  private:
    void Show(const std::string& where) {
        const std::string place = " (" + (m_item.empty() ? "" : m_item + ", ") + where + "): ";
        m_held.Drain([&](int code, std::string_view text, std::size_t, std::size_t count) {
            std::string line = "code " + std::to_string(code) + place;
            line += text.empty() ? std::string_view("(no text)") : text;
            line += '\n';
            for (std::size_t i = 0; i < count; ++i) {
                m_out.Text() += line;
                m_out.Drain();
            }
        });
    }

    TextOut& m_out;
    HeldDiagnostics m_held;
    std::size_t m_diagnostics = 0;
    std::string m_item;
};

// What a parser hands on changed, or without its value, and says nothing of
// in its diagnostics: a text that is not UTF-8 (repaired to '?') and, in the
// calendar items, a date-time text that does not read as one. check names
// each as a finding, with the element's offset.
class ContentFindings : public ElementSink {
  public:
    ContentFindings(const Kind& kind, TextOut& out, const std::string& item)
        : m_dates(kind.kind == PimShared::ItemKind::Event ||
                  kind.kind == PimShared::ItemKind::Task || kind.kind == PimShared::ItemKind::Note),
          m_out(out),
          m_item(item.empty() ? item : item + ", ") {}

    void OnElement(const Element& e) override {
        using namespace ParserCreatorCollection;
        if (e.header.elementClass != String || e.header.length == 0) return;
        const char* text = reinterpret_cast<const char*>(e.value);
        if (!PAL::IsValidUtf8(text, e.header.length)) {
            Add(e, "is not UTF-8: the parser hands it on with '?' for each bad byte");
        } else if (m_dates && e.parentId != kNoParent &&
                   (e.header.typeId == PimShared::TypeIdValTypeDateTime ||
                    e.header.typeId == PimShared::TypeIdValTypeDateTimeAlt)) {
            PAL::CDateAndTime when;
            if (!PAL::DateAndTimeUtilities::FromString(
                    when, text, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar)) {
                Add(e, "does not read as a date-time: the parser hands the property on without it");
            }
        }
    }
    std::size_t Count() const { return m_count; }

  private:
    void Add(const Element& e, const char* what) {
        std::string& line = m_out.Text();
        line += "finding (" + m_item + "offset " + std::to_string(e.offset) + "): String " +
                std::to_string(e.header.typeId) + ' ';
        QuoteText(line, e.value, e.header.length);
        line += ' ';
        line += what;
        line += '\n';
        m_out.Drain();
        ++m_count;
    }

    bool m_dates;
    TextOut& m_out;
    std::string m_item;
    std::size_t m_count = 0;
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
    TextOut text(out);
    CheckWriter writer(text);
    std::size_t items = 0, calls = 0, diagnostics = 0;
    const bool ok = ParseItems(
        options, data, writer, nullptr,
        [&](const ItemPlace& place, const Kind&) {
            writer.Begin(single ? std::string() : ItemName(place));
        },
        [&](const ItemPlace& place, const Kind& kind, const Recorder& recorder, const ParseRun&) {
            std::size_t found = writer.End();
            ContentFindings findings(kind, text, single ? std::string() : ItemName(place));
            WalkStream(data, findings, place.offset, place.offset + place.size);
            found += findings.Count();
            text.Text() += writer.Label() + kind.title + ": " + std::to_string(recorder.Calls()) +
                           " receiver calls, " + Plural(found, "diagnostic", "diagnostics") + "\n";
            text.Drain();
            ++items;
            calls += recorder.Calls();
            diagnostics += found;
        },
        err);
    if (!single) {
        text.Text() += "total: " + Plural(items, "item", "items") + ", " + std::to_string(calls) +
                       " receiver calls, " + Plural(diagnostics, "diagnostic", "diagnostics") +
                       "\n";
    }
    text.Flush();
    out.flush();
    return ok && diagnostics == 0 ? 0 : kExitProblem;
}

namespace {

// Reads a JSON text of one decode document, or of an array of them, and
// makes each item as its calls arrive: each call is handed to the item's
// creator when it is complete, so that only one call is ever held (the
// calls before "item", where a document names its item last, wait for it).
// What a document holds besides "item" and "calls" is checked to be JSON and
// otherwise passed over. onItem(Encoded&, index, many) takes each item.
template <typename OnItem>
class DocumentReader {
  public:
    DocumentReader(OnItem& onItem, bool many) : m_onItem(onItem), m_manyAllowed(many) {}

    bool null() { return Value(Json(nullptr)); }
    bool boolean(bool v) { return Value(Json(v)); }
    bool number_integer(Json::number_integer_t v) { return Value(Json(v)); }
    bool number_unsigned(Json::number_unsigned_t v) { return Value(Json(v)); }
    bool number_float(Json::number_float_t v, const Json::string_t&) { return Value(Json(v)); }
    bool string(Json::string_t& v) { return Value(Json(std::move(v))); }
    bool binary(Json::binary_t& v) { return Value(Json(std::move(v))); }

    bool key(Json::string_t& k) {
        if (m_call) return m_call->key(k);
        if (m_depth == m_itemDepth + 1) {
            if (k != "item" && k != "calls" && k != "diagnostics" && k != "result") {
                Fail("unknown key '" + k + "' in the JSON document");
            }
            m_field = k == "item" ? Field::Item : k == "calls" ? Field::Calls : Field::Other;
        }
        return true;
    }
    bool start_object(std::size_t n) {
        if (!Container()) return true;
        if (m_depth == m_itemDepth + 1) Fail("\"calls\" must be an array");
        if (m_depth == m_itemDepth) {
            StartDocument();
        } else {
            StartCall();
        }
        ++m_depth;
        return m_call ? m_call->start_object(n) : true;
    }
    bool end_object() {
        --m_depth;
        if (m_skipFrom != 0) return EndSkipped();
        if (m_call) {
            m_call->end_object();
            if (m_depth == m_itemDepth + 2) EndCall();
            return true;
        }
        EndDocument();
        return true;
    }
    bool start_array(std::size_t n) {
        if (m_depth == 0 && m_manyAllowed) {
            m_itemDepth = 1;  // an array of documents
            ++m_depth;
            return true;
        }
        if (!Container()) return true;
        if (m_depth == m_itemDepth) NotAnObject();
        if (m_depth != m_itemDepth + 1) StartCall();  // else the "calls" array itself
        ++m_depth;
        return m_call ? m_call->start_array(n) : true;
    }
    bool end_array() {
        --m_depth;
        if (m_skipFrom != 0) return EndSkipped();
        if (m_call) {
            m_call->end_array();
            if (m_depth == m_itemDepth + 2) EndCall();
        }
        return true;
    }
    template <typename Exception>
    bool parse_error(std::size_t, const std::string&, const Exception& e) {
        throw e;
    }

  private:
    using Dom = nlohmann::detail::json_sax_dom_parser<Json>;
    enum class Field { None, Item, Calls, Other };

    // A container opens: false when it is passed over.
    bool Container() {
        if (m_skipFrom != 0) {
            ++m_depth;
            return false;
        }
        if (m_depth == m_itemDepth + 1 && m_field == Field::Other) {
            m_skipFrom = ++m_depth;
            return false;
        }
        if (m_depth == m_itemDepth + 1 && m_field == Field::Item) {
            Fail("the JSON document needs \"item\" (one of " + KindNames() + ")");
        }
        return true;
    }
    bool EndSkipped() {
        if (m_depth + 1 == m_skipFrom) m_skipFrom = 0;
        return true;
    }

    bool Value(Json value) {
        if (m_skipFrom != 0) return true;
        if (m_call) {
            // The DOM builder takes scalars by reference.
            if (value.is_string()) return m_call->string(value.get_ref<Json::string_t&>());
            if (value.is_null()) return m_call->null();
            if (value.is_boolean()) return m_call->boolean(value.get<bool>());
            if (value.is_number_unsigned())
                return m_call->number_unsigned(value.get<Json::number_unsigned_t>());
            if (value.is_number_integer())
                return m_call->number_integer(value.get<Json::number_integer_t>());
            return m_call->number_float(value.get<Json::number_float_t>(), "");
        }
        if (m_depth == m_itemDepth) NotAnObject();
        if (m_depth == m_itemDepth + 2) {
            Call(value);  // a call that is no object: the replay says so
            return true;
        }
        if (m_field == Field::Item) {
            if (!value.is_string()) {
                Fail("the JSON document needs \"item\" (one of " + KindNames() + ")");
            }
            SetItem(value.get_ref<const std::string&>());
        } else if (m_field == Field::Calls) {
            Fail("\"calls\" must be an array");
        }
        return true;
    }

    void StartDocument() {
        m_adapter = nullptr;
        m_session.reset();
        m_waiting = Json::array();
        m_calls = 0;
        m_hasCalls = false;
        m_refused.clear();
        m_field = Field::None;
    }
    void EndDocument() {
        if (m_adapter == nullptr) {
            Fail("the JSON document needs \"item\" (one of " + KindNames() + ")");
        }
        if (!m_hasCalls) Fail("the JSON document needs \"calls\"");
        Encoded encoded;
        encoded.item = m_adapter->kind;
        try {
            encoded.bytes = m_session->Finish();
        } catch (const UsageError& e) {
            Fail(e.what());
        }
        encoded.refused = std::move(m_refused);
        m_session.reset();
        m_onItem(encoded, m_index++, m_itemDepth == 1);
    }

    void SetItem(const std::string& name) {
        try {
            m_adapter = AdapterFor(NamedKind(name));
        } catch (const UsageError& e) {
            Fail(e.what());
        }
        m_session = std::make_unique<EncodeSession>(m_adapter->kind);
        for (std::size_t i = 0; i < m_waiting.size(); ++i) Replay(m_waiting[i], i);
        m_waiting = Json::array();
    }

    void StartCall() {
        if (m_depth == m_itemDepth + 2) {
            m_callValue = Json();
            m_call = std::make_unique<Dom>(m_callValue);
        }
    }
    void EndCall() {
        m_call.reset();
        Call(m_callValue);
    }
    void Call(Json& call) {
        m_hasCalls = true;
        if (m_session) {
            Replay(call, m_calls);
        } else {
            m_waiting.push_back(std::move(call));
        }
        ++m_calls;
    }
    void Replay(const Json& call, std::size_t index) {
        try {
            m_session->Call(call, index, m_refused);
        } catch (const UsageError& e) {
            Fail(e.what());
        }
    }

    [[noreturn]] void NotAnObject() const { Fail("the JSON document must be an object"); }
    [[noreturn]] void Fail(const std::string& what) const {
        throw UsageError(what + (m_itemDepth == 1 ? " (item " + std::to_string(m_index + 1) + ")"
                                                  : std::string()));
    }

    OnItem& m_onItem;
    bool m_manyAllowed;
    std::size_t m_depth = 0;
    std::size_t m_itemDepth = 0;  // 0: the text is one document; 1: an array of them
    std::size_t m_skipFrom = 0;   // depth of a value passed over, or 0
    std::size_t m_index = 0;      // of the document
    Field m_field = Field::None;
    bool m_hasCalls = false;
    const ItemAdapter* m_adapter = nullptr;
    std::unique_ptr<EncodeSession> m_session;
    Json m_waiting;  // calls that came before "item"
    std::size_t m_calls = 0;
    std::vector<std::string> m_refused;
    std::unique_ptr<Dom> m_call;
    Json m_callValue;
};

// The input as the JSON reader takes it, one character after another; the
// end is where the input ends.
class Cursor {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    explicit Cursor(InputReader* reader) : m_reader(reader) {}
    char operator*() const { return m_reader->Peek(); }
    Cursor& operator++() {
        m_reader->Advance();
        return *this;
    }
    Cursor operator++(int) {
        Cursor before = *this;
        ++*this;
        return before;
    }
    bool operator==(const Cursor& other) const { return AtEnd() == other.AtEnd(); }
    bool operator!=(const Cursor& other) const { return AtEnd() != other.AtEnd(); }

  private:
    bool AtEnd() const { return m_reader == nullptr || m_reader->AtEnd(); }
    InputReader* m_reader;
};

}  // namespace

Encoded EncodeDocument(const std::string& text) {
    Encoded result;
    const auto keep = [&](Encoded& encoded, std::size_t, bool) { result = std::move(encoded); };
    DocumentReader<decltype(keep)> reader(keep, false);
    WithJsonErrors([&] { Json::sax_parse(text, &reader); },
                   [&](std::size_t at, std::size_t& line, std::size_t& column) {
                       LineAndColumn(text, at, line, column);
                   });
    return result;
}

int Encode(const Options& options, std::ostream& err) {
    InputReader input(options.input);
    OutputFile output(options.output);
    bool refused = false;
    std::string hex;
    const auto write = [&](const Encoded& encoded, std::size_t index, bool many) {
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
    DocumentReader<decltype(write)> reader(write, true);
    WithJsonErrors([&] { Json::sax_parse(Cursor(&input), Cursor(nullptr), &reader); },
                   [&](std::size_t at, std::size_t& line, std::size_t& column) {
                       input.LineAndColumn(at, line, column);
                   });
    output.Close();
    return refused ? kExitProblem : 0;
}

}  // namespace PimTool

namespace PimTool {

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

}  // namespace PimTool
