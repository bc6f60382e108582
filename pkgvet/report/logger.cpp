// Composes the lines that report findings.
#include "pkgvet/report/logger.h"

#include <array>
#include <iostream>

namespace {

struct Vocabulary {
    std::string_view color;
    std::string_view label;
};

// Indexed by the numeric LogLevel. The tabs align the text that follows.
constexpr std::array<Vocabulary, 4> kVocabulary = {{
    {"\033[33m", "(WARNING)\t"},
    {"\033[31m", "(ERROR)\t\t"},
    {"\033[31m", "(CRITICAL)\t"},
    {"\033[1m", "(INFO)\t\t"},
}};
constexpr std::string_view kColorReset = "\033[m";

bool colorEnabled = false;

// Unformatted output, so that a field width left on the stream pads nothing.
void write(std::string_view text) {
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace

void Logger::log(LogLevel level, std::initializer_list<std::string_view> pieces) {
    const auto index = static_cast<unsigned>(level);
    if (index >= kVocabulary.size()) {
        return;
    }
    const Vocabulary& vocabulary = kVocabulary[index];
    if (colorEnabled) {
        write(vocabulary.color);
        write(vocabulary.label);
        write(kColorReset);
    } else {
        write(vocabulary.label);
    }
    for (const std::string_view piece : pieces) {
        write(piece);
    }
    std::cerr << std::endl;
}

void Logger::enableColor(bool enable) {
    colorEnabled = enable;
}
