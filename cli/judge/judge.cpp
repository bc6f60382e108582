// Takes one package through the library.
#include "cli/judge/judge.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <utility>

#include "cli/base/checksum.h"
#include "cli/judge/finding_capture.h"
#include "cli/judge/identify.h"
#include "cli/judge/safe_path.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotAFile = "not a regular file";
constexpr const char* kNotAPackage = "not an RPM package";
constexpr const char* kNotUnpacked = "the payload did not unpack";
constexpr const char* kRuleFailed = "a rule failed: ";

std::string reason(int error) {
    return std::strerror(error);
}

// The absolute path of the package, free of links, or why there is none.
std::string resolve(const std::string& path, std::string* cause) {
    const std::unique_ptr<char, decltype(&free)> resolved(realpath(path.c_str(), nullptr), &free);
    struct stat status {};
    if (!resolved || stat(resolved.get(), &status) != 0) {
        *cause = reason(errno);
        return std::string();
    }
    // Anything else, such as a pipe, could keep librpm waiting for ever.
    if (!S_ISREG(status.st_mode)) {
        *cause = kNotAFile;
    }
    return resolved.get();
}

// librpm puts the path ahead of what it has to say.
std::string withoutPath(const std::string& message, const std::string& path) {
    const std::size_t position = message.find(path + ": ");
    return position == std::string::npos ? message : message.substr(position + path.size() + 2);
}

std::string unreadable(const std::string& message, const std::string& path) {
    return message.empty() ? kNotAPackage
                           : std::string(kNotAPackage) + ": " + withoutPath(message, path);
}

// Rules remember what they found, so that each configuration has a validator of its own. They share
// one tree, which goes with the first of them: none may be destroyed before the last has judged.
void judgeContent(const ContentValidator& unpacked,
                  const std::vector<Configuration>& configurations, const RpmMeta& meta,
                  FindingCapture* capture, PackageReport* report) {
    const std::vector<ContentValidator> validators(configurations.size(), unpacked);
    for (std::size_t i = 0; i < configurations.size(); ++i) {
        Judgement judgement;
        judgement.profile = configurations[i].name();
        judgement.metaAccepted = MetaValidator().validateMeta(configurations[i], meta);
        judgement.contentAccepted = validators[i].validateContent(configurations[i], meta);
        judgement.passes = judgement.accepted();
        for (const LogLine& line : capture->take()) {
            judgement.findings.push_back(identify(line));
        }
        report->judgements.push_back(std::move(judgement));
    }
}

void describe(const RpmMeta& meta, PackageReport* report) {
    report->name = meta.name();
    report->version = meta.version();
    report->release = meta.release();
    report->arch = meta.arch();
}

void judgeReadable(const std::string& path, const std::vector<Configuration>& configurations,
                   RpmSession* rpm, FindingCapture* capture, PackageReport* report) {
    const RpmMeta meta(path.c_str(), rpm->transactions());
    const std::string message = rpm->takeMessage();
    if (meta.name().empty()) {
        report->cause = unreadable(message, path);
        return;
    }
    describe(meta, report);
    const ContentValidator content(path);
    if (!content.extracted()) {
        // Its rules would look at the files of this machine under the package's names.
        report->cause = kNotUnpacked;
        return;
    }
    judgeContent(content, configurations, meta, capture, report);
}

}  // namespace

PackageReport judge(const std::string& path, const std::vector<Configuration>& configurations,
                    RpmSession* rpm) {
    PackageReport report;
    report.path = path;
    report.validationEnabled = configurations.front().validationEnabled();
    const std::string resolved = resolve(path, &report.cause);
    if (!report.judged()) {
        return report;
    }
    report.sha256 = sha256Of(resolved);
    if (report.sha256.empty()) {
        report.cause = reason(errno);
        return report;
    }
    try {
        FindingCapture capture(std::cerr);
        const SafePath safe(resolved);
        judgeReadable(safe.path(), configurations, rpm, &capture, &report);
    } catch (const std::exception& error) {
        report.judgements.clear();
        report.cause = std::string(kRuleFailed) + error.what();
    }
    return report;
}

}  // namespace pkgvet::cli
