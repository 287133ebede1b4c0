#ifndef PIMTLV_TOOL_INPUT_H
#define PIMTLV_TOOL_INPUT_H

#include <string>

#include "Tool.h"

namespace pimtlv_tool {

// Reads a whole file, or standard input for "-" or an empty name. Throws
// UsageError naming the file when it cannot be read.
std::string ReadInput(const std::string& path);

// Hex text to bytes; white space anywhere is ignored. Throws UsageError with
// the line and column of the first bad character, or for an odd digit count.
Bytes DecodeHex(const std::string& text);

// Bytes as lower-case hex, pairs separated by blanks, lineWidth pairs a line
// (0: one line).
std::string EncodeHex(const std::uint8_t* data, std::size_t size, std::size_t lineWidth);

// Line and column (both from 1) of a byte offset in text.
void LineAndColumn(const std::string& text, std::size_t offset, std::size_t& line,
                   std::size_t& column);

// Writes bytes to a file, or standard output for "-" or an empty name.
void WriteOutput(const std::string& path, const std::string& bytes);

}  // namespace pimtlv_tool

#endif
