// Judges packages without a report on them.
#include "cli/command/quiet_run.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/progress.h"
#include "cli/base/terminal.h"
#include "cli/rules/rule_check.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNothingToJudge =
    "there is nothing to judge, which --allow-empty would permit";

std::string sandboxRemark(const Sandbox& sandbox) {
    const std::string reason = sandbox.missing.empty() ? "" : " (" + sandbox.missing + ")";
    return "packages are shut off from the machine by " + sandbox.name() + reason;
}

}  // namespace

bool isSandboxGoodEnough(const Sandbox& sandbox, const JudgingOptions& options) {
    if (!options.scratch.empty() && !sandbox.namespaces) {
        complain("--scratch needs namespaces: " + sandboxRemark(sandbox));
        return false;
    }
    if (options.sandbox == SandboxMode::Off || sandbox.isWhole()) {
        return true;
    }
    complain(sandboxRemark(sandbox));
    return options.sandbox != SandboxMode::Require;
}

std::vector<Option> withoutOptions(const std::vector<std::string>& names,
                                   std::vector<Option> options) {
    std::erase_if(options, [&names](const Option& option) {
        return std::find(names.begin(), names.end(), option.names.back()) != names.end();
    });
    return options;
}

std::vector<Input> packagesOf(const InputOptions& options) {
    CollectedInput collected = collectInput(options);
    if (!options.allowEmpty) {
        for (const std::string& empty : collected.empty) {
            complain(printable(empty));
        }
        if (collected.packages.empty()) {
            throw std::runtime_error(kNothingToJudge);
        }
    }
    return std::move(collected.packages);
}

bool isSound(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain(describe(fault));
    }
    return faults.empty();
}

bool areTreesSound(const std::vector<std::string>& paths, const std::vector<Profiles>& profiles,
                   const DefaultRules& own) {
    RuleFaults faults = checkRuleTrees(paths, profiles);
    own.nameFile(&faults.dropped);
    own.nameFile(&faults.unusable);
    for (const Fault& fault : faults.dropped) {
        complain("warning: " + describe(fault));
    }
    return isSound(faults.unusable);
}

Keyring keyringOf(const IntegrityOptions& options, std::vector<Fault>* faults) {
    return options.keyring.empty() ? Keyring() : readKeyring(options.keyring, faults);
}

QuietEnd judgeQuietly(const JudgingOptions& options, Judging judging, std::vector<Input> inputs,
                      const JudgePool::Receiver& receive) {
    Progress progress(inputs.size());
    const auto handOn = [&](PackageReport report) {
        progress.clear();
        return receive(std::move(report));
    };
    JudgePool pool(std::move(inputs), std::move(judging.options), std::move(judging.from), handOn,
                   &progress);
    if (!isSandboxGoodEnough(pool.sandbox(), options)) {
        return {};
    }
    const bool isWhole = pool.run();
    return {kAccepted, pool.signal(), !isWhole};
}

}  // namespace pkgvet::cli
