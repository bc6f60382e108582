// Reads JSON files strictly. Not through json-glib, which takes comments, single quotes and wrong
// escapes and does not say so: whoever wrote the file would not learn that it means something else.
#include "cli/base/strict_json.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/base/checksum.h"
#include "cli/base/json_place.h"
#include "cli/base/nearest.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kDoubled = "stands there twice";
constexpr const char* kUnknownKey = "is not a known key";
constexpr const char* kParseError = "parse error";

// What the parser says, without the name of its own exception in front and with the position as
// that of the fault.
Fault faultOf(const Json::exception& error, const std::string& path) {
    std::string message = error.what();
    message.erase(0, std::min(message.find(kParseError), message.size()));
    Fault fault = {path, std::string(), message};
    auto& [line, column] = fault.position;
    int size = 0;
    if (std::sscanf(message.c_str(), "parse error at line %zu, column %zu%n", &line, &column,
                    &size) == 2) {
        fault.cause = kParseError + message.substr(static_cast<std::size_t>(size));
    }
    return fault;
}

}  // namespace

JsonReader::JsonReader(std::string path, std::vector<Fault>* faults)
    : path_(std::move(path)), faults_(faults) {}

Json JsonReader::load() {
    std::ifstream stream(path_);
    if (!stream) {
        report(std::string(), std::strerror(errno));
        return nullptr;
    }
    std::string content;
    try {
        content.assign(std::istreambuf_iterator<char>(stream), {});
    } catch (const std::ios_base::failure&) {
        report(std::string(), "cannot be read");  // a directory opens but gives no bytes
        return nullptr;
    }
    Checksum sum;
    sum.add(content);
    digest_ = sum.finish();
    const Json root = parse(content);
    if (root.is_discarded()) {
        return nullptr;
    }
    positions_ = JsonPositions(content);
    if (!root.is_object()) {
        reportKey(std::string(), "holds no JSON object");
        return nullptr;
    }
    for (const DoubledKey& doubled : positions_.doubledKeys()) {
        faults_->push_back({path_, doubled.place, kDoubled, doubled.position});
    }
    return positions_.doubledKeys().empty() ? root : nullptr;
}

Json JsonReader::parse(const std::string& content) const {
    try {
        return Json::parse(content);
    } catch (const Json::exception& error) {
        faults_->push_back(faultOf(error, path_));
        return Json(Json::value_t::discarded);
    }
}

void JsonReader::report(const std::string& key, const std::string& cause) const {
    const JsonSpot* spot = positions_.find(key);
    faults_->push_back(
        {path_, key, cause, positions_.nearest(key), spot == nullptr ? std::string() : spot->text});
}

void JsonReader::reportKey(const std::string& key, const std::string& cause) const {
    const JsonSpot* spot = positions_.find(key);
    faults_->push_back({path_, key, cause, spot == nullptr ? Position() : spot->key});
}

// A key that is optional and misspelt would otherwise go unnoticed.
void JsonReader::refuseUnknown(const Json& object, const std::string& key,
                               std::initializer_list<std::string_view> known) const {
    for (const auto& item : object.items()) {
        if (std::find(known.begin(), known.end(), item.key()) == known.end()) {
            reportKey(member(key, item.key()),
                      kUnknownKey + suggestion(item.key(), {known.begin(), known.end()}));
        }
    }
}

std::vector<std::pair<std::string, Json>> JsonReader::objects(const Json& object,
                                                              const std::string& key,
                                                              const char* name) const {
    const auto array = object.find(name);
    const std::string place = member(key, name);
    if (array == object.end() || !array->is_array()) {
        report(place, array == object.end() ? kMissing : kNotAnArray);
        return {};
    }
    std::vector<std::pair<std::string, Json>> objects;
    for (std::size_t i = 0; i < array->size(); ++i) {
        const std::string at = element(place, i);
        if ((*array)[i].is_object()) {
            objects.emplace_back(at, (*array)[i]);
        } else {
            report(at, kNotAnObject);
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
    JsonReader reader(path, &faults);
    static_cast<void>(reader.load());
    return faults;
}

}  // namespace pkgvet::cli
