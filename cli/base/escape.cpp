// Escapes what a terminal or a reader of URIs would act upon.
#include "cli/base/escape.h"

#include <glib.h>

#include <array>
#include <cstdio>

namespace pkgvet::cli {

namespace {

struct Range {
    gunichar first;
    gunichar last;
};

// Controls, the marks, embeddings and isolates that set the direction of writing, what is not seen
// at all, such as a soft hyphen, and the two non-characters that XML forbids.
constexpr std::array<Range, 13> kEscaped = {{{0x00, 0x1f},
                                             {0x7f, 0x9f},
                                             {0xad, 0xad},
                                             {0x061c, 0x061c},
                                             {0x180e, 0x180e},
                                             {0x200b, 0x200f},
                                             {0x2028, 0x202e},
                                             {0x2060, 0x2069},
                                             {0x3164, 0x3164},
                                             {0xfeff, 0xfeff},
                                             {0xfff9, 0xfffb},
                                             {0xfffe, 0xffff},
                                             {0xe0000, 0xe007f}}};

bool isEscaped(gunichar c) {
    for (const Range& range : kEscaped) {
        if (c >= range.first && c <= range.last) {
            return true;
        }
    }
    return false;
}

std::string escaped(gunichar c) {
    std::array<char, 16> buffer{};
    const int size = c < 0x80 ? std::snprintf(buffer.data(), buffer.size(), "\\x%02x", c)
                              : std::snprintf(buffer.data(), buffer.size(), "\\u{%04x}", c);
    return std::string(buffer.data(), static_cast<std::size_t>(size));
}

std::string escapedByte(char byte) {
    std::array<char, 8> buffer{};
    const int size =
        std::snprintf(buffer.data(), buffer.size(), "\\x%02x", static_cast<unsigned char>(byte));
    return std::string(buffer.data(), static_cast<std::size_t>(size));
}

// The size of the valid UTF-8 character at the front of text, or 0.
std::size_t characterSize(std::string_view text) {
    const gunichar c = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    // What is not UTF-8, and a character that the end of the text cuts off.
    if (c == static_cast<gunichar>(-1) || c == static_cast<gunichar>(-2)) {
        return 0;
    }
    return static_cast<std::size_t>(g_utf8_skip[static_cast<guchar>(text.front())]);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t size = characterSize(text);
        if (size == 0) {
            result += escapedByte(text.front());
            text.remove_prefix(1);
            continue;
        }
        const gunichar c = g_utf8_get_char(text.data());
        result += isEscaped(c) ? escaped(c) : std::string(text.substr(0, size));
        text.remove_prefix(size);
    }
    return result;
}

std::optional<std::string> bytesEscaped(std::string_view text) {
    std::string result;
    bool isUtf8 = true;
    while (!text.empty()) {
        const std::size_t size = characterSize(text);
        isUtf8 = isUtf8 && size > 0;
        result += text.front() == '\\' ? "\\" : "";
        result += size == 0 ? escapedByte(text.front()) : std::string(text.substr(0, size));
        text.remove_prefix(size == 0 ? 1 : size);
    }
    return isUtf8 ? std::nullopt : std::optional<std::string>(result);
}

std::optional<std::string> bytesUnescaped(std::string_view escaped) {
    constexpr std::size_t kSize = 4;  // of "\xNN"
    std::string text;
    for (std::string_view rest = escaped; !rest.empty();) {
        std::size_t size = 1;
        char byte = rest.front();
        if (rest.starts_with("\\\\")) {
            size = 2;
        } else if (rest.starts_with("\\x") && rest.size() >= kSize) {
            size = kSize;
            const int high = g_ascii_xdigit_value(rest[2]);
            byte = static_cast<char>(high * 16 + g_ascii_xdigit_value(rest[3]));
        }
        text += byte;
        rest.remove_prefix(size);
    }
    // Only what was written here comes back the same.
    return bytesEscaped(text) == escaped ? std::optional(text) : std::nullopt;
}

std::string percentEncoded(std::string_view text, bool (*keeps)(char byte)) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        if (keeps(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
    }
    return result;
}

}  // namespace pkgvet::cli
