// Makes namespaces and what is in them.
#include "cli/worker/namespaces.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/capability.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using Capabilities = CHandle<_cap_struct, cap_free>;

constexpr int kNamespaces =
    CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWIPC | CLONE_NEWUTS;

// Of all judges together. The kernel makes one network after the other, so that judges with one
// each would wait for one another.
constexpr int kSharedNamespaces = CLONE_NEWUSER | CLONE_NEWNET;

// The id inside. As id 0, the guard would try to give files away, and fail.
constexpr unsigned kInnerId = 1000;

// The same on every machine.
constexpr std::string_view kHostName = "pkgvet";

constexpr const char* kTemporary = "/tmp";
constexpr const char* kWork = "/tmp/work";
constexpr const char* kRoot = "/tmp/root";
constexpr const char* kRootTemporary = "/tmp/root/tmp";
constexpr const char* kCopy = "/tmp/package.rpm";
constexpr unsigned long kPlainMount = MS_NOSUID | MS_NODEV | MS_NOEXEC;

// Files that are written in large pieces, as the copy of the package is, get large pages as far as
// they fill them. Not every kernel has them.
constexpr const char* kHugePages = ",huge=within_size";

// What a file system takes for itself.
constexpr std::size_t kSpareForPrograms = std::size_t{64} << 10;

constexpr std::array kHandedOn = {CAP_DAC_OVERRIDE, CAP_FOWNER};
constexpr std::array kKept = {CAP_DAC_OVERRIDE, CAP_FOWNER, CAP_SYS_CHROOT};

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void check(int answer, const char* what) {
    if (answer != 0) {
        fail(what);
    }
}

pid_t forkWith(int flags) {
    return static_cast<pid_t>(syscall(SYS_clone, flags | SIGCHLD, nullptr, nullptr, nullptr, 0));
}

void writeFile(const char* path, const std::string& text) {
    const Descriptor file(open(path, O_WRONLY | O_CLOEXEC));
    if (!file.isOpen() ||
        write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        fail(std::string("cannot write ") + path);
    }
}

std::string mapping(unsigned outer) {
    return std::to_string(kInnerId) + " " + std::to_string(outer) + " 1";
}

void mapIds(uid_t owner, gid_t group) {
    // A process that gave up root could not write its own maps otherwise.
    prctl(PR_SET_DUMPABLE, 1);
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", mapping(owner));
    writeFile("/proc/self/gid_map", mapping(group));
}

void setAttributes(const char* path, unsigned flags, std::uint64_t set, std::uint64_t clear) {
    mount_attr attributes{};
    attributes.attr_set = set;
    attributes.attr_clr = clear;
    check(mount_setattr(AT_FDCWD, path, flags, &attributes, sizeof attributes),
          "cannot make file systems read-only");
}

// Nothing that is mounted here is seen outside, and the other way round.
void closeFileSystems() {
    check(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "cannot part file systems");
    setAttributes("/", AT_RECURSIVE, MOUNT_ATTR_RDONLY | MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV, 0);
}

bool mountTmpfs(const std::string& options) {
    return mount("pkgvet", kTemporary, "tmpfs", kPlainMount, options.c_str()) == 0;
}

void mountScratch(const Room& room, bool inWorkingDirectory) {
    if (inWorkingDirectory) {
        check(mount(".", kTemporary, nullptr, MS_BIND, nullptr), "cannot mount scratch");
        setAttributes(kTemporary, 0, MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV | MOUNT_ATTR_NOEXEC,
                      MOUNT_ATTR_RDONLY);
        return;
    }
    const std::string options =
        "mode=0700,size=" + std::to_string(room.bytes) + ",nr_inodes=" + std::to_string(room.files);
    if (!mountTmpfs(options + kHugePages)) {
        check(mountTmpfs(options) ? 0 : -1, "cannot mount a private /tmp");
    }
}

void bind(const char* from, const char* to) {
    check(mount(from, to, nullptr, MS_BIND, nullptr), "cannot arrange the private /tmp");
}

