#include "Input.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace PimTool {

namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string Printable(char c) {
    const auto u = static_cast<unsigned char>(c);
    if (u >= 0x20 && u < 0x7F) return std::string("'") + c + "'";
    char buf[8];
    std::snprintf(buf, sizeof buf, "0x%02x", u);
    return buf;
}

}  // namespace

namespace {

std::string Shown(const std::string& path) {
    return path.empty() || path == "-" ? std::string("standard input") : "'" + path + "'";
}

// The descriptor of an input, refusing what is no file to read.
int OpenInput(const std::string& path) {
    if (path.empty() || path == "-") return STDIN_FILENO;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        const int err = errno;
        throw UsageError("cannot open '" + path + "': " + std::strerror(err));
    }
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
        ::close(fd);
        throw UsageError("'" + path + "' is a directory");
    }
    return fd;
}

}  // namespace

InputBytes::InputBytes(const std::string& path) {
    const int fd = OpenInput(path);
    struct Closer {
        int fd;
        ~Closer() {
            if (fd != STDIN_FILENO) ::close(fd);
        }
    } closer{fd};
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0 &&
        ::lseek(fd, 0, SEEK_CUR) == 0) {
        const auto size = static_cast<std::size_t>(st.st_size);
        void* map = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
        if (map != MAP_FAILED) {
            ::madvise(map, size, MADV_SEQUENTIAL);
            m_map = map;
            m_data = static_cast<const std::uint8_t*>(map);
            m_size = size;
            return;
        }
    }
    std::size_t used = 0;
    m_read.resize(1 << 16);
    for (;;) {
        if (used == m_read.size()) m_read.resize(m_read.size() * 2);
        const ssize_t n = ::read(fd, m_read.data() + used, m_read.size() - used);
        if (n == 0) break;
        if (n < 0) {
            if (errno == EINTR) continue;
            const int err = errno;
            throw UsageError("cannot read " + Shown(path) + ": " + std::strerror(err));
        }
        used += static_cast<std::size_t>(n);
    }
    m_read.resize(used);
    m_read.shrink_to_fit();
    m_data = m_read.data();
    m_size = used;
}

InputBytes::~InputBytes() {
    if (m_map != nullptr) ::munmap(m_map, m_size);
}

InputReader::InputReader(const std::string& path)
    : m_name(path.empty() || path == "-" ? std::string("standard input") : "'" + path + "'"),
      m_fd(OpenInput(path)),
      m_piece(std::size_t{1} << 16) {
    struct stat st {};
    const bool file = ::fstat(m_fd, &st) == 0 && S_ISREG(st.st_mode);
    m_progress = std::make_unique<Progress>(file ? static_cast<std::size_t>(st.st_size) : 0);
    Next();
}

InputReader::~InputReader() {
    if (m_fd != STDIN_FILENO) ::close(m_fd);
}

void InputReader::Next() {
    m_before += m_length;
    m_pos = m_length = 0;
    for (;;) {
        const ssize_t n = ::read(m_fd, m_piece.data(), m_piece.size());
        if (n >= 0) {
            m_length = static_cast<std::size_t>(n);
            m_progress->At(m_before);
            return;
        }
        if (errno == EINTR) continue;
        const int err = errno;
        throw UsageError("cannot read " + m_name + ": " + std::strerror(err));
    }
}

void InputReader::LineAndColumn(std::size_t offset, std::size_t& line, std::size_t& column) const {
    line = m_line;
    column = (offset > m_lineStart ? offset - m_lineStart : 0) + 1;
    // The rest of the piece, up to the offset, may start new lines.
    for (std::size_t at = m_before + m_pos; at < offset && at < m_before + m_length; ++at) {
        if (m_piece[at - m_before] == '\n') {
            ++line;
            column = offset - at;
        }
    }
}

std::string ReadInput(const std::string& path) {
    const InputBytes input(path);
    return std::string(input.Text());
}

void LineAndColumn(std::string_view text, std::size_t offset, std::size_t& line,
                   std::size_t& column) {
    line = 1;
    column = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
}

