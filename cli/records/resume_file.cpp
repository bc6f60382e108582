// Reads what is there and appends to it.
#include "cli/records/resume_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <vector>

#include "cli/base/checksum.h"
#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

constexpr mode_t kMode = 0666;  // less the umask

// No path holds it.
constexpr char kSeparator = '\0';
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

std::size_t hashOf(std::initializer_list<std::string_view> texts) {
    std::string all;
    for (const std::string_view text : texts) {
        all.append(text).append(1, kSeparator);
    }
    return std::hash<std::string>()(all);
}

void excuseNothing(PackageReport* package) {
    for (Judgement& judgement : package->judgements) {
        for (Finding& finding : judgement.findings) {
            finding.standing = Standing::Counts;
            finding.reason.clear();
        }
    }
}

[[noreturn]] void fail(const std::string& path, const char* cause) {
    throw std::runtime_error(printable(path) + ": " + cause);
}

}  // namespace

ResumeFile::ResumeFile(const std::string& path)
    : path_(path), file_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, kMode)) {
    struct stat status {};
    if (!file_.isOpen() || fstat(file_.get(), &status) != 0) {
        fail(path_, std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        fail(path_, "is not a regular file");
    }
    lock();
    read();
}

// It lasts until the process ends, however it does.
void ResumeFile::lock() {
    if (flock(file_.get(), LOCK_EX | LOCK_NB) != 0) {
        fail(path_, errno == EWOULDBLOCK ? "another run adds to it" : std::strerror(errno));
    }
}

// What is wrong in the last line, which has no end, is what a run that was killed leaves.
void ResumeFile::read() {
    reader_.emplace(path_);
    try {
        readLines();
    } catch (const std::runtime_error&) {
        if (hasLineBehind(reader_->sizeOfLines())) {
            throw;
        }
    }
    if (!reader_->isInLines()) {
        fail(path_, "is a report in JSON and not in JSON Lines");
    }
    cutBehind(reader_->sizeOfLines());
}

void ResumeFile::readLines() {
    while (const std::optional<PackageReport> package = reader_->next()) {
        if (package->judged()) {
            paths_.insert(hashOf({package->path}));
            places_[hashOf({package->path, package->sha256, package->judgedBy})] = reader_->place();
        }
    }
}

bool ResumeFile::hasLineBehind(std::uint64_t offset) const {
    std::vector<char> piece(kPieceSize);
    while (true) {
        const ssize_t size =
            pread(file_.get(), piece.data(), piece.size(), static_cast<off_t>(offset));
        if (size <= 0) {
            return false;
        }
        if (std::find(piece.begin(), piece.begin() + size, '\n') != piece.begin() + size) {
            return true;
        }
        offset += static_cast<std::uint64_t>(size);
    }
}

// A last line may be whole but for its line feed. The summary of a run goes too: what is added now
// would stand behind it.
void ResumeFile::cutBehind(std::uint64_t size) {
    char last = '\n';
    if (ftruncate(file_.get(), static_cast<off_t>(size)) != 0 ||
        (size > 0 && pread(file_.get(), &last, 1, static_cast<off_t>(size - 1)) != 1) ||
        lseek(file_.get(), 0, SEEK_END) < 0) {
        fail(path_, std::strerror(errno));
    }
    if (last != '\n') {
        add("\n");
    }
}

std::optional<PackageReport> ResumeFile::find(const std::string& path,
                                              const std::string& judgedBy) const {
    // Most packages of a run that goes on are new, and need not be read for their digest.
    if (paths_.count(hashOf({path})) == 0) {
        return std::nullopt;
    }
    const std::string sha256 = checksumOfFile(path);
    const auto found = places_.find(hashOf({path, sha256, judgedBy}));
    if (found == places_.end()) {
        return std::nullopt;
    }
    PackageReport package = reader_->at(found->second);
    // Others may have the same hash.
    if (package.path != path || package.sha256 != sha256 || package.judgedBy != judgedBy) {
        return std::nullopt;
    }
    excuseNothing(&package);
    return package;
}

void ResumeFile::add(std::string_view line) {
    while (!line.empty()) {
        const ssize_t size = write(file_.get(), line.data(), line.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            fail(path_, std::strerror(errno));
        }
        line.remove_prefix(static_cast<std::size_t>(size));
    }
}

}  // namespace pkgvet::cli
