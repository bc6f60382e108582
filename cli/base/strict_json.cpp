// Reads JSON files strictly.
#include "cli/base/strict_json.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kMissing = "is missing";

// What the parser says, without the name of its own exception in front.
std::string causeOf(const Json::exception& error) {
    const std::string message = error.what();
    const std::size_t position = message.find("] ");
    return position == std::string::npos ? message : message.substr(position + 2);
}

std::string memberOf(const std::string& key, std::string_view name) {
    return key.empty() ? std::string(name) : key + "." + std::string(name);
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

void JsonReader::refuseUnknown(const Json& object, const std::string& key,
                               std::initializer_list<std::string_view> known) const {
    for (const auto& item : object.items()) {
        if (std::find(known.begin(), known.end(), item.key()) == known.end()) {
            report(memberOf(key, item.key()), "is no known key");
        }
    }
}

std::vector<std::pair<std::string, Json>> JsonReader::objects(const Json& root,
                                                              const char* name) const {
    const auto array = root.find(name);
    if (array == root.end() || !array->is_array()) {
        report(name, array == root.end() ? kMissing : "is no array");
        return {};
    }
    std::vector<std::pair<std::string, Json>> objects;
    for (std::size_t i = 0; i < array->size(); ++i) {
        const std::string key = std::string(name) + "[" + std::to_string(i) + "]";
        if ((*array)[i].is_object()) {
            objects.emplace_back(key, (*array)[i]);
        } else {
            report(key, "is no object");
        }
    }
    return objects;
}

std::string JsonReader::text(const Json& object, const std::string& key, const char* name) const {
    const auto member = object.find(name);
    if (member == object.end() || !member->is_string()) {
        report(memberOf(key, name), member == object.end() ? kMissing : "is no string");
        return std::string();
    }
    return member->get<std::string>();
}

std::vector<Fault> faultsOfJson(const std::string& path) {
    std::vector<Fault> faults;
    static_cast<void>(JsonReader(path, &faults).load());
    return faults;
}

}  // namespace pkgvet::cli
