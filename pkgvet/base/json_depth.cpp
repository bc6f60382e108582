// Measures how deep JSON nests, as the scanner of json-glib sees it.
//
// That scanner takes more than JSON: text in single quotes, and comments. The details below are
// those of its version 1.6, found by experiment, and the tests compare both on generated text.
#include "pkgvet/base/json_depth.h"

#include <algorithm>
#include <charconv>

namespace pkgvet {

namespace {

constexpr std::size_t kMaxHexDigits = 4;

constexpr unsigned int kFirstSurrogate = 0xD800;
constexpr unsigned int kLastSurrogate = 0xDFFF;

bool isHexDigit(char character) {
    return std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

bool isSurrogate(std::string_view hexDigits) {
    unsigned int code = 0;
    std::from_chars(hexDigits.data(), hexDigits.data() + hexDigits.size(), code, 16);
    code <<= 4 * (kMaxHexDigits - hexDigits.size());
    return code >= kFirstSurrogate && code <= kLastSurrogate;
}

// A position in a text, which never leaves its end.
class Cursor {
public:
    explicit Cursor(std::string_view text) : text_(text) {}

    bool atEnd() const { return at_ == text_.size(); }
    char next() { return atEnd() ? '\0' : text_[at_++]; }
    char peek() const { return atEnd() ? '\0' : text_[at_]; }

    // Behind the next end, or at the end of the text.
    void skipPast(char end) { at_ = std::min(text_.find(end, at_), text_.size() - 1) + 1; }

    // The hexadecimal digits of an escape. Where there are fewer than four, the character behind
    // them is taken as well, a quote included.
    std::string_view hexDigits() {
        const std::size_t begin = at_;
        while (at_ - begin < kMaxHexDigits && !atEnd()) {
            if (!isHexDigit(next())) {
                return text_.substr(begin, at_ - begin - 1);
            }
        }
        return text_.substr(begin, at_ - begin);
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
};

// Behind a surrogate a second one is looked for, and what stands in its place is taken all the
// same: the quote in "\ud800" ends nothing.
void skipSecondSurrogate(Cursor* cursor) {
    if (cursor->next() == '\\' && cursor->next() == 'u') {
        cursor->hexDigits();
    }
}

void skipEscape(Cursor* cursor) {
    if (cursor->next() == 'u' && isHexDigit(cursor->peek()) && isSurrogate(cursor->hexDigits())) {
        skipSecondSurrogate(cursor);
    }
}

void skipText(Cursor* cursor) {
    char character = cursor->next();
    while (character != '"' && !cursor->atEnd()) {
        if (character == '\\') {
            skipEscape(cursor);
        }
        character = cursor->next();
    }
}

}  // namespace

// Text in single quotes has no escapes, and a comment goes from one slash to the next: "/* */" is
// one, "//" is an empty one, and nothing ends with the line.
std::size_t jsonDepth(std::string_view json) {
    std::size_t depth = 0;
    std::size_t deepest = 0;
    Cursor cursor(json);
    while (!cursor.atEnd()) {
        const char character = cursor.next();
        if (character == '"') {
            skipText(&cursor);
        } else if (character == '\'' || character == '/') {
            cursor.skipPast(character);
        } else if (character == '[' || character == '{') {
            deepest = std::max(deepest, ++depth);
        } else if (depth > 0 && (character == ']' || character == '}')) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace pkgvet
