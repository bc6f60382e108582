// Has packages judged and tells of them.
#include "cli/command/check.h"

#include <signal.h>

#include <algorithm>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/output_file.h"
#include "cli/base/processors.h"
#include "cli/base/progress.h"
#include "cli/base/terminal.h"
#include "cli/command/exit_status.h"
#include "cli/command/input.h"
#include "cli/command/reports.h"
#include "cli/policy/baseline.h"
#include "cli/policy/policy.h"
#include "cli/rules/default_rules.h"
#include "cli/rules/rule_check.h"
#include "cli/worker/worker_pool.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kProgram = "pkgvet: ";

void complain(const std::string& text) {
    std::cerr << kProgram << text << '\n';
}

// Whether there is nothing to complain of.
bool isSound(const std::vector<Fault>& faults) {
    for (const Fault& fault : faults) {
        complain(describe(fault));
    }
    return faults.empty();
}

void complain(const PackageReport& package) {
    std::string text =
        printable(package.path) + ": could not be judged: " + printable(package.cause);
    if (!package.lastWords.empty()) {
        text += ": " + printable(package.lastWords);
    }
    complain(text);
}

ReportStyle styleOf(const CheckOptions& options) {
    ReportStyle style;
    style.color = wantsColor(options.color);
    style.quiet = options.quiet;
    style.showWaived = options.showWaived;
    style.explain = options.explain;
    style.timings = options.timings;
    style.failOn = options.failOn.value_or(style.failOn);
    return style;
}

bool isValidationEnabled(const CheckOptions& options, const std::string& rules) {
    if (options.validation == ValidationMode::Auto) {
        return Configuration(rules, options.profiles.front()).validationEnabled();
    }
    return options.validation == ValidationMode::On;
}

// The command line of a worker, up to the path of its package.
std::vector<std::string> workerCommand(const CheckOptions& options, const std::string& rules) {
    std::vector<std::string> command = {"worker", "--rules=" + rules};
    for (const Profiles profile : options.profiles) {
        command.push_back("--profile=" + std::string(profileName(profile)));
    }
    command.push_back("--validation=" + std::string(validationName(options.validation)));
    command.emplace_back("--");
    return command;
}

PoolOptions poolOptions(const CheckOptions& options, const std::string& rules) {
    PoolOptions pool;
    pool.command = workerCommand(options, rules);
    for (const Profiles profile : options.profiles) {
        pool.profiles.emplace_back(profileName(profile));
    }
    pool.jobs = options.jobs == 0 ? availableProcessors() : options.jobs;
    pool.timeout = options.timeout;
    return pool;
}

// One run over all packages.
class Run {
public:
    // Opens all files that are to be written; std::runtime_error names one that cannot be.
    Run(const CheckOptions& options, const std::string& rules, std::vector<Input> inputs,
        Choice choice)
        : options_(options),
          rules_(rules),
          inputs_(std::move(inputs)),
          choice_(std::move(choice)),
          validationEnabled_(isValidationEnabled(options, rules)),
          progress_(inputs_.size()),
          reports_(options.format, styleOf(options), std::cout, options.outputs) {
        if (!options.writeBaseline.empty()) {
            baselineFile_.emplace(options.writeBaseline);
        }
    }

    int judgeAll() {
        const auto receive = [this](PackageReport package) { return take(std::move(package)); };
        WorkerPool pool(inputs_, poolOptions(options_, rules_), receive, &progress_);
        report_.partial = !pool.run();
        report_.notices = choice_.notices(!report_.partial);
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
            // A worker that came to nothing did not say.
            package.validationEnabled = validationEnabled_;
        }
        // What counts is chosen here, before anything is counted or shown.
        choice_.apply(&package);
        if (package.judged() && !package.passes()) {
            progress_.countRejected();
        }
        if (!options_.timings) {
            package.seconds = 0;
        }
        progress_.clear();
        reports_.add(package);
        if (!package.judged()) {
            complain(package);
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
        return passed || options_.exitZero ? kAccepted : kRejected;
    }

    const CheckOptions& options_;
    const std::string& rules_;
    std::vector<Input> inputs_;
    Choice choice_;
    bool validationEnabled_;
    Progress progress_;
    Reports reports_;
    std::optional<OutputFile> baselineFile_;
    RunReport report_;
};

int judgeInputs(const CheckOptions& options, const std::string& rules, Choice choice) {
    std::optional<Run> run;
    try {
        run.emplace(options, rules, collectInput(options), std::move(choice));
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return kUsageError;
    }
    return run->judgeAll();
}

}  // namespace

int check(const CheckOptions& options) {
    // A reader that goes away is an error like any other when it comes to writing.
    signal(SIGPIPE, SIG_IGN);
    const std::string rules = options.rules.empty() ? defaultRules() : options.rules;
    std::vector<Fault> faults = checkRuleTree(rules, options.profiles);
    Choice choice(options, localDate(), &faults);
    if (!isSound(faults)) {
        return kUsageError;
    }
    const int status = judgeInputs(options, rules, std::move(choice));
    if (!std::cout) {
        complain("cannot write to standard output");
        return kNotJudged;
    }
    return status;
}

}  // namespace pkgvet::cli
