// Declares the options on reports.
#include "cli/report/report_options.h"

#include <algorithm>
#include <iterator>

namespace pkgvet::cli {

namespace {

constexpr Words<Format, 11> kFormats = {{
    {"text", Format::Text},
    {"concise", Format::Concise},
    {"json", Format::Json},
    {"jsonl", Format::Jsonl},
    {"sarif", Format::Sarif},
    {"junit", Format::Junit},
    {"github", Format::Github},
    {"gitlab", Format::Gitlab},
    {"markdown", Format::Markdown},
    {"html", Format::Html},
    {"in-toto", Format::InToto},
}};

constexpr const char* kOutputArgument = "FORMAT:PATH";
constexpr char kFormatEnd = ':';
constexpr const char* kStandardOutput = "-";

bool isForStandardOutput(const Output& output) {
    return output.path == kStandardOutput;
}

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
    option.description =
        "Write a report to a file as well, in-toto to a directory; may be repeated; - is "
        "standard output";
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
        flagOption({"--split"}, &options->split,
                   "Write further SARIF files where one would be too large for its readers"),
        colorOption(&options->color),
        flagOption({"-q", "--quiet"}, &options->quiet,
                   "One verdict line for each package, no findings"),
        flagOption({"--explain"}, &options->explain, "Show below each finding how to put it right"),
        flagOption({"--timings"}, &options->timings, "Show how long each package took"),
    };
}

std::vector<Output> filesOf(const ReportOptions& options) {
    std::vector<Output> files;
    std::remove_copy_if(options.outputs.begin(), options.outputs.end(), std::back_inserter(files),
                        isForStandardOutput);
    return files;
}

std::vector<Format> formatsOfStandardOutput(const ReportOptions& options) {
    std::vector<Format> formats;
    if (options.format) {
        formats.push_back(*options.format);
    }
    for (const Output& output : options.outputs) {
        const bool isNew =
            std::find(formats.begin(), formats.end(), output.format) == formats.end();
        if (isForStandardOutput(output) && isNew) {
            formats.push_back(output.format);
        }
    }
    return formats.empty() ? std::vector<Format>{Format::Text} : formats;
}

bool hasReportIn(const ReportOptions& options, std::initializer_list<Format> formats) {
    std::vector<Format> all = formatsOfStandardOutput(options);
    for (const Output& output : options.outputs) {
        all.push_back(output.format);
    }
    return std::find_first_of(all.begin(), all.end(), formats.begin(), formats.end()) != all.end();
}

}  // namespace pkgvet::cli
