// Has packages judged and brings together what is said of them.
#include "cli/command/run.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/command/pool_options.h"
#include "cli/command/provenance.h"
#include "cli/policy/baseline.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kStepSummary = "GITHUB_STEP_SUMMARY";

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

}  // namespace

Run::Run(const CheckOptions& options, const std::string& rules, std::vector<Input> inputs,
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

RunEnd Run::judgeAll(Judging judging) {
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

// Packages come in input order, whatever the order in which they were judged.
bool Run::take(PackageReport package) {
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
bool Run::isValidationEnabled() {
    if (!validationEnabled_) {
        validationEnabled_ = cli::isValidationEnabled(options_.judging, rules_);
    }
    return *validationEnabled_;
}

// A run that was interrupted knows too little to be a baseline.
void Run::writeBaseline() {
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

int Run::status() const {
    const auto& packages = report_.packages;
    const auto isJudged = [](const PackageReport& package) { return package.judged(); };
    const auto passes = [](const PackageReport& package) { return package.passes(); };
    if (report_.partial || !std::all_of(packages.begin(), packages.end(), isJudged)) {
        return kNotJudged;
    }
    const bool passed = std::all_of(packages.begin(), packages.end(), passes);
    return passed || options_.policy.exitZero ? kAccepted : kRejected;
}

}  // namespace pkgvet::cli
