// Checks, shows and compares rule trees.
#include "cli/command/rules.h"

#include <iostream>

#include "cli/command/exit_status.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/rules/rule_set.h"
#include "cli/rules/rule_warnings.h"
#include "cli/rules/rules_output.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kProgram = "pkgvet: ";

int checkTree(const std::string& tree, const std::vector<Profiles>& profiles) {
    const std::vector<Fault> faults = checkRuleTree(tree, profiles);
    writeRuleCheck(faults, warnAboutRules(tree, profiles), std::cout);
    return faults.empty() ? kAccepted : kUsageError;
}

// Rules that the library would not take as they stand are not worth looking at.
bool isUsable(const std::string& tree, Profiles profile) {
    const std::vector<Fault> faults = checkRuleTree(tree, {profile});
    for (const Fault& fault : faults) {
        std::cerr << kProgram << describe(fault) << '\n';
    }
    return faults.empty();
}

int showTree(const std::string& tree, Profiles profile, Format format) {
    if (!isUsable(tree, profile)) {
        return kUsageError;
    }
    const RuleSet rules = loadRuleSet(tree, profile);
    if (format == Format::Json) {
        writeRulesAsJson(rules, std::cout);
    } else {
        writeRulesAsText(rules, std::cout);
    }
    return kAccepted;
}

int compareTrees(const std::string& before, const std::string& after, Profiles profile,
                 Format format) {
    const bool beforeIsUsable = isUsable(before, profile);
    if (!isUsable(after, profile) || !beforeIsUsable) {
        return kUsageError;
    }
    const std::vector<ListDifference> differences =
        compareRules(loadRuleSet(before, profile), loadRuleSet(after, profile));
    if (format == Format::Json) {
        writeDifferencesAsJson(differences, std::cout);
    } else {
        writeDifferencesAsText(differences, std::cout);
    }
    return differences.empty() ? kAccepted : kRejected;
}

int act(const RulesOptions& options) {
    const std::string tree = options.trees.empty() ? defaultRules() : options.trees.front();
    switch (options.action) {
        case RulesAction::Check:
            return checkTree(tree, options.profiles);
        case RulesAction::Show:
            return showTree(tree, options.profiles.front(), options.format);
        case RulesAction::Diff:
            break;
    }
    return compareTrees(tree, options.trees.back(), options.profiles.front(), options.format);
}

}  // namespace

int rules(const RulesOptions& options) {
    const int status = act(options);
    if (!std::cout.flush()) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return status;
}

}  // namespace pkgvet::cli
