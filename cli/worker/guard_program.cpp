// Finds the guard and brings it to where judges can run it.
#include "cli/worker/guard_program.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "cli/worker/small_file.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kOwnProgram = "/proc/self/exe";
constexpr const char* kName = "/cpio";
constexpr const char* kTemporary = "/tmp/";

constexpr mode_t kMode = S_IRUSR | S_IXUSR;

// Far more than it has.
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

bool isInTmp(const std::string& directory) {
    return directory.starts_with(kTemporary);
}

}  // namespace

// Judges of the superuser are somebody else, who may not get as far as the directory, so that it is
// opened while this process may.
GuardProgram findGuard() {
    const std::filesystem::path program = std::filesystem::read_symlink(kOwnProgram);
    GuardProgram guard;
    guard.directory = (program.parent_path() / PKGVET_GUARD_FROM_PROGRAM).lexically_normal();
    if (isInTmp(guard.directory) || geteuid() == 0) {
        guard.program = Descriptor(open((guard.directory + kName).c_str(), O_RDONLY | O_CLOEXEC));
    }
    return guard;
}

void readNeededImage(GuardProgram* guard, bool isTmpPrivate) {
    const bool isHidden = isTmpPrivate && isInTmp(guard->directory);
    if (isHidden || access((guard->directory + kName).c_str(), X_OK) != 0) {
        guard->image = beginningOf(guard->program, kMostBytes);
    }
}

void copyGuard(const GuardProgram& guard, const std::string& directory) {
    if (mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        throw std::system_error(errno, std::generic_category(), "cannot make " + directory);
    }
    writeNewFile(directory + kName, guard.image, kMode);
}

void checkGuard(const std::string& directory) {
    if (access((directory + kName).c_str(), X_OK) != 0) {
        throw std::system_error(errno, std::generic_category(), directory + kName);
    }
}

}  // namespace pkgvet::cli
