// Takes one package through the library.
#include "cli/judge.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <regex>

#include "cli/quiet_descriptor.h"
#include "cli/safe_path.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"

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

void judgeContent(const std::string& path, const Configuration& configuration, const RpmMeta& meta,
                  const QuietDescriptor& quiet, Judgement* result) {
    ContentValidator content(path);
    if (!content.extracted()) {
        // Its rules would look at the files of this machine under the package's names.
        const std::string said = quiet.lastLine();
        result->cause = said.empty() ? kNotUnpacked : kNotUnpacked + (": " + said);
        return;
    }
    result->contentAccepted = content.validateContent(configuration, meta);
}

void judgeReadable(const std::string& path, const Configuration& configuration, RpmSession* rpm,
                   const QuietDescriptor& quiet, Judgement* result) {
    const RpmMeta meta(path.c_str(), rpm->transactions());
    const std::string message = rpm->takeMessage();
    if (meta.name().empty()) {
        result->cause = unreadable(message, path);
        return;
    }
    result->metaAccepted = MetaValidator().validateMeta(configuration, meta);
    judgeContent(path, configuration, meta, quiet, result);
}

}  // namespace

Judgement judge(const std::string& path, const Configuration& configuration, RpmSession* rpm) {
    Judgement result;
    result.package = path;
    const std::string resolved = resolve(path, &result.cause);
    if (!result.judged()) {
        return result;
    }
    try {
        FindingCapture capture(std::cerr);
        const QuietDescriptor quiet;
        const SafePath safe(resolved);
        judgeReadable(safe.path(), configuration, rpm, quiet, &result);
        result.findings = capture.take();
    } catch (const std::exception& error) {
        result.cause = std::string(kRuleFailed) + error.what();
    }
    return result;
}

}  // namespace pkgvet::cli
