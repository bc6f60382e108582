// Follows an archive entry by entry.
#include "cli/guard/archive_guard.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace pkgvet::cli {

namespace {

constexpr std::string_view kTrailerName = "TRAILER!!!";
constexpr char kSlash = '/';
constexpr std::string_view kHere = ".";
constexpr std::string_view kParent = "..";
// What rpm puts ahead of each path of a package, and what is left for a package's "/".
constexpr std::string_view kPrefix = "./";

constexpr std::uint32_t kSetIdBits = S_ISUID | S_ISGID;
constexpr std::uint32_t kModeBits = S_IFMT | 07777;
constexpr std::uint32_t kWritableByOthers = S_IWGRP | S_IWOTH;

bool isNul(char byte) {
    return byte == '\0';
}

// The path that is made; empty for the directory that is unpacked in.
std::string_view pathOf(std::string_view name) {
    if (name.starts_with(kPrefix)) {
        return name.substr(kPrefix.size());
    }
    return name == kHere ? std::string_view() : name;
}

std::optional<Irregularity> when(bool condition, Irregularity irregularity) {
    return condition ? std::optional(irregularity) : std::nullopt;
}

std::optional<Irregularity> irregularityOfName(std::string_view name) {
    if (name.front() == kSlash) {
        return Irregularity::NameAbsolute;
    }
    const std::string_view path = pathOf(name);
    for (std::size_t begin = 0; !path.empty() && begin <= path.size();) {
        const std::size_t end = std::min(path.find(kSlash, begin), path.size());
        const std::string_view component = path.substr(begin, end - begin);
        if (component == kParent) {
            return Irregularity::NameParent;
        }
        if (component.empty() || component == kHere) {
            return Irregularity::NameNotNormal;
        }
        begin = end + 1;
    }
    return std::nullopt;
}

}  // namespace

void ArchiveGuard::take(std::string_view bytes) {
    while (!bytes.empty() && !isStopped()) {
        switch (step_) {
            case Step::Data:
                takeData(&bytes);
                break;
            case Step::Padding:
                takePadding(&bytes);
                break;
            case Step::Tail:
                takeTail(&bytes);
                break;
            default:
                collect(&bytes);
        }
    }
}

void ArchiveGuard::takeData(std::string_view* bytes) {
    const std::size_t size = std::min<std::uint64_t>(dataLeft_, bytes->size());
    receiver_.data(bytes->substr(0, size));
    bytes->remove_prefix(size);
    skipData(size);
}

void ArchiveGuard::skipData(std::uint64_t size) {
    offset_ += size;
    dataLeft_ -= size;
    if (dataLeft_ == 0) {
        step_ = Step::Padding;
    }
    if (dataLeft_ == 0 && paddingLeft_ == 0) {
        begin(Step::Magic, kEntryMagic.size());
    }
}

void ArchiveGuard::takePadding(std::string_view* bytes) {
    if (!isNul(bytes->front())) {
        return refuse(Irregularity::Padding, offset_);
    }
    bytes->remove_prefix(1);
    ++offset_;
    if (--paddingLeft_ == 0) {
        begin(Step::Magic, kEntryMagic.size());
    }
}

// It unpacks to nothing, but takes as long to read as what does.
void ArchiveGuard::takeTail(std::string_view* bytes) {
    const auto foreign = std::find_if_not(bytes->begin(), bytes->end(), isNul);
    const auto size = static_cast<std::size_t>(foreign - bytes->begin());
    bytes->remove_prefix(size);
    offset_ += size;
    unpacked_ += size;
    if (!bytes->empty()) {
        refuse(Irregularity::BehindTrailer, offset_);
    } else {
        isWithinCeilings();
    }
}

void ArchiveGuard::collect(std::string_view* bytes) {
    const std::size_t size = std::min(needed_ - held_.size(), bytes->size());
    held_.append(*bytes, 0, size);
    bytes->remove_prefix(size);
    offset_ += size;
    if (held_.size() < needed_) {
        return;
    }
    switch (step_) {
        case Step::Magic:
            return judgeMagic();
        case Step::Fields:
            return judgeFields();
        case Step::Name:
            return judgeName();
        default:
            return judgeTarget();
    }
}

void ArchiveGuard::judgeMagic() {
    if (held_ == kEntryMagic) {
        return begin(Step::Fields, kFieldsEnd);
    }
    refuse(held_.starts_with(kFormatMagic) ? Irregularity::ForeignFormat
                                           : Irregularity::ForeignBytes);
}

void ArchiveGuard::judgeFields() {
    const std::optional<EntryFields> fields = readFields(held_);
    if (!fields) {
        return refuse(Irregularity::Header);
    }
    fields_ = *fields;
    if (fields_.nameSize <= 1 || fields_.nameSize > kMaxNameSize + 1) {
        return refuse(Irregularity::NameSize);
    }
    begin(Step::Name, headSize());
}

// Fields, name and the padding behind it.
std::size_t ArchiveGuard::headSize() const {
    const std::size_t size = kFieldsEnd + fields_.nameSize;
    return size + paddingOf(size);
}

void ArchiveGuard::judgeName() {
    const std::string_view rest = std::string_view(held_).substr(kFieldsEnd);
    name_ = rest.substr(0, fields_.nameSize - 1);
    if (!isNul(rest[name_.size()]) || name_.find('\0') != std::string::npos) {
        return refuse(Irregularity::NameEnd);
    }
    if (!std::all_of(rest.begin() + fields_.nameSize, rest.end(), isNul)) {
        return refuse(Irregularity::Padding);
    }
    if (name_ == kTrailerName) {
        return judgeTrailer();
    }
    judgeEntry();
}

