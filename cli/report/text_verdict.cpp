// Writes verdicts for a terminal or a log.
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kValidationOff = "validation off";
constexpr const char* kIncomplete = "incomplete: ";
constexpr std::string_view kComma = ", ";

std::string verdictName(bool accepted, const ReportStyle& style) {
    return accepted ? painted("accepted", kGreen, style.color)
                    : painted("rejected", kRed, style.color);
}

std::string inBrackets(const std::vector<std::string>& parts) {
    return parts.empty() ? std::string() : " (" + joined(parts, kComma) + ")";
}

std::string secondsOf(const PackageReport& package) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << package.seconds << " s";
    return text.str();
}

// The library's own verdict where the policy of the run or a rule of the program overruled it.
std::vector<std::string> overruled(const Judgement& judgement) {
    if (judgement.passes == judgement.accepted()) {
        return {};
    }
    if (!judgement.intact) {
        return {"accepted but for its integrity"};
    }
    return {judgement.accepted() ? "accepted by the rules alone" : "rejected by the rules alone"};
}

// No counts for a package without any, and both for one with either, so that lines compare.
std::vector<std::string> findingCounts(const Judgement& judgement) {
    const FindingTally tally = tallyOf(judgement);
    std::vector<std::string> parts;
    if (tally.errors + tally.warnings > 0) {
        parts = {counted(tally.errors, "error"), counted(tally.warnings, "warning")};
    }
    if (tally.waived > 0) {
        parts.push_back(std::to_string(tally.waived) + " waived");
    }
    if (tally.known > 0) {
        parts.push_back(std::to_string(tally.known) + " known");
    }
    return parts;
}

// What a reader has to know in order to take the verdict for what it is.
std::vector<std::string> circumstances(const PackageReport& package, const ReportStyle& style) {
    std::vector<std::string> parts;
    if (!package.validationEnabled) {
        parts.emplace_back(kValidationOff);
    }
    if (!package.incomplete.empty()) {
        parts.push_back(kIncomplete + printable(package.incomplete));
    }
    if (style.timings) {
        parts.push_back(secondsOf(package));
    }
    return parts;
}

void append(std::vector<std::string>* parts, const std::vector<std::string>& more) {
    parts->insert(parts->end(), more.begin(), more.end());
}

void writeProfiles(const PackageReport& package, bool accepted, const ReportStyle& style,
                   std::ostream& stream) {
    std::vector<std::string> names;
    for (const Judgement& judgement : package.judgements) {
        if (judgement.passes == accepted) {
            names.push_back(printable(judgement.profile) + inBrackets(overruled(judgement)));
        }
    }
    if (!names.empty()) {
        stream << printable(package.path) << ": " << verdictName(accepted, style) << " under "
               << joined(names, kComma) << inBrackets(circumstances(package, style)) << '\n';
    }
}

}  // namespace

void writeTextVerdict(const PackageReport& package, const ReportStyle& style,
                      std::ostream& stream) {
    if (package.judgements.size() > 1) {
        writeProfiles(package, true, style, stream);
        writeProfiles(package, false, style, stream);
        return;
    }
    for (const Judgement& judgement : package.judgements) {
        std::vector<std::string> parts = findingCounts(judgement);
        append(&parts, overruled(judgement));
        append(&parts, circumstances(package, style));
        stream << printable(package.path) << ": " << verdictName(judgement.passes, style)
               << inBrackets(parts) << '\n';
    }
}

}  // namespace pkgvet::cli
