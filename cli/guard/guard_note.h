// What a judge and the guard in the place of cpio tell each other. Both sides include this and
// nothing else of one another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pkgvet::cli {

// The variables that name the two files: what the judge orders, and what the guard notes. Both lie
// in a directory of the package's own, where nothing that it unpacks can be.
inline constexpr const char* kGuardOrdersVariable = "PKGVET_GUARD_ORDERS";
inline constexpr const char* kGuardNoteVariable = "PKGVET_GUARD_NOTE";

// The longest name of an entry, without the NUL byte that ends it, and the longest target of a
// link.
inline constexpr std::size_t kMaxNameSize = 4096;

// A note has this size from its first moment on, so that there is room for it when the payload has
// filled the file system.
inline constexpr std::size_t kNoteSize = 4352;

// The set-id bits that a package's header gives to files, by their absolute path.
using SetIdModes = std::map<std::string, unsigned, std::less<>>;

// What the judge lets through. The size of an environment is bounded, so that it goes into a file.
struct GuardOrders {
    std::uint64_t bytes = 0;  // that the payload may unpack to
    std::uint64_t files = 0;  // and their number, directories and links included
    SetIdModes setIdModes = {};
};

// What makes an entry one that is not unpacked.
enum class Irregularity : unsigned {
    ForeignBytes,       // bytes that belong to no entry, where one should begin
    ForeignFormat,      // an entry in another format of cpio or rpm
    Header,             // a field that is not eight hexadecimal digits
    Padding,            // bytes other than NUL between entries
    Trailer,            // the last entry brings data
    BehindTrailer,      // bytes other than NUL behind the last entry
    NameSize,           // a name that is empty or too long
    NameEnd,            // a NUL byte inside a name, or none at its end
    NameAbsolute,       // a name that begins with "/"
    NameParent,         // a component ".."
    NameNotNormal,      // a component that is empty or "."
    NameTwice,          // a name that an entry had before
    NameIsDirectory,    // a name below which something was unpacked, of what is not a directory
    BelowNonDirectory,  // a name below one that is not a directory
    SpecialFile,        // a device, a fifo or a socket
    UnknownType,        // none of the types that there are
    DirectoryData,      // a directory with data
    RootDirectory,      // the root is not a directory, or one that everybody can write to
    LinkTarget,         // an empty or too long target, or a NUL byte in it
    HardLink,           // names of one file that do not fit each other
    SetId,              // a set-id bit that the header does not have
    Last = SetId,
};

// What became of an archive.
enum class GuardEnd : unsigned {
    Unfinished,    // the guard was stopped itself
    Whole,         // all of it was regular
    CutShort,      // it ended before its last entry did
    Irregular,     // nothing from the irregular entry on was unpacked
    TooLarge,      // it would have unpacked to more bytes than ordered
    TooManyFiles,  // or to more files
    OutOfMemory,   // the guard had not enough of it
    Last = OutOfMemory,
};

struct GuardNote {
    GuardEnd end = GuardEnd::Unfinished;
    Irregularity irregularity = Irregularity::ForeignBytes;  // where end is Irregular
    std::uint64_t offset = 0;                                // in the archive, of what is irregular
    std::string name = {};  // of the entry, as it stands there; empty where it has none

    bool operator==(const GuardNote&) const = default;
};

// The file of orders. Paths without a set-id bit do not matter and are left out, as are those
// behind which the file would grow too large: the guard then stops at the first of them.
std::string formatOrders(const GuardOrders& orders);
// Nothing when it was not made by formatOrders.
std::optional<GuardOrders> parseOrders(std::string_view text);

// The file of a note, of kNoteSize bytes.
std::string formatNote(const GuardNote& note);
// Nothing when it was not made by formatNote. What is larger than kNoteSize need not be read.
std::optional<GuardNote> parseNote(std::string_view text);

}  // namespace pkgvet::cli
