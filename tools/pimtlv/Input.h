#ifndef PIMTLV_TOOL_INPUT_H
#define PIMTLV_TOOL_INPUT_H

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Tool.h"

namespace PimTool {

// The whole input of a command: a regular file (or standard input redirected
// from one) is mapped, so a capture of any size costs no copy and no heap;
// anything else (a pipe, a terminal) is read into one buffer. Throws
// UsageError naming the file when it cannot be read.
class InputBytes {
  public:
    explicit InputBytes(const std::string& path);
    ~InputBytes();
    InputBytes(const InputBytes&) = delete;
    InputBytes& operator=(const InputBytes&) = delete;

    ByteView View() const { return {m_data, m_size}; }
    std::string_view Text() const { return {reinterpret_cast<const char*>(m_data), m_size}; }

  private:
    const std::uint8_t* m_data = nullptr;
    std::size_t m_size = 0;
    void* m_map = nullptr;  // what munmap takes back, when mapped
    Bytes m_read;           // the bytes, when read
};

class Progress;

// An input read front to back in pieces, one character at a time, for a
// reader that never looks back (the JSON reader of encode): it holds one
// piece whatever the size of the input, a pipe's as well as a file's. Counts
// lines on the way, to say where a fault is. Throws UsageError as InputBytes.
class InputReader {
  public:
    explicit InputReader(const std::string& path);
    ~InputReader();
    InputReader(const InputReader&) = delete;
    InputReader& operator=(const InputReader&) = delete;

    bool AtEnd() const { return m_pos == m_length; }
    char Peek() const { return m_piece[m_pos]; }
    void Advance() {
        if (m_piece[m_pos] == '\n') {
            ++m_line;
            m_lineStart = m_before + m_pos + 1;
        }
        if (++m_pos == m_length) Next();
    }
    // Line and column (both from 1) of a byte offset in the current line or
    // on a later one the reader has not reached.
    void LineAndColumn(std::size_t offset, std::size_t& line, std::size_t& column) const;

  private:
    void Next();

    std::string m_name;
    int m_fd = -1;
    std::vector<char> m_piece;
    std::size_t m_pos = 0, m_length = 0;
    std::size_t m_before = 0;  // bytes of the pieces before this one
    std::size_t m_line = 1, m_lineStart = 0;
    std::unique_ptr<Progress> m_progress;
};

// Reads a whole file, or standard input for "-" or an empty name. Throws
// UsageError naming the file when it cannot be read.
std::string ReadInput(const std::string& path);

// Hex text to bytes; white space anywhere is ignored. Throws UsageError with
// the line and column of the first bad character, or for an odd digit count.
Bytes DecodeHex(std::string_view text);

// Bytes as lower-case hex, pairs separated by blanks, lineWidth pairs a line
// (0: one line).
std::string EncodeHex(const std::uint8_t* data, std::size_t size, std::size_t lineWidth);

// Line and column (both from 1) of a byte offset in text.
void LineAndColumn(std::string_view text, std::size_t offset, std::size_t& line,
                   std::size_t& column);

// A file written as it goes, or standard output for "-" or an empty name.
// Throws UsageError naming the file when it cannot be made or written.
class OutputFile {
  public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(const void* data, std::size_t size);
    void Close();  // flushes; throws when what was written did not all arrive

  private:
    std::string m_name;
    std::FILE* m_file = nullptr;
    bool m_owned = false;
};

// Writes bytes to a file, or standard output for "-" or an empty name.
void WriteOutput(const std::string& path, const std::string& bytes);

// The progress of a long run over an input, on standard error when that is a
// terminal and the input is large: bytes done of total and the rate, on one
// line that is rewritten and cleared at the end.
class Progress {
  public:
    explicit Progress(std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Cheap enough to call for every element: it looks at the clock only
    // every megabyte.
    void At(std::size_t done) {
        if (m_on && done >= m_next) Show(done);
    }

  private:
    void Show(std::size_t done);

    bool m_on = false;
    bool m_shownOnce = false;
    std::size_t m_total = 0;
    std::size_t m_next = 0;
    std::chrono::steady_clock::time_point m_start, m_shown;
};

}  // namespace PimTool

#endif
