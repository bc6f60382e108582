// Makes reports of what workers said, and of what became of them.
#include "cli/worker/worker_outcome.h"

#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <string_view>
#include <utility>

#include "cli/worker/wire.h"
#include "pkgvet/base/remove_tree.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kTimedOut = "it took longer than --timeout allows";
constexpr const char* kInterrupted = "interrupted";
constexpr const char* kCrashed = "the worker was ended by signal ";
constexpr const char* kFailed = "the worker ended with status ";
constexpr const char* kNonsense = "the worker gave no valid answer";

constexpr std::string_view kPlaceholder = "XXXXXX";

bool isOwnDirectory(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid();
}

void removeRemains(const std::vector<std::string>& directories) {
    for (const std::string& directory : directories) {
        try {
            if (isOwnDirectory(directory)) {
                removeTree(directory);
            }
        } catch (const std::exception&) {
            // What cannot be removed changes no verdict.
        }
    }
}

// What was wrong with the worker; empty when nothing was.
std::string faultOf(int status, StopReason reason) {
    if (reason != StopReason::None) {
        return reason == StopReason::Timeout ? kTimedOut : kInterrupted;
    }
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return kCrashed + std::to_string(signal) + " (" + strsignal(signal) + ")";
    }
    return status == 0 ? std::string() : kFailed + std::to_string(WEXITSTATUS(status));
}

PackageReport notJudged(const std::string& cause) {
    PackageReport report;
    report.cause = cause;
    return report;
}

void replaceAll(const std::string& name, const std::string& replacement, std::string* text) {
    for (std::size_t at = 0; (at = text->find(name, at)) != std::string::npos;) {
        text->replace(at, name.size(), replacement);
        at += replacement.size();
    }
}

// The names of such directories end in random letters, and a report is to be the same each time.
void hideName(const std::string& directory, PackageReport* report) {
    const std::string replacement =
        directory.substr(0, directory.size() - kPlaceholder.size()).append(kPlaceholder);
    replaceAll(directory, replacement, &report->cause);
    replaceAll(directory, replacement, &report->lastErrorLine);
    for (Judgement& judgement : report->judgements) {
        for (Finding& finding : judgement.findings) {
            replaceAll(directory, replacement, &finding.message);
            if (finding.subject) {
                replaceAll(directory, replacement, &*finding.subject);
            }
        }
    }
}

}  // namespace

PackageReport concludeWorker(const WorkerEnd& end, StopReason reason,
                             const std::vector<std::string>& profiles) {
    Answer answer = decodeAnswer(end.answer, profiles);
    removeRemains(answer.directories);
    const std::string fault = faultOf(end.status, reason);
    PackageReport report = !fault.empty()  ? notJudged(fault)
                           : answer.report ? std::move(*answer.report)
                                           : notJudged(kNonsense);
    if (!report.judged()) {
        report.lastErrorLine = end.lastErrorLine;
    }
    for (const std::string& directory : answer.directories) {
        hideName(directory, &report);
    }
    return report;
}

}  // namespace pkgvet::cli
