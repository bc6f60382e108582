// Checks, shows and compares rule trees.
#include "cli/command/rules.h"

#include <iostream>

#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/judge/profile_option.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/rules/rule_set.h"
#include "cli/rules/rule_warnings.h"
#include "cli/rules/rules_output.h"

namespace pkgvet::cli {

namespace {

constexpr Words<Format, 2> kFormats = {{{"text", Format::Text}, {"json", Format::Json}}};

int checkTree(const DefaultRules& own, const std::string& tree,
              const std::vector<Profiles>& profiles) {
    const RuleFaults found = checkRuleTree(tree, profiles);
    std::vector<Fault> faults = found.unusable;
    faults.insert(faults.end(), found.dropped.begin(), found.dropped.end());
    std::vector<Fault> warnings = warnAboutRules(tree, profiles);
    own.nameFile(&faults);
    own.nameFile(&warnings);
    writeRuleCheck(faults, warnings, std::cout);
    return faults.empty() ? kAccepted : kUsageError;
}

// Rules that the library would not take as they stand are not worth looking at.
bool isUsable(const std::string& tree, Profiles profile) {
    const RuleFaults faults = checkRuleTree(tree, {profile});
    for (const Fault& fault : faults.unusable) {
        complain(describe(fault));
    }
    for (const Fault& fault : faults.dropped) {
        complain("warning: " + describe(fault));
    }
    return faults.unusable.empty();
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

// As diff does, a difference has a status of its own.
int compareTrees(const std::string& before, const std::string& after, Profiles profile,
                 Format format) {
    // Both are looked at in any case, so that the faults of both are told.
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
    const DefaultRules own;
    const std::string tree = options.trees.empty() ? own.path() : options.trees.front();
    const Profiles profile =
        options.profiles.empty() ? Profiles::Regular : options.profiles.front();
    switch (options.action) {
        case RulesAction::Check:
            return checkTree(own, tree,
                             options.profiles.empty() ? allProfiles() : options.profiles);
        case RulesAction::Show:
            return showTree(tree, profile, options.format);
        case RulesAction::Diff:
            break;
    }
    return compareTrees(tree, options.trees.back(), profile, options.format);
}

CommandRow actionRow(const std::string& name, const std::string& description, RulesAction action,
                     RulesOptions* options) {
    CommandRow row;
    row.name = name;
    row.description = description;
    row.begin = [options, action] { options->action = action; };
    return row;
}

std::vector<Option> displayOptions(RulesOptions* options) {
    return {
        profileOption(&options->profiles, "Profile to look at [regular]"),
        choiceOption("--format", kFormats, &options->format, "Format of the output [text]"),
    };
}

Operand treeOperand(RulesOptions* options) {
    return {.name = "FILE",
            .description = "Configuration file of the rule tree [the one that comes with pkgvet]",
            .most = 1,
            .takesFiles = true,
            .set = appendTo(&options->trees)};
}

CommandRow checkRow(RulesOptions* options) {
    CommandRow row = actionRow("check", "Name everything that is wrong with a rule tree",
                               RulesAction::Check, options);
    row.options = {profilesOption(&options->profiles,
                                  "Profile whose files are checked; may be repeated [all]")};
    row.operand = treeOperand(options);
    return row;
}

CommandRow showRow(RulesOptions* options) {
    CommandRow row = actionRow("show", "Show the lists that are in force under a profile",
                               RulesAction::Show, options);
    row.options = displayOptions(options);
    row.operand = treeOperand(options);
    return row;
}

CommandRow diffRow(RulesOptions* options) {
    CommandRow row = actionRow("diff", "Show what changed between two rule trees under a profile",
                               RulesAction::Diff, options);
    row.options = displayOptions(options);
    row.operand = {.name = "FILE",
                   .description = "Configuration files of the rule trees",
                   .least = 2,
                   .most = 2,
                   .takesFiles = true,
                   .set = appendTo(&options->trees)};
    return row;
}

}  // namespace

CommandRow rulesCommand(RulesOptions* options) {
    CommandRow row;
    row.name = "rules";
    row.description = "Check, show and compare rule trees";
    row.commands = {checkRow(options), showRow(options), diffRow(options)};
    return row;
}

int rules(const RulesOptions& options) {
    return statusAfterOutput(act(options));
}

}  // namespace pkgvet::cli
