// Compares what the file integrity service is to watch with what the package installs.
#include "pkgvet/files/sealwatchd.h"

#include <json-glib/json-glib.h>

#include <string_view>
#include <unordered_set>

#include "pkgvet/base/json_file.h"

namespace pkgvet {

namespace {

constexpr const char* kWatchMember = "watch";
constexpr std::string_view kFilePrefix = "file:";
constexpr std::string_view kElfPrefix = "elf:";

// Only the first prefix is removed: "file:elf:/x" becomes "elf:/x".
std::string_view withoutPrefix(std::string_view entry) {
    for (const std::string_view prefix : {kFilePrefix, kElfPrefix}) {
        if (entry.starts_with(prefix)) {
            return entry.substr(prefix.size());
        }
    }
    return entry;
}

}  // namespace

// No shape is checked beforehand: json-glib answers a question to the wrong type with null, takes
// null for a question again, and writes a critical message each time. In the end the array has no
// elements. An element that is not a string is null as well, which std::string refuses.
SealwatchdResult checkSealwatchdFile(const std::string& file,
                                     const std::vector<std::string>& paths) {
    const JsonFile json = loadJsonFile(file);
    if (json.outcome != JsonOutcome::Loaded) {
        return SealwatchdResult::InvalidJson;
    }
    JsonArray* watch = json_object_get_array_member(json_node_get_object(json.node), kWatchMember);
    const std::unordered_set<std::string_view> installed(paths.begin(), paths.end());
    const guint size = json_array_get_length(watch);
    for (guint i = 0; i < size; ++i) {
        const std::string entry = json_array_get_string_element(watch, i);
        if (installed.count(withoutPrefix(entry)) == 0) {
            return SealwatchdResult::Mismatch;
        }
    }
    return SealwatchdResult::Valid;
}

}  // namespace pkgvet
