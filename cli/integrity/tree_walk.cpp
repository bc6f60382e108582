// Walks the tree that a payload was unpacked to.
#include "cli/integrity/tree_walk.h"

#include <dirent.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <vector>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

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

// The superuser may read all.
mode_t neededFor(mode_t mode) {
    if (geteuid() == 0) {
        return 0;
    }
    return S_ISDIR(mode) ? S_IRUSR | S_IXUSR : S_ISREG(mode) ? S_IRUSR : 0;
}

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

// Read at once, so that no more than one directory is open however deep the tree is.
std::vector<std::string> namesIn(const std::string& directory) {
    const DirectoryHandle stream(opendir(directory.c_str()));
    if (!stream) {
        fail(directory);
    }
    std::vector<std::string> names;
    while (const dirent* entry = readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    return names;
}

class TreeWalk {
public:
    TreeWalk(const std::string& root, const TreeVisitor& visit) : root_(root), visit_(visit) {}

    void walk(const std::string& directory, bool isReadable) {
        for (const std::string& name : namesIn(root_ + directory)) {
            look(directory + "/" + name, isReadable);
        }
    }

private:
    void look(const std::string& path, bool isReadable) {
        TreeEntry entry{path, {}, isReadable};
        const std::string place = root_ + path;
        if (lstat(place.c_str(), &entry.status) != 0) {
            fail(place);
        }
        const mode_t mode = entry.status.st_mode;
        const mode_t needed = neededFor(mode);
        entry.isReadable = isReadable && (mode & needed) == needed;
        const LentMode lent(place, mode, needed);
        visit_(entry);
        if (S_ISDIR(mode)) {
            walk(path, entry.isReadable);
        }
    }

    const std::string& root_;
    const TreeVisitor& visit_;
};

}  // namespace

void walkTree(const std::string& root, const TreeVisitor& visit) {
    TreeWalk(root, visit).walk(std::string(), true);
}

}  // namespace pkgvet::cli
