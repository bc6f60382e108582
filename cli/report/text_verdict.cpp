// Writes verdicts for a terminal or a log.
#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/report/folding.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kValidationOff = "validation off";
constexpr const char* kIncomplete = "incomplete: ";
constexpr std::string_view kComma = ", ";
constexpr std::string_view kSemicolon = "; ";

// Profiles that have the same verdict for the same reasons.
struct Verdict {
    bool passes;
    std::string reasons;
    std::vector<std::string> profiles;
};

std::string secondsOf(const PackageReport& package) {
    if (!package.seconds) {
        return std::string();
    }
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << *package.seconds << " s";
    return text.str();
}

// The library's own verdict where the policy of the run or a rule of the program overruled it.
std::string overruled(const Judgement& judgement) {
    if (judgement.passes == judgement.accepted()) {
        return std::string();
    }
    if (!judgement.intact) {
        return "accepted but for its integrity";
    }
    return judgement.accepted() ? "accepted by the rules alone" : "rejected by the rules alone";
}

std::string someOf(std::size_t count, const std::string& what) {
    return count == 0 ? std::string() : std::to_string(count) + " " + what;
}

// What a reader has to know in order to take the verdict for what it is.
std::string reasonsOf(const PackageReport& package, const Judgement& judgement,
                      const ReportStyle& style) {
    const FindingTally tally = tallyOf(judgement);
    std::vector<std::string> parts = {
        countsOf(tally),
        someOf(tally.grave, "never excused"),
        someOf(tally.waived, "waived"),
        someOf(tally.known, "known"),
        overruled(judgement),
        package.validationEnabled ? std::string() : std::string(kValidationOff),
        package.incomplete.empty() ? std::string() : kIncomplete + printable(package.incomplete),
        style.timings ? secondsOf(package) : std::string()};
    parts.erase(std::remove(parts.begin(), parts.end(), std::string()), parts.end());
    return joined(parts, kSemicolon);
}

std::vector<Verdict> verdictsOf(const PackageReport& package, const ReportStyle& style) {
    std::vector<Verdict> verdicts;
    for (const Judgement& judgement : package.judgements) {
        const std::string reasons = reasonsOf(package, judgement, style);
        auto same = std::find_if(verdicts.begin(), verdicts.end(), [&](const Verdict& verdict) {
            return verdict.passes == judgement.passes && verdict.reasons == reasons;
        });
        if (same == verdicts.end()) {
            same = verdicts.insert(same, {judgement.passes, reasons, {}});
        }
        same->profiles.push_back(printable(judgement.profile));
    }
    return verdicts;
}

std::string verdictName(bool accepted, const ReportStyle& style) {
    return accepted ? painted("accepted", kGreen, style.color)
                    : painted("rejected", kRed, style.color);
}

}  // namespace

void writeTextVerdict(const PackageReport& package, const ReportStyle& style,
                      std::ostream& stream) {
    const std::string path = printable(package.path);
    if (!package.judged()) {
        writeFolded(path + ": not judged: " + causeWithLastLine(package), style.columns, stream);
    }
    for (const Verdict& verdict : verdictsOf(package, style)) {
        std::string line = path + ": " + verdictName(verdict.passes, style);
        if (package.judgements.size() > 1) {
            line += " under " + joined(verdict.profiles, kComma);
        }
        line += verdict.reasons.empty() ? "" : ": " + verdict.reasons;
        writeFolded(line, style.columns, stream);
    }
}

}  // namespace pkgvet::cli
