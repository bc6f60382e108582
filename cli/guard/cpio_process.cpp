// Starts cpio and waits for it.
#include "cli/guard/cpio_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

namespace pkgvet::cli {

namespace {

// Never through a search path, on which the name of cpio leads here.
constexpr std::array kPlaces = {"/usr/bin/cpio", "/bin/cpio"};

constexpr const char* kPath = "PATH=/usr/bin:/bin";
constexpr const char* kLocale = "LC_ALL=C.UTF-8";

constexpr int kSignalStatus = 128;

[[noreturn]] void fail(int error) {
    throw std::system_error(error, std::generic_category(), "cannot start cpio");
}

// cpio reads 512 bytes at a time unless told otherwise. That alone takes longer than all that the
// guard does, so that unpacking is faster with it than without.
constexpr std::array kReadMore = {"-C", "65536"};

std::vector<char*> withMore(char* const* arguments) {
    std::vector<char*> all;
    for (; *arguments != nullptr; ++arguments) {
        all.push_back(*arguments);
    }
    for (const char* const argument : kReadMore) {
        all.push_back(const_cast<char*>(argument));
    }
    all.push_back(nullptr);
    return all;
}

// The guard ignores that its reader has gone, which cpio is not to inherit.
int spawn(const char* program, char* const* arguments, int input, pid_t* process) {
    sigset_t handled{};
    sigemptyset(&handled);
    sigaddset(&handled, SIGPIPE);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &handled);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    char* const environment[] = {const_cast<char*>(kPath), const_cast<char*>(kLocale), nullptr};
    const int error = posix_spawn(process, program, &actions, &attributes, arguments, environment);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return error;
}

}  // namespace

CpioProcess::CpioProcess(char* const* arguments) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        fail(errno);
    }
    const Descriptor reading(ends[0]);
    input_ = Descriptor(ends[1]);
    const std::vector<char*> all = withMore(arguments);
    int error = ENOENT;
    for (const char* const place : kPlaces) {
        error = error == ENOENT ? spawn(place, all.data(), reading.get(), &process_) : error;
    }
    if (error != 0) {
        fail(error);
    }
}

CpioProcess::~CpioProcess() {
    finish();
}

bool CpioProcess::pass(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t size = write(input_.get(), bytes.data(), bytes.size());
        if (size < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    return true;
}

int CpioProcess::finish() {
    input_.reset();
    int status = 0;
    const pid_t process = std::exchange(process_, -1);
    while (process > 0 && waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalStatus + WTERMSIG(status);
}

}  // namespace pkgvet::cli
