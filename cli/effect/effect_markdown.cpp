// Writes an effect in Markdown.
#include <sstream>
#include <string>
#include <string_view>

#include "cli/base/text.h"
#include "cli/effect/effect_formats.h"
#include "cli/report/markdown.h"

namespace pkgvet::cli {

namespace {

// Services refuse a text of more than a mebibyte, and nobody reads a list of thousands.
constexpr std::size_t kMostRows = 500;

// Says how many of all rows were left out.
void writeRest(std::size_t all, std::string_view noun, std::ostream& stream) {
    if (all > kMostRows) {
        stream << "\nThere is no room here for " << counted(all - kMostRows, noun) << ".\n";
    }
}

void writeTurned(const Effect& effect, std::ostream& stream) {
    if (effect.turned.empty()) {
        return;
    }
    stream
        << "\n### Verdicts that turn\n\n| Package | Profile | Before | Now |\n|---|---|---|---|\n";
    std::size_t rows = 0;
    for (const TurnedVerdict& turned : effect.turned) {
        if (rows++ == kMostRows) {
            break;
        }
        stream << "| " << markdownText(turned.path) << " | " << markdownText(turned.profile)
               << " | " << verdictName(turned.before) << " | " << verdictName(turned.after)
               << " |\n";
    }
    writeRest(effect.turned.size(), "more verdict", stream);
}

std::string placesText(const RuleChange& rule) {
    std::vector<std::string> places;
    for (const RuleChange::Place& place : rule.first) {
        places.push_back(markdownText(placeText(place)));
    }
    return joined(places, ", ");
}

std::string causesText(const RuleChange& rule) {
    std::vector<std::string> causes;
    for (const auto& [cause, findings] : rule.causes) {
        causes.push_back(markdownText(cause) + " (" + std::to_string(findings) + ")");
    }
    return joined(causes, ", ");
}

void writeRules(std::string_view title, const std::vector<RuleChange>& rules,
                std::ostream& stream) {
    if (rules.empty()) {
        return;
    }
    stream << "\n### " << title
           << "\n\n| Severity | Rule | Findings | Packages | First | Because of |\n"
              "|---|---|---|---|---|---|\n";
    for (const RuleChange& rule : rules) {
        stream << "| " << severityName(rule.worst) << " | " << markdownText(rule.rule) << " | "
               << rule.findings << " | " << rule.packages << " | " << placesText(rule) << " | "
               << causesText(rule) << " |\n";
    }
}

void writeUnjudged(const Effect& effect, std::ostream& stream) {
    if (effect.notJudged.empty()) {
        return;
    }
    stream << "\n### Packages not judged\n\n| Package | Cause |\n|---|---|\n";
    std::size_t rows = 0;
    for (const UnjudgedPackage& package : effect.notJudged) {
        if (rows++ == kMostRows) {
            break;
        }
        stream << "| " << markdownText(package.path) << " | " << markdownText(causeText(package))
               << " |\n";
    }
    writeRest(effect.notJudged.size(), "more package", stream);
}

void writeHead(const Effect& effect, std::ostream& stream) {
    stream << "## pkgvet: " << summaryOf(effect) << '\n';
    if (effect.partial) {
        stream << "\n**" << kPartialEffect << "**\n";
    }
    if (!effect.before.path.empty()) {
        stream << "\n- Before: " << markdownText(sideText(effect.before))
               << "\n- Now: " << markdownText(sideText(effect.after)) << '\n';
    }
}

void writePaths(std::string_view title, const std::vector<std::string>& paths,
                std::ostream& stream) {
    if (paths.empty()) {
        return;
    }
    stream << "\n### " << title << "\n\n";
    std::size_t rows = 0;
    for (const std::string& path : paths) {
        if (rows++ == kMostRows) {
            break;
        }
        stream << "- " << markdownText(path) << '\n';
    }
    writeRest(paths.size(), "more package", stream);
}

}  // namespace

void writeEffectMarkdown(const Effect& effect, std::ostream& stream) {
    writeHead(effect, stream);
    writeTurned(effect, stream);
    writeRules("Findings that appear", effect.appeared, stream);
    writeRules("Findings that vanish", effect.vanished, stream);
    writeUnjudged(effect, stream);
    writePaths("Packages added", effect.added, stream);
    writePaths("Packages removed", effect.removed, stream);
}

}  // namespace pkgvet::cli
