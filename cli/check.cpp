// Judges packages one after the other.
#include "cli/check.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string_view>

#include "cli/default_rules.h"
#include "cli/exit_status.h"
#include "cli/judge.h"
#include "cli/printable.h"
#include "cli/rpm_session.h"
#include "cli/rule_check.h"
#include "cli/text_report.h"
#include "pkgvet/rules/configuration.h"

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
    std::cerr << kProgram << printable(fault.file) << ": ";
    if (!fault.key.empty()) {
        std::cerr << '"' << printable(fault.key) << "\" ";
    }
    std::cerr << printable(fault.cause) << '\n';
}

bool isUsable(const std::string& rules, const std::vector<Profiles>& profiles) {
    std::size_t count = 0;
    for (const Profiles profile : profiles) {
        const std::vector<Fault> faults = checkRuleTree(rules, profile);
        std::for_each(faults.begin(), faults.end(), reportFault);
        count += faults.size();
    }
    return count == 0;
}

int statusOf(const PackageReport& package) {
    if (!package.judged()) {
        return kNotJudged;
    }
    return package.passes() ? kAccepted : kRejected;
}

void complain(const PackageReport& package) {
    std::cerr << kProgram << printable(package.path)
              << ": could not be judged: " << printable(package.cause);
    if (!package.lastWords.empty()) {
        std::cerr << ": " << printable(package.lastWords);
    }
    std::cerr << '\n';
}

int judgeAll(const CheckOptions& options, const std::vector<Configuration>& configurations) {
    RpmSession rpm;
    TextReport report(std::cout, {wantsColor(options.color), options.quiet});
    int status = kAccepted;
    for (const std::string& path : options.paths) {
        const PackageReport package = judge(path, configurations, &rpm);
        report.add(package);
        if (!package.judged()) {
            complain(package);
        }
        status = std::max(status, statusOf(package));
    }
    report.finish();
    return status;
}

}  // namespace

int check(const CheckOptions& options) {
    const std::string rules = options.rules.empty() ? defaultRules() : options.rules;
    if (!isUsable(rules, options.profiles)) {
        return kUsageError;
    }
    std::vector<Configuration> configurations;
    for (const Profiles profile : options.profiles) {
        configurations.emplace_back(rules, profile);
    }
    if (options.validation != ValidationMode::Auto) {
        for (const Configuration& configuration : configurations) {
            configuration.setValidationEnabled(options.validation == ValidationMode::On);
        }
    }
    const int status = judgeAll(options, configurations);
    if (!std::cout) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return status;
}

}  // namespace pkgvet::cli
