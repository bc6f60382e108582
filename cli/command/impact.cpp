// Judges packages under two rule trees.
#include "cli/command/impact.h"

#include <iostream>
#include <map>
#include <stdexcept>
#include <utility>

#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/version.h"
#include "cli/command/option_conflicts.h"
#include "cli/command/quiet_run.h"
#include "cli/command/run_files.h"
#include "cli/effect/effect_builder.h"
#include "cli/impact/rule_causes.h"
#include "cli/judge/profile_option.h"
#include "cli/policy/policy.h"
#include "cli/rules/rule_digest.h"
#include "cli/rules/rule_set.h"
#include "cli/worker/signal_watch.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 no verdict turns; 1 at least one does; 2 usage error, no package to judge, or "
    "a\n"
    "rule tree or sandbox that cannot be used; 3 at least one package could not be judged.";

std::vector<Option> optionsOf(ImpactOptions* options) {
    CheckOptions& judging = options->judging;
    std::vector<Option> all = {
        fileOption("--old", &options->before, "Configuration file of the rule tree as it was"),
        fileOption("--new", &options->after, "Configuration file of the rule tree as it will be"),
    };
    for (const std::vector<Option>& some :
         {withoutOptions({"--shard", "--resume"}, inputOptions(&judging.input)),
          withoutOptions({"--rules"}, judgingOptions(&judging.judging)),
          integrityOptions(&judging.integrity),
          withoutOptions({"--show-waived", "--write-baseline", "--exit-zero"},
                         policyOptions(&judging.policy))}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    const std::vector<Option> output = effectOutputOptions(&options->output);
    all.insert(all.end(), output.begin(), output.end());
    return all;
}

std::string missingIn(const ImpactOptions& options) {
    if (options.before.empty() || options.after.empty()) {
        return options.before.empty() ? "--old" : "--new";
    }
    return missingInput(options.judging.input);
}

using Causes = std::map<std::string, RuleCauses>;  // by the names of the profiles

// Two trees, and what makes findings appear and vanish between them.
struct Trees {
    Trees(const ImpactOptions& options, const std::vector<Profiles>& profiles)
        : before{options.before, programVersion(), {}}, after{options.after, programVersion(), {}} {
        for (const Profiles profile : profiles) {
            const std::string name = Configuration::getProfileName(profile);
            const RuleSet was = loadRuleSet(options.before, profile);
            const RuleSet is = loadRuleSet(options.after, profile);
            before.profiles.push_back({name, digestOf(was)});
            after.profiles.push_back({name, digestOf(is)});
            causes.emplace(name, ruleChanges(was, is));
        }
    }

    EffectSide before;
    EffectSide after;
    Causes causes;
};

// Of a package that was judged under both trees, the judgements under one of them.
PackageReport halfOf(const PackageReport& package, bool isSecond) {
    PackageReport half = package;
    const auto middle =
        half.judgements.begin() + static_cast<std::ptrdiff_t>(half.judgements.size() / 2);
    if (isSecond) {
        half.judgements.erase(half.judgements.begin(), middle);
    } else {
        half.judgements.erase(middle, half.judgements.end());
    }
    return half;
}

EffectOutputs openOutputs(const ImpactOptions& options, const CheckOptions& judging,
                          const std::vector<Input>& packages) {
    Settings settings;
    settings.options = judging;
    guardFiles(pathsOf(filesAmong(options.output.outputs)), settings,
               {options.before, options.after}, packages);
    return EffectOutputs(options.output);
}

int judgeUnderBoth(const ImpactOptions& options, const CheckOptions& judging, Judging begun,
                   Policy* policy) {
    std::vector<Input> packages = packagesOf(judging.input);
    EffectOutputs outputs = openOutputs(options, judging, packages);
    const Trees trees(options, judging.judging.profiles);
    EffectBuilder builder(
        [&trees](const Finding& finding, const std::string& profile, Change /*change*/) {
            return trees.causes.at(profile).of(finding);
        });
    const auto take = [&](PackageReport package) {
        policy->apply(&package);
        builder.compare(halfOf(package, false), halfOf(package, true));
        return true;
    };
    const QuietEnd end = judgeQuietly(judging.judging, std::move(begun), std::move(packages), take);
    if (end.status != kAccepted) {
        return end.status;
    }
    Effect effect = builder.take();
    effect.before = trees.before;
    effect.after = trees.after;
    effect.partial = end.isPartial;
    outputs.write(effect, std::cout);
    if (end.isPartial) {
        complain("interrupted: not all packages were judged");
    }
    const int status = statusAfterOutput(end.isPartial ? kNotJudged : statusOf(effect));
    if (end.signal != 0) {
        endBySignal(end.signal);
    }
    return status;
}

}  // namespace

CommandRow impactCommand(ImpactOptions* options) {
    CommandRow row;
    row.name = "impact";
    row.description = "Say what a change of the rules does to packages";
    row.options = optionsOf(options);
    row.operand = inputOperand(&options->judging.input);
    row.footer = kExitStatuses;
    row.missing = [options] { return missingIn(*options); };
    return row;
}

int impact(const ImpactOptions& options) {
    CheckOptions judging = options.judging;
    if (judging.judging.profiles.empty()) {
        judging.judging.profiles = {Profiles::Regular};
    }
    for (const std::string& conflict : {conflictIn(judging), conflictIn(options.output)}) {
        if (!conflict.empty()) {
            complain(conflict);
            return kUsageError;
        }
    }
    const DefaultRules own;
    std::vector<Fault> faults;
    const Keyring keyring = keyringOf(judging.integrity, &faults);
    Policy policy(judging.policy, localDate(), &faults);
    Judging begun = beginJudging(judging, {options.before, options.after}, keyring);
    const bool areSound =
        areTreesSound({options.before, options.after}, judging.judging.profiles, own);
    if (!isSound(faults) || !areSound) {
        return kUsageError;
    }
    begun.from->prepare();
    try {
        return judgeUnderBoth(options, judging, std::move(begun), &policy);
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return kUsageError;
    }
}

}  // namespace pkgvet::cli
