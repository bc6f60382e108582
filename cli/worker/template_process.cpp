// Starts the template process and asks it for judges.
#include "cli/worker/template_process.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/worker/channel.h"
#include "cli/worker/wait.h"

namespace pkgvet::cli {

namespace {

[[noreturn]] void fail(int error, const char* what) {
    throw std::system_error(error, std::generic_category(), what);
}

}  // namespace

bool isCredible(const StartAnswer& answer, const Sandbox& sandbox) {
    siginfo_t info{};
    if (answer.process <= 1 ||
        waitid(P_PID, static_cast<id_t>(answer.process), &info, WEXITED | WNOHANG | WNOWAIT) != 0) {
        return false;
    }
    const std::string tree(answer.tree.data(), strnlen(answer.tree.data(), answer.tree.size()));
    const std::string copy(answer.copy.data(), strnlen(answer.copy.data(), answer.copy.size()));
    if (sandbox.namespaces) {
        return tree.empty() && copy.empty();
    }
    return isMadeBy(kTreeTemplate, tree) && isMadeBy(kCopyTemplate, copy);
}

TemplateProcess::TemplateProcess(const TemplateOptions& options) : patience_(options.patience) {
    Channel channel;
    process_ = fork();
    if (process_ < 0) {
        fail(errno, "cannot start a process");
    }
    if (process_ == 0) {
        runTemplate(options, std::move(channel.other));
    }
    channel.other.reset();
    channel_ = std::move(channel.one);
}

TemplateProcess::~TemplateProcess() {
    channel_.reset();
    if (isBroken_) {
        ::kill(process_, SIGKILL);
    }
    waitForEnd(process_);
}

void TemplateProcess::prepare() {
    if (!std::exchange(isAsked_, true)) {
        sendParcel(channel_.get(), kPrepareRequest);
    }
}

void TemplateProcess::waitUntilPrepared() {
    prepare();
    if (isPrepared_) {
        return;
    }
    const std::optional<Parcel> hello = receiveParcel(channel_.get());
    if (!hello) {
        fail(ECHILD, "cannot prepare to judge");
    }
    sandbox_ = sandboxOf(hello->bytes);
    isPrepared_ = true;
}

// It is not waited for here, so that its number stays its own.
bool TemplateProcess::isAlive() const {
    siginfo_t info{};
    return !isBroken_ &&
           waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

StartedJudge TemplateProcess::start(const JudgeStart& start) {
    waitUntilPrepared();
    std::vector<int> descriptors = {start.package, start.answer, start.errors};
    if (start.scratch >= 0) {
        descriptors.push_back(start.scratch);
    }
    const StartAnswer answer = ask(descriptors);
    if (answer.error != 0) {
        fail(answer.error, "cannot start a judge");
    }
    // Before it has run as far as that itself, for whoever kills it by its group.
    setpgid(answer.process, answer.process);
    StartedJudge started{answer.process, {}, {}};
    if (answer.tree.front() != '\0') {
        started.directories = {answer.tree.data(), answer.copy.data()};
        started.claim = Claim::shared(answer.copy.data());
    }
    return started;
}

// A template that does not answer, or answers what cannot be, is not asked again.
StartAnswer TemplateProcess::ask(const std::vector<int>& descriptors) {
    StartAnswer answer;
    struct pollfd channel {
        channel_.get(), POLLIN, 0
    };
    std::optional<Parcel> parcel;
    if (sendParcel(channel_.get(), kStartRequest, descriptors) &&
        poll(&channel, 1, patience_) == 1) {
        parcel = receiveParcel(channel_.get());
    }
    isBroken_ = !parcel || parcel->bytes.size() != sizeof answer;
    if (!isBroken_) {
        std::memcpy(&answer, parcel->bytes.data(), sizeof answer);
        isBroken_ = answer.error == 0 && !isCredible(answer, sandbox_);
    }
    if (isBroken_) {
        fail(ECHILD, "cannot start a judge");
    }
    return answer;
}

void TemplateProcess::kill(pid_t judge) {
    if (::kill(-judge, SIGKILL) != 0 && errno == EPERM) {
        sendParcel(channel_.get(), std::string(kKillRequest).append(bytesOf(judge)));
    }
    // One that was only just made has no group yet.
    ::kill(judge, SIGKILL);
}

void TemplateProcess::finish(pid_t judge) {
    sendParcel(channel_.get(), bytesOf(judge));
}

}  // namespace pkgvet::cli
