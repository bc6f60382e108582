// The check of an archive on its way to cpio.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "cli/guard/entry_fields.h"
#include "cli/guard/entry_names.h"
#include "cli/guard/guard_note.h"

namespace pkgvet::cli {

// Takes the bytes of an archive in pieces of any size and says which of them may go on to cpio. An
// entry is held back until it is known to be regular, its data aside, and nothing goes on from the
// first one that is not: what has gone on by then unpacks within the directory, into what the
// entries said. Nothing is read or written, and the pieces make no difference.
//
// Regular are entries in the format newc, one directly behind the other from the first byte to the
// last entry, and behind that nothing but NUL bytes. cpio itself takes other formats, skips what it
// does not understand, follows links that it has unpacked and replaces what it has unpacked.
class ArchiveGuard {
public:
    explicit ArchiveGuard(GuardOrders orders) : orders_(std::move(orders)) {}

    // Takes the next bytes, and appends to passed those that may go on now, held ones first.
    void take(std::string_view bytes, std::string* passed);

    // How many of the bytes to come are data of a file, which may go on unseen. Whoever passes some
    // of them on has to skip them here.
    std::uint64_t dataAhead() const { return step_ == Step::Data ? dataLeft_ : 0; }
    void skipData(std::uint64_t size);

    // Whether no more bytes will go on.
    bool isStopped() const { return note_.end != GuardEnd::Unfinished; }
    // Whether the last entry has gone on, behind which cpio needs nothing.
    bool isBehindTrailer() const { return step_ == Step::Tail; }

    // Called behind the last byte, or where the guard is stopped.
    GuardNote finish() const;

private:
    // What the next bytes are.
    enum class Step { Magic, Fields, Name, Target, Data, Padding, Tail };

    // The names of one file so far.
    struct HardLink {
        std::uint32_t links;
        std::uint32_t seen;
        bool hasData;
    };
    using FileId = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

    void takeData(std::string_view* bytes, std::string* passed);
    void takePadding(std::string_view* bytes, std::string* passed);
    void takeTail(std::string_view* bytes, std::string* passed);
    void collect(std::string_view* bytes, std::string* passed);

    void judgeMagic();
    void judgeFields();
    void judgeName(std::string* passed);
    void judgeTrailer(std::string* passed);
    void judgeEntry(std::string* passed);
    void judgeTarget(std::string* passed);

    std::optional<Irregularity> irregularityOfEntry();
    std::optional<Irregularity> irregularityOfType(const std::string& path);
    std::optional<Irregularity> irregularityOfHardLink();
    std::optional<Irregularity> irregularityOfSetId(const std::string& path) const;
    std::optional<Irregularity> addPath(const std::string& path);

    void begin(Step step, std::size_t size);
    std::size_t headSize() const;
    void pass(std::string* passed);
    bool isWithinCeilings();
    void refuse(Irregularity irregularity, std::uint64_t offset);
    void refuse(Irregularity irregularity) { refuse(irregularity, entryOffset_); }

    GuardOrders orders_;
    GuardNote note_;
    Step step_ = Step::Magic;
    std::uint64_t offset_ = 0;                 // of the next byte
    std::uint64_t entryOffset_ = 0;            // where the current entry begins
    std::string held_;                         // of the current entry, not passed on yet
    std::size_t needed_ = kEntryMagic.size();  // size of held_ at which the step is complete
    EntryFields fields_;
    std::string name_;             // of the current entry, as it stands there
    std::uint64_t dataLeft_ = 0;   // of the current file
    std::size_t paddingLeft_ = 0;  // behind it
    std::uint64_t unpacked_ = 0;   // bytes of all entries so far
    EntryNames names_;
    bool hasRoot_ = false;
    std::map<FileId, HardLink> hardLinks_;
};

}  // namespace pkgvet::cli
