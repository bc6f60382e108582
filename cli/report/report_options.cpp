// Declares the options on reports.
#include "cli/report/report_options.h"

namespace pkgvet::cli {

namespace {

constexpr Words<Format, 7> kFormats = {{
    {"text", Format::Text},
    {"concise", Format::Concise},
    {"json", Format::Json},
    {"jsonl", Format::Jsonl},
    {"sarif", Format::Sarif},
    {"junit", Format::Junit},
    {"github", Format::Github},
}};

constexpr const char* kOutputArgument = "FORMAT:PATH";
constexpr char kFormatEnd = ':';

// Nothing when the word is not of the form FORMAT:PATH. The first colon divides, since a path may
// hold others.
std::optional<Output> outputOf(const std::string& word) {
    const std::size_t end = word.find(kFormatEnd);
    const std::optional<Format> format = valueOf(kFormats, word.substr(0, end));
    if (!format || end == std::string::npos || end + 1 == word.size()) {
        return std::nullopt;
    }
    return Output{*format, word.substr(end + 1)};
}

Option outputOption(std::vector<Output>* outputs) {
    Option option;
    option.names = {"-o", "--output"};
    option.description = "Write a report to a file as well; may be repeated";
    option.argument = kOutputArgument;
    option.takesFile = true;
    option.mayRepeat = true;
    option.set = [outputs](const std::string& word) {
        const std::optional<Output> output = outputOf(word);
        if (!output) {
            return std::string("not ") + kOutputArgument + ": " + word;
        }
        outputs->push_back(*output);
        return std::string();
    };
    return option;
}

}  // namespace

std::vector<Option> reportOptions(ReportOptions* options) {
    return {
        choiceOption("--format", kFormats, &options->format, "Format on standard output [text]"),
        outputOption(&options->outputs),
        colorOption(&options->color),
        flagOption({"-q", "--quiet"}, &options->quiet,
                   "One verdict line for each package, no findings"),
        flagOption({"--explain"}, &options->explain, "Show below each finding how to put it right"),
        flagOption({"--timings"}, &options->timings, "Show how long each package took"),
    };
}

}  // namespace pkgvet::cli
