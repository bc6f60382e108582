// Makes runs as plain data.
#include "tests/support/program/sample_runs.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "cli/report/reports.h"

using pkgvet::cli::Finding;
using pkgvet::cli::Judgement;
using pkgvet::cli::PackageReport;
using pkgvet::cli::RunReport;
using pkgvet::cli::Severity;
using pkgvet::cli::Standing;

Finding finding(const std::string& rule, Severity severity, const std::string& message) {
    Finding result;
    result.rule = rule;
    result.severity = severity;
    result.message = message;
    return result;
}

Finding findingAbout(const std::string& subject, const std::string& rule, Severity severity,
                     const std::string& text) {
    Finding result = finding(rule, severity, std::string("[").append(subject) + "] " + text);
    result.subject = subject;
    return result;
}

Judgement judgement(std::vector<Finding> findings, const std::string& profile) {
    Judgement result;
    result.profile = profile;
    result.metaAccepted = true;
    result.contentAccepted = std::none_of(findings.begin(), findings.end(), [](const Finding& one) {
        return one.severity >= Severity::Error;
    });
    result.passes = result.accepted();
    result.findings = std::move(findings);
    return result;
}

PackageReport package(std::vector<Judgement> judgements) {
    PackageReport result;
    result.path = "app.rpm";
    result.name = "org.example.app";
    result.version = "1.0";
    result.release = std::string(1, '1');
    result.arch = "noarch";
    result.sha256 = std::string(64, 'a');
    result.seconds = 0.25;
    result.judgements = std::move(judgements);
    return result;
}

PackageReport unreadable(const std::string& path, const std::string& cause) {
    PackageReport result;
    result.path = path;
    result.cause = cause;
    return result;
}

RunReport runOf(std::vector<PackageReport> packages) {
    RunReport run;
    run.packages = std::move(packages);
    run.provenance.profiles = {{"regular"}};
    return run;
}

namespace {

std::vector<Finding> someFindings() {
    return {finding("package-scripts", Severity::Critical, "[scripts] Scripts are not allowed"),
            findingAbout("libx.so.1", "library-not-allowed", Severity::Error, "Not allowed"),
            findingAbout("/usr/share/a", "file-remark", Severity::Warning, "Remarkable"),
            finding("other-remark", Severity::Info, "By the way")};
}

RunReport waivedRun() {
    Judgement result = judgement(someFindings());
    result.findings[1].standing = Standing::Waived;
    result.findings[1].reason = "until 2.0 <\"&'>";
    result.findings[2].standing = Standing::Known;
    RunReport run = runOf({package({result})});
    run.notices = {"a waiver is never used"};
    return run;
}

// Accepted by the library, had it seen it whole.
RunReport incompleteRun() {
    Judgement result = judgement(
        {findingAbout("/usr/share/a", "header-path-not-normal", Severity::Critical, "Not normal")});
    result.contentAccepted = false;
    result.intact = false;
    PackageReport report = package({result});
    report.incomplete = "the payload is irregular";
    return runOf({report});
}

RunReport partialRun() {
    RunReport run = runOf({package({judgement({})})});
    run.partial = true;
    return run;
}

RunReport hostileRun() {
    const std::string bytes = hostileBytes();
    PackageReport result = package({judgement(
        {findingAbout(bytes, "library-not-allowed", Severity::Error, bytes)}, "regular" + bytes)});
    result.path = bytes;
    result.name = bytes;
    result.version = bytes;
    PackageReport broken = unreadable(bytes, bytes);
    broken.lastErrorLine = bytes;
    RunReport run = runOf({result, broken});
    run.notices = {bytes};
    return run;
}

}  // namespace

std::vector<SampleRun> sampleRuns() {
    return {
        {"nothing to do", runOf({})},
        {"accepted", runOf({package({judgement({})})})},
        {"rejected", runOf({package({judgement(someFindings())})})},
        {"not judged", runOf({unreadable("/tmp/a b.rpm", "not an RPM package")})},
        {"all of them", runOf({package({judgement({})}), package({judgement(someFindings())}),
                               unreadable("x.rpm", "not a regular file")})},
        {"incomplete", incompleteRun()},
        {"partial", partialRun()},
        {"waived and known", waivedRun()},
        {"several profiles",
         runOf({package({judgement({}, "regular"), judgement(someFindings(), "mdm")})})},
        {"hostile bytes", hostileRun()},
    };
}

std::string hostileBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes + "\u202e\ufffe\uffff\ufeff\U0010ffff\xed\xa0\x80]]> --> {0} ](x) %0A ::error::";
}

std::string reportOf(pkgvet::cli::Format format, const RunReport& run,
                     const pkgvet::cli::ReportStyle& style) {
    std::ostringstream stream;
    pkgvet::cli::writeReport(format, run, style, stream);
    return stream.str();
}
