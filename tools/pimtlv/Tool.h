#ifndef PIMTLV_TOOL_TOOL_H
#define PIMTLV_TOOL_TOOL_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace PimTool {

using Bytes = std::vector<std::uint8_t>;

// Bytes the caller keeps alive: a mapped file, a span of it, a Bytes.
struct ByteView {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;

    ByteView() = default;
    ByteView(const std::uint8_t* d, std::size_t n) : data(d), size(n) {}
    ByteView(const Bytes& bytes) : data(bytes.data()), size(bytes.size()) {}  // NOLINT: a view
    ByteView Sub(std::size_t from, std::size_t count) const { return {data + from, count}; }
};

// Exit statuses: 1 for a stream that is malformed or has diagnostics (the
// tool did its job and found a problem), 2 for input the tool could not use.
constexpr int kExitProblem = 1;
constexpr int kExitUsage = 2;

// Thrown for input the tool cannot use (missing file, bad hex, bad JSON,
// unknown names, wrong types); main prints its text as one line and exits 2.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace PimTool

#endif
