// How often texts come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace pkgvet::cli {

// Counts texts of any length in some 50 bytes each: it knows them by the first half of a SHA-256 of
// theirs. What each object puts ahead of the texts is by chance, so that nobody can look for two
// that are taken for one, or for many that are slow to tell apart.
class TextCounts {
public:
    TextCounts();

    // How often the text has come by now, this time included.
    std::size_t add(std::string_view text);
    // How many different ones have come.
    std::size_t size() const { return counts_.size(); }

private:
    struct Digest {
        std::uint64_t first = 0;
        std::uint64_t second = 0;

        bool operator==(const Digest& other) const = default;
    };
    struct Hash {
        std::size_t operator()(const Digest& digest) const noexcept { return digest.first; }
    };

    Digest digestOf(std::string_view text) const;

    std::string salt_;
    std::unordered_map<Digest, std::size_t, Hash> counts_;
};

}  // namespace pkgvet::cli
