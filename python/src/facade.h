#ifndef PIMTLV_PYTHON_FACADE_H
#define PIMTLV_PYTHON_FACADE_H

// The one place where the Python package meets the C++ code: everything the
// binding offers goes through these functions. Documents come from the
// document library; the walk and the text formats from the tool's tables.
// Nothing here knows an item or an operation.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bridges/common/Bridge.h"
#include "bridges/common/Merge.h"
#include "doc/Document.h"

namespace pimtlv_python {

// What went wrong, as the package's exception classes tell it apart.
class Failure : public std::runtime_error {
  public:
    enum class Kind {
        Document,     // a document (or its JSON) the creator cannot be driven with
        UnknownItem,  // an item kind the stream does not tell, or a name that is none
        Format,       // a text format this build does not have
        Unsupported,  // an operation this build does not have (merge onto a text)
    };
    static constexpr std::size_t kNoOffset = static_cast<std::size_t>(-1);
    Failure(Kind k, const std::string& sentence, std::size_t at = kNoOffset)
        : std::runtime_error(sentence), kind(k), offset(at) {}
    Kind kind;
    std::size_t offset;
};

// Why a walk or a parse stopped before the end of the input.
struct StreamFault {
    bool present = false;
    std::size_t offset = 0;
    std::string sentence;
};

// Where and why a decode stopped before the end of its input.
struct DecodeFault {
    enum class Kind {
        None,
        Malformed,    // bytes that cannot be read, or an item its parser stopped in
        UnknownItem,  // an item whose kind its frame does not tell
    };
    Kind kind = Kind::None;
    std::size_t offset = 0;
    std::string sentence;
};

// Hands onDocument the document of every item of data as it is read, up to
// and including a malformed one as far as its parser read it, and says
// where and why the decode stopped early. item forces the kind ("" tells it
// from each item's frame; a name that is none throws Failure (UnknownItem));
// trace keeps the parsers' code-0 trace lines.
using OnDocument = std::function<void(PimDoc::Document&&)>;
DecodeFault Decode(const std::uint8_t* data, std::size_t size, const std::string& item, bool trace,
                   const OnDocument& onDocument);

// Appends the stream a creator writes for one document to out, and "call N
// (Op)" to refused for each call it refused. Throws Failure (Document).
void Encode(const PimDoc::Document& document, std::vector<std::uint8_t>& out,
            std::vector<std::string>& refused);

// One element as the walk meets it, named in its item's context.
struct WalkElement {
    std::size_t offset = 0;
    unsigned int depth = 0;
    unsigned int elementClass = 0;
    unsigned int typeId = 0;
    std::uint32_t length = 0;
    const char* name = nullptr;           // the type ID's constant, or null
    const std::uint8_t* value = nullptr;  // into the data walked
    long long number = 0;                 // the value of the numeric classes
    bool numeric = false;
};
// Every element of every item, in stream order, until the end or a fault.
StreamFault Walk(const std::uint8_t* data, std::size_t size, const std::string& item,
                 std::vector<WalkElement>& elements);
std::string ClassName(unsigned int elementClass);

// Where each item starts.
std::vector<std::size_t> ItemOffsets(const std::uint8_t* data, std::size_t size);

// The text formats this build has ("ics", "vcf", "eml", "mbox").
std::vector<std::string> Formats();

// Text to item streams, and back; a merge onto an original text throws
// Failure (Unsupported) where this build has none for the format.
PimBridge::ImportResult FromText(const std::string& format, const char* text, std::size_t size);
PimBridge::ExportResult ToText(const std::string& format, const std::uint8_t* data,
                               std::size_t size);
PimBridge::MergeResult MergeText(const std::string& format, const std::string& original,
                                 const std::uint8_t* data, std::size_t size,
                                 const PimBridge::MergeOptions& options);

}  // namespace pimtlv_python

#endif
