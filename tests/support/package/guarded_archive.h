// Archives entry by entry, and what the guard makes of them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/guard/archive_guard.h"
#include "tests/support/package/cpio_archive.h"

namespace pkgvet::cli {

inline constexpr std::uint32_t kDirectory = 040755;
inline constexpr std::uint32_t kFile = 0100644;
inline constexpr std::uint32_t kLink = 0120777;
inline constexpr std::uint64_t kNoCeiling = std::numeric_limits<std::uint64_t>::max();

inline const GuardOrders kOrders{kNoCeiling, kNoCeiling, {{"/permitted", 04000}}};

struct Outcome {
    GuardNote note;
    std::string passed;

    bool operator==(const Outcome&) const = default;
};

inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "end " << static_cast<unsigned>(outcome.note.end) << ", irregularity "
            << static_cast<unsigned>(outcome.note.irregularity) << ", offset "
            << outcome.note.offset << ", name " << outcome.note.name << ", passed "
            << outcome.passed.size();
}

inline Outcome guarded(std::string_view archive, std::size_t pieceSize,
                       const GuardOrders& orders = kOrders) {
    ArchiveGuard guard(orders);
    Outcome outcome;
    while (!archive.empty()) {
        guard.take(archive.substr(0, pieceSize), &outcome.passed);
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
