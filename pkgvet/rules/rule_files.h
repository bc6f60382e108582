// The files of a rule tree, each read into the record of a Configuration.
#pragma once

#include <json-glib/json-glib.h>

#include <string>
#include <vector>

#include "pkgvet/base/json_file.h"
#include "pkgvet/rules/configuration_private.h"

namespace pkgvet {

// A file of a rule tree. std::invalid_argument for one that nests too deeply to be read.
JsonFile loadRuleFile(const std::string& path);

// The list files of a profile. A file that cannot be read adds nothing; otherwise its strings are
// appended to the record. std::logic_error for an element that is no string.
void loadPathsFile(const std::string& path, ConfigurationPrivate* record);
void loadPermissionsFile(const std::string& path, ConfigurationPrivate* record);
void loadDisallowedComponentsFile(const std::string& path, ConfigurationPrivate* record);

// A file of "allowed", "unstable" and "deprecated" tiers under key, which is "libraries",
// "requires" or "qmlimports". std::invalid_argument for a tier without a name.
void loadTierFile(const std::string& path, const std::string& key, ConfigurationPrivate* record);

// The string that object has under key, for keys whose absence has no meaning:
// std::invalid_argument that names file and key. A null object has no keys.
std::string mandatoryString(JsonObject* object, const char* key, const std::string& file);

// A std::invalid_argument about key in file.
[[noreturn]] void refuse(const std::string& file, const std::string& key, const std::string& cause);

}  // namespace pkgvet
