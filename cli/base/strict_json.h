// JSON files that the user writes, read strictly.
#pragma once

#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/base/fault.h"
#include "cli/base/json_positions.h"

namespace pkgvet::cli {

// One JSON file. Whatever is wrong with it is added to a list of faults, so that the user sees all
// of it at once; what is asked for comes back empty then.
class JsonReader {
public:
    // faults must outlive the reader.
    JsonReader(std::string path, std::vector<Fault>* faults);

    // The object that the whole file is; null once the fault is reported. A key that an object has
    // twice is a fault as well: one of the two would be lost.
    nlohmann::json load();

    // Reports the value at key, with where it stands and what it is; of a value that is missing,
    // where it should stand.
    void report(const std::string& key, const std::string& cause) const;

    // The same of the key itself.
    void reportKey(const std::string& key, const std::string& cause) const;

    // Where the values of the file stand, once it is loaded.
    const JsonPositions& positions() const { return positions_; }

    // SHA-256 of the file as it was loaded. What came through a pipe cannot be read again.
    const std::string& digest() const { return digest_; }

    // Reports the members of object, which stands under key, whose names are not among known.
    void refuseUnknown(const nlohmann::json& object, const std::string& key,
                       std::initializer_list<std::string_view> known) const;

    // The objects of the array that object, which stands under key, has under name, each with its
    // own key.
    std::vector<std::pair<std::string, nlohmann::json>> objects(const nlohmann::json& object,
                                                                const std::string& key,
                                                                const char* name) const;

    // The text that object, which stands under key, has under name.
    std::string text(const nlohmann::json& object, const std::string& key, const char* name) const;

private:
    nlohmann::json parse(const std::string& content) const;

    std::string path_;
    std::vector<Fault>* faults_;
    JsonPositions positions_;
    std::string digest_;
};

// What such a reader finds wrong with the JSON of the file at path, whatever the file is for.
std::vector<Fault> faultsOfJson(const std::string& path);

}  // namespace pkgvet::cli