// What does not exist here is not there for the rules either.
void showInRoot(const std::vector<std::string>& readable) {
    for (const std::string& path : readable) {
        std::error_code error;
        if (!std::filesystem::is_directory(path, error)) {
            continue;
        }
        const std::string shown = kRoot + path;
        std::filesystem::create_directories(shown);
        bind(path.c_str(), shown.c_str());
    }
}

// Below the mount stand two directories: work, which is then mounted over it as /tmp, and root,
// which shows the same as its own /tmp, and can be reached by its descriptor alone.
Descriptor arrangeRoot(const std::vector<std::string>& readable) {
    for (const char* directory : {kWork, kRoot, kRootTemporary}) {
        check(mkdir(directory, S_IRWXU), "cannot arrange the private /tmp");
    }
    showInRoot(readable);
    bind(kWork, kRootTemporary);
    Descriptor root(open(kRoot, O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!root.isOpen()) {
        fail("cannot open the new root");
    }
    bind(kWork, kTemporary);
    return root;
}

}  // namespace

void enterSharedNamespaces(uid_t owner, gid_t group) {
    check(unshare(kSharedNamespaces), "cannot make namespaces");
    mapIds(owner, group);
}

bool joinSharedNamespaces(pid_t process) {
    const Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
    return handle.isOpen() && setns(handle.get(), kSharedNamespaces) == 0;
}

pid_t forkSibling(bool isolated) {
    return forkWith(CLONE_PARENT | (isolated ? kNamespaces : 0));
}

pid_t forkIsolated() {
    return forkWith(kNamespaces);
}

WorldPaths furnishNamespaces(uid_t owner, gid_t group, const Room& room, bool inWorkingDirectory,
                             const std::vector<std::string>& readable) {
    mapIds(owner, group);
    check(sethostname(kHostName.data(), kHostName.size()), "cannot set the host's name");
    closeFileSystems();
    mountScratch(room, inWorkingDirectory);
    WorldPaths paths{kCopy, arrangeRoot(readable)};
    // Where parts of /proc are hidden, as in many containers, the kernel refuses a new one.
    mount("proc", "/proc", "proc", kPlainMount | MS_RDONLY, nullptr);
    check(chdir(kTemporary), "cannot enter the private /tmp");
    return paths;
}

void mountForPrograms(const char* place, std::size_t size) {
    check(mkdir(place, S_IRWXU), "cannot arrange the private /tmp");
    const std::string options = "mode=0700,size=" + std::to_string(size + kSpareForPrograms);
    check(mount("pkgvet", place, "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()),
          "cannot mount a place for programs");
}

void limitCapabilities() {
    const Capabilities capabilities(cap_init());
    if (!capabilities) {
        fail("cannot limit capabilities");
    }
    cap_t set = capabilities.get();
    check(cap_set_flag(set, CAP_PERMITTED, kKept.size(), kKept.data(), CAP_SET),
          "cannot limit capabilities");
    check(cap_set_flag(set, CAP_EFFECTIVE, kKept.size(), kKept.data(), CAP_SET),
          "cannot limit capabilities");
    check(cap_set_flag(set, CAP_INHERITABLE, kHandedOn.size(), kHandedOn.data(), CAP_SET),
          "cannot limit capabilities");
    check(cap_set_proc(set), "cannot limit capabilities");
    for (const cap_value_t capability : kHandedOn) {
        check(cap_set_ambient(capability, CAP_SET), "cannot hand capabilities on");
    }
}

void enterRoot(const Descriptor& root) {
    check(fchdir(root.get()), "cannot enter the new root");
    check(chroot("."), "cannot enter the new root");
    const Capabilities capabilities(cap_get_proc());
    const cap_value_t change = CAP_SYS_CHROOT;
    check(cap_set_flag(capabilities.get(), CAP_EFFECTIVE, 1, &change, CAP_CLEAR),
          "cannot limit capabilities");
    check(cap_set_flag(capabilities.get(), CAP_PERMITTED, 1, &change, CAP_CLEAR),
          "cannot limit capabilities");
    check(cap_set_proc(capabilities.get()), "cannot limit capabilities");
}

}  // namespace pkgvet::cli
