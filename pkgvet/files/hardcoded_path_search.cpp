// Finds a hard-coded home directory at the speed at which memory is read.
#include "pkgvet/files/hardcoded_path_search.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace pkgvet {

namespace {

constexpr std::string_view kHomeDirectory = "/home/defaultuser";

// Small enough to stay in the cache between reading and searching.
constexpr std::uint64_t kPieceSize = std::uint64_t{256} << 10;

// What formatted input of single characters skips.
constexpr bool isWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The search itself: how many characters of the path are matched once c has been seen.
constexpr std::size_t step(std::size_t matched, char c) {
    if (matched == kHomeDirectory.size()) {
        return matched;  // found, and that stays so
    }
    if (c == kHomeDirectory[matched]) {
        return matched + 1;
    }
    return isWhiteSpace(c) ? matched : 0;  // c is dropped, even if it is a "/"
}

// A table of steps by two characters at a time. A branch for each character would be mispredicted
// on text that is crafted for it, and a table for one character is half as fast as one for two.
// Characters fall into few classes, so all of it stays in the nearest cache.
constexpr std::size_t kMaxClasses = 16;
constexpr std::size_t kPairs = kMaxClasses * kMaxClasses;
constexpr std::size_t kFound = kHomeDirectory.size() * kPairs;

using ClassTable = std::array<std::uint8_t, 256>;
using StepTable = std::array<std::uint16_t, (kHomeDirectory.size() + 1) * kPairs>;

struct Tables {
    ClassTable classes{};  // of each character
    StepTable rows{};      // where the row of the next state begins, by state and pair of classes
};

constexpr Tables makeTables() {
    Tables tables;
    std::array<char, kMaxClasses> samples{'x', ' '};
    std::uint8_t count = 2;
    for (std::size_t i = 0; i < tables.classes.size(); ++i) {
        tables.classes[i] = isWhiteSpace(static_cast<char>(i)) ? 1 : 0;
    }
    for (const char c : kHomeDirectory) {
        std::uint8_t& own = tables.classes[static_cast<unsigned char>(c)];
        if (own == 0) {
            own = count;
            samples[count++] = c;
        }
    }
    for (std::size_t i = 0; i < tables.rows.size(); ++i) {
        const std::size_t once = step(i / kPairs, samples[i % kPairs / kMaxClasses]);
        const std::size_t twice = step(once, samples[i % kMaxClasses]);
        tables.rows[i] = static_cast<std::uint16_t>(twice * kPairs);
    }
    return tables;
}

constexpr Tables kTables = makeTables();

// So long a stretch behind a "/" goes through the table before the next look for a "/". Shorter
// ones cost more calls where each "/" is followed by another, longer ones more table in binaries.
constexpr std::size_t kStretch = 32;

std::size_t stepThroughStretch(std::size_t row, const char* text) {
    for (std::size_t i = 0; i < kStretch; i += 2) {
        const unsigned first = kTables.classes[static_cast<unsigned char>(text[i])];
        const unsigned second = kTables.classes[static_cast<unsigned char>(text[i + 1])];
        row = kTables.rows[row + first * kMaxClasses + second];
    }
    return row;
}

// The rest of text from its next "/" on; empty if there is none.
std::string_view fromSlash(std::string_view text) {
    if (text.empty() || text.front() == kHomeDirectory.front()) {
        return text;
    }
    const void* slash = std::memchr(text.data(), kHomeDirectory.front(), text.size());
    return slash == nullptr ? std::string_view()
                            : text.substr(static_cast<std::size_t>(static_cast<const char*>(slash) -
                                                                   text.data()));
}

// Of a file that cannot be read to its end, the part that was read is searched.
bool holdsHomeDirectory(OpenFile openFile, std::string* buffer) {
    RegularFileReader file(std::move(openFile));
    HardcodedPathSearch search;
    while (file.remaining() > 0) {
        buffer->resize(static_cast<std::size_t>(std::min(file.remaining(), kPieceSize)));
        file.read(buffer);
        if (search.feed(*buffer)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool HardcodedPathSearch::feed(std::string_view piece) {
    std::size_t row = matched_ * kPairs;
    if (row == 0) {
        piece = fromSlash(piece);
    }
    while (piece.size() >= kStretch) {
        row = stepThroughStretch(row, piece.data());
        piece.remove_prefix(kStretch);
        if (row == 0) {
            piece = fromSlash(piece);
        } else if (row == kFound) {
            return true;
        }
    }
    matched_ = row / kPairs;
    for (const char c : piece) {
        matched_ = step(matched_, c);
    }
    return matched_ == kHomeDirectory.size();
}

bool HardcodedPathFinder::isIn(const std::string& path) {
    OpenFile file = openFileSeenRegular(path);
    if (!file.descriptor.isOpen()) {
        return false;
    }
    const auto [answer, isNew] = answers_.try_emplace(file.identity, false);
    if (isNew) {
        answer->second = holdsHomeDirectory(std::move(file), &buffer_);
    }
    return answer->second;
}

}  // namespace pkgvet
