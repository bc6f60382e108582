// Has packages judged and reports on them.
#include "cli/command/check.h"

#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "cli/base/checksum.h"
#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/memory.h"
#include "cli/base/output_file.h"
#include "cli/base/processors.h"
#include "cli/base/progress.h"
#include "cli/base/terminal.h"
#include "cli/command/option_conflicts.h"
#include "cli/command/run_files.h"
#include "cli/command/settings.h"
#include "cli/integrity/keyring.h"
#include "cli/judge/judge.h"
#include "cli/policy/baseline.h"
#include "cli/policy/policy.h"
#include "cli/report/reports.h"
#include "cli/report/tally.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/rules/rule_digest.h"
#include "cli/rules/rule_set.h"
#include "cli/worker/judge_pool.h"
#include "cli/worker/signal_watch.h"
#include "pkgvet/platform/param_file_validator.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

constexpr const char* kStepSummary = "GITHUB_STEP_SUMMARY";

constexpr const char* kExitStatuses =
    "Exit status: 0 every package was accepted; 1 at least one was rejected; 2 usage error, no\n"
    "package to judge, or a rule tree or sandbox that cannot be used; 3 at least one package "
    "could\n"
    "not be judged (3 outranks 1).";

constexpr const char* kNothingToJudge =
    "there is nothing to judge, which --allow-empty would permit";

// Whether there is nothing to complain of.
bool isSound(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain(describe(fault));
    }
    return faults.empty();
}

// A tree that loses rules still judges, but not as its writer thinks.
void warnOf(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain("warning: " + describe(fault));
    }
}

// On a terminal, a report for people has said so in the line above.
bool isToldByReport(const ReportOptions& options) {
    return formatsOfStandardOutput(options).front() == Format::Text && isatty(STDOUT_FILENO) == 1;
}

void complainOf(const PackageReport& package) {
    complain(printable(package.path) + ": could not be judged: " + causeWithLastLine(package));
}

ReportStyle styleOf(const CheckOptions& options) {
    ReportStyle style;
    style.color = wantsColor(options.report.color);
    style.columns = outputColumns();
    style.quiet = options.report.quiet;
    style.showWaived = options.policy.showWaived;
    style.explain = options.report.explain;
    style.timings = options.report.timings;
    style.split = options.report.split;
    if (const char* summary = getenv(kStepSummary)) {
        style.stepSummary = summary;
    }
    style.failOn = options.policy.failOn.value_or(style.failOn);
    return style;
}

std::string sandboxRemark(const Sandbox& sandbox) {
    const std::string reason = sandbox.missing.empty() ? "" : " (" + sandbox.missing + ")";
    return "packages are shut off from the machine by " + sandbox.name() + reason;
}

// What the reports say of packages that were never judged.
bool isValidationEnabled(const JudgingOptions& options, const std::string& rules) {
    if (options.validation == ValidationMode::Auto) {
        return Configuration(rules, options.profiles.front()).validationEnabled();
    }
    return options.validation == ValidationMode::On;
}

std::vector<Configuration> configurationsOf(const JudgingOptions& options,
                                            const std::string& rules) {
    std::vector<Configuration> configurations;
    for (const Profiles profile : options.profiles) {
        configurations.emplace_back(rules, profile);
        if (options.validation != ValidationMode::Auto) {
            configurations.back().setValidationEnabled(options.validation == ValidationMode::On);
        }
    }
    return configurations;
}

// What all judges share, made once and in the process that they are copies of. It is never
// destroyed, and neither are they.
JudgeFunction prepareToJudge(const CheckOptions& options, const std::string& rules,
                             const Keyring& keyring) {
    auto* const configurations =
        new std::vector<Configuration>(configurationsOf(options.judging, rules));
    auto* const rpm = new RpmSession(keyring);
    return [configurations, &options, rpm](const Surroundings& surroundings) {
        return judge(surroundings, *configurations, options.integrity, rpm);
    };
}

// What is unpacked lies in memory, of which all jobs together take half at the most.
Limits limitsOf(const JudgingOptions& options, unsigned jobs) {
    Limits limits = options.limits;
    if (!options.limitsUnpacked && options.scratch.empty()) {
        limits.unpackedBytes = std::min(limits.unpackedBytes, availableMemory() / 2 / jobs);
    }
    return limits;
}

