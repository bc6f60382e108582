#include "tests/support/program/traced_program.h"

#include <elf.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

// glibc's and the kernel's header for ptrace exclude one another.
struct SystemCallInformation {
    std::uint8_t operation;
    std::uint8_t padding[3];
    std::uint32_t architecture;
    std::uint64_t instruction;
    std::uint64_t stack;
    std::uint64_t number;
    std::uint64_t arguments[6];
};

namespace {

namespace fs = std::filesystem;

constexpr auto kGetInformation = static_cast<__ptrace_request>(0x420e);
constexpr std::uint8_t kEntry = 1;
constexpr int kSystemCallStop = SIGTRAP | 0x80;
constexpr int kEventShift = 16;
constexpr long kOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                          PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;

// No system call has this number, so that the kernel refuses it.
constexpr long kNone = -1;

#if defined(__x86_64__)
using Registers = struct user_regs_struct;
#else
using Registers = struct user_pt_regs;
#endif

void changeRegisters(pid_t process, void (*change)(Registers*, long), long value) {
    Registers registers{};
    struct iovec vector {
        &registers, sizeof registers
    };
    ptrace(PTRACE_GETREGSET, process, NT_PRSTATUS, &vector);
    change(&registers, value);
    ptrace(PTRACE_SETREGSET, process, NT_PRSTATUS, &vector);
}

#if defined(__x86_64__)
void replaceCall(pid_t process) {
    changeRegisters(
        process, [](Registers* registers, long value) { registers->orig_rax = value; }, kNone);
}

void setResult(pid_t process, long result) {
    changeRegisters(
        process, [](Registers* registers, long value) { registers->rax = value; }, result);
}
#else
void replaceCall(pid_t process) {
    int number = kNone;
    struct iovec vector {
        &number, sizeof number
    };
    ptrace(PTRACE_SETREGSET, process, NT_ARM_SYSCALL, &vector);
}

void setResult(pid_t process, long result) {
    changeRegisters(
        process, [](Registers* registers, long value) { registers->regs[0] = value; }, result);
}
#endif

[[noreturn]] void runTracee(std::vector<std::string> words, const std::string& output,
                            const std::string& errors) {
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    constexpr int kWriting = O_WRONLY | O_CREAT;
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(open(output.c_str(), kWriting, S_IRWXU), STDOUT_FILENO);
    dup2(open(errors.c_str(), kWriting, S_IRWXU), STDERR_FILENO);
    // The leak detector traces its own process, which only one can do at a time.
    std::string options = sanitizerOptions("detect_leaks=0");
    putenv(options.data());
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

bool executesPkgvet(pid_t process) {
    std::error_code error;
    return fs::equivalent("/proc/" + std::to_string(process) + "/exe", programPath(), error);
}

class Tracer {
public:
    Tracer(pid_t program, const SystemCallObserver& observe)
        : program_(program), observe_(observe) {
        processes_[program].name = "0";
    }

    // Until none is left, or none but those that do not end.
    std::size_t trace();
    int status() const { return status_; }
    std::size_t faults() const { return faults_; }

private:
    struct Process {
        std::string name;
        unsigned children = 0;
        int error = 0;           // what its system call is to fail with
        bool isWaiting = false;  // stopped before it was known whose child it is
    };

    void end(pid_t process, int status);
    void stop(pid_t process, int status);
    void name(pid_t parent);
    void atSystemCall(pid_t id, Process* process);
    void atEnd(pid_t id, Process* process);
    void answer(pid_t id, Process* process, const Answer& answer);
    void resume(pid_t process, int signal = 0);
    bool isPatient() const;

    const pid_t program_;
    const SystemCallObserver& observe_;
    std::map<pid_t, Process> processes_;
    bool isProgram_ = false;  // or what sets up its surroundings, which is not observed
    std::size_t faults_ = 0;
    int status_ = -1;
    std::chrono::steady_clock::time_point ended_;
};

bool Tracer::isPatient() const {
    constexpr std::chrono::seconds kPatience{300};
    return status_ < 0 || std::chrono::steady_clock::now() - ended_ < kPatience;
}

std::size_t Tracer::trace() {
    constexpr std::chrono::milliseconds kPause{1};
    while (!processes_.empty() && isPatient()) {
        int status = 0;
        const pid_t process = waitpid(-1, &status, __WALL | (status_ < 0 ? 0 : WNOHANG));
        if (process < 0 && errno != EINTR) {
            break;
        }
        if (process == 0) {
            std::this_thread::sleep_for(kPause);
        } else if (process > 0 && WIFSTOPPED(status)) {
            stop(process, status);
        } else if (process > 0) {
            end(process, status);
        }
    }
    for (const auto& [process, unused] : processes_) {
        kill(process, SIGKILL);
    }
    return processes_.size();
}

void Tracer::end(pid_t process, int status) {
    processes_.erase(process);
    if (process == program_) {
        status_ = status;
        ended_ = std::chrono::steady_clock::now();
    }
}

void Tracer::stop(pid_t id, int status) {
    const int signal = WSTOPSIG(status);
    const int event = status >> kEventShift;
    Process& process = processes_[id];
    if (process.name.empty()) {
        process.isWaiting = true;
        return;
    }
    if (signal == kSystemCallStop) {
        atSystemCall(id, &process);
        return;
    }
    if (event == PTRACE_EVENT_FORK || event == PTRACE_EVENT_VFORK || event == PTRACE_EVENT_CLONE) {
        name(id);
    }
    isProgram_ = isProgram_ || (event == PTRACE_EVENT_EXEC && executesPkgvet(id));
    // Each new one begins with this signal.
    const bool isOwn = event != 0 || signal == SIGSTOP || signal == SIGTRAP;
    resume(id, isOwn ? 0 : signal);
}

void Tracer::name(pid_t parent) {
    unsigned long message = 0;
    ptrace(PTRACE_GETEVENTMSG, parent, nullptr, &message);
    const auto id = static_cast<pid_t>(message);
    Process& maker = processes_[parent];
    Process& child = processes_[id];
    child.name = maker.name + "." + std::to_string(++maker.children);
    if (child.isWaiting) {
        resume(id);
    }
}

void Tracer::atSystemCall(pid_t id, Process* process) {
    SystemCallInformation information{};
    ptrace(kGetInformation, id, sizeof information, &information);
    if (information.operation != kEntry) {
        atEnd(id, process);
        return;
    }
    if (!isProgram_) {
        resume(id);
        return;
    }
    SystemCall call{process->name, id, information.number, {}};
    std::copy(std::begin(information.arguments), std::end(information.arguments), call.arguments);
    answer(id, process, observe_(call));
}

void Tracer::atEnd(pid_t id, Process* process) {
    if (process->error != 0) {
        setResult(id, -process->error);
        process->error = 0;
        ++faults_;
    }
    resume(id);
}

void Tracer::answer(pid_t id, Process* process, const Answer& answer) {
    if (answer.kind == Answer::Kind::KillProcess) {
        faults_ += kill(id, SIGKILL) == 0 ? 1 : 0;
        return;
    }
    if (answer.kind == Answer::Kind::Fail) {
        replaceCall(id);
        process->error = answer.error;
    }
    resume(id);
}

void Tracer::resume(pid_t process, int signal) {
    ptrace(PTRACE_SYSCALL, process, nullptr, signal);
}

}  // namespace

std::string SystemCall::text(std::size_t argument) const {
    constexpr std::size_t kMost = 256;
    std::string bytes(kMost, '\0');
    // Never beyond the end of a page, of which the next may not be there.
    constexpr std::uint64_t kPage = 4096;
    const std::uint64_t address = arguments[argument];
    struct iovec here {
        bytes.data(), std::min<std::size_t>(kMost, kPage - address % kPage)
    };
    struct iovec there {
        reinterpret_cast<void*>(address), here.iov_len
    };
    const ssize_t size = process_vm_readv(id, &here, 1, &there, 1, 0);
    bytes.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return bytes.substr(0, bytes.find('\0'));
}

bool canTrace() {
    return holdsInChild([] {
        const pid_t child = fork();
        if (child == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        SystemCallInformation information{};
        const bool can = WIFSTOPPED(status) &&
                         ptrace(PTRACE_SETOPTIONS, child, nullptr, kOptions) == 0 &&
                         ptrace(kGetInformation, child, sizeof information, &information) > 0;
        kill(child, SIGKILL);
        return can;
    });
}

TracedRun runTraced(const std::vector<std::string>& arguments, const SystemCallObserver& observe,
                    const std::vector<std::string>& environment) {
    const TemporaryDirectory directory;
    std::vector<std::string> words = {"env"};
    words.insert(words.end(), environment.begin(), environment.end());
    words.push_back(programPath());
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::string output = directory / "output";
    const std::string errors = directory / "errors";
    const pid_t program = fork();
    if (program < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (program == 0) {
        runTracee(std::move(words), output, errors);
    }
    int status = 0;
    if (waitpid(program, &status, __WALL) != program || !WIFSTOPPED(status) ||
        ptrace(PTRACE_SETOPTIONS, program, nullptr, kOptions) != 0 ||
        ptrace(PTRACE_SYSCALL, program, nullptr, nullptr) != 0) {
        throw std::runtime_error("cannot trace");
    }
    Tracer tracer(program, observe);
    TracedRun run;
    run.left = tracer.trace();
    run.faults = tracer.faults();
    run.result = programResult(tracer.status(), readFile(output), readFile(errors));
    return run;
}
