// Holds the header against the unpacked payload.
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <future>
#include <numeric>
#include <string_view>
#include <system_error>
#include <thread>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/tree_rules.h"
#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

constexpr mode_t kModeBits = 07777;
// Of directories that no entry of the payload stands for. rpm gives them the same.
constexpr mode_t kImpliedMode = 0755;

// Threads that read at once. Memory gives no more bytes than a few of them sum up.
constexpr unsigned kMostReaders = 4;

// What rules read as text up to the first NUL byte, while others may read on.
constexpr std::array<std::string_view, 2> kTextSuffixes = {".qml", ".desktop"};

bool isText(std::string_view path) {
    return std::any_of(kTextSuffixes.begin(), kTextSuffixes.end(),
                       [path](std::string_view suffix) { return path.ends_with(suffix); });
}

bool haveSameKind(mode_t a, mode_t b) {
    return (a & S_IFMT) == (b & S_IFMT);
}

bool isDevice(mode_t mode) {
    return S_ISCHR(mode) || S_ISBLK(mode);
}

// The first file with the same number, for each; its own place for what has none.
template <typename Number>
std::vector<std::size_t> firstAlike(const std::vector<Number>& numbers) {
    std::map<Number, std::size_t> firsts;
    std::vector<std::size_t> alike(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        alike[i] = numbers[i] == 0 ? i : firsts.emplace(numbers[i], i).first->second;
    }
    return alike;
}

// Empty where there is nothing at path.
std::string realPath(const std::string& path) {
    const CHandle<char, std::free> resolved(realpath(path.c_str(), nullptr));
    return resolved ? resolved.get() : std::string();
}

// What the link at path, on disk, holds.
std::string targetOf(const std::string& path, off_t size) {
    std::string target(static_cast<std::size_t>(size) + 1, '\0');
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    target.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return target;
}

}  // namespace

TreeComparison::TreeComparison(const HeaderFiles& list, const std::string& root,
                               const EarlyContents& early)
    : list_(list),
      root_(root),
      early_(early),
      sorted_(list.files.size()),
      modes_(list.files.size(), 0),
      inodes_(list.files.size(), 0),
      earlyReader_(list.digestAlgorithm) {
    std::iota(sorted_.begin(), sorted_.end(), std::size_t{0});
    std::stable_sort(sorted_.begin(), sorted_.end(), [this](std::size_t a, std::size_t b) {
        return list_.files[a].path < list_.files[b].path;
    });
}

void TreeComparison::compareEntries() {
    walkTree(root_, [this](const TreeEntry& entry) {
        if (const std::optional<std::size_t> index = find(entry.path)) {
            compareListed(*index, entry);
        } else {
            compareUnlisted(entry);
        }
    });
    findMissing();
    compareHardLinks();
}

void TreeComparison::compareContents() {
    readAll();
    for (const auto& [index, reading] : contents_) {
        compareContent(index, readings_[reading].content);
    }
}

std::optional<std::size_t> TreeComparison::find(const std::string& path) const {
    const auto found = std::lower_bound(sorted_.begin(), sorted_.end(), path,
                                        [this](std::size_t index, const std::string& wanted) {
                                            return list_.files[index].path < wanted;
                                        });
    if (found == sorted_.end() || list_.files[*found].path != path) {
        return std::nullopt;
    }
    return *found;
}

bool TreeComparison::isAboveSome(const std::string& path) const {
    const std::string directory = path + "/";
    const auto found = std::lower_bound(sorted_.begin(), sorted_.end(), directory,
                                        [this](std::size_t index, const std::string& wanted) {
                                            return list_.files[index].path < wanted;
                                        });
    return found != sorted_.end() && list_.files[*found].path.starts_with(directory);
}

void TreeComparison::compareUnlisted(const TreeEntry& entry) {
    const mode_t mode = entry.status.st_mode;
    if (!S_ISDIR(mode) || !isAboveSome(entry.path)) {
        findings_.add(kFileExtra, {entry.path});
    } else if ((mode & kModeBits) != kImpliedMode) {
        findings_.add(kModeDiffers, {entry.path, octal(kImpliedMode), octal(mode)});
    }
}

void TreeComparison::compareListed(std::size_t index, const TreeEntry& entry) {
    const HeaderFile& file = list_.files[index];
    const mode_t mode = entry.status.st_mode;
    modes_[index] = mode;
    if (file.isGhost()) {
        findings_.add(kGhostUnpacked, {file.path});
    } else if (!haveSameKind(file.mode, mode)) {
        findings_.add(kTypeDiffers, {file.path, kindOf(file.mode), kindOf(mode)});
    } else if (S_ISLNK(mode)) {
        compareLink(index, entry);
    } else {
        compareFile(index, entry);
    }
}

