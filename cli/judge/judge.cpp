// Takes one package through the library.
#include "cli/judge/judge.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "cli/base/checksum.h"
#include "cli/judge/finding_capture.h"
#include "cli/judge/identify.h"
#include "pkgvet/base/descriptor.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotAPackage = "not an RPM package";
constexpr const char* kNotUnpacked = "the payload did not unpack";
constexpr const char* kRuleFailed = "a rule failed: ";
constexpr const char* kNotCopied = "cannot copy the package: ";
constexpr const char* kOutOfMemory = "it took more memory than --memory allows";

constexpr std::size_t kPieceSize = std::size_t{256} << 10;

// What ends the judgement of a package, for the one place that reports it.
struct NotJudged {
    Cause cause;
};

std::string reason(int error) {
    return std::strerror(error);
}

// The number of bytes read, 0 at the end.
std::size_t readPiece(int descriptor, std::string* piece) {
    ssize_t size = -1;
    do {
        size = read(descriptor, piece->data(), piece->size());
    } while (size < 0 && errno == EINTR);
    if (size < 0) {
        throw NotJudged{{CauseCode::Unreadable, reason(errno)}};
    }
    return static_cast<std::size_t>(size);
}

void writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t size = write(descriptor, bytes.data(), bytes.size());
        if (size < 0 && errno != EINTR) {
            throw NotJudged{{CauseCode::Unreadable, kNotCopied + reason(errno)}};
        }
        bytes.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

// Copies a package and sums it up on the way, so that whatever is said of the copy is said of what
// the sum stands for.
std::string copyPackage(int package, const std::string& path) {
    const Descriptor copy(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0400));
    if (!copy.isOpen()) {
        throw NotJudged{{CauseCode::Unreadable, kNotCopied + reason(errno)}};
    }
    Sha256 checksum;
    std::string piece(kPieceSize, '\0');
    while (const std::size_t size = readPiece(package, &piece)) {
        const std::string_view bytes = std::string_view(piece).substr(0, size);
        checksum.add(bytes);
        writeAll(copy.get(), bytes);
    }
    return checksum.finish();
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
// one tree, which the first of them to be destroyed would remove: none ever is, since the whole
// world ends sooner.
void judgeContent(const ContentValidator& unpacked,
                  const std::vector<Configuration>& configurations, const RpmMeta& meta,
                  FindingCapture* capture, PackageReport* report) {
    for (const Configuration& configuration : configurations) {
        auto* const validator = new ContentValidator(unpacked);
        Judgement judgement;
        judgement.profile = configuration.name();
        judgement.metaAccepted = MetaValidator().validateMeta(configuration, meta);
        judgement.contentAccepted = validator->validateContent(configuration, meta);
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

RpmMeta readHeader(const std::string& path, RpmSession* rpm) {
    RpmMeta meta(path.c_str(), rpm->transactions());
    const std::string message = rpm->takeMessage();
    if (meta.name().empty()) {
        throw NotJudged{{CauseCode::NotAPackage, unreadable(message, path)}};
    }
    return meta;
}

// Without the payload its rules would look at the files of this machine under the package's names.
const ContentValidator& unpack(const Surroundings& surroundings) {
    const auto* const content = new ContentValidator(surroundings.copyPath);
    if (!content->extracted()) {
        const Cause limit = surroundings.limitMet();
        throw NotJudged{limit.code == CauseCode::None ? Cause{CauseCode::UnpackFailed, kNotUnpacked}
                                                      : limit};
    }
    return *content;
}

void judgeCopy(const Surroundings& surroundings, const std::vector<Configuration>& configurations,
               RpmSession* rpm, PackageReport* report) {
    FindingCapture capture(std::cerr);
    report->sha256 = copyPackage(surroundings.package, surroundings.copyPath);
    const RpmMeta meta = readHeader(surroundings.copyPath, rpm);
    describe(meta, report);
    const ContentValidator& content = unpack(surroundings);
    surroundings.closeAround();
    judgeContent(content, configurations, meta, &capture, report);
}

}  // namespace

PackageReport judge(const Surroundings& surroundings,
                    const std::vector<Configuration>& configurations, RpmSession* rpm) {
    PackageReport report;
    report.validationEnabled = configurations.front().validationEnabled();
    try {
        judgeCopy(surroundings, configurations, rpm, &report);
    } catch (const NotJudged& end) {
        report.setCause(end.cause);
    } catch (const std::bad_alloc&) {
        report.setCause({CauseCode::OutOfMemory, kOutOfMemory});
    } catch (const std::exception& error) {
        report.setCause({CauseCode::RuleFailed, std::string(kRuleFailed) + error.what()});
    }
    if (!report.judged()) {
        report.judgements.clear();
    }
    return report;
}

}  // namespace pkgvet::cli
