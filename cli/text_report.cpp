// Writes judgements for a terminal or a log.
#include "cli/text_report.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <string>
#include <string_view>

#include "cli/printable.h"

namespace pkgvet::cli {

namespace {

constexpr int kSeverityWidth = 8;

// Indexed by Severity.
constexpr std::array<std::string_view, 4> kColors = {"\033[1m", "\033[33m", "\033[31m",
                                                     "\033[1;31m"};
constexpr std::string_view kGreen = "\033[32m";
constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kReset = "\033[m";

std::string painted(std::string_view text, std::string_view color, bool enabled) {
    if (!enabled) {
        return std::string(text);
    }
    return std::string(color) + std::string(text) + std::string(kReset);
}

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::size_t countOf(const Judgement& judgement, Severity least, Severity most) {
    return static_cast<std::size_t>(std::count_if(
        judgement.findings.begin(), judgement.findings.end(), [&](const Finding& finding) {
            return finding.severity >= least && finding.severity <= most;
        }));
}

}  // namespace

void TextReport::add(const PackageReport& package) {
    if (!package.judged()) {
        ++notJudged_;
        return;
    }
    ++(package.passes() ? accepted_ : rejected_);
    for (const Judgement& judgement : package.judgements) {
        if (!style_.quiet) {
            writeFindings(package, judgement);
        }
        writeVerdict(package, judgement);
    }
}

void TextReport::finish() {
    stream_ << counted(accepted_ + rejected_ + notJudged_, "package") << ": " << accepted_
            << " accepted, " << rejected_ << " rejected, " << notJudged_ << " not judged\n";
    stream_.flush();
}

void TextReport::writeFindings(const PackageReport& package, const Judgement& judgement) {
    if (judgement.findings.empty()) {
        return;
    }
    stream_ << printable(package.path) << '\n';
    for (const Finding& finding : judgement.findings) {
        const std::string_view name = severityName(finding.severity);
        const std::string padding(kSeverityWidth - name.size(), ' ');
        stream_ << "  "
                << painted(name, kColors[static_cast<std::size_t>(finding.severity)], style_.color)
                << padding << "  " << printable(finding.message) << '\n';
    }
}

void TextReport::writeVerdict(const PackageReport& package, const Judgement& judgement) {
    const std::size_t errors = countOf(judgement, Severity::Error, Severity::Critical);
    const std::size_t warnings = countOf(judgement, Severity::Warning, Severity::Warning);
    stream_ << printable(package.path) << ": "
            << (judgement.passes ? painted("accepted", kGreen, style_.color)
                                 : painted("rejected", kRed, style_.color));
    if (errors + warnings > 0) {
        stream_ << " (" << counted(errors, "error") << ", " << counted(warnings, "warning") << ")";
    }
    stream_ << '\n';
    stream_.flush();
}

}  // namespace pkgvet::cli
