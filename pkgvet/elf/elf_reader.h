// What the rules ask of one ELF file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pkgvet/export.h"

struct ElfReaderPrivate;

enum class ElfClass : std::uint32_t {
    Elf32 = 0,
    Elf64 = 1,
    // The file could not be loaded. No loaded file has this value, so that a caller that asks for
    // one of the two above takes such a file for what it is, one in a bad format.
    NotLoaded = 2,
};

enum class ElfEncoding : std::uint32_t {
    LittleEndian = 0,
    BigEndian = 1,
};

// The facts of one ELF file, read whole by the constructor; the file is closed again when it
// returns. The machine that the file is for, its type and its version make no difference.
//
// Nothing is logged. A file that cannot be loaded leaves the object empty, with
// ElfClass::NotLoaded: one that cannot be opened or is not a regular file, that lacks the
// identification or a whole ELF header, whose class is neither 32 nor 64 bit, that shrinks while it
// is read, or whose tables and names would take more than 512 MiB. Damage elsewhere costs only the
// facts that it hides.
//
// The record never changes. Copies are independent of each other.
//
// There is no move constructor, which would leave an object without its record: rvalues are copied.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions)
class PKGVET_EXPORT ElfReader {
public:
    // path is a path on disk, and links are followed. Throws std::logic_error ("basic_string:
    // construction from null is not valid") for a null path.
    explicit ElfReader(const char* path);
    ElfReader(const ElfReader& other);
    ElfReader& operator=(const ElfReader&) = delete;
    // Exchanges the two records: other holds this one's former record afterwards.
    ElfReader& operator=(ElfReader&& other) noexcept;
    ~ElfReader();

    ElfClass elfClass() const;
    // LittleEndian if the file says so, BigEndian for whatever else it says. Without meaning when
    // the file was not loaded.
    ElfEncoding encoding() const;

    // The names in all symbol tables, in the order of the file: one for every entry, so that each
    // table begins with the empty name and a name in two tables stands twice. An entry that the
    // file does not hold, although the table states it, or whose name cannot be found, has the
    // empty name. Names that a file exports and names that it imports cannot be told apart.
    const std::vector<std::string>& symbols() const;
    // The libraries that the file needs (DT_NEEDED), in the order of the file.
    const std::vector<std::string>& libraries() const;
    // The last run path of the old kind (DT_RPATH), empty if there is none. DT_RUNPATH is not
    // looked at.
    const std::string& rpath() const;

private:
    std::unique_ptr<ElfReaderPrivate> d_ptr;
};
