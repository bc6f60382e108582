// The search for hard-coded paths against its plain formulation. The first byte cuts the text.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "pkgvet/files/hardcoded_path_search.h"

namespace {

// Character by character, as formatted input without white space would come.
bool plainlyFound(std::string_view text) {
    constexpr std::string_view kHome = "/home/defaultuser";
    std::size_t matched = 0;
    for (const char c : text) {
        if (c == ' ' || (c >= '\t' && c <= '\r')) {
            continue;
        }
        matched = c == kHome[matched] ? matched + 1 : 0;
        if (matched == kHome.size()) {
            return true;
        }
    }
    return false;
}

bool foundInPieces(std::string_view text, std::size_t size) {
    pkgvet::HardcodedPathSearch search;
    while (!text.empty()) {
        if (search.feed(text.substr(0, size))) {
            return true;
        }
        text.remove_prefix(std::min(size, text.size()));
    }
    return false;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    if (input.empty()) {
        return;
    }
    const std::size_t size = static_cast<unsigned char>(input.front()) + std::size_t{1};
    const std::string_view text = input.substr(1);
    const bool expected = plainlyFound(text);
    expect(foundInPieces(text, size) == expected, "pieces make no difference");
    expect(foundInPieces(text, text.size() + 1) == expected, "the whole text gives the answer");
}
