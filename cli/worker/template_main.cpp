// The life of the template process.
#include "cli/worker/template_main.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <system_error>
#include <utility>

#include "cli/worker/channel.h"
#include "cli/worker/claim.h"
#include "cli/worker/judge_main.h"
#include "cli/worker/judge_user.h"
#include "cli/worker/landlock.h"
#include "cli/worker/namespaces.h"
#include "cli/worker/pipe.h"
#include "cli/worker/prepared_mkdtemp.h"
#include "cli/worker/wait.h"
#include "cli/worker/world.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kTemporary = "/tmp";
constexpr const char* kWhole = "whole";
constexpr const char* kProbeFailed = "a process in namespaces of its own did not come to its end";
constexpr const char* kNoLandlock = "the kernel has no Landlock";

// Where the template finds its channel.
constexpr int kChannel = 3;

// Of what the tools and libraries of a judge read from it. No home, and with it no configuration of
// anybody's.
constexpr std::array<std::pair<const char*, const char*>, 2> kEnvironment = {{
    {"PATH", "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"},
    {"LC_ALL", "C.UTF-8"},
}};

void setEnvironment() {
    clearenv();
    for (const auto& [name, value] : kEnvironment) {
        setenv(name, value, 1);
    }
}

// Of a judge, which is of the same user as the template.
void killGroup(std::string_view process) {
    pid_t judge = -1;
    if (process.size() == sizeof judge) {
        std::memcpy(&judge, process.data(), sizeof judge);
    }
    if (judge > 1) {
        kill(-judge, SIGKILL);
        kill(judge, SIGKILL);
    }
}

// Waits until nothing of the group is left, for a second at the most.
void endGroup(pid_t process) {
    for (int i = 0; process > 0 && i < 100 && kill(-process, SIGKILL) == 0; ++i) {
        usleep(10000);
    }
}

[[noreturn]] void fail(int error, const char* what) {
    throw std::system_error(error, std::generic_category(), what);
}

// The process itself.
class Template {
public:
    Template(const TemplateOptions& options, Descriptor channel)
        : options_(options), channel_(std::move(channel)) {}

    // Until the other end is closed.
    void serve();

private:
    // A judge whose directories may still be there.
    struct Unfinished {
        StartAnswer judge;
        Claim claim;
    };

    void setUp();
    void prepare();
    void startTrial();
    void tryWorld(Descriptor answer, const Descriptor& gate);
    std::string trialAnswer();
    void endTrial();
    void awaitTrial();
    void findSandbox();
    void enterNamespaces();
    StartAnswer start(Parcel request);
    static Claim makeDirectories(StartAnswer* answer);
    void finish(std::string_view process);
    void removeDirectories();

    // A process that finds out whether there are namespaces, and stays in those that judges share
    // until the gate is closed.
    struct Trial {
        pid_t process = -1;
        int error = 0;  // why there is no process
        Descriptor answer;
        Descriptor gate;
    };

    const TemplateOptions& options_;
    Descriptor channel_;
    Trial trial_;
    SystemCallFilter filter_;
    WorldPlan plan_;
    JudgeFunction judge_;
    std::vector<Unfinished> unfinished_;
};

void Template::serve() {
    setUp();
    const std::optional<Parcel> first = receiveParcel(channel_.get());
    if (!first || first->bytes != kPrepareRequest) {
        endTrial();
        awaitTrial();
        return;
    }
    prepare();
    if (!sendParcel(channel_.get(), helloOf(plan_.sandbox))) {
        return;
    }
    while (std::optional<Parcel> request = receiveParcel(channel_.get())) {
        if (request->bytes == kStartRequest) {
            sendParcel(channel_.get(), bytesOf(start(std::move(*request))));
        } else if (request->bytes.starts_with(kKillRequest)) {
            killGroup(std::string_view(request->bytes).substr(kKillRequest.size()));
        } else {
            finish(request->bytes);
        }
    }
    removeDirectories();
    awaitTrial();
}

