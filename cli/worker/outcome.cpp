// Makes reports of what judges said, and of what became of them.
#include "cli/worker/outcome.h"

#include <string.h>
#include <sys/wait.h>

#include <optional>
#include <string_view>
#include <utility>

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
    if (code > kSignalStatus) {
        return killedBy(code - kSignalStatus);
    }
    return code == 0 ? Cause{} : crashed(kFailed + std::to_string(code));
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
    return end.saidTooMuch ? Cause{CauseCode::TooLarge, kSaidTooMuch} : causeOfStatus(end.status);
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
    if (!report.judged()) {
        report.lastErrorLine = end.lastErrorLine;
    }
    for (const std::string& directory : directories) {
        replaceName(directory, &report);
    }
    return report;
}

}  // namespace pkgvet::cli
