#ifndef PIMTLV_TOOL_COMMANDS_H
#define PIMTLV_TOOL_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

#include "Items.h"

namespace PimTool {

struct Options {
    std::string input;   // file name, "-" or empty for standard input
    std::string output;  // encode: file name, "-" or empty for standard output
    std::string item;    // forced item kind, empty to detect it
    bool hex = false;    // input (or encode's output) as hex text
    bool trace = false;  // decode: keep the parser's code-0 trace lines
    bool color = false;  // dump: colour the output
};

// Each command returns the exit status; UsageError escapes for input the
// tool cannot use.
int Dump(const Options& options, std::ostream& out, std::ostream& err);
int Decode(const Options& options, std::ostream& out, std::ostream& err);
int Encode(const Options& options, std::ostream& err);

// Why a command stopped short of the end of a stream: the offset of the
// element (or item) that could not be read and the sentence err shows after
// "error: ".
struct StreamError {
    bool present = false;
    std::size_t offset = 0;
    std::string sentence;
};

// Thrown for a well-formed item whose kind the stream does not tell: where
// it starts, for callers that report places rather than lines.
class UnknownItemError : public UsageError {
  public:
    UnknownItemError(const std::string& what, std::size_t at) : UsageError(what), offset(at) {}
    std::size_t offset;
};

// Decode of a stream already read: the document of its item, or a JSON
// array of the documents of its items when it holds several (or none).
// error (when not null) receives what err is told of a malformed stream.
int DecodeStream(const Options& options, ByteView data, std::ostream& out, std::ostream& err,
                 StreamError* error = nullptr);

// Where each item of a file starts, in file order (a rest that is no complete
// item counts as one).
std::vector<std::size_t> ItemOffsets(ByteView data);

// Hears every element of a walk with the name of its type ID in its item's
// context (null when none is known).
class NamedElementSink {
  public:
    virtual ~NamedElementSink() = default;
    virtual void OnElement(const Element& element, const char* name) = 0;
};

// The walk of dump: every element of every item, each item named in its own
// kind, or in forcedItem's when that is not empty (an unknown one throws
// UsageError). Returns the fault that ended it, if any.
Fault WalkItems(ByteView data, const std::string& forcedItem, NamedElementSink& sink);

// What encode makes of one JSON document's text: the item named and the stream
// its creator wrote, with the calls the creator refused. Throws UsageError
// for a document the tool cannot use, and when the creator cannot finish the
// stream.
struct Encoded {
    std::string item;
    Bytes bytes;
    std::vector<std::string> refused;
};
Encoded EncodeDocument(const std::string& text);
int Check(const Options& options, std::ostream& out, std::ostream& err);
int ListOps(const std::string& item, std::ostream& out);

// Appends a text value (its bytes before the terminator) as a quoted literal,
// with quotes, backslashes, control bytes and bytes that are not UTF-8 escaped.
void QuoteText(std::string& out, const std::uint8_t* value, std::size_t length);

// Appends one dump line (without its newline) to line.
void DumpLine(std::string& line, const Element& element, const char* name, bool color);

}  // namespace PimTool

#endif
