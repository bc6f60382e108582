// Looks at files without opening them.
#include "pkgvet/base/file_modes.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>

#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet {

namespace {

// Looks up paths of which many in a row are in one directory: that is then gone through once, and
// not for each of them.
class ModeLookup {
public:
    explicit ModeLookup(const std::string& root) : root_(root) {}

    struct stat statusOf(const std::string& path) {
        file_.assign(root_).append(path);
        struct stat status {};
        if (look(&status) != 0) {
            status = {};
        }
        return status;
    }

private:
    // As stat() of the whole path, which also refuses one that is too long.
    int look(struct stat* status) {
        const std::size_t name = file_.rfind('/') + 1;
        if (name == file_.size() || file_.size() >= PATH_MAX || !enter(name)) {
            return stat(file_.c_str(), status);
        }
        return fstatat(directory_.get(), file_.c_str() + name, status, 0);
    }

    bool enter(std::size_t length) {
        const std::string_view wanted = std::string_view(file_).substr(0, length);
        if (wanted != name_) {
            name_ = wanted;
            directory_ = Descriptor(
                name_.empty() ? -1 : open(name_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        }
        return directory_.isOpen();
    }

    const std::string& root_;
    std::string file_;
    std::string name_;
    Descriptor directory_;
};

}  // namespace

std::vector<mode_t> readModes(const std::string& root, const std::vector<std::string>& paths) {
    return readModes(root, paths, [](const struct stat&) {});
}

std::vector<mode_t> readModes(const std::string& root, const std::vector<std::string>& paths,
                              const std::function<void(const struct stat&)>& visit) {
    std::vector<mode_t> modes;
    modes.reserve(paths.size());
    ModeLookup lookup(root);
    for (const std::string& path : paths) {
        const struct stat status = lookup.statusOf(path);
        modes.push_back(status.st_mode);
        visit(status);
    }
    return modes;
}

}  // namespace pkgvet
