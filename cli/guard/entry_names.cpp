// Keeps the names of an archive as a tree.
#include "cli/guard/entry_names.h"

#include <algorithm>

namespace pkgvet::cli {

namespace {

// The number of the directory that is unpacked in.
constexpr std::uint32_t kRoot = 0;

}  // namespace

EntryNames::Answer EntryNames::add(std::string_view path, bool isDirectory) {
    const std::size_t slash = path.rfind('/');
    const bool isInRoot = slash == std::string_view::npos;
    const std::optional<Number> directory = isInRoot ? kRoot : directoryAt(path.substr(0, slash));
    if (!directory) {
        return Answer::BelowNonDirectory;
    }
    const auto [place, isNew] = placeOf(*directory, isInRoot ? path : path.substr(slash + 1));
    if (isNew) {
        place->isDirectory = isDirectory;
    } else if (place->isNamed) {
        return Answer::Twice;
    } else if (!isDirectory) {
        return Answer::IsDirectory;
    }
    place->isNamed = true;
    return Answer::Added;
}

// Makes what is missing, as unpacking does.
std::optional<EntryNames::Number> EntryNames::directoryAt(std::string_view path) {
    if (path == lastDirectory_) {
        return lastNumber_;
    }
    Number number = kRoot;
    for (std::string_view rest = path; !rest.empty();) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const Place& place = *placeOf(number, rest.substr(0, end)).first;
        if (!place.isDirectory) {
            return std::nullopt;
        }
        number = place.number;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    lastDirectory_ = path;
    lastNumber_ = number;
    return number;
}

// A new place is a directory without an entry of its own.
std::pair<EntryNames::Place*, bool> EntryNames::placeOf(Number directory, std::string_view name) {
    const auto position = places_.lower_bound(KeyView{directory, name});
    if (position != places_.end() && position->first.directory == directory &&
        position->first.name == name) {
        return {&position->second, false};
    }
    const auto number = static_cast<Number>(places_.size() + 1);
    const auto made = places_.emplace_hint(position, Key{directory, std::string(name)},
                                           Place{number, true, false});
    return {&made->second, true};
}

}  // namespace pkgvet::cli
