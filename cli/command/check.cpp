// Has packages judged and reports on them.
#include "cli/command/check.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/standard_output.h"
#include "cli/command/option_conflicts.h"
#include "cli/command/pool_options.h"
#include "cli/command/quiet_run.h"
#include "cli/command/run.h"
#include "cli/command/run_files.h"
#include "cli/command/settings.h"
#include "cli/integrity/keyring.h"
#include "cli/policy/policy.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/worker/signal_watch.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 every package was accepted; 1 at least one was rejected; 2 usage error, no\n"
    "package to judge, or a rule tree or sandbox that cannot be used; 3 at least one package "
    "could\n"
    "not be judged (3 outranks 1).";

// A tree that loses rules still judges, but not as its writer thinks.
void warnOf(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain("warning: " + describe(fault));
    }
}

bool hasReader(int descriptor) {
    struct pollfd output {
        descriptor, POLLOUT, 0
    };
    return poll(&output, 1, 0) < 0 || (output.revents & POLLERR) == 0;
}

RunEnd judgeInputs(const Settings& settings, const std::string& rules, const Keyring& keyring,
                   Policy policy, Judging judging) {
    const CheckOptions& options = settings.options;
    std::optional<Run> run;
    try {
        std::vector<Input> packages = packagesOf(options.input);
        std::optional<Shard> shard;
        if (options.input.shard) {
            shard = keepShard(*options.input.shard, &packages);
        }
        guardFiles(settings, rules, packages);
        run.emplace(options, rules, RunInputs{std::move(packages), shard}, keyring,
                    std::move(policy));
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return {};
    }
    return run->judgeAll(std::move(judging));
}

// The exit status, unless a signal or a reader that went away is to end the process: what started
// it expects that of a program that was told to stop.
int endOf(const RunEnd& end, bool isEndedByPipes) {
    const bool isWritten = std::cout.flush().good();
    if (end.signal != 0) {
        endBySignal(end.signal);
    }
    if (!isWritten && isEndedByPipes && !hasReader(STDOUT_FILENO)) {
        endBySignal(SIGPIPE);
    }
    return statusAfterOutput(end.status);
}

int checkUnder(const Settings& settings) {
    const CheckOptions& options = settings.options;
    // A reader that goes away is an error like any other until all is cleared up.
    const bool isEndedByPipes = signal(SIGPIPE, SIG_IGN) != SIG_IGN;
    const StandardOutput output;
    const DefaultRules own;
    const std::string rules = options.judging.rules.empty() ? own.path() : options.judging.rules;
    std::vector<Fault> faults;
    const Keyring keyring = keyringOf(options.integrity, &faults);
    Judging judging = beginJudging(options, {rules}, keyring);
    RuleFaults faultsOfRules = checkRuleTree(rules, options.judging.profiles);
    own.nameFile(&faultsOfRules.dropped);
    own.nameFile(&faultsOfRules.unusable);
    warnOf(faultsOfRules.dropped);
    faults.insert(faults.end(), faultsOfRules.unusable.begin(), faultsOfRules.unusable.end());
    Policy policy(options.policy, localDate(), &faults);
    if (!isSound(faults)) {
        return kUsageError;
    }
    judging.from->prepare();
    return endOf(judgeInputs(settings, rules, keyring, std::move(policy), std::move(judging)),
                 isEndedByPipes);
}

// For whoever asks what is in force.
void noteWhenGiven(Option* option, std::vector<GivenOption>* given) {
    const Setter set = option->set;
    const std::string name = option->names.back();
    const bool addsUp = option->mayRepeat;
    option->set = [set, name, addsUp, given](const std::string& argument) {
        given->push_back({name, argument, addsUp});
        return set(argument);
    };
}

// What help says that holds without the option, such as "120"; nothing where it says nothing.
std::optional<std::string> defaultIn(const std::string& help) {
    const std::size_t begin = help.rfind('[');
    if (begin == std::string::npos || !help.ends_with(']')) {
        return std::nullopt;
    }
    return help.substr(begin + 1, help.size() - begin - 2);
}

std::vector<Option> allOptions(CheckOptions* options) {
    std::vector<Option> all;
    for (const std::vector<Option>& some :
         std::array{inputOptions(&options->input), settingsOptions(&options->settings),
                    judgingOptions(&options->judging), integrityOptions(&options->integrity),
                    policyOptions(&options->policy), reportOptions(&options->report)}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    options->defaults.clear();
    for (Option& option : all) {
        if (std::optional<std::string> value = defaultIn(option.description)) {
            options->defaults.push_back({option.names.back(), *std::move(value)});
        }
        noteWhenGiven(&option, &options->given);
    }
    return all;
}

}  // namespace

CommandRow checkCommand(CheckOptions* options) {
    CommandRow row;
    row.name = "check";
    row.description = "Judge packages";
    row.options = allOptions(options);
    row.operand = inputOperand(&options->input);
    row.footer = kExitStatuses;
    row.missing = [options] {
        return options->settings.show ? std::string() : missingInput(options->input);
    };
    return row;
}

int check(const CheckOptions& given) {
    const std::string conflict = conflictIn(given);
    if (!conflict.empty()) {
        complain(conflict);
        return kUsageError;
    }
    std::vector<Fault> faults;
    const Settings settings = settingsFor(given, &faults);
    if (!isSound(faults)) {
        return kUsageError;
    }
    if (given.settings.show) {
        writeSettings(settings, std::cout);
        return statusAfterOutput(kAccepted);
    }
    if (!settings.remark.empty()) {
        complain(printable(settings.remark));
    }
    return checkUnder(settings);
}

}  // namespace pkgvet::cli
