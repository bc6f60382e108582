#include "tests/support/program/running_program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

RunningProgram::RunningProgram(const std::vector<std::string>& arguments,
                               const std::vector<std::string>& environment) {
    std::vector<std::string> words = {"env"};
    words.insert(words.end(), environment.begin(), environment.end());
    words.emplace_back(PKGVET_PROGRAM);
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    constexpr int kWriting = O_WRONLY | O_CREAT;
    const std::string output = directory_ / "output";
    const std::string errors = directory_ / "errors";
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), kWriting, S_IRWXU);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), kWriting, S_IRWXU);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setpgroup(&attributes, 0);
    // In the background of a shell, or under nohup, some are ignored.
    sigset_t signals{};
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    const int error =
        posix_spawnp(&process_, "env", &actions, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot run pkgvet");
    }
}

RunningProgram::~RunningProgram() {
    if (process_ >= 0) {
        signal(SIGKILL);
        waitpid(process_, nullptr, 0);
    }
}

void RunningProgram::signal(int number) const {
    ::kill(process_, number);
}

void RunningProgram::signalGroup(int number) const {
    ::kill(-process_, number);
}

void RunningProgram::kill() const {
    const std::string process = std::to_string(process_);
    // Stopped, it starts no others and answers none.
    ::kill(process_, SIGSTOP);
    std::ifstream children("/proc/" + process + "/task/" + process + "/children");
    for (pid_t child = 0; children >> child;) {
        ::kill(-child, SIGKILL);  // each has a group of its own
    }
    ::kill(process_, SIGKILL);
}

ProgramResult RunningProgram::wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return programResult(status, readFile(directory_ / "output"), readFile(directory_ / "errors"));
}

bool isAlive(pid_t process) {
    std::ifstream stream("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    if (!std::getline(stream, line)) {
        return false;
    }
    // The state comes after the name, which stands in parentheses and may hold some.
    return line.substr(line.rfind(')')).substr(2, 1) != "Z";
}

bool waitUntil(const std::function<bool()>& condition) {
    constexpr int kAttempts = 30000;
    constexpr std::chrono::milliseconds kPause{10};
    for (int i = 0; i < kAttempts && !condition(); ++i) {
        std::this_thread::sleep_for(kPause);
    }
    return condition();
}
