// The check of an archive before anything of it is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "cli/guard/entry_fields.h"
#include "cli/guard/entry_names.h"
#include "cli/guard/guard_note.h"

namespace pkgvet::cli {

// An entry that is regular, its data aside.
struct RegularEntry {
    const EntryFields& fields;
    std::string_view name;    // as it stands there, to which limits on the length of paths apply
    std::string_view path;    // the same, relative and normal
    std::string_view target;  // of a link; empty for all else
};

// Whom the guard gives what it finds regular, in the order of the archive.
struct EntryReceiver {
    std::function<void(const RegularEntry&)> begin;
    std::function<void(std::string_view)> data;  // the next bytes of the file begun last
};

// Takes the bytes of an archive in pieces of any size and gives the entries in it to the receiver.
// An entry is held back until it is known to be regular, its data aside, and nothing is given from
// the first one that is not: what has been given by then unpacks within the directory, into what
// the entries said. The root is not given, since it is there. Nothing is read or written here, and
// the pieces make no difference.
//
// Regular are entries in the format newc, one directly behind the other from the first byte to the
// last entry, and behind that nothing but NUL bytes. cpio itself takes other formats, skips what it
// does not understand, follows links that it has unpacked and replaces what it has unpacked.
class ArchiveGuard {
public:
    ArchiveGuard(GuardOrders orders, EntryReceiver receiver)
        : orders_(std::move(orders)), receiver_(std::move(receiver)) {}

    void take(std::string_view bytes);

    // How many of the bytes to come are data of a file, which the receiver may take for itself.
    // Whoever gives it some of them has to skip them here.
    std::uint64_t dataAhead() const { return step_ == Step::Data ? dataLeft_ : 0; }
    void skipData(std::uint64_t size);

    // Whether nothing more will be given.
    bool isStopped() const { return note_.end != GuardEnd::Unfinished; }

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

    void takeData(std::string_view* bytes);
    void takePadding(std::string_view* bytes);
    void takeTail(std::string_view* bytes);
    void collect(std::string_view* bytes);

    void judgeMagic();
    void judgeFields();
    void judgeName();
    void judgeTrailer();
    void judgeEntry();
    void judgeTarget();

    std::optional<Irregularity> irregularityOfEntry();
    std::optional<Irregularity> irregularityOfType(const std::string& path);
    std::optional<Irregularity> irregularityOfHardLink();
    std::optional<Irregularity> irregularityOfSetId(const std::string& path) const;
    std::optional<Irregularity> addPath(const std::string& path);

    void begin(Step step, std::size_t size);
    std::size_t headSize() const;
    void give(std::string_view target);
    bool isWithinCeilings();
    void refuse(Irregularity irregularity, std::uint64_t offset);
    void refuse(Irregularity irregularity) { refuse(irregularity, entryOffset_); }

    GuardOrders orders_;
    EntryReceiver receiver_;
    GuardNote note_;
    Step step_ = Step::Magic;
    std::uint64_t offset_ = 0;                 // of the next byte
    std::uint64_t entryOffset_ = 0;            // where the current entry begins
    std::string held_;                         // of the current entry, which is not given yet
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
