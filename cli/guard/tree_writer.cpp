// Makes files, directories and links.
#include "cli/guard/tree_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace pkgvet::cli {

namespace {

// Files are opened to others once they are whole.
constexpr mode_t kUnfinishedMode = S_IRUSR | S_IWUSR;
// Of directories that have no entry, less what the process keeps from new files.
constexpr mode_t kParentMode = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t kPermissions = 07777;
constexpr char kSlash = '/';

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

// Whether it is there now, false when the directory above it is not.
bool ensureDirectory(const std::string& path, mode_t mode) {
    if (mkdir(path.c_str(), mode) == 0 || errno == EEXIST) {
        return true;
    }
    if (errno != ENOENT) {
        fail(path);
    }
    return false;
}

// Upwards to one that can be made or is there, and down again.
void makeParents(const std::string& path) {
    std::size_t end = path.rfind(kSlash);
    while (end != std::string::npos && !ensureDirectory(path.substr(0, end), kParentMode)) {
        end = path.rfind(kSlash, end - 1);
    }
    while ((end = path.find(kSlash, end + 1)) != std::string::npos) {
        ensureDirectory(path.substr(0, end), kParentMode);
    }
}

// The result of a call that makes path, below directories that may be missing.
int withParents(const std::string& path, const std::function<int()>& call) {
    int result = call();
    if (result < 0 && errno == ENOENT) {
        makeParents(path);
        result = call();
    }
    return result;
}

Descriptor createFile(const std::string& path) {
    Descriptor file(withParents(path, [&path] {
        return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                    kUnfinishedMode);
    }));
    if (!file.isOpen()) {
        fail(path);
    }
    return file;
}

Descriptor openDirectory(const std::string& path) {
    Descriptor directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory.isOpen()) {
        fail(path);
    }
    return directory;
}

bool writesAsSuperuser() {
    return geteuid() == 0;
}

// Whoever may not give files away keeps them. The mode comes behind the owner, with whom set-id
// bits go.
void setAttributes(const Descriptor& file, const std::string& path, const EntryFields& fields) {
    if (writesAsSuperuser() && fchown(file.get(), fields.user, fields.group) != 0 &&
        errno != EPERM) {
        fail(path);
    }
    const timespec time{fields.time, 0};
    const std::array times = {time, time};
    if (fchmod(file.get(), fields.mode & kPermissions) != 0 ||
        futimens(file.get(), times.data()) != 0) {
        fail(path);
    }
}

// Some file systems tell only now that they are full.
void closeFile(Descriptor file, const std::string& path) {
    if (close(file.release()) != 0) {
        fail(path);
    }
}

void makeLink(const RegularEntry& entry) {
    const std::string path(entry.name);
    const std::string target(entry.target);
    if (withParents(path, [&] { return symlink(target.c_str(), path.c_str()); }) != 0) {
        fail(path);
    }
    if (writesAsSuperuser() && lchown(path.c_str(), entry.fields.user, entry.fields.group) != 0 &&
        errno != EPERM) {
        fail(path);
    }
}

}  // namespace

void TreeWriter::attempt(const std::function<void()>& step) {
    if (!failure_.empty()) {
        return;
    }
    try {
        step();
    } catch (const std::system_error& error) {
        failure_ = error.what();
    }
}

void TreeWriter::begin(const RegularEntry& entry) {
    attempt([&] { make(entry); });
}

void TreeWriter::make(const RegularEntry& entry) {
    switch (entry.fields.mode & S_IFMT) {
        case S_IFDIR:
            return makeDirectory(entry);
        case S_IFLNK:
            return makeLink(entry);
        default:
            return beginFile(entry);
    }
}

void TreeWriter::makeDirectory(const RegularEntry& entry) {
    const std::string path(entry.name);
    if (!ensureDirectory(path, S_IRWXU)) {
        makeParents(path);
        ensureDirectory(path, S_IRWXU);
    }
    if ((entry.fields.mode & S_IRWXU) == S_IRWXU) {
        setAttributes(openDirectory(path), path, entry.fields);
    } else {
        closed_.push_back({std::string(entry.path), entry.fields});
    }
}

void TreeWriter::beginFile(const RegularEntry& entry) {
    if (entry.fields.links > 1 && entry.fields.dataSize == 0) {
        HardLinks& links = hardLinks_[fileIdOf(entry.fields)];
        links.names.emplace_back(entry.name);
        links.fields = entry.fields;
        return;
    }
    path_ = entry.name;
    fields_ = entry.fields;
    file_ = createFile(path_);
    dataLeft_ = fields_.dataSize;
    advance(0);
}

void TreeWriter::write(std::string_view data) {
    attempt([&] {
        while (!data.empty()) {
            const ssize_t size = ::write(file_.get(), data.data(), data.size());
            if (size < 0 && errno != EINTR) {
                fail(path_);
            }
            data.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
            advance(size < 0 ? 0 : static_cast<std::uint64_t>(size));
        }
    });
}

std::optional<std::uint64_t> TreeWriter::moveFrom(int pipe, std::uint64_t size) {
    if (!failure_.empty()) {
        return std::nullopt;
    }
    ssize_t count = -1;
    do {
        count = splice(pipe, nullptr, file_.get(), nullptr, size, SPLICE_F_MOVE);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        return std::nullopt;
    }
    attempt([&] { advance(static_cast<std::uint64_t>(count)); });
    return static_cast<std::uint64_t>(count);
}

void TreeWriter::advance(std::uint64_t size) {
    dataLeft_ -= size;
    if (dataLeft_ == 0) {
        endFile();
    }
}

// Other names come last, as cpio makes them: each is a change of the file.
void TreeWriter::endFile() {
    setAttributes(file_, path_, fields_);
    closeFile(std::move(file_), path_);
    if (fields_.links > 1) {
        const auto links = hardLinks_.find(fileIdOf(fields_));
        if (links != hardLinks_.end()) {
            linkNames(links->second);
            hardLinks_.erase(links);
        }
    }
}

void TreeWriter::linkNames(const HardLinks& links) const {
    for (const std::string& name : links.names) {
        if (withParents(name, [&] { return link(path_.c_str(), name.c_str()); }) != 0) {
            fail(name);
        }
    }
}

// Of links without any data the last one counts, as for cpio.
void TreeWriter::makeEmptyFiles() {
    for (auto& [id, links] : std::exchange(hardLinks_, {})) {
        path_ = links.names.back();
        links.names.pop_back();
        const Descriptor file = createFile(path_);
        setAttributes(file, path_, links.fields);
        linkNames(links);
    }
}

void TreeWriter::finish() {
    attempt([this] { makeEmptyFiles(); });
    attempt([this] {
        // Those inside come first.
        std::sort(closed_.begin(), closed_.end(),
                  [](const auto& one, const auto& other) { return one.path > other.path; });
        for (const auto& [path, fields] : closed_) {
            setAttributes(openDirectory(path), path, fields);
        }
    });
}

}  // namespace pkgvet::cli
