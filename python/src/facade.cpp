#include "facade.h"

#include "Bridges.h"
#include "Commands.h"
#include "parsercreatorcollection/src/tlv/parser/TLVError.h"
#include "parsercreatorcollection/src/tlv/wire/TLVWire.h"
#include "pimshared/common/ItemKind.h"

namespace pimtlv_python {

namespace {

PimTool::ByteView View(const std::uint8_t* data, std::size_t size) {
    return PimTool::ByteView(data, size);
}

// The format of that name; throws Failure when this build has none.
const PimTool::FormatAdapter& NamedFormat(const std::string& name) {
    const PimTool::FormatAdapter* format = PimTool::FindFormat(name);
    if (format == nullptr) {
        throw Failure(Failure::Kind::Format, "unknown format '" + name + "' (this build has " +
                                                 PimTool::FormatNames() + ")");
    }
    return *format;
}

namespace Wire = ParserCreatorCollection;

// The sentence for bytes that cannot be read, from the library's account of
// where the walk of the item at base stops; false when the bytes are fine.
bool Explain(const std::uint8_t* data, std::size_t size, std::size_t base, DecodeFault& fault) {
    const Wire::TLVError error =
        Wire::ExplainTLV(data + base, static_cast<unsigned int>(size - base));
    if (!error.IsMalformed()) return false;
    fault.offset = base + error.offset;
    fault.sentence =
        "malformed stream at offset " + std::to_string(fault.offset) + ": " + error.Sentence(base);
    return true;
}

std::string ItemNames() {
    std::string names;
    for (const PimDoc::ItemInfo& i : PimDoc::Items()) {
        names += (names.empty() ? "" : ", ") + std::string(i.kind);
    }
    return names;
}

// The item kind named item=, null for none; throws Failure for a name that
// is none.
const PimDoc::ItemInfo* ForcedItem(const std::string& item) {
    if (item.empty()) return nullptr;
    const PimDoc::ItemInfo* forced = PimDoc::FindItem(item);
    if (forced == nullptr) {
        throw Failure(Failure::Kind::UnknownItem,
                      "unknown item '" + item + "' (item= takes " + ItemNames() + ")");
    }
    return forced;
}

// The item whose parser stopped in it, its document handed out.
struct Stopped {
    bool present = false;
    std::string item;
    std::uint32_t consumed = 0;
};

// Why the item at offset at stopped the decode.
DecodeFault FaultAt(const std::uint8_t* data, std::size_t size, std::size_t at,
                    const PimDoc::ItemInfo* forced, bool trace, const Stopped& stopped,
                    const OnDocument& onDocument) {
    DecodeFault fault;
    fault.kind = DecodeFault::Kind::Malformed;
    fault.offset = at;
    Wire::ItemSpan span;
    if (Wire::ReadItemSpan(data, size, at, span) != Wire::CutFault::None) {
        // A rest that cannot be cut decodes as far as its parser reads it,
        // where its kind can be told.
        const PimDoc::ItemInfo* item = forced;
        if (item == nullptr) {
            item = PimDoc::FindItem(
                PimShared::ItemKindName(PimShared::DetectItemKind(data + at, size - at)));
        }
        if (item != nullptr) onDocument(PimDoc::DecodeItem(*item, data + at, size - at, trace));
        if (!Explain(data, size, at, fault)) {
            fault.sentence = "malformed stream at offset " + std::to_string(at) + ": " +
                             Wire::DescribeCutFault(data, size, at);
        }
        return fault;
    }
    if (stopped.present) {
        if (!Explain(data, at + span.size, at, fault)) {
            fault.offset = at + stopped.consumed;
            fault.sentence =
                "the " + stopped.item + " parser stopped at offset " + std::to_string(fault.offset);
        }
        return fault;
    }
    const Wire::ItemFrame& frame = span.frame;
    std::string seen = "root node " + std::to_string(frame.root) +
                       (frame.hasComponent ? ", first inner node " + std::to_string(frame.component)
                                           : ", no inner node");
    fault.kind = DecodeFault::Kind::UnknownItem;
    fault.sentence = "cannot tell the item" + (at > 0 ? " at offset " + std::to_string(at) : "") +
                     " from the stream (" + seen + "); name it with item= (" + ItemNames() + ")";
    return fault;
}

}  // namespace

DecodeFault Decode(const std::uint8_t* data, std::size_t size, const std::string& item, bool trace,
                   const OnDocument& onDocument) {
    const PimDoc::ItemInfo* forced = ForcedItem(item);
    PimDoc::DecodeOptions options;
    options.item = item;
    options.trace = trace;
    Stopped stopped;
    const PimDoc::DecodeResult result =
        PimDoc::Decode(data, size, options, [&](PimDoc::Document&& document) {
            if (!document.result.ok) stopped = {true, document.item, document.result.consumed};
            onDocument(std::move(document));
        });
    if (result.ok) return {};
    return FaultAt(data, size, result.errorOffset, forced, trace, stopped, onDocument);
}

void Encode(const PimDoc::Document& document, std::vector<std::uint8_t>& out,
            std::vector<std::string>& refused) {
    try {
        const PimDoc::ItemInfo* item = PimDoc::FindItem(document.item);
        if (item == nullptr) {
            throw PimDoc::DocumentError("unknown item '" + document.item + "' (one of " +
                                        ItemNames() + ")");
        }
        PimDoc::Encoder encoder(*item);
        for (std::size_t i = 0; i < document.calls.size(); ++i) {
            if (!encoder.Call(document.calls[i], i)) {
                refused.push_back("call " + std::to_string(i) + " (" + document.calls[i].op + ")");
            }
        }
        const PimDoc::Bytes bytes = encoder.Finish();
        out.insert(out.end(), bytes.begin(), bytes.end());
    } catch (const PimDoc::DocumentError& e) {
        throw Failure(Failure::Kind::Document, e.what());
    }
}

StreamFault Walk(const std::uint8_t* data, std::size_t size, const std::string& item,
                 std::vector<WalkElement>& elements) {
    class Collect : public PimTool::NamedElementSink {
      public:
        explicit Collect(std::vector<WalkElement>& into) : m_into(into) {}
        void OnElement(const PimTool::Element& e, const char* name) override {
            WalkElement w;
            w.offset = e.offset;
            w.depth = e.depth;
            w.elementClass = e.header.elementClass;
            w.typeId = e.header.typeId;
            w.length = e.header.length;
            w.name = name;
            w.value = e.value;
            w.number = e.number;
            w.numeric = ParserCreatorCollection::FixedValueSize(e.header.elementClass) != 0;
            m_into.push_back(w);
        }

      private:
        std::vector<WalkElement>& m_into;
    } collect(elements);
    ForcedItem(item);  // the tool's sentence for an unknown name would name its option
    const PimTool::Fault fault = PimTool::WalkItems(View(data, size), item, collect);
    if (!fault.present) return {};
    return {true, fault.offset,
            "malformed stream at offset " + std::to_string(fault.offset) + ": " + fault.reason};
}

std::string ClassName(unsigned int elementClass) {
    return ParserCreatorCollection::ElementClassName(elementClass);
}

std::vector<std::size_t> ItemOffsets(const std::uint8_t* data, std::size_t size) {
    return PimTool::ItemOffsets(View(data, size));
}

std::vector<std::string> Formats() {
    std::vector<std::string> names;
    for (const PimTool::FormatAdapter* f : PimTool::Formats()) names.emplace_back(f->name);
    return names;
}

PimBridge::ImportResult FromText(const std::string& format, const char* text, std::size_t size) {
    const PimTool::FormatAdapter& f = NamedFormat(format);
    if (f.importText == nullptr) {
        throw Failure(Failure::Kind::Unsupported, std::string(f.title) + " is written only");
    }
    return f.importText(text, size);
}

PimBridge::ExportResult ToText(const std::string& format, const std::uint8_t* data,
                               std::size_t size) {
    const PimTool::FormatAdapter& f = NamedFormat(format);
    if (f.exportItems == nullptr) {
        throw Failure(Failure::Kind::Unsupported, std::string(f.title) + " is read only");
    }
    return f.exportItems(data, size);
}

PimBridge::MergeResult MergeText(const std::string& format, const std::string& original,
                                 const std::uint8_t* data, std::size_t size,
                                 const PimBridge::MergeOptions& options) {
    const PimTool::FormatAdapter& f = NamedFormat(format);
    if (f.mergeItems == nullptr) {
        throw Failure(Failure::Kind::Unsupported,
                      std::string("this build has no merge onto an original ") + f.title +
                          " text; export without onto=");
    }
    return f.mergeItems(original.data(), original.size(), data, size, options);
}

}  // namespace pimtlv_python
