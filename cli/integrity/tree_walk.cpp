// Walks the tree that a payload was unpacked to.
#include "cli/integrity/tree_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/capability.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using CapabilitySet = CHandle<_cap_struct, cap_free>;
using DirectoryHandle = CHandle<DIR, closedir>;

// Gives the owner bits of a mode that are missing, and takes them away again.
class LentMode {
public:
    LentMode(const std::string& path, mode_t mode, mode_t needed) : path_(path), mode_(mode) {
        isLent_ = (mode & needed) != needed && chmod(path.c_str(), (mode | needed) & 07777) == 0;
    }
    LentMode(const LentMode&) = delete;
    LentMode(LentMode&&) = delete;
    LentMode& operator=(const LentMode&) = delete;
    LentMode& operator=(LentMode&&) = delete;
    ~LentMode() {
        if (isLent_) {
            chmod(path_.c_str(), mode_ & 07777);
        }
    }

private:
    const std::string& path_;
    mode_t mode_;
    bool isLent_;
};

mode_t neededFor(mode_t mode) {
    return S_ISDIR(mode) ? S_IRUSR | S_IXUSR : S_ISREG(mode) ? S_IRUSR : 0;
}

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

// Read at once, so that no more than one directory is open however deep the tree is.
std::vector<TreeEntry> entriesOf(const std::string& root, const std::string& directory,
                                 bool isReadable) {
    const std::string place = root + directory;
    const DirectoryHandle stream(opendir(place.c_str()));
    if (!stream) {
        fail(place);
    }
    std::vector<TreeEntry> entries;
    while (const dirent* found = readdir(stream.get())) {
        const std::string_view name = found->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        TreeEntry entry{directory + "/" + found->d_name, {}, isReadable};
        if (fstatat(dirfd(stream.get()), found->d_name, &entry.status, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(root + entry.path);
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

class TreeWalk {
public:
    TreeWalk(const std::string& root, const TreeVisitor& visit) : root_(root), visit_(visit) {}

    void walk(const std::string& directory, bool isReadable) {
        for (TreeEntry& entry : entriesOf(root_, directory, isReadable)) {
            look(&entry);
        }
    }

private:
    void look(TreeEntry* entry) {
        const mode_t mode = entry->status.st_mode;
        const mode_t needed = mayReadAll_ ? 0 : neededFor(mode);
        entry->isReadable = entry->isReadable && (mode & needed) == needed;
        const std::string place = root_ + entry->path;
        const LentMode lent(place, mode, needed);
        visit_(*entry);
        if (S_ISDIR(mode)) {
            walk(entry->path, entry->isReadable);
        }
    }

    const std::string& root_;
    const TreeVisitor& visit_;
    const bool mayReadAll_ = mayReadAll();
};

}  // namespace

bool mayReadAll() {
    const CapabilitySet set(cap_get_proc());
    cap_flag_value_t isSet = CAP_CLEAR;
    return set && cap_get_flag(set.get(), CAP_DAC_OVERRIDE, CAP_EFFECTIVE, &isSet) == 0 &&
           isSet == CAP_SET;
}

void walkTree(const std::string& root, const TreeVisitor& visit) {
    TreeWalk(root, visit).walk(std::string(), true);
}

}  // namespace pkgvet::cli
