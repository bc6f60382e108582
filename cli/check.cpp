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

bool isUsable(const std::string& rules, Profiles profile) {
    const std::vector<Fault> faults = checkRuleTree(rules, profile);
    std::for_each(faults.begin(), faults.end(), reportFault);
    return faults.empty();
}

int statusOf(const Judgement& judgement) {
    if (!judgement.judged()) {
        return kNotJudged;
    }
    return judgement.accepted() ? kAccepted : kRejected;
}

int judgeAll(const CheckOptions& options, const Configuration& configuration) {
    RpmSession rpm;
    TextReport report(std::cout, {wantsColor(options.color), options.quiet});
    int status = kAccepted;
    for (const std::string& package : options.packages) {
        const Judgement judgement = judge(package, configuration, &rpm);
        report.add(judgement);
        if (!judgement.judged()) {
            std::cerr << kProgram << printable(package) << ": could not be judged: "
                      << printable(judgement.cause) << '\n';
        }
        status = std::max(status, statusOf(judgement));
    }
    report.finish();
    return status;
}

}  // namespace

int check(const CheckOptions& options) {
    const std::string rules = options.rules.empty() ? defaultRules() : options.rules;
    if (!isUsable(rules, options.profile)) {
        return kUsageError;
    }
    const Configuration configuration(rules, options.profile);
    if (options.validation != ValidationMode::Auto) {
        configuration.setValidationEnabled(options.validation == ValidationMode::On);
    }
    const int status = judgeAll(options, configuration);
    if (!std::cout) {
        std::cerr << kProgram << "cannot write to standard output\n";
        return kNotJudged;
    }
    return status;
}

}  // namespace pkgvet::cli