// In a group of its own, a signal to that of the program leaves it to clear up.
void Template::setUp() {
    setpgid(0, 0);
    umask(S_IWGRP | S_IWOTH);
    setEnvironment();
    plan_.limits = options_.limits;
    plan_.readable = options_.readable;
    plan_.guard = findGuard();
    startTrial();
}

void Template::prepare() {
    // What the caller may read, its judges' user perhaps may not.
    judge_ = options_.prepare();
    // Unpacking returns to where it began, which their user perhaps may not enter.
    if (chdir("/") != 0) {
        fail(errno, "cannot leave the directory");
    }
    findSandbox();
    becomeJudgeUser(plan_.sandbox.isAny());
    if (!plan_.sandbox.namespaces) {
        clearAbandoned(kTemporary);
    }
    readNeededImage(&plan_.guard, plan_.sandbox.namespaces);
    enterNamespaces();
    endTrial();
    plan_.owner = geteuid();
    plan_.group = getegid();
}

// What a judge cannot have is found out by one that judges nothing, while the rules are read.
void Template::startTrial() {
    if (options_.decided || options_.sandbox == SandboxMode::Off) {
        return;
    }
    plan_.sandbox.landlock = hasLandlock();
    Pipe answer = makePipe();
    Pipe gate = makePipe();
    trial_.process = fork();
    if (trial_.process == 0) {
        gate.writing.reset();
        tryWorld(std::move(answer.writing), gate.reading);
        _exit(0);
    }
    trial_.error = trial_.process < 0 ? errno : 0;
    trial_.answer = std::move(answer.reading);
    trial_.gate = std::move(gate.writing);
}

void Template::tryWorld(Descriptor answer, const Descriptor& gate) {
    std::string text = kWhole;
    try {
        becomeJudgeUser(true);
        readNeededImage(&plan_.guard, true);
        enterSharedNamespaces(geteuid(), getegid());
        plan_.owner = geteuid();
        plan_.group = getegid();
        plan_.sandbox.namespaces = true;
        const pid_t process = forkIsolated();
        if (process < 0) {
            fail(errno, "cannot make namespaces");
        }
        if (process > 0) {
            // The end of a trial that does not answer would not be seen.
            answer.reset();
            waitForEnd(process);
            char none = 0;
            static_cast<void>(read(gate.get(), &none, sizeof none));
            return;
        }
        World world(plan_, filter_);
        world.enter({}, false, 0);
        world.closeAround();
    } catch (const std::exception& error) {
        text = error.what();
    }
    // Whoever reads this counts what is missing as a failure.
    static_cast<void>(write(answer.get(), text.data(), text.size()));
    _exit(0);
}

// Empty when a judge can have all.
std::string Template::trialAnswer() {
    if (trial_.process < 0) {
        return trial_.error == 0 ? std::string() : std::strerror(trial_.error);
    }
    std::string answer(kMaxParcelSize, '\0');
    const ssize_t size = read(trial_.answer.get(), answer.data(), answer.size());
    answer.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return answer == kWhole ? std::string() : answer.empty() ? kProbeFailed : answer;
}

// The process goes on to end for a while: to tear a world down takes longer than to make it.
void Template::endTrial() {
    trial_.answer.reset();
    trial_.gate.reset();
}

void Template::awaitTrial() {
    if (trial_.process > 0) {
        waitForEnd(trial_.process);
    }
}

// A template that takes the place of another has made no trial.
void Template::enterNamespaces() {
    if (plan_.sandbox.namespaces && (trial_.process < 0 || !joinSharedNamespaces(trial_.process))) {
        enterSharedNamespaces(geteuid(), getegid());
    }
}

void Template::findSandbox() {
    if (options_.decided) {
        plan_.sandbox = *options_.decided;
        return;
    }
    if (options_.sandbox == SandboxMode::Off) {
        return;
    }
    Sandbox& sandbox = plan_.sandbox;
    sandbox.missing = trialAnswer();
    sandbox.namespaces = sandbox.missing.empty();
    if (!sandbox.landlock) {
        sandbox.missing += (sandbox.missing.empty() ? "" : "; ") + std::string(kNoLandlock);
    }
}

