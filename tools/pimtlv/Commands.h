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

// Decode of a stream already read: the document of its item, or a JSON
// array of the documents of its items when it holds several (or none).
int DecodeStream(const Options& options, ByteView data, std::ostream& out, std::ostream& err);

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

// Appends one dump line (without its newline) to line.
void DumpLine(std::string& line, const Element& element, const char* name, bool color);

}  // namespace PimTool

#endif
