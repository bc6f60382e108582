// JSON files whose root is an object.
#pragma once

#include <json-glib/json-glib.h>

#include <string>

#include "pkgvet/base/handles.h"

namespace pkgvet {

// One parsed file. The parser owns the tree, so everything taken from root lives as long as it.
struct JsonFile {
    JsonParserHandle parser;
    JsonObject* root;  // null when the file was not read
};

// Parses the file at path, a path on disk. A file that is missing, unreadable or no JSON has no
// root, and neither has one whose root is no object: json-glib takes an empty file for valid. What
// is no regular file behind links, larger than 16 MiB or nested beyond reason counts as unreadable,
// since packages bring JSON files as well.
JsonFile loadJsonFile(const std::string& path);

}  // namespace pkgvet
