// The way from libFuzzer, or from the replay of files, to a target.
#include "fuzz/fuzz_target.h"

#include <glib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <streambuf>

namespace pkgvet::fuzz {

namespace {

constexpr std::string_view kDivider = "----";

// Takes the lines of rules, so that they are put together as ever, and drops them.
class DroppingBuffer : public std::streambuf {
    int overflow(int c) override { return c == EOF ? 0 : c; }
    std::streamsize xsputn(const char*, std::streamsize size) override { return size; }
};

void dropLogLine(const char*, GLogLevelFlags, const char*, void*) {}

void beQuiet() {
    // The stream is flushed behind the last destructor.
    static auto* const buffer = new DroppingBuffer;
    std::cerr.rdbuf(buffer);
    g_log_set_default_handler(dropLogLine, nullptr);
}

}  // namespace

void expect(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::vector<std::string> partsOf(std::string_view input, std::size_t count) {
    std::vector<std::string> parts(1);
    for (const std::string& line : linesOf(input)) {
        if (line == kDivider) {
            parts.emplace_back();
        } else {
            parts.back() += line + '\n';
        }
    }
    parts.resize(std::max(parts.size(), count));
    return parts;
}

}  // namespace pkgvet::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Before the target's own objects, which then end ahead of it.
    pkgvet::fuzz::beQuiet();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pkgvet::fuzz::run({reinterpret_cast<const char*>(data), size});
    return 0;
}
