// Talks to Landlock, for which the C library has no functions.
#include "cli/worker/landlock.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace pkgvet::cli {

namespace {

// Rights that came with later versions than the headers at hand may know.
constexpr std::uint64_t kTruncate = 1ULL << 14U;
constexpr std::uint64_t kDeviceControl = 1ULL << 15U;

// All rights that a version knows, indexed by the version.
constexpr std::uint64_t kFirstRights = (1ULL << 13U) - 1;
constexpr std::array<std::uint64_t, 6> kAllRights = {
    0,
    kFirstRights,
    kFirstRights | LANDLOCK_ACCESS_FS_REFER,
    kFirstRights | LANDLOCK_ACCESS_FS_REFER | kTruncate,
    kFirstRights | LANDLOCK_ACCESS_FS_REFER | kTruncate,
    kFirstRights | LANDLOCK_ACCESS_FS_REFER | kTruncate | kDeviceControl,
};

constexpr std::uint64_t kRead = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kExecute = kRead | LANDLOCK_ACCESS_FS_EXECUTE;

// Nothing has a use for devices, which only the superuser could make.
constexpr std::uint64_t kDevices = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK;

// The first version that lets files be linked from one directory to another, as packages do.
constexpr int kLeastVersion = 2;

// The only rights that a rule on something other than a directory may name.
constexpr std::uint64_t kFileRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                      LANDLOCK_ACCESS_FS_EXECUTE | kTruncate | kDeviceControl;

// The version of the kernel, 0 without Landlock.
int version() {
    const long answer =
        syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return answer < 0 ? 0 : static_cast<int>(answer);
}

std::uint64_t allRights(int version) {
    const auto known = static_cast<int>(kAllRights.size()) - 1;
    return kAllRights.at(static_cast<std::size_t>(version < known ? version : known));
}

std::uint64_t rightsOf(FileAccess access, int version) {
    switch (access) {
        case FileAccess::Read:
            return kRead;
        case FileAccess::Execute:
            return kExecute;
        case FileAccess::Write:
            break;
    }
    return allRights(version) & ~kDevices;
}

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

bool hasLandlock() {
    return version() >= kLeastVersion;
}

LandlockRules::LandlockRules() : version_(version()) {
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = allRights(version_);
    rules_ = Descriptor(static_cast<int>(
        syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes.handled_access_fs, 0)));
    if (!rules_.isOpen()) {
        fail("cannot make Landlock rules");
    }
}

void LandlockRules::permit(const std::string& path, FileAccess access) {
    const Descriptor place(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (!place.isOpen() || fstat(place.get(), &status) != 0) {
        return;
    }
    landlock_path_beneath_attr rule{};
    rule.allowed_access = rightsOf(access, version_) & allRights(version_);
    if (!S_ISDIR(status.st_mode)) {
        rule.allowed_access &= kFileRights;
    }
    rule.parent_fd = place.get();
    if (syscall(SYS_landlock_add_rule, rules_.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) != 0) {
        fail("cannot add a Landlock rule");
    }
}

void LandlockRules::apply() const {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        syscall(SYS_landlock_restrict_self, rules_.get(), 0) != 0) {
        fail("cannot apply Landlock rules");
    }
}

}  // namespace pkgvet::cli
