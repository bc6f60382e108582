// The names that an archive has used.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pkgvet::cli {

// Keeps what lies at each name once the entries so far are unpacked, which makes the directories
// above an entry that the archive does not have, so that these count as well.
class EntryNames {
public:
    enum class Answer {
        Added,
        Twice,              // an entry had this name before
        IsDirectory,        // something was unpacked below it, so that it has to be a directory
        BelowNonDirectory,  // something above it is not a directory
    };

    // path is relative and normal: components that are joined by single slashes.
    Answer add(std::string_view path, bool isDirectory);

    // How many files, directories and links there are by now, those included that add() refused.
    std::uint64_t count() const { return places_.size(); }

private:
    using Number = std::uint32_t;

    struct Key {
        Number directory;
        std::string name;
    };
    struct KeyView {
        Number directory;
        std::string_view name;
    };
    struct Less {
        using is_transparent = void;
        template <typename One, typename Other>
        bool operator()(const One& one, const Other& other) const {
            return one.directory != other.directory ? one.directory < other.directory
                                                    : std::string_view(one.name) < other.name;
        }
    };
    struct Place {
        Number number;
        bool isDirectory;
        bool isNamed;  // by an entry of its own
    };

    // Nothing when something on the way is not a directory.
    std::optional<Number> directoryAt(std::string_view path);
    // The place, and whether it is new.
    std::pair<Place*, bool> placeOf(Number directory, std::string_view name);

    std::map<Key, Place, Less> places_;
    // Entries of one directory follow one another.
    std::string lastDirectory_;
    Number lastNumber_ = 0;
};

}  // namespace pkgvet::cli
