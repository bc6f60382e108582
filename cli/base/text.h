// Text in lists, lines and columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// The texts one after the other with separator between them.
template <typename Texts>
std::string joined(const Texts& texts, std::string_view separator) {
    std::string result;
    bool isFirst = true;
    for (const auto& text : texts) {
        result.append(isFirst ? std::string_view() : separator).append(text);
        isFirst = false;
    }
    return result;
}

// "1 error", "2 errors".
std::string counted(std::size_t count, std::string_view noun);

// The text broken at spaces into lines of at most width bytes. A word that is longer stays whole.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

// The columns that text takes on a terminal; text went through printable().
std::size_t displayWidth(std::string_view text);

// text filled up with spaces to width columns, behind it or ahead of it.
std::string paddedRight(std::string_view text, std::size_t width);
std::string paddedLeft(std::string_view text, std::size_t width);

}  // namespace pkgvet::cli
