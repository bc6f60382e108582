// Makes files, directories and links.
#include "cli/guard/tree_writer.h"

#include <fcntl.h>
#include <limits.h>
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
// Of directories that have no entry, less the umask.
constexpr mode_t kParentMode = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t kPermissions = 07777;
constexpr int kWayFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr char kSlash = '/';

[[noreturn]] void fail(const std::string& name) {
    throw std::system_error(errno, std::generic_category(), name);
}

// The last component of name, and what stands ahead of it.
std::string baseOf(const std::string& name) {
    return name.substr(name.rfind(kSlash) + 1);
}
std::string wayTo(const std::string& name) {
    return name.substr(0, name.rfind(kSlash) + 1);
}

// The directory of that name in another one, made if it is missing.
Descriptor enter(const Descriptor& directory, const std::string& base, const std::string& name) {
    Descriptor entered(openat(directory.get(), base.c_str(), kWayFlags));
    if (!entered.isOpen() && errno == ENOENT &&
        mkdirat(directory.get(), base.c_str(), kParentMode) == 0) {
        entered = Descriptor(openat(directory.get(), base.c_str(), kWayFlags));
    }
    if (!entered.isOpen()) {
        fail(name);
    }
    return entered;
}

Descriptor openDirectory(int parent, const std::string& name) {
    Descriptor directory(
        openat(parent, baseOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory.isOpen()) {
        fail(name);
    }
    return directory;
}

bool writesAsSuperuser() {
    return geteuid() == 0;
}

// Whoever may not give files away keeps them. A change of owner clears set-id bits, so that the
// mode is set after it.
void setAttributes(const Descriptor& file, const std::string& name, const EntryFields& fields) {
    if (writesAsSuperuser() && fchown(file.get(), fields.user, fields.group) != 0 &&
        errno != EPERM) {
        fail(name);
    }
    const timespec time{fields.time, 0};
    const std::array times = {time, time};
    if (fchmod(file.get(), fields.mode & kPermissions) != 0 ||
        futimens(file.get(), times.data()) != 0) {
        fail(name);
    }
}

// Some file systems tell only now that they are full.
void closeFile(Descriptor file, const std::string& name) {
    if (close(file.release()) != 0) {
        fail(name);
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

// Step by step, so that no link is followed even where a file system takes two names for one that
// the guard has kept apart. Entries of one directory follow one another.
int TreeWriter::parentOf(const std::string& name) {
    if (name.size() >= PATH_MAX) {
        errno = ENAMETOOLONG;
        fail(name);
    }
    const std::string way = wayTo(name);
    if (parent_.isOpen() && way == wayToParent_) {
        return parent_.get();
    }
    Descriptor directory(open(".", kWayFlags));
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = way.find(kSlash, begin)) != std::string::npos;
         begin = end + 1) {
        directory = enter(directory, way.substr(begin, end - begin), name);
    }
    parent_ = std::move(directory);
    wayToParent_ = way;
    return parent_.get();
}

void TreeWriter::makeDirectory(const RegularEntry& entry) {
    const std::string name(entry.name);
    const int parent = parentOf(name);
    if (mkdirat(parent, baseOf(name).c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        fail(name);
    }
    if ((entry.fields.mode & S_IRWXU) == S_IRWXU) {
        setAttributes(openDirectory(parent, name), name, entry.fields);
    } else {
        closed_.push_back({std::string(entry.path), entry.fields});
    }
}

void TreeWriter::makeLink(const RegularEntry& entry) {
    const std::string name(entry.name);
    const std::string base = baseOf(name);
    const int parent = parentOf(name);
    if (symlinkat(std::string(entry.target).c_str(), parent, base.c_str()) != 0) {
        fail(name);
    }
    if (writesAsSuperuser() &&
        fchownat(parent, base.c_str(), entry.fields.user, entry.fields.group,
                 AT_SYMLINK_NOFOLLOW) != 0 &&
        errno != EPERM) {
        fail(name);
    }
}

Descriptor TreeWriter::createFile(const std::string& name) {
    Descriptor file(openat(parentOf(name), baseOf(name).c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kUnfinishedMode));
    if (!file.isOpen()) {
        fail(name);
    }
    return file;
}

void TreeWriter::beginFile(const RegularEntry& entry) {
    if (entry.fields.links > 1 && entry.fields.dataSize == 0) {
        HardLinks& links = hardLinks_[fileIdOf(entry.fields)];
        links.names.emplace_back(entry.name);
        links.fields = entry.fields;
        return;
    }
    name_ = entry.name;
    fields_ = entry.fields;
    file_ = createFile(name_);
    dataLeft_ = fields_.dataSize;
    advance(0);
}

void TreeWriter::write(std::string_view data) {
    attempt([&] {
        while (!data.empty()) {
            const ssize_t size = ::write(file_.get(), data.data(), data.size());
            errno = size == 0 ? EIO : errno;
            if (size == 0 || (size < 0 && errno != EINTR)) {
                fail(name_);
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
    setAttributes(file_, name_, fields_);
    closeFile(std::move(file_), name_);
    if (fields_.links > 1) {
        const auto links = hardLinks_.find(fileIdOf(fields_));
        if (links != hardLinks_.end()) {
            linkNames(links->second);
            hardLinks_.erase(links);
        }
    }
}

void TreeWriter::linkNames(const HardLinks& links) {
    const Descriptor source(fcntl(parentOf(name_), F_DUPFD_CLOEXEC, 0));
    for (const std::string& name : links.names) {
        if (linkat(source.get(), baseOf(name_).c_str(), parentOf(name), baseOf(name).c_str(), 0) !=
            0) {
            fail(name);
        }
    }
}

// Of links without any data the last one counts, as for cpio.
void TreeWriter::makeEmptyFiles() {
    for (auto& [id, links] : std::exchange(hardLinks_, {})) {
        name_ = links.names.back();
        links.names.pop_back();
        const Descriptor file = createFile(name_);
        setAttributes(file, name_, links.fields);
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
            setAttributes(openDirectory(parentOf(path), path), path, fields);
        }
    });
}

}  // namespace pkgvet::cli
