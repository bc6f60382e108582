// Declares the options on reports.
#include "cli/report/report_options.h"

#include <algorithm>

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

}  // namespace

std::vector<Option> reportOptions(ReportOptions* options) {
    return {
        choiceOption("--format", kFormats, &options->format, "Format on standard output [text]"),
        outputOption(kFormats, &options->outputs,
                     "Write a report to a file as well, in-toto to a directory; may be repeated; - "
                     "is standard output"),
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
    return filesAmong(options.outputs);
}

std::vector<Format> formatsOfStandardOutput(const ReportOptions& options) {
    return formatsOfStandardOutput(options.format, options.outputs);
}

bool hasReportIn(const ReportOptions& options, std::initializer_list<Format> formats) {
    std::vector<Format> all = formatsOfStandardOutput(options);
    for (const Output& output : options.outputs) {
        all.push_back(output.format);
    }
    return std::find_first_of(all.begin(), all.end(), formats.begin(), formats.end()) != all.end();
}

}  // namespace pkgvet::cli
