// Has packages judged and reports on them.
#include "cli/command/check.h"

#include <signal.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <utility>

#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/memory.h"
#include "cli/base/output_file.h"
#include "cli/base/processors.h"
#include "cli/base/progress.h"
#include "cli/base/terminal.h"
#include "cli/judge/judge.h"
#include "cli/policy/baseline.h"
#include "cli/policy/policy.h"
#include "cli/report/reports.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/worker/judge_pool.h"
#include "pkgvet/platform/param_file_validator.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

constexpr const char* kExitStatuses =
    "Exit status: 0 every package was accepted; 1 at least one was rejected; 2 usage error, or a\n"
    "rule tree or sandbox that cannot be used; 3 at least one package could not be judged\n"
    "(3 outranks 1).";

// Whether there is nothing to complain of.
bool isSound(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain(describe(fault));
    }
    return faults.empty();
}

void complainOf(const PackageReport& package) {
    std::string text =
        printable(package.path) + ": could not be judged: " + printable(package.cause);
    if (!package.lastErrorLine.empty()) {
        text += ": " + printable(package.lastErrorLine);
    }
    complain(text);
}

ReportStyle styleOf(const CheckOptions& options) {
    ReportStyle style;
    style.color = wantsColor(options.report.color);
    style.quiet = options.report.quiet;
    style.showWaived = options.policy.showWaived;
    style.explain = options.report.explain;
    style.timings = options.report.timings;
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
JudgeFunction prepareToJudge(const CheckOptions& options, const std::string& rules) {
    auto* const configurations =
        new std::vector<Configuration>(configurationsOf(options.judging, rules));
    auto* const rpm = new RpmSession;
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

PoolOptions poolOptions(const CheckOptions& options, const std::string& rules) {
    const JudgingOptions& judging = options.judging;
    PoolOptions pool;
    for (const Profiles profile : judging.profiles) {
        pool.profiles.push_back(Configuration::getProfileName(profile));
    }
    pool.jobs = judging.jobs == 0 ? availableProcessors() : judging.jobs;
    pool.scratch = judging.scratch;
    pool.judging.sandbox = judging.sandbox;
    pool.judging.limits = limitsOf(judging, pool.jobs);
    pool.judging.prepare = [&options, &rules] { return prepareToJudge(options, rules); };
    pool.judging.readable = {ParamFileValidator::standardSchemasDirectory()};
    return pool;
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
          validationEnabled_(isValidationEnabled(options.judging, rules)),
          progress_(inputs_.size()),
          reports_(options.report.format, styleOf(options), std::cout, options.report.outputs) {
        if (!options.policy.writeBaseline.empty()) {
            baselineFile_.emplace(options.policy.writeBaseline);
        }
    }

    int judgeAll() {
        const auto receive = [this](PackageReport package) { return take(std::move(package)); };
        JudgePool pool(inputs_, poolOptions(options_, rules_), receive, &progress_);
        report_.sandbox = pool.sandbox().name();
        if (!isSandboxGoodEnough(pool.sandbox(), options_.judging)) {
            return kUsageError;
        }
        report_.partial = !pool.run();
        report_.notices = policy_.notices(!report_.partial);
        for (const std::string& notice : report_.notices) {
            complain(notice);
        }
        if (report_.partial) {
            complain("interrupted: " + std::to_string(inputs_.size() - report_.packages.size()) +
                     " of " + std::to_string(inputs_.size()) + " packages were not judged");
        }
        reports_.finish(report_);
        writeBaseline();
        return status();
    }

private:
    // Packages come in input order, whatever the order in which they were judged.
    bool take(PackageReport package) {
        if (!package.judged()) {
            // A judge that came to nothing did not say.
            package.validationEnabled = validationEnabled_;
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
        if (!package.judged()) {
            complainOf(package);
        }
        report_.packages.push_back(std::move(package));
        return std::cout.good();
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
    bool validationEnabled_;
    Progress progress_;
    Reports reports_;
    std::optional<OutputFile> baselineFile_;
    RunReport report_;
};

int judgeInputs(const CheckOptions& options, const std::string& rules, Policy policy) {
    std::optional<Run> run;
    try {
        run.emplace(options, rules, collectInput(options.input), std::move(policy));
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return kUsageError;
    }
    return run->judgeAll();
}

std::vector<Option> allOptions(CheckOptions* options) {
    std::vector<Option> all;
    for (const std::vector<Option>& some :
         std::array{inputOptions(&options->input), judgingOptions(&options->judging),
                    integrityOptions(&options->integrity), policyOptions(&options->policy),
                    reportOptions(&options->report)}) {
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
    row.missing = [options] { return missingInput(options->input); };
    return row;
}

int check(const CheckOptions& options) {
    // A reader that goes away is an error like any other when it comes to writing.
    signal(SIGPIPE, SIG_IGN);
    const std::string rules =
        options.judging.rules.empty() ? defaultRules() : options.judging.rules;
    std::vector<Fault> faults = checkRuleTree(rules, options.judging.profiles);
    Policy policy(options.policy, localDate(), &faults);
    if (!isSound(faults)) {
        return kUsageError;
    }
    return statusAfterOutput(judgeInputs(options, rules, std::move(policy)));
}

}  // namespace pkgvet::cli
