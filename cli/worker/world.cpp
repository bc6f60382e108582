// Puts the parts of a world together.
#include "cli/worker/world.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "cli/worker/landlock.h"
#include "cli/worker/prepared_mkdtemp.h"
#include "cli/worker/small_file.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kPrivateDirectory = "/tmp";
// Of one name for all packages, since it may come up in what is said of them.
constexpr const char* kPrivateTree = "/tmp/dir.XXXXXX";
constexpr const char* kCopyName = "/package.rpm";

// What the shell, the two tools that unpack and the libraries of all of them are made of.
constexpr std::array kPrograms = {"/usr", "/bin", "/sbin", "/lib", "/lib32", "/lib64"};
constexpr std::array kSettings = {"/etc/ld.so.cache", "/etc/ld.so.conf", "/etc/ld.so.conf.d",
                                  "/proc/self"};
constexpr const char* kTooLarge = "unpacked it is larger than --max-unpacked allows";
constexpr const char* kTooManyFiles = "it holds more files than --max-files allows";

// For a guard that judges cannot reach where it is installed.
constexpr const char* kPrivateGuard = "/tmp/guard";
constexpr const char* kGuardDirectory = "/guard";

// Beside the copy of the package.
constexpr const char* kOrdersName = ".orders";
constexpr const char* kNoteName = ".note";
constexpr const char* kConfigurationName = ".rc";

// The file that librpm cannot do without. One that is empty spares rpm2cpio the reading of all the
// others, and keeps from it what somebody configured on this machine.
constexpr const char* kConfigurationFile = "/rpmrc";

constexpr const char* kNoGuard = "the guard in the place of cpio cannot be run: ";

constexpr fsblkcnt_t kFullBlocks = 16;

constexpr const char* kNowhere = "/dev/null";

// Of the private /tmp: directories and the copy, beside the files of the package.
constexpr std::uint64_t kSpareFiles = 16;
constexpr std::uint64_t kSpareBytes = std::uint64_t{1} << 20;

}  // namespace

void World::enter(const Directories& directories, bool inWorkingDirectory,
                  std::uint64_t packageSize) {
    const bool isolated = plan_.sandbox.namespaces;
    const Room room{plan_.limits.unpackedBytes + packageSize + kSpareBytes,
                    plan_.limits.files + kSpareFiles};
    if (isolated) {
        WorldPaths paths =
            furnishNamespaces(plan_.owner, plan_.group, room, inWorkingDirectory, plan_.readable);
        if (plan_.guard.isCopied()) {
            mountForPrograms(kPrivateGuard, plan_.guard.image.size());
        }
        copyPath_ = std::move(paths.copy);
        root_ = std::move(paths.root);
        tree_ = kPrivateTree;
        limitCapabilities();
        if (mkdir(kPrivateTree, S_IRWXU) != 0) {
            throw std::system_error(errno, std::generic_category(), "cannot make a directory");
        }
        isInMemory_ = !inWorkingDirectory;
    } else {
        copyPath_ = directories.copy + kCopyName;
        tree_ = directories.tree;
    }
    prepareDirectory(tree_);
    arrangeGuard(isolated ? kPrivateGuard : directories.copy + kGuardDirectory);
    applyLimits(plan_.limits, room.bytes, isolated);
    if (plan_.sandbox.landlock) {
        closeFiles(directories);
    }
    if (isolated || plan_.sandbox.landlock) {
        filter_.apply();
    }
}

// The only place where the word cpio is looked up, so that it leads to the guard and nowhere else.
void World::arrangeGuard(const std::string& place) {
    guardDirectory_ = plan_.guard.directory;
    if (plan_.guard.isCopied()) {
        guardDirectory_ = place;
        copyGuard(plan_.guard, place);
    }
    setenv("PATH", guardDirectory_.c_str(), 1);
    // Here, while there is one thread: others may read the environment later.
    setenv(kGuardOrdersVariable, (copyPath_ + kOrdersName).c_str(), 1);
    setenv(kGuardNoteVariable, (copyPath_ + kNoteName).c_str(), 1);
    setenv(kConfigurationVariable, (copyPath_ + kConfigurationName).c_str(), 1);
}

// Without it rpm2cpio would complain, and unpack all the same.
void World::placeConfiguration() const {
    const std::string directory = copyPath_ + kConfigurationName;
    if (mkdir(directory.c_str(), S_IRWXU) == 0) {
        writeNewFile(directory + kConfigurationFile, {}, S_IRUSR);
    }
}

Cause World::placeGuard(const SetIdModes& setIdModes) const {
    try {
        checkGuard(guardDirectory_);
        placeConfiguration();
        writeNewFile(copyPath_ + kOrdersName,
                     formatOrders({plan_.limits.unpackedBytes, plan_.limits.files, setIdModes}),
                     S_IRUSR);
    } catch (const std::system_error& error) {
        return {CauseCode::Crashed, kNoGuard + error.code().message()};
    }
    return {};
}

std::optional<GuardNote> World::guardNote() const {
    return parseNote(beginningOf(copyPath_ + kNoteName, kNoteSize + 1));
}

void World::closeFiles(const Directories& directories) const {
    LandlockRules rules;
    for (const char* path : kPrograms) {
        rules.permit(path, FileAccess::Execute);
    }
    for (const char* path : kSettings) {
        rules.permit(path, FileAccess::Read);
    }
    for (const std::string& path : plan_.readable) {
        rules.permit(path, FileAccess::Read);
    }
    rules.permit(guardDirectory_, FileAccess::Execute);
    rules.permit(kNowhere, FileAccess::Write);
    if (plan_.sandbox.namespaces) {
        rules.permit(kPrivateDirectory, FileAccess::Write);
    } else {
        rules.permit(directories.tree, FileAccess::Write);
        rules.permit(directories.copy, FileAccess::Write);
    }
    rules.apply();
}

void World::closeAround() {
    for (const char* const name : {"", kOrdersName, kNoteName}) {
        unlink((copyPath_ + name).c_str());
    }
    unlink((copyPath_ + kConfigurationName + kConfigurationFile).c_str());
    rmdir((copyPath_ + kConfigurationName).c_str());
    if (root_.isOpen()) {
        enterRoot(root_);
        root_.reset();
    }
    if (plan_.sandbox.landlock) {
        LandlockRules rules;
        rules.permit(tree_, FileAccess::Read);
        for (const std::string& path : plan_.readable) {
            rules.permit(path, FileAccess::Read);
        }
        rules.apply();
    }
}

// What the guard did not let pass, or the private file system full to the last page or without more
// files to give.
Cause World::limitMet() const {
    const std::optional<GuardNote> note = guardNote();
    if (note && note->end == GuardEnd::TooLarge) {
        return {CauseCode::TooLarge, kTooLarge};
    }
    if (note && note->end == GuardEnd::TooManyFiles) {
        return {CauseCode::TooManyFiles, kTooManyFiles};
    }
    struct rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    if (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec >= plan_.limits.processorSeconds) {
        return {CauseCode::OutOfTime, kOutOfProcessorTime};
    }
    struct statvfs room {};
    if (!isInMemory_ || statvfs(tree_.c_str(), &room) != 0) {
        return {};
    }
    if (room.f_ffree == 0) {
        return {CauseCode::TooManyFiles, kTooManyFiles};
    }
    return room.f_bfree < kFullBlocks ? Cause{CauseCode::TooLarge, kTooLarge} : Cause{};
}

}  // namespace pkgvet::cli
