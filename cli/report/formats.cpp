// Finds the steps of a format.
#include "cli/report/formats.h"

#include "cli/page/page.h"

namespace pkgvet::cli {

FormatSteps stepsOf(Format format) {
    switch (format) {
        case Format::Text:
            return {addText, finishText};
        case Format::Concise:
            return {addConcise, finishConcise};
        case Format::Json:
            return {addJson, finishJson, headJson, ","};
        case Format::Jsonl:
            return {addJsonLine, finishJsonLines};
        case Format::Sarif:
            return {nullptr, finishSarif};
        case Format::Junit:
            return {nullptr, nullptr};
        case Format::Github:
            return {nullptr, finishGithub};
        case Format::Gitlab:
            return {nullptr, finishGitlab};
        case Format::Markdown:
            return {nullptr, finishMarkdown};
        case Format::Html:
            return {nullptr, finishHtml};
        case Format::InToto:
            return {nullptr, finishInToto};
    }
    return {addText, finishText};  // no such format
}

void finishHtml(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    writePage(run, style.timings, stream);
}

}  // namespace pkgvet::cli
