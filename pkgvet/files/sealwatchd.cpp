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

// The array to compare, or null: what json-glib would answer for a wrong shape, without the
// critical message that it would write.
JsonArray* watchArray(JsonObject* root) {
    JsonNode* watch = json_object_get_member(root, kWatchMember);
    const bool isArray = watch != nullptr && JSON_NODE_HOLDS_ARRAY(watch);
    return isArray ? json_node_get_array(watch) : nullptr;
}

// Null for what is no string.
const char* textOf(JsonNode* element) {
    const bool isText =
        JSON_NODE_HOLDS_VALUE(element) && json_node_get_value_type(element) == G_TYPE_STRING;
    return isText ? json_node_get_string(element) : nullptr;
}

// One prefix goes, not what stands behind it: "file:elf:/x" is "elf:/x".
std::string_view withoutPrefix(std::string_view entry) {
    for (const std::string_view prefix : {kFilePrefix, kElfPrefix}) {
        if (entry.starts_with(prefix)) {
            return entry.substr(prefix.size());
        }
    }
    return entry;
}

}  // namespace

SealwatchdResult checkSealwatchdFile(const std::string& file,
                                     const std::vector<std::string>& paths) {
    const JsonFile json = loadJsonFile(file);
    if (json.root == nullptr) {
        return SealwatchdResult::InvalidJson;
    }
    JsonArray* watch = watchArray(json.root);
    if (watch == nullptr) {
        return SealwatchdResult::Valid;
    }
    const std::unordered_set<std::string_view> installed(paths.begin(), paths.end());
    for (guint i = 0; i < json_array_get_length(watch); ++i) {
        const char* entry = textOf(json_array_get_element(watch, i));
        if (entry == nullptr || installed.count(withoutPrefix(entry)) == 0) {
            return SealwatchdResult::Mismatch;
        }
    }
    return SealwatchdResult::Valid;
}

}  // namespace pkgvet
