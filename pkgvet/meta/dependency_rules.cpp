// The rules on a package's dependency lists.
#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "pkgvet/meta/header_facts.h"
#include "pkgvet/meta/header_messages.h"
#include "pkgvet/meta/header_rules.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

constexpr std::string_view kPlainApplication = R"(application\(\))";
constexpr const char* kOwnApplicationBegin = R"(application\()";
constexpr const char* kOwnApplicationEnd = R"(\.desktop\))";
constexpr std::string_view kHandler = R"(mimehandler\(.*\))";
constexpr std::size_t kHandlerBegin = 12;   // the size of "mimehandler("
constexpr std::size_t kHandlerAround = 13;  // and of the closing parenthesis

constexpr std::string_view kWideSuffix = "(64bit)";
constexpr std::string_view kUnversioned = "()";

bool isFoundInAny(const std::string& name, const std::vector<std::string>& texts) {
    const Regex pattern = rulePattern(Regex::escape(name));
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return pattern.match(text).has_value(); });
}

// Clears fact, and reports missing, unless one of names holds mandatoryName.
void checkMandatoryName(const std::string& mandatoryName, const std::vector<std::string>& names,
                        const Message& missing, bool* fact, Findings* findings) {
    if (mandatoryName.empty() || isFoundInAny(mandatoryName, names)) {
        return;
    }
    *fact = false;
    findings->violation(missing, {mandatoryName, mandatoryName});
}

// A dependency's name as the rule lists know it: "libfoo.so.1" for "libfoo.so.1()(64bit)". A "()"
// anywhere in front of the suffix costs two characters, even where it does not stand directly
// there.
std::string baseName(const std::string& dependency) {
    std::size_t size = dependency.rfind(kWideSuffix);
    if (size == std::string::npos) {
        return dependency;
    }
    if (dependency.rfind(kUnversioned, size) != std::string::npos) {
        size -= kUnversioned.size();
    }
    return dependency.substr(0, size);
}

// The names that a package may provide.
class PermittedProvides {
public:
    PermittedProvides(const std::string& packageName, const Configuration& configuration)
        : ownName_(rulePattern(Regex::escape(packageName) + ".*")),
          plainApplication_(rulePattern(kPlainApplication)),
          ownApplication_(
              rulePattern(kOwnApplicationBegin + Regex::escape(packageName) + kOwnApplicationEnd)),
          mandatoryName_(rulePattern(Regex::escape(configuration.provides()))),
          handler_(rulePattern(kHandler)),
          disallowedHandlers_(configuration.disallowedHandlers()) {}

    bool contain(const std::string& provide) {
        return ownName_.match(provide) || plainApplication_.match(provide) ||
               ownApplication_.match(provide) || mandatoryName_.match(provide) ||
               (handler_.match(provide) && !isDisallowedHandler(provide));
    }

private:
    // The handler is cut out by fixed positions although its pattern is not anchored. A provide
    // with text ahead of "mimehandler(" therefore has its handler read from further left.
    bool isDisallowedHandler(const std::string& provide) {
        return disallowedHandlers_.matches(
            baseName(provide.substr(kHandlerBegin, provide.size() - kHandlerAround)));
    }

    Regex ownName_;
    Regex plainApplication_;
    Regex ownApplication_;
    Regex mandatoryName_;
    Regex handler_;
    PatternList disallowedHandlers_;
};

// Asks the lists in their order, so that a hit in one keeps a bad pattern of a later one from being
// tried.
bool isListed(const std::string& dependency, std::span<PatternList> lists) {
    const std::string name = baseName(dependency);
    return std::any_of(lists.begin(), lists.end(),
                       [&name](PatternList& list) { return list.matches(name); });
}

// A requirement that is on no list of allowed ones, and whether another list makes it a warning.
struct OpenRequirement {
    std::string name;
    bool isTolerated;
};

// The requirements that are on no list of allowed ones.
std::vector<OpenRequirement> openRequirements(const std::vector<std::string>& requireNames,
                                              const Configuration& configuration) {
    std::array allowed = {PatternList(configuration.allowedRequires()),
                          PatternList(configuration.allowedLibraries())};
    std::vector<OpenRequirement> open;
    for (const std::string& name : requireNames) {
        if (!isListed(name, allowed)) {
            open.push_back({name, false});
        }
    }
    std::array tolerated = {PatternList(configuration.unstableRequires()),
                            PatternList(configuration.unstableLibraries()),
                            PatternList(configuration.deprecatedRequires()),
                            PatternList(configuration.deprecatedLibraries())};
    for (OpenRequirement& requirement : open) {
        requirement.isTolerated = isListed(requirement.name, tolerated);
    }
    return open;
}

}  // namespace

void checkMandatoryProvide(const std::string& mandatoryName,
                           const std::vector<std::string>& provides, HeaderFacts* facts,
                           Findings* findings) {
    checkMandatoryName(mandatoryName, provides, kMandatoryProvideMissing, &facts->mandatoryProvide,
                       findings);
}

void checkMandatoryConflict(const std::string& mandatoryName,
                            const std::vector<std::string>& conflicts, HeaderFacts* facts,
                            Findings* findings) {
    checkMandatoryName(mandatoryName, conflicts, kMandatoryConflictMissing,
                       &facts->mandatoryConflict, findings);
}

void checkProvides(const std::string& packageName, const std::vector<std::string>& provides,
                   const Configuration& configuration, Findings* findings) {
    PermittedProvides permitted(packageName, configuration);
    for (const std::string& provide : provides) {
        if (!permitted.contain(provide)) {
            findings->violation(kProvideNotAllowed, {provide, provide});
        }
    }
}

// With no mandatory name the pattern is empty and matches nothing: every conflict is a finding.
void checkConflicts(const std::string& mandatoryName, const std::vector<std::string>& conflicts,
                    Findings* findings) {
    const Regex pattern = rulePattern(Regex::escape(mandatoryName));
    for (const std::string& conflict : conflicts) {
        if (!pattern.match(conflict)) {
            findings->violation(kConflictNotAllowed, {conflict, conflict});
        }
    }
}

void checkObsoletes(const std::vector<std::string>& obsoletes, Findings* findings) {
    for (const std::string& name : obsoletes) {
        findings->violation(kObsoleteNotAllowed, {name, name});
    }
}

// All names are tried before the first line is written, so that a pattern that does not compile
// ends the rule without half of its findings.
void checkRequires(const std::vector<std::string>& requireNames, const Configuration& configuration,
                   Findings* findings) {
    for (const OpenRequirement& requirement : openRequirements(requireNames, configuration)) {
        if (requirement.isTolerated) {
            findings->warning(kDependencyUnstable, {requirement.name});
        } else {
            findings->violation(kDependencyNotAllowed, {requirement.name});
        }
    }
}

bool vectorContains(const std::vector<std::string>& patterns, const std::string& dependency) {
    return PatternList(patterns).matches(baseName(dependency));
}

}  // namespace pkgvet
