#include "facade.h"

#include <sstream>

#include "Bridges.h"
#include "Commands.h"

namespace pimtlv_python {

namespace {

pimtlv_tool::ByteView View(const std::uint8_t* data, std::size_t size) {
    return pimtlv_tool::ByteView(data, size);
}

StreamFault FromError(const pimtlv_tool::StreamError& error) {
    return {error.present, error.offset, error.sentence};
}

// The format of that name; throws Failure when this build has none.
const pimtlv_tool::FormatAdapter& NamedFormat(const std::string& name) {
    const pimtlv_tool::FormatAdapter* format = pimtlv_tool::FindFormat(name);
    if (format == nullptr) {
        throw Failure(Failure::Kind::Format, "unknown format '" + name + "' (this build has " +
                                                 pimtlv_tool::FormatNames() + ")");
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
    pimtlv_tool::Options options;
    options.item = item;
    options.trace = trace;
    std::ostringstream out, err;
    pimtlv_tool::StreamError error;
    try {
        pimtlv_tool::DecodeStream(options, View(data, size), out, err, &error);
    } catch (const pimtlv_tool::UnknownItemError& e) {
        // The items before the one that cannot be told decode as they are.
        std::ostringstream before;
        if (e.offset > 0) {
            pimtlv_tool::DecodeStream(options, View(data, e.offset), before, err);
        }
        Failure failure(Failure::Kind::UnknownItem, ForPython(e.what()), e.offset);
        failure.documents = before.str();
        throw failure;
    } catch (const pimtlv_tool::UsageError& e) {
        throw Failure(Failure::Kind::UnknownItem, e.what());
    }
    return {out.str(), FromError(error)};
}

Encoded Encode(const std::string& documentJson) {
    try {
        pimtlv_tool::Encoded encoded = pimtlv_tool::EncodeDocument(documentJson);
        return {std::move(encoded.item), std::move(encoded.bytes), std::move(encoded.refused)};
    } catch (const pimtlv_tool::UsageError& e) {
        throw Failure(Failure::Kind::Document, e.what());
    }
}

StreamFault Walk(const std::uint8_t* data, std::size_t size, const std::string& item,
                 std::vector<WalkElement>& elements) {
    class Collect : public pimtlv_tool::NamedElementSink {
      public:
        explicit Collect(std::vector<WalkElement>& into) : m_into(into) {}
        void OnElement(const pimtlv_tool::Element& e, const char* name) override {
            WalkElement w;
            w.offset = e.offset;
            w.depth = e.depth;
            w.elementClass = e.header.elementClass;
            w.typeId = e.header.typeId;
            w.length = e.header.length;
            w.name = name;
            w.value = e.value;
            w.number = e.number;
            w.numeric = pimtlv_tool::FixedSize(e.header.elementClass) != 0;
            m_into.push_back(w);
        }

      private:
        std::vector<WalkElement>& m_into;
    } collect(elements);
    pimtlv_tool::Fault fault;
    try {
        fault = pimtlv_tool::WalkItems(View(data, size), item, collect);
    } catch (const pimtlv_tool::UsageError& e) {
        throw Failure(Failure::Kind::UnknownItem, e.what());
    }
    if (!fault.present) return {};
    return {true, fault.offset,
            "malformed stream at offset " + std::to_string(fault.offset) + ": " + fault.reason};
}

std::string ClassName(unsigned int elementClass) {
    return pimtlv_tool::ClassName(elementClass);
}

std::vector<std::size_t> ItemOffsets(const std::uint8_t* data, std::size_t size) {
    return pimtlv_tool::ItemOffsets(View(data, size));
}

std::vector<std::string> Formats() {
    std::vector<std::string> names;
    for (const pimtlv_tool::FormatAdapter* f : pimtlv_tool::Formats()) names.emplace_back(f->name);
    return names;
}

PimBridge::ImportResult FromText(const std::string& format, const char* text, std::size_t size) {
    const pimtlv_tool::FormatAdapter& f = NamedFormat(format);
    if (f.importText == nullptr) {
        throw Failure(Failure::Kind::Unsupported, std::string(f.title) + " is written only");
    }
    return f.importText(text, size);
}

PimBridge::ExportResult ToText(const std::string& format, const std::uint8_t* data,
                               std::size_t size) {
    const pimtlv_tool::FormatAdapter& f = NamedFormat(format);
    if (f.exportItems == nullptr) {
        throw Failure(Failure::Kind::Unsupported, std::string(f.title) + " is read only");
    }
    return f.exportItems(data, size);
}

PimBridge::MergeResult MergeText(const std::string& format, const std::string& original,
                                 const std::uint8_t* data, std::size_t size,
                                 const PimBridge::MergeOptions& options) {
    const pimtlv_tool::FormatAdapter& f = NamedFormat(format);
    if (f.mergeItems == nullptr) {
        throw Failure(Failure::Kind::Unsupported,
                      std::string("this build has no merge onto an original ") + f.title +
                          " text; export without onto=");
    }
    return f.mergeItems(original.data(), original.size(), data, size, options);
}

}  // namespace pimtlv_python
