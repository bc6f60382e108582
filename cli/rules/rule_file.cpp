// Reads one file of a rule tree and reports what is wrong with it. It goes through json-glib, as
// the library does, so that both see the same content.
#include "cli/rules/rule_file.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "cli/base/json_place.h"
#include "cli/base/strict_json.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotARegularFile = "is not a regular file";
constexpr const char* kTooDeep = "is nested too deeply to be read";
constexpr const char* kUnreadable = "cannot be read";

// Why the library takes nothing from the file at path. It gives no reasons for most failures, but
// the strict reader does.
Fault failureOf(const std::string& path, const JsonFile& file) {
    if (file.outcome == JsonOutcome::TooDeep) {
        return {path, std::string(), kTooDeep};
    }
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error)) {
        return {path, std::string(), kNotARegularFile};
    }
    const std::vector<Fault> faults = faultsOfJson(path);
    return faults.empty() ? Fault{path, std::string(), kUnreadable} : faults.front();
}

}  // namespace

RuleFile::RuleFile(std::string path, const Report& report)
    : path_(std::move(path)), report_(report), file_(loadJsonFile(path_)) {
    if (root() == nullptr) {
        report_(failureOf(path_, file_));
    }
}

JsonNode* RuleFile::find(JsonObject* object, const std::string& place, const char* key) const {
    JsonNode* node = json_object_get_member(object, key);
    if (node == nullptr) {
        report(member(place, key), kMissing);
    }
    return node;
}

JsonObject* RuleFile::object(JsonObject* object, const std::string& place, const char* key) const {
    JsonNode* node = find(object, place, key);
    return node == nullptr ? nullptr : asObject(node, member(place, key));
}

JsonObject* RuleFile::asObject(JsonNode* node, const std::string& place) const {
    if (!JSON_NODE_HOLDS_OBJECT(node)) {
        report(place, kNotAnObject);
        return nullptr;
    }
    return json_node_get_object(node);
}

JsonArray* RuleFile::array(JsonObject* object, const std::string& place, const char* key) const {
    JsonNode* node = find(object, place, key);
    if (node != nullptr && !JSON_NODE_HOLDS_ARRAY(node)) {
        report(member(place, key), kNotAnArray);
        return nullptr;
    }
    return node == nullptr ? nullptr : json_node_get_array(node);
}

std::optional<std::string> RuleFile::text(JsonObject* object, const std::string& place,
                                          const char* key) const {
    JsonNode* node = find(object, place, key);
    const bool isText = node != nullptr && hasType(node, member(place, key), kTextValue);
    return isText ? textOf(node) : std::nullopt;
}

JsonObject* RuleFile::object(JsonArray* array, const std::string& place, guint index) const {
    if (index >= json_array_get_length(array)) {
        report(element(place, index), kMissing);
        return nullptr;
    }
    return asObject(json_array_get_element(array, index), element(place, index));
}

std::optional<std::string> RuleFile::value(JsonObject* object, const std::string& place,
                                           const char* key, const ValueType& type) const {
    JsonNode* node = find(object, place, key);
    if (node == nullptr) {
        return std::nullopt;
    }
    static_cast<void>(hasType(node, member(place, key), type));
    return textOf(node);
}

bool RuleFile::hasType(JsonNode* node, const std::string& place, const ValueType& type) const {
    if (json_node_get_value_type(node) == type.type) {
        return true;
    }
    report(place, type.fault);
    return false;
}

void RuleFile::report(const std::string& place, const std::string& cause) const {
    report_({path_, place, cause});
}

std::optional<std::string> textOf(JsonNode* node) {
    const GType type = json_node_get_value_type(node);
    if (type == G_TYPE_STRING) {
        return json_node_get_string(node);
    }
    if (type == G_TYPE_INT64) {
        return std::to_string(json_node_get_int(node));
    }
    if (type == G_TYPE_BOOLEAN) {
        return json_node_get_boolean(node) ? "true" : "false";
    }
    return std::nullopt;
}

}  // namespace pkgvet::cli
