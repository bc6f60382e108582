// Starts workers and hears them out.
#include "cli/worker/worker_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "cli/worker/wire.h"
#include "cli/worker/worker.h"

namespace pkgvet::cli {

namespace {

// The same program even when its file has been replaced meanwhile.
constexpr const char* kOwnProgram = "/proc/self/exe";
constexpr const char* kProgramName = "pkgvet";
constexpr const char* kNowhere = "/dev/null";

constexpr std::size_t kPieceSize = 65536;
// No last line is longer.
constexpr std::size_t kTailSize = 4096;

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

[[noreturn]] void fail(int error) {
    throw std::system_error(error, std::generic_category());
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        fail(errno);
    }
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK);
    return pipe;
}

// Where the descriptors of a new process lead.
class FileActions {
public:
    FileActions(int answer, int errors) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, kNowhere, O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, errors, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, errors, STDERR_FILENO);
        // Last, since the other pipe may have this number here.
        posix_spawn_file_actions_adddup2(&actions_, answer, kAnswerDescriptor);
    }
    FileActions(const FileActions&) = delete;
    FileActions(FileActions&&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    FileActions& operator=(FileActions&&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

// A group of its own, and signals as a program expects to find them.
class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&attributes_);
        sigset_t signals{};
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGCHLD}) {
            sigaddset(&signals, signal);
        }
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    Attributes(const Attributes&) = delete;
    Attributes(Attributes&&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    Attributes& operator=(Attributes&&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

pid_t spawn(std::vector<std::string> arguments, int answer, int errors) {
    arguments.emplace(arguments.begin(), kProgramName);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const FileActions actions(answer, errors);
    const Attributes attributes;
    pid_t process = -1;
    const int error = posix_spawn(&process, kOwnProgram, actions.get(), attributes.get(),
                                  pointers.data(), environ);
    if (error != 0) {
        fail(error);
    }
    return process;
}

// Appends what there is to read to text. False at the end of the pipe.
bool readPiece(int descriptor, std::string* text) {
    std::array<char, kPieceSize> piece{};
    const ssize_t size = read(descriptor, piece.data(), piece.size());
    if (size > 0) {
        text->append(piece.data(), static_cast<std::size_t>(size));
    }
    return size > 0 || (size < 0 && (errno == EAGAIN || errno == EINTR));
}

std::string lastLine(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') + 1);
}

int waitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

void waitForGroup(pid_t group) {
    while (waitpid(-group, nullptr, 0) > 0 || errno == EINTR) {
    }
}

}  // namespace

WorkerProcess::WorkerProcess(const std::vector<std::string>& arguments) {
    Pipe answer = makePipe();
    Pipe errors = makePipe();
    process_ = spawn(arguments, answer.writing.get(), errors.writing.get());
    answer_ = std::move(answer.reading);
    errors_ = std::move(errors.reading);
}

WorkerProcess::~WorkerProcess() {
    if (process_ >= 0) {
        end();
    }
}

void WorkerProcess::read() {
    readAnswer();
    readErrors();
}

void WorkerProcess::readAnswer() {
    silent_ = silent_ || !readPiece(answer_.get(), &said_) || said_.size() > kMaxAnswerSize;
}

void WorkerProcess::readErrors() {
    // At its end it would be readable for ever.
    if (errors_.isOpen() && !readPiece(errors_.get(), &errorTail_)) {
        errors_.reset();
    }
    if (errorTail_.size() > kTailSize) {
        errorTail_.erase(0, errorTail_.size() - kTailSize);
    }
}

void WorkerProcess::readRest() {
    // A process that left the group may hold the pipe open: a read that yields nothing is the end.
    std::size_t before = 0;
    do {
        before = said_.size();
        readAnswer();
    } while (!silent_ && said_.size() > before);
    readErrors();
}

WorkerEnd WorkerProcess::end() {
    kill(-process_, SIGKILL);
    WorkerEnd end;
    end.status = waitFor(process_);
    waitForGroup(std::exchange(process_, -1));
    readRest();
    if (said_.size() <= kMaxAnswerSize) {
        end.answer = std::move(said_);
    }
    end.lastErrorLine = lastLine(errorTail_);
    return end;
}

void adoptOrphans() {
    // Where this is ignored, which is inherited, nothing can be waited for.
    signal(SIGCHLD, SIG_DFL);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

}  // namespace pkgvet::cli