void TreeComparison::compareFile(std::size_t index, const TreeEntry& entry) {
    const HeaderFile& file = list_.files[index];
    const struct stat& status = entry.status;
    if (((file.mode ^ status.st_mode) & kModeBits) != 0) {
        findings_.add(kModeDiffers, {file.path, octal(file.mode), octal(status.st_mode)});
    }
    if (isDevice(status.st_mode) && file.device != status.st_rdev) {
        findings_.add(kDeviceDiffers,
                      {file.path, std::to_string(file.device), std::to_string(status.st_rdev)});
    }
    if (!S_ISREG(status.st_mode)) {
        return;
    }
    inodes_[index] = status.st_ino;
    if (file.size != static_cast<std::uint64_t>(status.st_size)) {
        findings_.add(kSizeDiffers,
                      {file.path, std::to_string(file.size), std::to_string(status.st_size)});
    }
    noteContent(index, entry);
}

void TreeComparison::compareLink(std::size_t index, const TreeEntry& entry) {
    const HeaderFile& file = list_.files[index];
    const std::string target = targetOf(root_ + entry.path, entry.status.st_size);
    if (target != file.target) {
        findings_.add(kTargetDiffers, {file.path, file.target, target});
    }
    if (isText(file.path)) {
        noteTextBehind(entry.path, target);
    }
}

// Rules follow a link by its name, whatever that of its target is.
void TreeComparison::noteTextBehind(const std::string& link, const std::string& target) {
    const std::string root = realPath(root_);
    const std::string directory = root + link.substr(0, link.rfind('/') + 1);
    const std::string place = realPath((target.starts_with('/') ? root : directory) + target);
    if (place.starts_with(root + "/")) {
        if (const std::optional<std::size_t> index = find(place.substr(root.size()))) {
            linkedTexts_.insert(*index);
        }
    }
}

// What can be read now and not later is read now.
void TreeComparison::noteContent(std::size_t index, const TreeEntry& entry) {
    std::size_t number = readings_.size();
    if (entry.status.st_nlink > 1) {
        number = linkedReadings_.emplace(entry.status.st_ino, number).first->second;
    }
    if (number == readings_.size()) {
        const FileContent* const early = early_.find(index, entry.status);
        readings_.push_back({index, early != nullptr, early != nullptr ? *early : FileContent()});
    }
    contents_.emplace_back(index, number);
    if (!entry.isReadable) {
        read(&earlyReader_, &readings_[number]);
    }
}

void TreeComparison::read(ContentReader* reader, Reading* reading) const {
    if (!reading->isDone) {
        reading->isDone = true;
        reading->content = reader->read(root_ + list_.files[reading->index].path);
    }
}

// Files are dealt out one by one, since one can be larger than all others together.
void TreeComparison::readAll() {
    std::atomic<std::size_t> next = 0;
    const auto readSome = [this, &next] {
        ContentReader reader(list_.digestAlgorithm);
        for (std::size_t i = next++; i < readings_.size(); i = next++) {
            read(&reader, &readings_[i]);
        }
    };
    std::vector<std::future<void>> helpers;
    for (unsigned i = 1; i < std::min(std::thread::hardware_concurrency(), kMostReaders) &&
                         readings_.size() > helpers.size() + 1;
         ++i) {
        helpers.push_back(std::async(std::launch::async | std::launch::deferred, readSome));
    }
    readSome();
    for (std::future<void>& helper : helpers) {
        helper.get();
    }
}

void TreeComparison::compareContent(std::size_t index, const FileContent& content) {
    const HeaderFile& file = list_.files[index];
    // The walk lends the modes that it takes, so that this is never the package's doing.
    if (content.error != 0) {
        throw std::system_error(content.error, std::generic_category(), file.path);
    }
    if (!file.digest.empty() && file.digest != content.digest) {
        findings_.add(kDigestDiffers, {file.path, file.digest, content.digest});
    }
    if (content.holdsNul && (isText(file.path) || linkedTexts_.count(index) > 0)) {
        findings_.add(kNulByte, {file.path});
    }
}

void TreeComparison::findMissing() {
    for (std::size_t i = 0; i < modes_.size(); ++i) {
        if (modes_[i] == 0 && !list_.files[i].isGhost()) {
            findings_.add(kFileMissing, {list_.files[i].path});
        }
    }
}

// rpm links the files of a header that share a number, and cpio those of the payload. Which number
// it is does not matter, only who shares it.
void TreeComparison::compareHardLinks() {
    std::vector<std::uint64_t> identities;
    for (std::size_t i = 0; i < inodes_.size(); ++i) {
        identities.push_back(inodes_[i] == 0 ? 0 : list_.files[i].identity);
    }
    const std::vector<std::size_t> listed = firstAlike(identities);
    const std::vector<std::size_t> unpacked = firstAlike(inodes_);
    for (std::size_t i = 0; i < listed.size(); ++i) {
        if (listed[i] != unpacked[i]) {
            findings_.add(kHardLinksDiffer, {list_.files[i].path});
        }
    }
}

}  // namespace pkgvet::cli
