// How deep JSON nests.
#pragma once

#include <cstddef>
#include <string_view>

namespace pkgvet {

// How many arrays and objects of json lie inside one another, at most. Text and comments are those
// of json-glib's scanner, so that for whatever json-glib parses this is how often it recurses. For
// other text it is no less than that.
std::size_t jsonDepth(std::string_view json);

}  // namespace pkgvet