StartAnswer Template::start(Parcel request) {
    StartAnswer answer;
    JudgeDescriptors descriptors;
    Descriptor scratch;
    Descriptor* const places[] = {&descriptors.package, &descriptors.answer, &descriptors.errors,
                                  &scratch};
    for (std::size_t i = 0; i < request.descriptors.size(); ++i) {
        *places[i] = std::move(request.descriptors[i]);
    }
    Claim claim;
    if (!plan_.sandbox.namespaces) {
        claim = makeDirectories(&answer);
    }
    if (answer.error == 0) {
        // The way on which a directory gets into the file systems of a new namespace.
        if (scratch.isOpen() && fchdir(scratch.get()) != 0) {
            answer.error = errno;
            return answer;
        }
        answer.process = forkSibling(plan_.sandbox.namespaces);
        if (answer.process == 0) {
            runJudge(plan_, filter_, judge_, std::move(descriptors),
                     {answer.tree.data(), answer.copy.data()}, scratch.isOpen());
        }
        answer.error = answer.process < 0 ? errno : 0;
        static_cast<void>(chdir("/"));
    }
    if (!plan_.sandbox.namespaces) {
        unfinished_.push_back({answer, std::move(claim)});
    }
    return answer;
}

// The tree is named in the mark before it is there: at each moment a later run would know what
// there is as this one's.
Claim Template::makeDirectories(StartAnswer* answer) {
    const std::string tree = chooseName(kTreeTemplate);
    ClaimedDirectory copy;
    if (!tree.empty()) {
        copy = makeClaimed(kCopyTemplate, tree);
    }
    if (copy.path.empty() || mkdir(tree.c_str(), S_IRWXU) != 0) {
        answer->error = errno;
        discard(copy);
        return {};
    }
    std::strncpy(answer->tree.data(), tree.c_str(), answer->tree.size() - 1);
    std::strncpy(answer->copy.data(), copy.path.c_str(), answer->copy.size() - 1);
    return std::move(copy.claim);
}

// The other process has seen the end of a judge and removed its directories.
void Template::finish(std::string_view process) {
    std::erase_if(unfinished_, [process](const Unfinished& unfinished) {
        return bytesOf(unfinished.judge.process) == process;
    });
}

// The other process is gone, and did not clear up. Judges that are not gone yet might go on
// writing.
void Template::removeDirectories() {
    for (const auto& [judge, claim] : unfinished_) {
        endGroup(judge.process);
    }
    for (const auto& [judge, claim] : unfinished_) {
        removeClaimed(judge.copy.data(), judge.tree.data());
    }
}

}  // namespace

std::string helloOf(const Sandbox& sandbox) {
    return sandbox.name() + "\n" + sandbox.missing;
}

Sandbox sandboxOf(const std::string& hello) {
    Sandbox sandbox;
    const std::size_t end = hello.find('\n');
    const std::string name = hello.substr(0, end);
    sandbox.namespaces = name.find("namespaces") != std::string::npos;
    sandbox.landlock = name.find("landlock") != std::string::npos;
    sandbox.missing = end == std::string::npos ? std::string() : hello.substr(end + 1);
    return sandbox;
}

void runTemplate(const TemplateOptions& options, Descriptor channel) {
    sigset_t none{};
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGCHLD}) {
        ::signal(signal, SIG_DFL);
    }
    try {
        dup2(channel.get(), kChannel);
        close_range(kChannel + 1, ~0U, 0);
        fcntl(kChannel, F_SETFD, FD_CLOEXEC);
        Template(options, Descriptor(kChannel)).serve();
    } catch (const std::exception& error) {
        std::cerr << "pkgvet: " << error.what() << std::endl;
    }
    _exit(0);
}

}  // namespace pkgvet::cli
