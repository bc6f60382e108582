// Writes the names of places in a JSON file.
#include "cli/base/json_place.h"

namespace pkgvet::cli {

std::string member(const std::string& place, std::string_view key) {
    return place.empty() ? std::string(key) : place + "." + std::string(key);
}

std::string element(const std::string& place, std::size_t index) {
    return place + "[" + std::to_string(index) + "]";
}

}  // namespace pkgvet::cli
