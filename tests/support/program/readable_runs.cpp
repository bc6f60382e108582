// Completes the sample runs.
#include "tests/support/program/readable_runs.h"

#include "cli/catalogue/catalogue.h"

using pkgvet::cli::CauseCode;
using pkgvet::cli::Finding;
using pkgvet::cli::Judgement;
using pkgvet::cli::PackageReport;
using pkgvet::cli::RunReport;
using pkgvet::cli::Severity;
using pkgvet::cli::Standing;

namespace {

void complete(PackageReport* package) {
    if (!package->judged() && package->causeCode == CauseCode::None) {
        package->causeCode = CauseCode::Unreadable;
    }
    for (Judgement& judgement : package->judgements) {
        for (Finding& finding : judgement.findings) {
            if (pkgvet::cli::findEntry(finding.rule) == nullptr) {
                finding.rule = "scripts-not-allowed";
            }
        }
    }
}

void complete(RunReport* run) {
    for (PackageReport& package : run->packages) {
        complete(&package);
        if (package.judged()) {
            run->provenance.profiles.clear();
            for (Judgement& judgement : package.judgements) {
                // Profiles are the program's own, so that they have plain names.
                judgement.profile = judgement.profile.substr(0, judgement.profile.find('\0'));
                run->provenance.profiles.push_back({judgement.profile});
            }
        }
    }
}

}  // namespace

std::vector<SampleRun> readableRuns() {
    std::vector<SampleRun> runs = sampleRuns();
    for (SampleRun& one : runs) {
        complete(&one.run);
    }
    runs.push_back({"full", fullRun()});
    return runs;
}

RunReport fullRun() {
    const std::string bytes = hostileBytes();
    Finding waived = findingAbout(bytes, "library-not-allowed", Severity::Error, "Not allowed");
    waived.standing = Standing::Waived;
    waived.reason = bytes;
    Finding empty = finding("icon-missing", Severity::Warning, "");
    empty.subject = "";
    PackageReport judged = package({judgement({waived, empty, empty}, "regular")});
    judged.judgements[0].metaAccepted = false;
    judged.release = judged.arch = bytes;
    judged.judgedBy = std::string(64, 'b');
    judged.validationEnabled = false;
    judged.incomplete = bytes;
    judged.seconds = 0.1;
    PackageReport broken = unreadable(std::string(4000, 'x'), bytes);
    broken.causeCode = CauseCode::Crashed;
    broken.lastErrorLine = bytes;
    RunReport run = runOf({judged, broken});
    run.sandbox = "namespaces+landlock";
    run.notices = {"plain", bytes};
    run.provenance.version = "0.0.1";
    run.provenance.profiles = {{"regular", std::string(64, 'c')}};
    run.provenance.validation = "off";
    run.provenance.integrity = false;
    run.provenance.failOn = "warning";
    run.provenance.waivers = {std::string(64, 'd'), ""};
    run.provenance.baseline = std::string(64, 'e');
    run.provenance.limits = {0.1, 60, std::uint64_t{1} << 63U, 4'000'000'000U, 1, 2};
    return run;
}
