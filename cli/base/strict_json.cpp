// Reads JSON files strictly. Not through json-glib, which takes comments, single quotes and wrong
// escapes and does not say so: whoever wrote the file would not learn that it means something else.
#include "cli/base/strict_json.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/base/json_place.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

// What the parser says, without the name of its own exception in front.
std::string causeOf(const Json::exception& error) {
    const std::string message = error.what();
    const std::size_t position = message.find("] ");
    return position == std::string::npos ? message : message.substr(position + 2);
}

}  // namespace

JsonReader::JsonReader(std::string path, std::vector<Fault>* faults)
    : path_(std::move(path)), faults_(faults) {}

Json JsonReader::load() const {
    std::ifstream stream(path_);
    if (!stream) {
        report(std::string(), std::strerror(errno));
        return nullptr;
    }
    try {
        Json root = Json::parse(stream);
        if (root.is_object()) {
            return root;
        }
        report(std::string(), "holds no JSON object");
    } catch (const Json::exception& error) {
        report(std::string(), causeOf(error));
    } catch (const std::ios_base::failure&) {
        report(std::string(), "cannot be read");  // a directory opens but gives no bytes
    }
    return nullptr;
}

void JsonReader::report(const std::string& key, const std::string& cause) const {
    faults_->push_back({path_, key, cause});
}

// A key that is optional and misspelt would otherwise go unnoticed.
void JsonReader::refuseUnknown(const Json& object, const std::string& key,
                               std::initializer_list<std::string_view> known) const {
    for (const auto& item : object.items()) {
        if (std::find(known.begin(), known.end(), item.key()) == known.end()) {
            report(member(key, item.key()), "is not a known key");
        }
    }
}

std::vector<std::pair<std::string, Json>> JsonReader::objects(const Json& root,
                                                              const char* name) const {
    const auto array = root.find(name);
    if (array == root.end() || !array->is_array()) {
        report(name, array == root.end() ? kMissing : kNotAnArray);
        return {};
    }
    std::vector<std::pair<std::string, Json>> objects;
    for (std::size_t i = 0; i < array->size(); ++i) {
        const std::string key = element(name, i);
        if ((*array)[i].is_object()) {
            objects.emplace_back(key, (*array)[i]);
        } else {
            report(key, kNotAnObject);
        }
    }
    return objects;
}

std::string JsonReader::text(const Json& object, const std::string& key, const char* name) const {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_string()) {
        report(member(key, name), found == object.end() ? kMissing : kNotAString);
        return std::string();
    }
    return found->get<std::string>();
}

// The content is of no use here.
std::vector<Fault> faultsOfJson(const std::string& path) {
    std::vector<Fault> faults;
    static_cast<void>(JsonReader(path, &faults).load());
    return faults;
}

}  // namespace pkgvet::cli