Bytes DecodeHex(std::string_view text) {
    Bytes out;
    out.reserve(text.size() / 2);
    int high = -1;
    std::size_t highAt = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (IsSpace(c)) continue;
        const int v = HexValue(c);
        if (v < 0) {
            std::size_t line = 0, column = 0;
            LineAndColumn(text, i, line, column);
            throw UsageError("bad hex input: unexpected character " + Printable(c) + " at line " +
                             std::to_string(line) + ", column " + std::to_string(column));
        }
        if (high < 0) {
            high = v;
            highAt = i;
        } else {
            out.push_back(static_cast<std::uint8_t>((high << 4) | v));
            high = -1;
        }
    }
    if (high >= 0) {
        std::size_t line = 0, column = 0;
        LineAndColumn(text, highAt, line, column);
        throw UsageError("bad hex input: odd number of hex digits (the last one is at line " +
                         std::to_string(line) + ", column " + std::to_string(column) + ")");
    }
    return out;
}

std::string EncodeHex(const std::uint8_t* data, std::size_t size, std::size_t lineWidth) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(size * 3);
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0) out += (lineWidth != 0 && i % lineWidth == 0) ? '\n' : ' ';
        out += digits[data[i] >> 4];
        out += digits[data[i] & 0x0F];
    }
    return out;
}

OutputFile::OutputFile(const std::string& path) : m_name(path) {
    if (path.empty() || path == "-") {
        m_name = "standard output";
        m_file = stdout;
        return;
    }
    errno = 0;
    m_file = std::fopen(path.c_str(), "wb");
    if (m_file == nullptr) {
        const int err = errno;
        throw UsageError("cannot create '" + path +
                         "': " + (err != 0 ? std::strerror(err) : "unwritable"));
    }
    m_owned = true;
    m_name = "'" + path + "'";
}

OutputFile::~OutputFile() {
    if (m_owned && m_file != nullptr) std::fclose(m_file);
}

void OutputFile::Write(const void* data, std::size_t size) {
    if (size != 0 && std::fwrite(data, 1, size, m_file) != size) {
        throw UsageError("cannot write " + m_name);
    }
}

void OutputFile::Close() {
    const bool ok = std::fflush(m_file) == 0 && std::ferror(m_file) == 0;
    if (m_owned) {
        const bool closed = std::fclose(m_file) == 0;
        m_file = nullptr;
        if (!closed) throw UsageError("cannot write " + m_name);
    }
    if (!ok) throw UsageError("cannot write " + m_name);
}

void WriteOutput(const std::string& path, const std::string& bytes) {
    OutputFile out(path);
    out.Write(bytes.data(), bytes.size());
    out.Close();
}

namespace {

constexpr std::size_t kProgressFrom = std::size_t{64} << 20;  // smaller inputs finish at once
constexpr std::size_t kProgressStep = std::size_t{1} << 20;   // bytes between looks at the clock
constexpr double kMiB = 1024.0 * 1024.0;

}  // namespace

Progress::Progress(std::size_t total) : m_total(total) {
    m_on = total > kProgressFrom && ::isatty(STDERR_FILENO) != 0;
    m_start = m_shown = std::chrono::steady_clock::now();
}

Progress::~Progress() {
    if (m_shownOnce) std::fputs("\r\033[K", stderr);
}

void Progress::Show(std::size_t done) {
    m_next = done + kProgressStep;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_shown < std::chrono::milliseconds(250)) return;
    m_shown = now;
    m_shownOnce = true;
    const double seconds = std::chrono::duration<double>(now - m_start).count();
    const double mib = static_cast<double>(done) / kMiB;
    const double total = static_cast<double>(m_total) / kMiB;
    std::fprintf(stderr, "\r%.1f of %.1f MiB (%.0f%%), %.1f MiB/s\033[K", mib, total,
                 100.0 * mib / total, seconds > 0 ? mib / seconds : 0.0);
    std::fflush(stderr);
}

}  // namespace PimTool
