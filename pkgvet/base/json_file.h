// Loading JSON files.
#pragma once

#include <json-glib/json-glib.h>

#include <cstddef>
#include <string>

#include "pkgvet/base/c_handle.h"

namespace pkgvet {

using JsonParserHandle = CHandle<JsonParser, g_object_unref>;

// How deep a file may nest. json-glib recurses for each array or object and has no limit of its
// own: measured with version 1.6, it overflows a stack of 8 MiB at 52,000 objects or 74,000 arrays,
// with the address sanitizer as without.
inline constexpr std::size_t kMaxJsonDepth = 20000;

enum class JsonOutcome {
    Loaded,
    Unreadable,  // missing, not a regular file, not permitted, or not JSON
    TooDeep,     // nests beyond kMaxJsonDepth, and is not parsed
};

// One file. The parser owns the tree, so everything taken from it lives as long as the parser.
struct JsonFile {
    JsonParserHandle parser;
    JsonOutcome outcome = JsonOutcome::Unreadable;
    // The root of a loaded file. Null all the same when the file is empty or blank, which json-glib
    // takes for valid.
    JsonNode* node = nullptr;
    // The object of that root; null where it is not an object.
    JsonObject* root = nullptr;
};

// Loads the file at path, a path on disk, links followed. What is valid is json-glib's to say. What
// is not a regular file counts as unreadable, since packages bring JSON files as well.
JsonFile loadJsonFile(const std::string& path);

}  // namespace pkgvet
