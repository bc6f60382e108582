// Removes extracted payloads, whatever permissions they came with.
#include "pkgvet/base/remove_tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet {

namespace {

using DirectoryHandle = CHandle<DIR, closedir>;

constexpr int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A directory on the way down from the root of a tree.
struct Level {
    std::string name;  // in the directory above
    dev_t device;
    ino_t inode;
};

[[noreturn]] void fail(const char* what) {
    throw std::filesystem::filesystem_error(what, std::error_code(errno, std::generic_category()));
}

// A walk down and up again that holds one directory open at a time: a package may nest them deeper
// than there are descriptors, or than a path is long.
class Removal {
public:
    Removal(const std::string& root, std::string_view last)
        : last_(last), current_(enter(AT_FDCWD, root)) {}

    void run();

private:
    Descriptor enter(int parent, const std::string& name);
    std::string removeFiles() const;
    void leave();
    bool isForLater(std::string_view name) const { return levels_.size() == 1 && name == last_; }

    std::string_view last_;  // empty once its time has come
    std::vector<Level> levels_;
    Descriptor current_;
};

// Its owner may not be permitted to look into it or to change it yet.
Descriptor Removal::enter(int parent, const std::string& name) {
    Descriptor directory(openat(parent, name.c_str(), kDirectoryFlags));
    if (!directory.isOpen() && errno == EACCES) {
        fchmodat(parent, name.c_str(), S_IRWXU, 0);
        directory = Descriptor(openat(parent, name.c_str(), kDirectoryFlags));
    }
    struct stat status {};
    if (!directory.isOpen() || fstat(directory.get(), &status) != 0) {
        fail("cannot enter a directory that is to be removed");
    }
    if ((status.st_mode & S_IRWXU) != S_IRWXU) {
        fchmod(directory.get(), S_IRWXU);
    }
    levels_.push_back({name, status.st_dev, status.st_ino});
    return directory;
}

// Removes what is not a directory, up to the first entry that is. Returns its name; empty when
// nothing is left that may go already.
std::string Removal::removeFiles() const {
    const DirectoryHandle entries(fdopendir(openat(current_.get(), ".", kDirectoryFlags)));
    if (!entries) {
        fail("cannot read a directory that is to be removed");
    }
    while (const dirent* entry = readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || isForLater(name)) {
            continue;
        }
        if (unlinkat(current_.get(), entry->d_name, 0) != 0) {
            if (errno != EISDIR && errno != EPERM) {
                fail("cannot remove a file");
            }
            return std::string(name);
        }
    }
    return std::string();
}

// Goes up, and removes what it comes from.
void Removal::leave() {
    const Level left = levels_.back();
    levels_.pop_back();
    Descriptor above(openat(current_.get(), "..", kDirectoryFlags));
    struct stat status {};
    if (!above.isOpen() || fstat(above.get(), &status) != 0 ||
        status.st_dev != levels_.back().device || status.st_ino != levels_.back().inode) {
        // Somebody moved it away meanwhile: what lies above is not ours.
        errno = ESTALE;
        fail("cannot leave a directory that is to be removed");
    }
    if (unlinkat(above.get(), left.name.c_str(), AT_REMOVEDIR) != 0) {
        fail("cannot remove a directory");
    }
    current_ = std::move(above);
}

void Removal::run() {
    for (;;) {
        const std::string directory = removeFiles();
        if (!directory.empty()) {
            current_ = enter(current_.get(), directory);
        } else if (levels_.size() > 1) {
            leave();
        } else if (!last_.empty()) {
            last_ = {};
        } else {
            return;
        }
    }
}

}  // namespace

void removeTree(const std::filesystem::path& root, std::string_view last) {
    struct stat status {};
    if (lstat(root.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISDIR(status.st_mode)) {
        unlink(root.c_str());
        return;
    }
    Removal(root, last).run();
    if (rmdir(root.c_str()) != 0) {
        fail("cannot remove a directory");
    }
}

}  // namespace pkgvet
