// Judges intent specifications.
#include "pkgvet/desktop/intents.h"

#include <array>
#include <optional>
#include <string_view>

#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// Behind "X-" the match may not fall back to reading the "X" as the capital of a plain name. The
// repetitions are possessive. What may follow one of them never stands in its class, so the answers
// are the same as with greedy ones, but a list of flags that is made to have the engine try every
// division of it does not take long.
constexpr std::string_view kIntent = R"(^((?:X-)?(*COMMIT)[A-Z][A-Za-z0-9-]++))"
                                     R"((?:\/[A-Za-z][A-Za-z0-9-]++)?)"
                                     R"((?::(?:\|?([A-Za-z][A-Za-z0-9-]++))++)?$)";

constexpr int kNameGroup = 1;
// A group inside a repetition holds what its last round matched: of a list of flags the last one.
// The others are not looked at.
constexpr int kFirstFlagGroup = 2;

constexpr std::array<std::string_view, 2> kStandardNames = {"Start", "OpenURI"};
constexpr std::string_view kCustomPrefix = "X-";
constexpr std::array<std::string_view, 1> kKnownFlags = {"gui"};

bool isPermittedName(const std::string& name) {
    return contains(kStandardNames, name) || name.starts_with(kCustomPrefix);
}

void checkFlags(const MatchInfo& intent, Findings* findings) {
    int group = kFirstFlagGroup;
    for (auto flag = intent.fetch(group); flag; flag = intent.fetch(++group)) {
        if (!contains(kKnownFlags, *flag)) {
            findings->violation(kIntentFlagUnknown, {*flag});
        }
    }
}

// The first finding on an element is its last.
void checkIntent(const Regex& pattern, const std::string& specification, Findings* findings) {
    const std::optional<MatchInfo> intent = pattern.match(specification);
    if (!intent) {
        findings->violation(kIntentInvalid, {specification});
        return;
    }
    const std::optional<std::string> name = intent->fetch(kNameGroup);
    if (!name) {
        findings->violation(kIntentNameMissing, {specification});
        return;
    }
    if (!isPermittedName(*name)) {
        findings->violation(kIntentNotStandard, {*name});
        return;
    }
    checkFlags(*intent, findings);
}

}  // namespace

void checkIntents(const std::vector<std::string>& specifications, Findings* findings) {
    const Regex pattern = plainPattern(kIntent);
    for (const std::string& specification : specifications) {
        checkIntent(pattern, specification, findings);
    }
}

}  // namespace pkgvet

bool validateIntents(const std::vector<std::string>& specifications) {
    pkgvet::Findings findings;
    pkgvet::checkIntents(specifications, &findings);
    return findings.failures() == 0;
}
