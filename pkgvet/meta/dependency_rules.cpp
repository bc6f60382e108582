// The rules on a package's name and its dependency lists.
#include <algorithm>
#include <string_view>

#include "pkgvet/meta/meta_messages.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/meta/meta_validator_private.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kRulePattern;
using pkgvet::PatternList;

// Not anchored: some stretch of the name with three components is enough.
constexpr std::string_view kDomainNotation = R"([^.]+\.[^.]+(\.[^.]+)+)";

constexpr std::string_view kPlainApplication = R"(application\(\))";
constexpr std::string_view kOwnApplicationBegin = R"(application\()";
constexpr std::string_view kOwnApplicationEnd = R"(\.desktop\))";
constexpr std::string_view kHandler = R"(mimehandler\(.*\))";
constexpr std::size_t kHandlerBegin = 12;   // the size of "mimehandler("
constexpr std::size_t kHandlerAround = 13;  // and of the closing parenthesis

constexpr std::string_view kWideSuffix = "(64bit)";
constexpr std::string_view kUnversioned = "()";

Regex rulePattern(const std::string& text) {
    return Regex(text, kRulePattern.compile, kRulePattern.match);
}

bool isFoundInAny(const std::string& name, const std::vector<std::string>& texts) {
    const Regex pattern = rulePattern(Regex::escape(name));
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return pattern.match(text).has_value(); });
}

// A dependency name as the rule lists know it. A "()" anywhere in front of the suffix costs two
// characters, even where it does not stand directly there.
std::string baseName(const std::string& text) {
    std::size_t size = text.rfind(kWideSuffix);
    if (size == std::string::npos) {
        return text;
    }
    if (text.rfind(kUnversioned, size) != std::string::npos) {
        size -= kUnversioned.size();
    }
    return text.substr(0, size);
}

// Cut by fixed positions although the pattern is not anchored, so that a provide with text ahead of
// "mimehandler(" gets a handler shifted to the left.
std::string handlerOf(const std::string& provide) {
    return provide.substr(kHandlerBegin, provide.size() - kHandlerAround);
}

// Lists in the order in which they are asked.
class ListChain {
public:
    ListChain(std::initializer_list<std::vector<std::string>> lists)
        : lists_(lists.begin(), lists.end()) {}

    bool contains(const std::string& dependency) {
        const std::string name = baseName(dependency);
        return std::any_of(lists_.begin(), lists_.end(),
                           [&name](PatternList& list) { return list.matches(name); });
    }

private:
    std::vector<PatternList> lists_;
};

}  // namespace

void MetaValidator::checkDomainNotation(const RpmMeta& rpm) {
    if (Regex::matchSimple(kDomainNotation, rpm.name(), kRulePattern.compile, kRulePattern.match)) {
        return;
    }
    d_ptr->failures |= pkgvet::kViolation;
    d_ptr->domainNotation = false;
    Logger::log(LogLevel::Error, {pkgvet::kNotDomainNotation});
}

void MetaValidator::checkMandatoryProvide(const Configuration& config, const RpmMeta& rpm) {
    const std::string& name = config.provides();
    if (name.empty() || isFoundInAny(name, rpm.provides())) {
        return;
    }
    d_ptr->failures |= pkgvet::kViolation;
    d_ptr->mandatoryProvide = false;
    Logger::log(LogLevel::Error,
                {"[", name, pkgvet::kProvidesInfix, name, pkgvet::kMustBeSpecified});
}

// The mandatory conflict is the mandatory provide: it has no configuration of its own.
void MetaValidator::checkMandatoryConflict(const Configuration& config, const RpmMeta& rpm) {
    const std::string& name = config.provides();
    if (name.empty() || isFoundInAny(name, rpm.conflicts())) {
        return;
    }
    d_ptr->failures |= pkgvet::kViolation;
    d_ptr->mandatoryConflict = false;
    Logger::log(LogLevel::Error,
                {"[", name, pkgvet::kConflictsInfix, name, pkgvet::kMustBeSpecified});
}

void MetaValidator::checkProvides(const Configuration& config, const RpmMeta& rpm) {
    const std::string name = Regex::escape(rpm.name());
    const Regex ownName = rulePattern(name + ".*");
    const Regex plainApplication = rulePattern(std::string(kPlainApplication));
    const Regex ownApplication =
        rulePattern(std::string(kOwnApplicationBegin) + name + std::string(kOwnApplicationEnd));
    const Regex mandatoryName = rulePattern(Regex::escape(config.provides()));
    const Regex handler = rulePattern(std::string(kHandler));
    ListChain disallowedHandlers({config.disallowedHandlers()});

    const auto isPermitted = [&](const std::string& provide) {
        if (ownName.match(provide) || plainApplication.match(provide) ||
            ownApplication.match(provide) || mandatoryName.match(provide)) {
            return true;
        }
        return handler.match(provide) && !disallowedHandlers.contains(handlerOf(provide));
    };
    for (const std::string& provide : rpm.provides()) {
        if (!isPermitted(provide)) {
            d_ptr->failures |= pkgvet::kViolation;
            Logger::log(LogLevel::Error,
                        {"[", provide, pkgvet::kProvidesInfix, provide, pkgvet::kNotAllowedInRpm});
        }
    }
}

// With no mandatory name the pattern is empty and matches nothing: every conflict is a finding.
void MetaValidator::checkConflicts(const Configuration& config, const RpmMeta& rpm) {
    const Regex mandatoryName = rulePattern(Regex::escape(config.provides()));
    for (const std::string& conflict : rpm.conflicts()) {
        if (!mandatoryName.match(conflict)) {
            d_ptr->failures |= pkgvet::kViolation;
            Logger::log(LogLevel::Error, {"[", conflict, pkgvet::kConflictsInfix, conflict,
                                          pkgvet::kNotAllowedInRpm});
        }
    }
}

// All names are tried before the first line is written, so that a pattern that does not compile
// ends the rule without half of its findings.
void MetaValidator::checkRequires(const Configuration& config, const RpmMeta& rpm) {
    ListChain allowed({config.allowedRequires(), config.allowedLibraries()});
    std::vector<std::string> open;
    std::copy_if(rpm.requireNames().begin(), rpm.requireNames().end(), std::back_inserter(open),
                 [&allowed](const std::string& name) { return !allowed.contains(name); });

    ListChain tolerated({config.unstableRequires(), config.unstableLibraries(),
                         config.deprecatedRequires(), config.deprecatedLibraries()});
    std::vector<bool> isTolerated;
    isTolerated.reserve(open.size());
    for (const std::string& name : open) {
        isTolerated.push_back(tolerated.contains(name));
    }

    for (std::size_t i = 0; i < open.size(); ++i) {
        if (isTolerated[i]) {
            Logger::log(LogLevel::Warning, {"[", open[i], pkgvet::kDependencyUnstable});
        } else {
            d_ptr->failures |= pkgvet::kViolation;
            Logger::log(LogLevel::Error, {"[", open[i], pkgvet::kDependencyNotAllowed});
        }
    }
}

bool MetaValidator::vectorContains(const std::vector<std::string>& patterns,
                                   const std::string& text) {
    return PatternList(patterns).matches(baseName(text));
}
