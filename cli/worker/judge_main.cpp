// The life of a judge.
#include "cli/worker/judge_main.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/worker/limits.h"
#include "cli/worker/wire.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNowhere = "/dev/null";
constexpr const char* kNoWorld = "it could not be shut off from the machine: ";

// Above the standard streams; nothing else is open in a judge.
constexpr int kAnswer = 3;
constexpr int kPackage = 4;
constexpr int kFirstFree = 5;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// Out of the way of the numbers that descriptors are moved to.
Descriptor moved(Descriptor descriptor) {
    Descriptor high(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, kFirstFree));
    if (!high.isOpen()) {
        fail("cannot arrange descriptors");
    }
    return high;
}

void place(const Descriptor& descriptor, int number, int flags) {
    if (dup3(descriptor.get(), number, flags) < 0) {
        fail("cannot arrange descriptors");
    }
}

// What is open in the template is none of a judge's business. The tools that it starts get the
// standard streams alone.
JudgeDescriptors arrange(JudgeDescriptors given) {
    const Descriptor answer = moved(std::move(given.answer));
    const Descriptor package = moved(std::move(given.package));
    const Descriptor errors = moved(std::move(given.errors));
    const Descriptor nowhere = moved(Descriptor(open(kNowhere, O_RDONLY | O_CLOEXEC)));
    place(nowhere, STDIN_FILENO, 0);
    place(errors, STDOUT_FILENO, 0);
    place(errors, STDERR_FILENO, 0);
    place(answer, kAnswer, O_CLOEXEC);
    place(package, kPackage, O_CLOEXEC);
    JudgeDescriptors arranged;
    arranged.answer = Descriptor(kAnswer);
    arranged.package = Descriptor(kPackage);
    return arranged;
}

// The tools that unpack are in the group of this process and have no other end.
void endGroup(int /*signal*/) {
    kill(0, SIGKILL);
}

// Nothing is to go on once nobody waits for the answer, however the other process ended. Comes
// after every change of ids and capabilities, which would undo it.
void tieToParent(bool isolated) {
    if (isolated) {
        // With the first process of its namespaces, all others end.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
    } else {
        struct sigaction action {};
        action.sa_handler = endGroup;
        sigaction(SIGTERM, &action, nullptr);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
    }
    struct pollfd answer {
        kAnswer, POLLOUT, 0
    };
    if (poll(&answer, 1, 0) != 1 || (answer.revents & (POLLERR | POLLNVAL)) != 0) {
        _exit(1);
    }
}

std::uint64_t sizeOf(const Descriptor& file) {
    struct stat status {};
    return fstat(file.get(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool send(std::string_view message) {
    while (!message.empty()) {
        const ssize_t size = write(kAnswer, message.data(), message.size());
        if (size < 0 && errno != EINTR) {
            return false;
        }
        message.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    return true;
}

PackageReport judgeInWorld(const WorldPlan& plan, const SystemCallFilter& filter,
                           const JudgeFunction& judge, Descriptor package,
                           const Directories& directories, bool inWorkingDirectory) {
    World world(plan, filter);
    try {
        world.enter(directories, inWorkingDirectory, sizeOf(package));
    } catch (const std::exception& error) {
        PackageReport report;
        report.setCause({CauseCode::Crashed, std::string(kNoWorld) + error.what()});
        return report;
    }
    tieToParent(plan.sandbox.namespaces);
    Surroundings surroundings;
    surroundings.package = package.get();
    surroundings.closePackage = [&package] { package.reset(); };
    surroundings.copyPath = world.copyPath();
    surroundings.tree = world.tree();
    surroundings.closeAround = [&world] { world.closeAround(); };
    surroundings.limitMet = [&world] { return world.limitMet(); };
    surroundings.placeGuard = [&world](const SetIdModes& modes) { return world.placeGuard(modes); };
    surroundings.guardNote = [&world] { return world.guardNote(); };
    return judge(surroundings);
}

}  // namespace

// The end of the answer tells the program of the end of this process, and must not come any sooner:
// the descriptors outlive whatever is thrown. No destructors run at the end, as what they would
// release ends with the process.
void runJudge(const WorldPlan& plan, const SystemCallFilter& filter, const JudgeFunction& judge,
              JudgeDescriptors descriptors, const Directories& directories,
              bool inWorkingDirectory) {
    setpgid(0, 0);
    JudgeDescriptors arranged;
    try {
        arranged = arrange(std::move(descriptors));
        close_range(kFirstFree, ~0U, 0);
        const PackageReport report = judgeInWorld(plan, filter, judge, std::move(arranged.package),
                                                  directories, inWorkingDirectory);
        _exit(send(reportMessage(report, plan.limits.report)) ? 0 : 1);
    } catch (const std::bad_alloc&) {
        _exit(kOutOfMemoryStatus);
    } catch (const std::exception&) {
        _exit(1);
    }
}

}  // namespace pkgvet::cli
