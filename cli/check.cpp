// Has packages judged and tells of them.
#include "cli/check.h"

#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "cli/default_rules.h"
#include "cli/exit_status.h"
#include "cli/input.h"
#include "cli/printable.h"
#include "cli/processors.h"
#include "cli/progress.h"
#include "cli/rule_check.h"
#include "cli/text_report.h"
#include "cli/worker_pool.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kProgram = "pkgvet: ";

bool wantsColor(ColorMode mode) {
    if (mode != ColorMode::Auto) {
        return mode == ColorMode::Always;
    }
    const char* noColor = getenv("NO_COLOR");
    return (noColor == nullptr || *noColor == '\0') && isatty(STDOUT_FILENO) == 1;
}

void reportFault(const Fault& fault) {
    std::cerr << kProgram << describe(fault) << '\n';
}

bool isUsable(const std::string& rules, const std::vector<Profiles>& profiles) {
    const std::vector<Fault> faults = checkRuleTree(rules, profiles);
    std::for_each(faults.begin(), faults.end(), reportFault);
    return faults.empty();
}

void complain(const PackageReport& package) {
    std::cerr << kProgram << printable(package.path)
              << ": could not be judged: " << printable(package.cause);
    if (!package.lastWords.empty()) {
        std::cerr << ": " << printable(package.lastWords);
    }
    std::cerr << '\n';
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
    Run(const CheckOptions& options, const std::string& rules, std::vector<Input> inputs)
        : options_(options),
          rules_(rules),
          inputs_(std::move(inputs)),
          progress_(inputs_.size()),
          text_(std::cout, {wantsColor(options.color), options.quiet}) {}

    int judgeAll() {
        const auto receive = [this](PackageReport package) { return take(std::move(package)); };
        WorkerPool pool(inputs_, poolOptions(options_, rules_), receive, &progress_);
        report_.partial = !pool.run();
        text_.finish();
        if (report_.partial) {
            std::cerr << kProgram << "interrupted: " << inputs_.size() - report_.packages.size()
                      << " of " << inputs_.size() << " packages were not judged\n";
        }
        return status();
    }

private:
    // Packages come in input order, whatever the order in which they were judged.
    bool take(PackageReport package) {
        // What counts is chosen here, before anything is counted or shown.
        if (package.judged() && !package.passes()) {
            progress_.countRejected();
        }
        if (!options_.timings) {
            package.seconds = 0;
        }
        progress_.clear();
        text_.add(package);
        if (!package.judged()) {
            complain(package);
        }
        report_.packages.push_back(std::move(package));
        return std::cout.good();
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
    Progress progress_;
    TextReport text_;
    RunReport report_;
};

}  // namespace

int check(const CheckOptions& options) {
    // A reader that goes away is an error like any other when it comes to writing.
    signal(SIGPIPE, SIG_IGN);
    const std::string rules = options.rules.empty() ? defaultRules() : options.rules;
    std::vector<Input> inputs;
    try {
        inputs = collectInput(options);
    } catch (const std::runtime_error& error) {
        std::cerr << kProgram << printable(error.what()) << '\n';
        return kUsageError;
    }
    if (!isUsable(rules, options.profiles)) {
        return kUsageError;
    }
    const int status = Run(options, rules, std::move(inputs)).judgeAll();
    if (!std::cout) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return status;
}

}  // namespace pkgvet::cli