void ArchiveGuard::judgeTrailer() {
    if (fields_.dataSize != 0) {
        return refuse(Irregularity::Trailer);
    }
    name_.clear();
    step_ = Step::Tail;
}

void ArchiveGuard::judgeEntry() {
    if (const std::optional<Irregularity> irregularity = irregularityOfEntry()) {
        return refuse(*irregularity);
    }
    unpacked_ += fields_.dataSize;
    if (!isWithinCeilings()) {
        return;
    }
    if (S_ISLNK(fields_.mode)) {
        return begin(Step::Target, headSize() + fields_.dataSize + paddingOf(fields_.dataSize));
    }
    give({});
    step_ = Step::Data;
    dataLeft_ = fields_.dataSize;
    paddingLeft_ = paddingOf(fields_.dataSize);
    skipData(0);
}

std::optional<Irregularity> ArchiveGuard::irregularityOfEntry() {
    std::optional<Irregularity> irregularity = irregularityOfName(name_);
    const std::string path(pathOf(name_));
    if (!irregularity) {
        irregularity = irregularityOfType(path);
    }
    if (!irregularity) {
        irregularity = irregularityOfSetId(path);
    }
    return irregularity ? irregularity : addPath(path);
}

std::optional<Irregularity> ArchiveGuard::irregularityOfType(const std::string& path) {
    if (path.empty() && (!S_ISDIR(fields_.mode) || (fields_.mode & kWritableByOthers) != 0)) {
        return Irregularity::RootDirectory;
    }
    if (fields_.mode > kModeBits) {
        return Irregularity::UnknownType;
    }
    switch (fields_.mode & S_IFMT) {
        case S_IFREG:
            return fields_.links > 1 ? irregularityOfHardLink() : std::nullopt;
        case S_IFDIR:
            return when(fields_.dataSize != 0, Irregularity::DirectoryData);
        case S_IFLNK:
            return when(fields_.dataSize == 0 || fields_.dataSize > kMaxNameSize,
                        Irregularity::LinkTarget);
        case S_IFCHR:
        case S_IFBLK:
        case S_IFIFO:
        case S_IFSOCK:
            return Irregularity::SpecialFile;
        default:
            return Irregularity::UnknownType;
    }
}

// All names of a file but the last come without data. Whatever else comes with data cpio takes for
// one more name of the first.
std::optional<Irregularity> ArchiveGuard::irregularityOfHardLink() {
    HardLink& file =
        hardLinks_.try_emplace(fileIdOf(fields_), HardLink{fields_.links, 0, false}).first->second;
    if (file.hasData || file.links != fields_.links || file.seen == file.links) {
        return Irregularity::HardLink;
    }
    ++file.seen;
    file.hasData = fields_.dataSize != 0;
    return std::nullopt;
}

std::optional<Irregularity> ArchiveGuard::irregularityOfSetId(const std::string& path) const {
    const std::uint32_t bits = fields_.mode & kSetIdBits;
    if (bits == 0) {
        return std::nullopt;
    }
    const auto permitted = orders_.setIdModes.find("/" + path);
    return when(permitted == orders_.setIdModes.end() || (bits & ~permitted->second) != 0,
                Irregularity::SetId);
}

std::optional<Irregularity> ArchiveGuard::addPath(const std::string& path) {
    if (path.empty()) {
        return when(std::exchange(hasRoot_, true), Irregularity::NameTwice);
    }
    switch (names_.add(path, S_ISDIR(fields_.mode))) {
        case EntryNames::Answer::Added:
            break;
        case EntryNames::Answer::Twice:
            return Irregularity::NameTwice;
        case EntryNames::Answer::IsDirectory:
            return Irregularity::NameIsDirectory;
        case EntryNames::Answer::BelowNonDirectory:
            return Irregularity::BelowNonDirectory;
    }
    return std::nullopt;
}

void ArchiveGuard::judgeTarget() {
    const std::string_view rest = std::string_view(held_).substr(headSize());
    if (rest.substr(0, fields_.dataSize).find('\0') != std::string_view::npos) {
        return refuse(Irregularity::LinkTarget);
    }
    if (!std::all_of(rest.begin() + fields_.dataSize, rest.end(), isNul)) {
        return refuse(Irregularity::Padding);
    }
    give(rest.substr(0, fields_.dataSize));
    begin(Step::Magic, kEntryMagic.size());
}

// Continues with the entry that is held, or with the next one.
void ArchiveGuard::begin(Step step, std::size_t size) {
    if (step == Step::Magic) {
        entryOffset_ = offset_;
        name_.clear();
        held_.clear();
    }
    step_ = step;
    needed_ = size;
}

void ArchiveGuard::give(std::string_view target) {
    if (const std::string_view path = pathOf(name_); !path.empty()) {
        receiver_.begin({fields_, name_, path, target});
    }
}

bool ArchiveGuard::isWithinCeilings() {
    if (names_.count() > orders_.files) {
        note_.end = GuardEnd::TooManyFiles;
    } else if (unpacked_ > orders_.bytes) {
        note_.end = GuardEnd::TooLarge;
    }
    return !isStopped();
}

void ArchiveGuard::refuse(Irregularity irregularity, std::uint64_t offset) {
    note_.end = GuardEnd::Irregular;
    note_.irregularity = irregularity;
    note_.offset = offset;
    note_.name = name_;
}

GuardNote ArchiveGuard::finish() const {
    GuardNote note = note_;
    if (!isStopped()) {
        note.end = step_ == Step::Tail ? GuardEnd::Whole : GuardEnd::CutShort;
    }
    return note;
}

}  // namespace pkgvet::cli