PoolOptions poolOptions(const CheckOptions& options, const std::string& rules,
                        const Keyring& keyring) {
    const JudgingOptions& judging = options.judging;
    PoolOptions pool;
    for (const Profiles profile : judging.profiles) {
        pool.profiles.push_back(Configuration::getProfileName(profile));
    }
    pool.jobs = judging.jobs == 0 ? availableProcessors() : judging.jobs;
    pool.scratch = judging.scratch;
    pool.judging.sandbox = judging.sandbox;
    pool.judging.limits = limitsOf(judging, pool.jobs);
    pool.judging.prepare = [&options, &rules, &keyring] {
        return prepareToJudge(options, rules, keyring);
    };
    pool.judging.readable = {ParamFileValidator::standardSchemasDirectory()};
    return pool;
}

// A pipe was read by whoever needed its content, and cannot be read again.
std::string checksumOf(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        return std::string();
    }
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    Checksum sum;
    sum.add(content.str());
    return sum.finish();
}

std::vector<ProfileRules> profileRules(const CheckOptions& options, const std::string& rules) {
    // Reading the tree once more takes time that only these formats are worth.
    const bool isTold = hasReportIn(options.report, {Format::Json, Format::Jsonl});
    std::vector<ProfileRules> profiles;
    for (const Profiles profile : options.judging.profiles) {
        profiles.push_back({Configuration::getProfileName(profile),
                            isTold ? digestOf(loadRuleSet(rules, profile)) : std::string()});
    }
    return profiles;
}

Provenance provenanceOf(const CheckOptions& options, const std::string& rules) {
    Provenance provenance;
    provenance.profiles = profileRules(options, rules);
    provenance.validation = validationName(options.judging.validation);
    provenance.integrity = options.integrity.enabled;
    if (options.policy.failOn) {
        provenance.failOn = severityName(*options.policy.failOn);
    }
    for (const std::string& file : options.policy.waivers) {
        provenance.waivers.push_back(checksumOf(file));
    }
    provenance.baseline = checksumOf(options.policy.baseline);
    const Limits& limits = options.judging.limits;
    provenance.limits = {limits.seconds, limits.processorSeconds, limits.unpackedBytes,
                         limits.files,   limits.memory,           limits.report};
    return provenance;
}

// Says what is missing, if something is. False when that is not to be put up with.
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

bool hasReader(int descriptor) {
    struct pollfd output {
        descriptor, POLLOUT, 0
    };
    return poll(&output, 1, 0) < 0 || (output.revents & POLLERR) == 0;
}

// What packages are judged by.
struct Judging {
    PoolOptions options;
    std::unique_ptr<TemplateProcess> from;
};

// How a run ended.
struct RunEnd {
    int status = kUsageError;
    int signal = 0;  // that ended it, or 0
};

// One run over all packages.
class Run {
public:
    // Opens all files that are to be written; std::runtime_error names one that cannot be.
    Run(const CheckOptions& options, const std::string& rules, std::vector<Input> inputs,
        Policy policy)
        : options_(options),
          rules_(rules),
          inputs_(std::move(inputs)),
          policy_(std::move(policy)),
          progress_(inputs_.size()),
          reports_(formatsOfStandardOutput(options.report).front(), styleOf(options), std::cout,
                   filesOf(options.report)) {
        if (!options.policy.writeBaseline.empty()) {
            baselineFile_.emplace(options.policy.writeBaseline);
        }
    }

    RunEnd judgeAll(Judging judging) {
        const auto receive = [this](PackageReport package) { return take(std::move(package)); };
        JudgePool pool(inputs_, std::move(judging.options), std::move(judging.from), receive,
                       &progress_);
        report_.sandbox = pool.sandbox().name();
        report_.provenance = provenanceOf(options_, rules_);
        if (!isSandboxGoodEnough(pool.sandbox(), options_.judging)) {
            return {};
        }
        report_.partial = !pool.run();
        report_.notices = policy_.notices(!report_.partial);
        for (const std::string& notice : report_.notices) {
            complain(notice);
        }
        if (report_.partial && std::cout.good()) {
            complain("interrupted: " + std::to_string(inputs_.size() - report_.packages.size()) +
                     " of " + std::to_string(inputs_.size()) + " packages were not judged");
        }
        reports_.finish(report_);
        writeBaseline();
        return {status(), pool.signal()};
    }

private:
    // Packages come in input order, whatever the order in which they were judged.
    bool take(PackageReport package) {
        if (!package.judged()) {
            // A judge that came to nothing did not say.
            package.validationEnabled = isValidationEnabled();
        }
        // The policy comes first: everything below counts or shows what it made of the findings.
        policy_.apply(&package);
        if (package.judged() && !package.passes()) {
            progress_.countRejected();
        }
        if (!options_.report.timings) {
            package.seconds = 0;
        }
        progress_.clear();
        reports_.add(package);
        if (!package.judged() && !isToldByReport(options_.report)) {
            complainOf(package);
        }
        report_.packages.push_back(std::move(package));
        return std::cout.good();
    }

