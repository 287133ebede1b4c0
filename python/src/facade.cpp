#include "facade.h"

#include <sstream>

#include "Bridges.h"
#include "Commands.h"

namespace pimtlv_python {

namespace {

PimTool::ByteView View(const std::uint8_t* data, std::size_t size) {
    return PimTool::ByteView(data, size);
}

StreamFault FromError(const PimTool::StreamError& error) {
    return {error.present, error.offset, error.sentence};
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

// The tool's sentences name its option; Python callers pass item=.
std::string ForPython(std::string sentence) {
    const std::string option = "--item";
    for (std::size_t at = sentence.find(option); at != std::string::npos;
         at = sentence.find(option, at)) {
        sentence.replace(at, option.size(), "item=");
    }
    return sentence;
}

}  // namespace

Decoded Decode(const std::uint8_t* data, std::size_t size, const std::string& item, bool trace) {
    PimTool::Options options;
    options.item = item;
    options.trace = trace;
    std::ostringstream out, err;
    PimTool::StreamError error;
    try {
        PimTool::DecodeStream(options, View(data, size), out, err, &error);
    } catch (const PimTool::UnknownItemError& e) {
        // The items before the one that cannot be told decode as they are.
        std::ostringstream before;
        if (e.offset > 0) {
            PimTool::DecodeStream(options, View(data, e.offset), before, err);
        }
        Failure failure(Failure::Kind::UnknownItem, ForPython(e.what()), e.offset);
        failure.documents = before.str();
        throw failure;
    } catch (const PimTool::UsageError& e) {
        throw Failure(Failure::Kind::UnknownItem, e.what());
    }
    return {out.str(), FromError(error)};
}

Encoded Encode(const std::string& documentJson) {
    try {
        PimTool::Encoded encoded = PimTool::EncodeDocument(documentJson);
        return {std::move(encoded.item), std::move(encoded.bytes), std::move(encoded.refused)};
    } catch (const PimTool::UsageError& e) {
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
    PimTool::Fault fault;
    try {
        fault = PimTool::WalkItems(View(data, size), item, collect);
    } catch (const PimTool::UsageError& e) {
        throw Failure(Failure::Kind::UnknownItem, e.what());
    }
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
