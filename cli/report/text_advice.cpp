// Writes what to look at first.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/report/folding.h"
#include "cli/report/tally.h"
#include "cli/report/text_parts.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kMostRules = 3;
constexpr const char* kExplain = "pkgvet explain ";

// A remark demands nothing, and of a rule that the catalogue does not know nothing can be read.
bool isOfUse(const RuleTally& rule) {
    return rule.worst > Severity::Info && findEntry(rule.rule) != nullptr;
}

std::vector<RuleTally> usefulRules(const PackageReport& package) {
    std::vector<RuleTally> useful;
    std::vector<RuleTally> all = ruleTallies(package);
    for (RuleTally& rule : all) {
        if (isOfUse(rule)) {
            useful.push_back(std::move(rule));
        }
    }
    return useful;
}

// Rules that are broken once need no count.
std::string mostFrequent(std::vector<RuleTally> rules) {
    std::stable_sort(rules.begin(), rules.end(),
                     [](const RuleTally& a, const RuleTally& b) { return a.count > b.count; });
    std::vector<std::string> texts;
    for (const RuleTally& rule : rules) {
        if (rule.count > 1 && texts.size() < kMostRules) {
            texts.push_back(printable(rule.rule) + " " + std::to_string(rule.count));
        }
    }
    return joined(texts, ", ");
}

}  // namespace

void writeTextAdvice(const PackageReport& package, const ReportStyle& style, std::ostream& stream) {
    if (!package.judged()) {
        writeFolded(std::string("  next: ") + kExplain + std::string(kNotJudgedId), style.columns,
                    stream);
        return;
    }
    const std::vector<RuleTally> rules = usefulRules(package);
    const std::string most = mostFrequent(rules);
    if (!most.empty()) {
        writeFolded("  most: " + most, style.columns, stream);
    }
    if (!rules.empty() && !style.explain) {
        writeFolded("  next: " + (kExplain + printable(rules.front().rule)), style.columns, stream);
    }
}

}  // namespace pkgvet::cli
