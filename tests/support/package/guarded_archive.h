// Archives entry by entry, and what the guard makes of them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/guard/archive_guard.h"
#include "tests/support/package/cpio_archive.h"

namespace pkgvet::cli {

inline constexpr std::uint32_t kDirectory = 040755;
inline constexpr std::uint32_t kFile = 0100644;
inline constexpr std::uint32_t kLink = 0120777;
inline constexpr std::uint64_t kNoCeiling = std::numeric_limits<std::uint64_t>::max();

inline const GuardOrders kOrders{kNoCeiling, kNoCeiling, {{"/permitted", 04000}}};

// An entry that the guard gives, with as much of its data as it gave.
struct GivenEntry {
    EntryFields fields;
    std::string name;
    std::string path;
    std::string target;
    std::string data;

    bool operator==(const GivenEntry&) const = default;
};
using GivenEntries = std::vector<GivenEntry>;

inline void PrintTo(const GivenEntry& entry, std::ostream* stream) {
    *stream << entry.path.substr(0, 100) << " -> " << entry.target.substr(0, 100) << ", mode "
            << std::oct << entry.fields.mode << std::dec << ", " << entry.data.size() << " bytes";
}

struct Outcome {
    GuardNote note;
    GivenEntries given;

    bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "end " << static_cast<unsigned>(outcome.note.end) << ", irregularity "
            << static_cast<unsigned>(outcome.note.irregularity) << ", offset "
            << outcome.note.offset << ", name " << outcome.note.name << ", given "
            << testing::PrintToString(outcome.given);
}

inline EntryReceiver receiverOf(GivenEntries* given) {
    return {.begin =
                [given](const RegularEntry& entry) {
                    given->push_back({entry.fields,
                                      std::string(entry.name),
                                      std::string(entry.path),
                                      std::string(entry.target),
                                      {}});
                },
            .data = [given](std::string_view data) { given->back().data += data; }};
}

// What stands in an archive up to its end or its trailer, read without any check.
inline GivenEntries entriesOf(std::string_view archive) {
    GivenEntries entries;
    while (!archive.empty()) {
        const EntryFields fields = readFields(archive.substr(0, kFieldsEnd)).value();
        const std::string name(archive.substr(kFieldsEnd, fields.nameSize - 1));
        if (name == "TRAILER!!!") {
            break;
        }
        const std::size_t headSize = kFieldsEnd + fields.nameSize;
        archive.remove_prefix(headSize + paddingOf(headSize));
        const std::string data(archive.substr(0, fields.dataSize));
        archive.remove_prefix(std::min(archive.size(), data.size() + paddingOf(fields.dataSize)));
        const std::string path = name.starts_with("./") ? name.substr(2) : name;
        if (!path.empty() && path != ".") {
            const bool isLink = (fields.mode & 0170000) == 0120000;
            entries.push_back({fields, name, path, isLink ? data : "", isLink ? "" : data});
        }
    }
    return entries;
}

inline Outcome guarded(std::string_view archive, std::size_t pieceSize,
                       const GuardOrders& orders = kOrders) {
    Outcome outcome;
    ArchiveGuard guard(orders, receiverOf(&outcome.given));
    while (!archive.empty()) {
        guard.take(archive.substr(0, pieceSize));
        archive.remove_prefix(std::min(pieceSize, archive.size()));
    }
    outcome.note = guard.finish();
    return outcome;
}

inline Outcome guarded(const std::string& archive) {
    return guarded(archive, archive.size() + 1);
}

inline std::string file(const std::string& name, const std::string& data = "content") {
    return cpioEntry({.name = name, .data = data});
}

inline std::string directory(const std::string& name) {
    return cpioEntry({.name = name, .mode = kDirectory});
}

inline std::string symbolicLink(const std::string& name, const std::string& target) {
    return cpioEntry({.name = name, .data = target, .mode = kLink});
}

inline std::string special(const std::string& name, std::uint32_t mode) {
    return cpioEntry({.name = name, .mode = mode});
}

// One of links names of the file with the inode.
inline std::string hardLink(const std::string& name, const std::string& data,
                            std::uint32_t links = 2, std::uint32_t inode = 7) {
    return cpioEntry({.name = name, .data = data, .inode = inode, .links = links});
}

// Many components, so that the whole path is as long as asked for.
inline std::string longName(std::size_t size) {
    std::string name;
    while (name.size() + 101 < size) {
        name += std::string(100, 'x') + '/';
    }
    return name + std::string(size - name.size(), 'y');
}

inline std::string replaced(std::string bytes, std::size_t position, const std::string& by) {
    return bytes.replace(position, by.size(), by);
}

inline void expectPiecesMakeNoDifference(const std::string& archive) {
    const Outcome whole = guarded(archive);
    for (const std::size_t size : {1, 3, 64, 4096}) {
        EXPECT_EQ(guarded(archive, size), whole) << size;
    }
}

}  // namespace pkgvet::cli
