#ifndef PIMTLV_TESTS_TOOL_TOOLRUN_H
#define PIMTLV_TESTS_TOOL_TOOLRUN_H

// Runs the built pimtlv program as a person would, for the tool's tests: the
// arguments as shell words, input on standard input, and what it printed and
// how it exited. Every test program of tests/tool is compiled with
// PIMTLV_TOOL_PATH naming the program.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace ToolRun {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline void Spit(const std::string& path, const std::string& data) {
    std::ofstream(path, std::ios::binary) << data;
}

// CTest runs test cases as separate processes side by side: each process has
// its own files.
inline std::string Temp(const std::string& name) {
    return testing::TempDir() + "pimtlv_tool_" + std::to_string(getpid()) + "_" + name;
}

// Runs the tool with args (shell words) and input on standard input.
inline Result Tool(const std::string& args, const std::string& input = "") {
    const std::string in = Temp("in"), out = Temp("out"), err = Temp("err");
    Spit(in, input);
    const std::string command =
        std::string(PIMTLV_TOOL_PATH) + " " + args + " <" + in + " >" + out + " 2>" + err;
    const int raw = std::system(command.c_str());
    Result r;
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = Slurp(out);
    r.err = Slurp(err);
    for (const std::string& path : {in, out, err}) std::remove(path.c_str());
    return r;
}

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream s(text);
    for (std::string line; std::getline(s, line);) lines.push_back(line);
    return lines;
}

}  // namespace ToolRun

#endif
