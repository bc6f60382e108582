// Reads files while a payload is being unpacked.
#include "cli/integrity/early_contents.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string_view>
#include <utility>

#include "pkgvet/files/hardcoded_path_search.h"

namespace pkgvet::cli {

namespace {

using Milliseconds = std::chrono::milliseconds;
using Nanoseconds = std::chrono::nanoseconds;

// At least one step of the clock from which file systems take the time of a change. Any later
// change of a file that has been left alone for so long is then told by another time.
constexpr Milliseconds kRest(10);
// After which a file that is missing or was just changed is looked at again.
constexpr Milliseconds kPause(2);

Nanoseconds sinceEpoch(const timespec& time) {
    return std::chrono::seconds(time.tv_sec) + Nanoseconds(time.tv_nsec);
}

bool isAtRest(const struct stat& status) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return sinceEpoch(now) - sinceEpoch(status.st_ctim) >= kRest;
}

bool isSameState(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           sinceEpoch(a.st_ctim) == sinceEpoch(b.st_ctim);
}

bool isWanted(const HeaderFile& file) {
    return S_ISREG(file.mode) && !file.isGhost() && file.path.starts_with('/');
}

// A header can name any path, and links may be unpacked already.
Descriptor openBelow(const Descriptor& root, const std::string& path) {
    open_how how{};
    how.flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;
    return Descriptor(
        static_cast<int>(syscall(SYS_openat2, root.get(), path.c_str() + 1, &how, sizeof how)));
}

}  // namespace

void EarlyContents::read(const HeaderFiles& list, const std::string& root) {
    const Descriptor directory(open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    ContentReader reader(list.digestAlgorithm);
    for (const HeaderFile& file : list.files) {
        Reading& reading = readings_.emplace_back();
        Step step = isWanted(file) ? look(directory, file.path, &reader, &reading) : Step::Skip;
        while (step == Step::Wait && stopped_.wait_for(kPause) != std::future_status::ready) {
            step = look(directory, file.path, &reader, &reading);
        }
        if (step == Step::Done) {
            indexes_[reading.status.st_ino] = readings_.size() - 1;
        }
        if (isStopped()) {
            return;
        }
    }
}

// Hard links are left out: their names are added late, and each changes the time.
EarlyContents::Step EarlyContents::look(const Descriptor& root, const std::string& path,
                                        ContentReader* reader, Reading* reading) const {
    const Descriptor file = openBelow(root, path);
    if (!file.isOpen()) {
        return errno == ENOENT ? Step::Wait : Step::Skip;
    }
    if (fstat(file.get(), &reading->status) != 0 || !S_ISREG(reading->status.st_mode) ||
        reading->status.st_nlink > 1) {
        return Step::Skip;
    }
    if (!isAtRest(reading->status)) {
        return Step::Wait;
    }
    reading->isDone = readWhole(file, reader, reading);
    return reading->isDone ? Step::Done : Step::Skip;
}

bool EarlyContents::readWhole(const Descriptor& file, ContentReader* reader,
                              Reading* reading) const {
    HardcodedPathSearch search;
    std::optional<FileContent> content = reader->read(file, [&](std::string_view piece) {
        reading->holdsHardcodedPath = reading->holdsHardcodedPath || search.feed(piece);
        return !isStopped();
    });
    if (!content || content->error != 0) {
        return false;
    }
    reading->content = std::move(*content);
    return true;
}

void EarlyContents::stop() {
    if (!std::exchange(isStopAsked_, true)) {
        stop_.set_value();
    }
}

bool EarlyContents::isStopped() const {
    return stopped_.wait_for(Milliseconds(0)) == std::future_status::ready;
}

const FileContent* EarlyContents::find(std::size_t index, const struct stat& status) const {
    if (index >= readings_.size()) {
        return nullptr;
    }
    const Reading& reading = readings_[index];
    return reading.isDone && isSameState(reading.status, status) ? &reading.content : nullptr;
}

std::optional<bool> EarlyContents::holdsHardcodedPath(const struct stat& status) const {
    const auto found = indexes_.find(status.st_ino);
    if (found == indexes_.end() || !isSameState(readings_[found->second].status, status)) {
        return std::nullopt;
    }
    return readings_[found->second].holdsHardcodedPath;
}

}  // namespace pkgvet::cli
