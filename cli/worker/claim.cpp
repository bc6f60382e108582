// Marks, locks and clears directories.
#include "cli/worker/claim.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <exception>
#include <optional>

#include "cli/worker/judge_user.h"
#include "cli/worker/prepared_mkdtemp.h"
#include "cli/worker/template_main.h"
#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/remove_tree.h"

namespace pkgvet::cli {

namespace {

using DirectoryHandle = CHandle<DIR, closedir>;

constexpr const char* kMarkName = ".pkgvet";
// What the mark begins with; the path of the companion follows.
constexpr std::string_view kMark = "made by pkgvet for one package, removed by a later run\n";
constexpr std::size_t kLongestMark = 256;
// Of directories that are to be marked. Where nobody else may write, the sticky bit has no effect,
// so that others have no reason to set it.
constexpr mode_t kClaimedMode = S_IRWXU | S_ISVTX;
// Each time another run clears the directory away between two steps.
constexpr int kAttempts = 100;

constexpr int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kOthersWrite = S_IWGRP | S_IWOTH;

Descriptor openDirectory(int parent, const char* name) {
    return Descriptor(openat(parent, name, kDirectoryFlags));
}

bool belongsToUs(const struct stat& status) {
    return status.st_uid == geteuid() || status.st_uid == judgeUser(true);
}

bool isOurs(const struct stat& status) {
    return belongsToUs(status) && (status.st_mode & kOthersWrite) == 0;
}

// Nothing where no run has left one.
std::optional<std::string> companionIn(const Descriptor& directory) {
    const Descriptor mark(
        openat(directory.get(), kMarkName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    std::array<char, kLongestMark> text{};
    if (!mark.isOpen() || fstat(mark.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        !isOurs(status)) {
        return std::nullopt;
    }
    const ssize_t size = read(mark.get(), text.data(), text.size());
    const std::string_view content(text.data(), size < 0 ? 0 : static_cast<std::size_t>(size));
    if (!content.starts_with(kMark)) {
        return std::nullopt;
    }
    return std::string(content.substr(kMark.size()));
}

// A package may have changed the mode of the directory that it was unpacked in.
bool isOurDirectory(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && belongsToUs(status);
}

// What is left of a run that was killed before it had written the mark. One that goes on finds the
// directory gone and makes another.
void clearUnmarked(int parent, const char* name, const Descriptor& directory) {
    struct stat mark {};
    if (fstatat(directory.get(), kMarkName, &mark, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(mark.st_mode) && mark.st_size == 0) {
        unlinkat(directory.get(), kMarkName, 0);
    }
    unlinkat(parent, name, AT_REMOVEDIR);
}

// The lock is kept until all is gone, so that two runs do not remove the same.
void clearIfAbandoned(int parent, const std::string& path, const char* name) {
    const Descriptor directory = openDirectory(parent, name);
    struct stat status {};
    if (!directory.isOpen() || fstat(directory.get(), &status) != 0 || !isOurs(status) ||
        flock(directory.get(), LOCK_EX | LOCK_NB) != 0) {
        return;
    }
    const std::optional<std::string> companion = companionIn(directory);
    if (!companion) {
        if ((status.st_mode & S_ISVTX) != 0) {
            clearUnmarked(parent, name, directory);
        }
        return;
    }
    const bool hasCompanion = isMadeBy(kTreeTemplate, *companion) && isOurDirectory(*companion);
    if (isOurDirectory(path)) {
        removeClaimed(path, hasCompanion ? *companion : std::string());
    }
}

// Nobody but their owners may move directories in a sticky one.
bool isSafe(const Descriptor& parent) {
    struct stat status {};
    return fstat(parent.get(), &status) == 0 &&
           ((status.st_mode & kOthersWrite) == 0 || (status.st_mode & S_ISVTX) != 0);
}

}  // namespace

Claim::Claim(const std::string& directory, const std::string& companion)
    : Claim(shared(directory)) {
    if (!lock_.isOpen()) {
        return;
    }
    // The lock comes first: a mark without it would be an invitation.
    const Descriptor mark(openat(lock_.get(), kMarkName,
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR));
    const std::string text = std::string(kMark) + companion;
    const ssize_t written = mark.isOpen() ? write(mark.get(), text.data(), text.size()) : -1;
    isMarked_ = written == static_cast<ssize_t>(text.size());
    if (!isMarked_ && written >= 0) {
        errno = ENOSPC;  // which only the next write would say
    }
}

Claim Claim::shared(const std::string& directory) {
    Claim claim;
    claim.lock_ = openDirectory(AT_FDCWD, directory.c_str());
    if (claim.lock_.isOpen()) {
        flock(claim.lock_.get(), LOCK_SH);
    }
    return claim;
}

ClaimedDirectory makeClaimed(const std::string& pathTemplate, const std::string& companion) {
    for (int i = 0; i < kAttempts; ++i) {
        ClaimedDirectory made{makeDirectory(pathTemplate, kClaimedMode), Claim()};
        if (made.path.empty()) {
            break;
        }
        made.claim = Claim(made.path, companion);
        if (made.claim.isMarked()) {
            return made;
        }
        discard(made);
        if (errno != ENOENT) {
            break;
        }
    }
    return {};
}

void discard(const ClaimedDirectory& directory) {
    const int error = errno;
    if (!directory.path.empty()) {
        unlink((directory.path + "/" + kMarkName).c_str());
        rmdir(directory.path.c_str());
    }
    errno = error;
}

void removeClaimed(const std::string& directory, const std::string& companion) {
    try {
        if (!companion.empty()) {
            removeTree(companion);
        }
        if (!directory.empty()) {
            removeTree(directory, kMarkName);
        }
    } catch (const std::exception&) {
        // What cannot be removed changes no verdict. It keeps its mark, for a later run.
    }
}

void clearAbandoned(const std::string& parent) {
    const Descriptor directory(open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen() || !isSafe(directory)) {
        return;
    }
    const DirectoryHandle entries(opendir(parent.c_str()));
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        if (!isMadeBy(kDirectoryTemplate, std::string("/") + entry->d_name)) {
            continue;
        }
        clearIfAbandoned(directory.get(), parent + "/" + entry->d_name, entry->d_name);
    }
}

bool isMadeBy(std::string_view pathTemplate, std::string_view path) {
    const std::string_view begin = pathTemplate.substr(0, pathTemplate.find_last_not_of('X') + 1);
    return path.size() == pathTemplate.size() && path.starts_with(begin) &&
           path.find_first_of("/.", begin.size()) == std::string_view::npos;
}

}  // namespace pkgvet::cli
