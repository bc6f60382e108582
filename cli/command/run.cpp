// Has packages judged and brings together what is said of them.
#include "cli/command/run.h"

#include <unistd.h>

#include <iostream>
#include <sstream>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/command/judgement_digest.h"
#include "cli/command/pool_options.h"
#include "cli/command/provenance.h"
#include "cli/command/quiet_run.h"
#include "cli/command/report_style.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

// On a terminal, a report for people has said so in the line above.
bool isToldByReport(const ReportOptions& options) {
    return formatsOfStandardOutput(options).front() == Format::Text && isatty(STDOUT_FILENO) == 1;
}

void complainOf(const PackageReport& package) {
    complain(printable(package.path) + ": could not be judged: " + causeWithLastLine(package));
}

// The report that a run goes on with is that of the whole run in the end.
std::vector<Output> reportFilesOf(const CheckOptions& options) {
    std::vector<Output> files = filesOf(options.report);
    if (!options.input.resume.empty()) {
        files.push_back({Format::Jsonl, options.input.resume});
    }
    return files;
}

}  // namespace

Run::Run(const CheckOptions& options, const std::string& rules, RunInputs inputs,
         const Keyring& keyring, Policy policy)
    : options_(options),
      rules_(rules),
      keyring_(keyring),
      inputs_(std::move(inputs.packages)),
      size_(inputs_.size()),
      policy_(std::move(policy)),
      progress_(size_),
      reports_(formatsOfStandardOutput(options.report).front(),
               styleOf(options.report, options.policy.showWaived, options.policy.failOn), std::cout,
               reportFilesOf(options)) {
    report_.shard = inputs.shard;
    if (!options.policy.writeBaseline.empty()) {
        baselineFile_.emplace(options.policy.writeBaseline);
    }
    if (!options.input.resume.empty()) {
        resumeFile_.emplace(options.input.resume);
    }
}

RunEnd Run::judgeAll(Judging judging) {
    judging.from->waitUntilPrepared();
    describeRun(judging.from->sandbox());
    const auto receive = [this](PackageReport package) { return take(std::move(package)); };
    JudgePool pool(std::move(inputs_), withResumption(std::move(judging.options)),
                   std::move(judging.from), receive, &progress_);
    if (!isSandboxGoodEnough(pool.sandbox(), options_.judging)) {
        return {};
    }
    report_.partial = !pool.run();
    report_.notices = policy_.notices(!report_.partial);
    tellEnd();
    reports_.finish(report_);
    writeBaseline();
    return {status(), pool.signal()};
}

void Run::describeRun(const Sandbox& sandbox) {
    report_.sandbox = sandbox.name();
    report_.provenance = provenanceOf(options_, rules_, keyring_, policy_.digests());
    if (needsDigests(options_)) {
        judgedBy_ = judgementDigest(options_, rules_, report_);
    }
}

PoolOptions Run::withResumption(PoolOptions options) {
    if (resumeFile_) {
        options.recall = [this](const Input& input) {
            return resumeFile_->find(input.path, judgedBy_);
        };
        options.finished = [this](const PackageReport& package) { addLine(package); };
    }
    return options;
}

// Says on standard error what is to be said of the run as a whole.
void Run::tellEnd() {
    for (const std::string& notice : report_.notices) {
        complain(notice);
    }
    if (report_.partial && std::cout.good()) {
        complain("interrupted: " + std::to_string(size_ - tallyOf(report_).packages()) + " of " +
                 std::to_string(size_) + " packages were not judged");
    }
}

// Packages come in input order, whatever the order in which they were judged.
bool Run::take(PackageReport package) {
    complete(&package);
    if (package.judged() && !package.passes()) {
        progress_.countRejected();
    }
    progress_.clear();
    reports_.add(package);
    if (!package.judged() && !isToldByReport(options_.report)) {
        complainOf(package);
    }
    if (baselineFile_) {
        collect(package, &baseline_);
    }
    report_.dropped.add(package);
    return std::cout.good();
}

// Adds what the judge does not know. The policy comes first of all: everything else counts or shows
// what it made of the findings.
void Run::complete(PackageReport* package) {
    if (!package->judged()) {
        // A judge that came to nothing did not say.
        package->validationEnabled = isValidationEnabled();
    }
    policy_.apply(package);
    package->judgedBy = judgedBy_;
    if (!report_.shard) {
        package->position = 0;
    }
    if (!options_.report.timings) {
        package->seconds.reset();
    }
}

// What a run that is killed leaves to the one that goes on.
void Run::addLine(PackageReport package) {
    ReportStyle style;
    style.timings = options_.report.timings;
    complete(&package);
    std::ostringstream line;
    addJsonLine(package, style, line);
    resumeFile_->add(line.view());
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
    baselineFile_->write(formatBaseline(baseline_));
    baselineFile_->commit();
}

int Run::status() const {
    const PackageTally tally = tallyOf(report_);
    if (report_.partial || tally.notJudged > 0) {
        return kNotJudged;
    }
    return tally.rejected == 0 || options_.policy.exitZero ? kAccepted : kRejected;
}

}  // namespace pkgvet::cli
