// Writes an effect for a terminal or a log.
#include <algorithm>
#include <string>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/effect/effect_formats.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kFurtherIndent = "    ";
// As wide as the longest name of a severity.
constexpr std::size_t kSeverityWidth = 8;

void writeTurned(const Effect& effect, std::ostream& stream) {
    stream << "Verdicts that turn: " << effect.turned.size() << '\n';
    for (const TurnedVerdict& turned : effect.turned) {
        stream << kIndent << printable(turned.path) << " (" << printable(turned.profile)
               << "): " << verdictName(turned.before) << ", now " << verdictName(turned.after)
               << '\n';
    }
}

void writePlaces(const RuleChange& rule, std::ostream& stream) {
    for (const RuleChange::Place& place : rule.first) {
        stream << kFurtherIndent << placeText(place) << '\n';
    }
    if (rule.packages > rule.first.size()) {
        stream << kFurtherIndent << "and in "
               << counted(rule.packages - rule.first.size(), "more package") << '\n';
    }
}

void writeRules(std::string_view title, const std::vector<RuleChange>& rules,
                std::ostream& stream) {
    stream << title << ": " << findingsOf(rules) << '\n';
    for (const RuleChange& rule : rules) {
        stream << kIndent << paddedRight(severityName(rule.worst), kSeverityWidth) << kIndent
               << printable(rule.rule) << kIndent << countsOf(rule) << '\n';
        for (const auto& [cause, findings] : rule.causes) {
            stream << kFurtherIndent << "because of " << printable(cause) << ": "
                   << counted(findings, "finding") << '\n';
        }
        writePlaces(rule, stream);
    }
}

void writeUnjudged(const Effect& effect, std::ostream& stream) {
    stream << "Packages not judged: " << effect.notJudged.size() << '\n';
    for (const UnjudgedPackage& package : effect.notJudged) {
        stream << kIndent << printable(package.path) << ": " << causeText(package) << '\n';
    }
}

// An effect that nobody says the sides of has none to name.
void writeSides(const Effect& effect, std::ostream& stream) {
    if (!effect.before.path.empty()) {
        stream << "Before: " << sideText(effect.before) << "\nNow: " << sideText(effect.after)
               << '\n';
    }
}

void writePaths(std::string_view title, const std::vector<std::string>& paths,
                std::ostream& stream) {
    stream << title << ": " << paths.size() << '\n';
    for (const std::string& path : paths) {
        stream << kIndent << printable(path) << '\n';
    }
}

}  // namespace

void writeEffectText(const Effect& effect, std::ostream& stream) {
    writeSides(effect, stream);
    writeTurned(effect, stream);
    writeRules("Findings that appear", effect.appeared, stream);
    writeRules("Findings that vanish", effect.vanished, stream);
    writeUnjudged(effect, stream);
    writePaths("Packages added", effect.added, stream);
    writePaths("Packages removed", effect.removed, stream);
    if (effect.partial) {
        stream << kPartialEffect << '\n';
    }
    stream << summaryOf(effect) << '\n';
}

}  // namespace pkgvet::cli
