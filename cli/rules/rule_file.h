// One file of a rule tree, read by its keys.
#pragma once

#include <json-glib/json-glib.h>

#include <functional>
#include <optional>
#include <string>

#include "cli/base/fault.h"
#include "pkgvet/base/json_file.h"

namespace pkgvet::cli {

// The type of a value in a rule file, and what is said of a value of any other type.
struct ValueType {
    GType type;
    const char* fault;
};

inline constexpr ValueType kTextValue = {G_TYPE_STRING, kNotAString};
inline constexpr ValueType kFlagValue = {G_TYPE_BOOLEAN, "is neither true nor false"};
inline constexpr ValueType kIntegerValue = {G_TYPE_INT64, "is not an integer"};

// Gives what the file holds and reports what is missing or of the wrong type, with its place, such
// as "profiles[0].name". It never changes, and what it gives lives as long as it does.
class RuleFile {
public:
    using Report = std::function<void(const Fault&)>;

    // A file from which the library takes nothing is reported as such. report must outlive it.
    RuleFile(std::string path, const Report& report);

    const std::string& path() const { return path_; }

    // The root object, or null where the library takes nothing from the file.
    JsonObject* root() const { return file_.root; }

    // What object, which stands at place, has under key, or nothing.
    JsonObject* object(JsonObject* object, const std::string& place, const char* key) const;
    JsonArray* array(JsonObject* object, const std::string& place, const char* key) const;
    std::optional<std::string> text(JsonObject* object, const std::string& place,
                                    const char* key) const;

    // The object at index of array, which stands at place, or null.
    JsonObject* object(JsonArray* array, const std::string& place, guint index) const;

    // The value that object, which stands at place, has under key, as text. One of another type
    // than it should be is reported and given all the same, as far as textOf() can.
    std::optional<std::string> value(JsonObject* object, const std::string& place, const char* key,
                                     const ValueType& type) const;

    // Whether node, which stands at place, is of type.
    bool hasType(JsonNode* node, const std::string& place, const ValueType& type) const;

    void report(const std::string& place, const std::string& cause) const;

private:
    JsonNode* find(JsonObject* object, const std::string& place, const char* key) const;
    JsonObject* asObject(JsonNode* node, const std::string& place) const;

    std::string path_;
    const Report& report_;
    JsonFile file_;
};

// A string, an integer or a truth value as text, and nothing for any other node.
std::optional<std::string> textOf(JsonNode* node);

}  // namespace pkgvet::cli
