// The files of a rule tree, each read into the record of a Configuration.
#pragma once

#include <json-glib/json-glib.h>

#include <string>

#include "pkgvet/base/json_file.h"
#include "pkgvet/rules/configuration_private.h"
#include "pkgvet/rules/rule_tree_format.h"

namespace pkgvet {

// Loads the file at path. One that nests too deeply to be parsed may hold rules all the same, so
// that it is refused rather than taken for empty: std::invalid_argument that names it.
JsonFile loadRuleFile(const std::string& path);

// The list files of a profile. A file that cannot be read adds nothing, see loadRuleFile; otherwise
// its strings are appended to the record. json-glib itself complains of a root or an array that is
// not there. std::logic_error for an element that is not a string.
void loadPathsFile(const std::string& path, ConfigurationPrivate* record);
void loadPermissionsFile(const std::string& path, ConfigurationPrivate* record);

// A file of tiers under key. With a key that no list file has, the file is read and nothing is
// stored. std::invalid_argument for a tier that is not an object or has no name.
void loadTierFile(const std::string& path, const std::string& key, ConfigurationPrivate* record);

// Each of the above, by the form of the file.
void loadListFile(const ListFile& list, const std::string& path, ConfigurationPrivate* record);

// The one list file that all profiles share.
void loadDisallowedComponentsFile(const std::string& path, ConfigurationPrivate* record);

// The object that node is, or null where it is something else or null itself.
JsonObject* objectOf(JsonNode* node);

// The string that object has under key, for keys whose absence has no meaning:
// std::invalid_argument that names file and key. A null object has no keys.
std::string mandatoryString(JsonObject* object, const char* key, const std::string& file);

// A std::invalid_argument about key in file.
[[noreturn]] void refuse(const std::string& file, const std::string& key, const std::string& cause);

}  // namespace pkgvet