    // Asked for rarely, and reading the rules for it takes time.
    bool isValidationEnabled() {
        if (!validationEnabled_) {
            validationEnabled_ = cli::isValidationEnabled(options_.judging, rules_);
        }
        return *validationEnabled_;
    }

    // A run that was interrupted knows too little to be a baseline.
    void writeBaseline() {
        if (!baselineFile_ || report_.partial) {
            return;
        }
        Baseline baseline;
        for (const PackageReport& package : report_.packages) {
            collect(package, &baseline);
        }
        baselineFile_->write(formatBaseline(baseline));
        baselineFile_->commit();
    }

    int status() const {
        const auto& packages = report_.packages;
        const auto isJudged = [](const PackageReport& package) { return package.judged(); };
        const auto passes = [](const PackageReport& package) { return package.passes(); };
        if (report_.partial || !std::all_of(packages.begin(), packages.end(), isJudged)) {
            return kNotJudged;
        }
        const bool passed = std::all_of(packages.begin(), packages.end(), passes);
        return passed || options_.policy.exitZero ? kAccepted : kRejected;
    }

    const CheckOptions& options_;
    const std::string& rules_;
    std::vector<Input> inputs_;
    Policy policy_;
    std::optional<bool> validationEnabled_;
    Progress progress_;
    Reports reports_;
    std::optional<OutputFile> baselineFile_;
    RunReport report_;
};

// Says what leads to no package. Throws std::runtime_error when nothing leads to any.
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

RunEnd judgeInputs(const Settings& settings, const std::string& rules, Policy policy,
                   Judging judging) {
    const CheckOptions& options = settings.options;
    std::optional<Run> run;
    try {
        std::vector<Input> packages = packagesOf(options.input);
        guardFiles(settings, rules, packages);
        run.emplace(options, rules, std::move(packages), std::move(policy));
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

Keyring keyringOf(const IntegrityOptions& options, std::vector<Fault>* faults) {
    return options.keyring.empty() ? Keyring() : readKeyring(options.keyring, faults);
}

int checkUnder(const Settings& settings) {
    const CheckOptions& options = settings.options;
    // A reader that goes away is an error like any other until all is cleared up.
    const bool isEndedByPipes = signal(SIGPIPE, SIG_IGN) != SIG_IGN;
    const DefaultRules own;
    const std::string rules = options.judging.rules.empty() ? own.path() : options.judging.rules;
    std::vector<Fault> faults;
    const Keyring keyring = keyringOf(options.integrity, &faults);
    // It looks at the machine while this process looks at the rules.
    Judging judging{poolOptions(options, rules, keyring), nullptr};
    judging.from = std::make_unique<TemplateProcess>(judging.options.judging);
    const RuleFaults faultsOfRules = checkRuleTree(rules, options.judging.profiles);
    warnOf(faultsOfRules.dropped);
    faults.insert(faults.end(), faultsOfRules.unusable.begin(), faultsOfRules.unusable.end());
    Policy policy(options.policy, localDate(), &faults);
    if (!isSound(faults)) {
        return kUsageError;
    }
    judging.from->prepare();
    return endOf(judgeInputs(settings, rules, std::move(policy), std::move(judging)),
                 isEndedByPipes);
}

std::vector<Option> allOptions(CheckOptions* options) {
    std::vector<Option> all;
    for (const std::vector<Option>& some :
         std::array{inputOptions(&options->input), settingsOptions(&options->settings),
                    judgingOptions(&options->judging), integrityOptions(&options->integrity),
                    policyOptions(&options->policy), reportOptions(&options->report)}) {
        all.insert(all.end(), some.begin(), some.end());
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
