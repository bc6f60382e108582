// Options that say where a report goes and in which format.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/option.h"

namespace pkgvet::cli {

inline constexpr std::string_view kStandardOutputPath = "-";
inline constexpr const char* kOneFormatOnStandardOutput =
    "standard output takes one format: --format or one --output to -";

// A report beside the one on standard output, or the latter itself where the path is "-".
template <typename Format>
struct OutputIn {
    Format format = Format();
    std::string path;
};

// The option -o FORMAT:PATH, which adds to outputs. words must outlive it.
template <typename Format, std::size_t kSize>
Option outputOption(const Words<Format, kSize>& words, std::vector<OutputIn<Format>>* outputs,
                    const std::string& description) {
    Option option;
    option.names = {"-o", "--output"};
    option.description = description;
    option.argument = "FORMAT:PATH";
    option.takesFile = true;
    option.mayRepeat = true;
    option.set = [&words, outputs](const std::string& word) {
        // The first colon divides, since a path may hold others.
        const std::size_t end = word.find(':');
        const std::optional<Format> format = valueOf(words, word.substr(0, end));
        if (!format || end == std::string::npos || end + 1 == word.size()) {
            return "not FORMAT:PATH: " + word;
        }
        outputs->push_back({*format, word.substr(end + 1)});
        return std::string();
    };
    return option;
}

// The outputs that go to files.
template <typename Format>
std::vector<OutputIn<Format>> filesAmong(const std::vector<OutputIn<Format>>& outputs) {
    std::vector<OutputIn<Format>> files;
    std::copy_if(outputs.begin(), outputs.end(), std::back_inserter(files),
                 [](const OutputIn<Format>& output) { return output.path != kStandardOutputPath; });
    return files;
}

// The formats that are asked for on standard output, each once: the first of the enumeration
// unless something else is. More than one contradict each other.
template <typename Format>
std::vector<Format> formatsOfStandardOutput(const std::optional<Format>& format,
                                            const std::vector<OutputIn<Format>>& outputs) {
    std::vector<Format> formats;
    if (format) {
        formats.push_back(*format);
    }
    for (const OutputIn<Format>& output : outputs) {
        const bool isNew =
            std::find(formats.begin(), formats.end(), output.format) == formats.end();
        if (output.path == kStandardOutputPath && isNew) {
            formats.push_back(output.format);
        }
    }
    return formats.empty() ? std::vector<Format>{Format()} : formats;
}

template <typename Format>
std::vector<std::string> pathsOf(const std::vector<OutputIn<Format>>& outputs) {
    std::vector<std::string> paths;
    for (const OutputIn<Format>& output : outputs) {
        paths.push_back(output.path);
    }
    return paths;
}

}  // namespace pkgvet::cli
