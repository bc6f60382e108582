// Names of places in a JSON file, such as "profiles[0].name".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pkgvet::cli {

// The member key of the object at place. The place of the root object is empty.
std::string member(const std::string& place, std::string_view key);

// The element at index of the array at place.
std::string element(const std::string& place, std::size_t index);

}  // namespace pkgvet::cli
