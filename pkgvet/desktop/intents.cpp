// Judges intent specifications.
#include "pkgvet/desktop/intents.h"

#include <array>
#include <optional>
#include <string_view>

#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"

namespace {

// Behind "X-" the match may not fall back to reading the "X" as the capital of a plain name. No
// repetition gives back what it took: what may follow one never stands in its class, so the answers
// are the same, and a flag list made to have them try every division costs no time.
constexpr std::string_view kIntent = R"(^((?:X-)?(*COMMIT)[A-Z][A-Za-z0-9-]++))"
                                     R"((?:\/[A-Za-z][A-Za-z0-9-]++)?)"
                                     R"((?::(?:\|?([A-Za-z][A-Za-z0-9-]++))++)?$)";

constexpr int kNameGroup = 1;
// A group inside a repetition holds what its last round matched: of a list the last flag.
constexpr int kFirstFlagGroup = 2;

constexpr std::array<std::string_view, 2> kStandardNames = {"Start", "OpenURI"};
constexpr std::string_view kCustomPrefix = "X-";
constexpr std::array<std::string_view, 1> kKnownFlags = {"gui"};

bool isPermittedName(const std::string& name) {
    return pkgvet::contains(kStandardNames, name) || name.starts_with(kCustomPrefix);
}

bool validateFlags(const MatchInfo& intent) {
    bool valid = true;
    int group = kFirstFlagGroup;
    for (auto flag = intent.fetch(group); flag; flag = intent.fetch(++group)) {
        if (!pkgvet::contains(kKnownFlags, *flag)) {
            Logger::log(LogLevel::Error, {pkgvet::kIntentFlagUnknown, *flag});
            valid = false;
        }
    }
    return valid;
}

bool validateIntent(const Regex& pattern, const std::string& specification) {
    const std::optional<MatchInfo> intent = pattern.match(specification);
    if (!intent) {
        Logger::log(LogLevel::Error, {pkgvet::kIntentInvalid, specification});
        return false;
    }
    const std::optional<std::string> name = intent->fetch(kNameGroup);
    if (!name) {
        Logger::log(LogLevel::Error, {pkgvet::kIntentNameMissing, specification});
        return false;
    }
    if (!isPermittedName(*name)) {
        Logger::log(LogLevel::Error, {pkgvet::kIntentNotStandard, *name});
        return false;
    }
    return validateFlags(*intent);
}

}  // namespace

bool validateIntents(const std::vector<std::string>& specifications) {
    const Regex pattern(kIntent, pkgvet::kPlainPattern.compile, pkgvet::kPlainPattern.match);
    bool valid = true;
    for (const std::string& specification : specifications) {
        valid = validateIntent(pattern, specification) && valid;
    }
    return valid;
}
