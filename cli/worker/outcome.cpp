// Makes reports of what judges said, and of what became of them.
#include "cli/worker/outcome.h"

#include <signal.h>
#include <string.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/judge/judge.h"
#include "cli/worker/limits.h"
#include "cli/worker/wire.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kTimedOut = "it took longer than --timeout allows";
constexpr const char* kInterrupted = "interrupted";
constexpr const char* kSaidTooMuch = "there is more to say about it than --max-report allows";
constexpr const char* kKilled = "the judge was ended by signal ";
constexpr const char* kFailed = "the judge ended with status ";
constexpr const char* kNonsense = "the judge gave no valid answer";

// What libraries that end the process for want of memory say last: GLib, librpm, and the C++
// library where nothing may be thrown.
constexpr std::array<std::string_view, 3> kMemoryWords = {"failed to allocate", "memory alloc (",
                                                          "std::bad_alloc"};

constexpr std::string_view kPlaceholder = "XXXXXX";

Cause crashed(const std::string& text) {
    return {CauseCode::Crashed, text};
}

Cause killedBy(int signal) {
    return crashed(kKilled + std::to_string(signal) + " (" + strsignal(signal) + ")");
}

Cause causeOfStatus(int status) {
    if (WIFSIGNALED(status)) {
        return killedBy(WTERMSIG(status));
    }
    const int code = WEXITSTATUS(status);
    if (code == kOutOfTimeStatus) {
        return {CauseCode::OutOfTime, kOutOfProcessorTime};
    }
    if (code == kOutOfMemoryStatus) {
        return {CauseCode::OutOfMemory, kOutOfMemory};
    }
    if (code > kSignalStatus) {
        return killedBy(code - kSignalStatus);
    }
    return code == 0 ? Cause{} : crashed(kFailed + std::to_string(code));
}

// The signal that ended a judge, in its namespaces or out of them; 0 for none.
int signalOf(int status) {
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status);
    }
    return std::max(WEXITSTATUS(status) - kSignalStatus, 0);
}

// A last line may quote a package, whose crash by another signal stays one.
bool hadNoMemory(const JudgeEnd& end) {
    const int signal = signalOf(end.status);
    const bool hasGivenUp =
        signal == SIGABRT || signal == SIGTRAP || (signal == 0 && WEXITSTATUS(end.status) == 1);
    return hasGivenUp &&
           std::any_of(kMemoryWords.begin(), kMemoryWords.end(), [&end](std::string_view words) {
               return end.lastErrorLine.find(words) != std::string::npos;
           });
}

// What was wrong with the judge; without a code when nothing was.
Cause causeOf(const JudgeEnd& end, Stop stop) {
    switch (stop) {
        case Stop::Timeout:
            return {CauseCode::OutOfTime, kTimedOut};
        case Stop::Interruption:
            return {CauseCode::Interrupted, kInterrupted};
        case Stop::None:
            break;
    }
    if (end.saidTooMuch) {
        return {CauseCode::TooLarge, kSaidTooMuch};
    }
    const Cause cause = causeOfStatus(end.status);
    return cause.code == CauseCode::Crashed && hadNoMemory(end)
               ? Cause{CauseCode::OutOfMemory, kOutOfMemory}
               : cause;
}

PackageReport notJudged(const Cause& cause) {
    PackageReport report;
    report.setCause(cause);
    return report;
}

void replaceAll(const std::string& name, const std::string& replacement, std::string* text) {
    for (std::size_t at = 0; (at = text->find(name, at)) != std::string::npos;) {
        text->replace(at, name.size(), replacement);
        at += replacement.size();
    }
}

void replaceName(const std::string& directory, PackageReport* report) {
    const std::string replacement =
        directory.substr(0, directory.size() - kPlaceholder.size()).append(kPlaceholder);
    replaceAll(directory, replacement, &report->cause);
    replaceAll(directory, replacement, &report->incomplete);
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

PackageReport concludeJudge(const JudgeEnd& end, Stop stop,
                            const std::vector<std::string>& directories,
                            const std::vector<std::string>& profiles) {
    const Cause cause = causeOf(end, stop);
    std::optional<PackageReport> answer;
    if (cause.code == CauseCode::None) {
        answer = decodeReport(end.answer, profiles);
    }
    PackageReport report = answer                          ? std::move(*answer)
                           : cause.code == CauseCode::None ? notJudged(crashed(kNonsense))
                                                           : notJudged(cause);
    // What is said of memory holds times and addresses, and nothing beyond the cause.
    if (!report.judged() && report.causeCode != CauseCode::OutOfMemory) {
        report.lastErrorLine = end.lastErrorLine;
    }
    for (const std::string& directory : directories) {
        replaceName(directory, &report);
    }
    return report;
}

}  // namespace pkgvet::cli
