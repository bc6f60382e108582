// What the formats of an effect share.
#include "cli/effect/effect_formats.h"

#include <numeric>

#include "cli/base/escape.h"
#include "cli/base/text.h"

namespace pkgvet::cli {

void writeEffect(const Effect& effect, EffectFormat format, std::ostream& stream) {
    switch (format) {
        case EffectFormat::Text:
            writeEffectText(effect, stream);
            break;
        case EffectFormat::Json:
            writeEffectJson(effect, stream);
            break;
        case EffectFormat::Markdown:
            writeEffectMarkdown(effect, stream);
            break;
        case EffectFormat::Html:
            writeEffectHtml(effect, stream);
            break;
    }
}

std::string sideText(const EffectSide& side) {
    return printable(side.path) + (side.partial ? ", interrupted" : "");
}

std::string causeText(const UnjudgedPackage& package) {
    if (package.before == package.after) {
        return printable(package.after);
    }
    std::vector<std::string> causes;
    if (!package.before.empty()) {
        causes.push_back("before: " + printable(package.before));
    }
    if (!package.after.empty()) {
        causes.push_back("now: " + printable(package.after));
    }
    return joined(causes, "; ");
}

std::string countsOf(const RuleChange& rule) {
    return counted(rule.findings, "finding") + " in " + counted(rule.packages, "package");
}

std::string placeText(const RuleChange::Place& place) {
    std::string text = printable(place.path);
    if (place.subject) {
        text.append(" [").append(printable(*place.subject)).append("]");
    }
    return text;
}

std::string summaryOf(const Effect& effect) {
    std::string text = counted(effect.compared, "package") + " compared";
    if (!effect.notJudged.empty()) {
        text += ", " + std::to_string(effect.notJudged.size()) + " not judged";
    }
    const std::size_t turned = effect.turned.size();
    return text + "; " + counted(turned, "verdict") + (turned == 1 ? " turns" : " turn");
}

std::size_t findingsOf(const std::vector<RuleChange>& rules) {
    return std::accumulate(
        rules.begin(), rules.end(), std::size_t{0},
        [](std::size_t sum, const RuleChange& rule) { return sum + rule.findings; });
}

}  // namespace pkgvet::cli
