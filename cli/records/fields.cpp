// Looks at each member before its value is used.
#include "cli/records/fields.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/fault.h"
#include "cli/base/json_place.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kEscaped = "_escaped";
constexpr std::size_t kDigestSize = 64;
constexpr std::string_view kHexadecimal = "0123456789abcdef";

// What stands in JSON for text with bytes that are not UTF-8.
Json replaced(const std::string& text) {
    return Json::parse(Json(text).dump(-1, ' ', true, Json::error_handler_t::replace));
}

}  // namespace

Fields::Fields(const Json& object, std::string place) : object_(&object), place_(std::move(place)) {
    if (!object.is_object()) {
        throw FieldFault{place_, kNotAnObject};
    }
}

bool Fields::has(const char* name) const {
    return object_->contains(name);
}

std::string Fields::text(const char* name) const {
    const Json& value = member(name);
    require(value.is_string(), name, kNotAString);
    return value.get<std::string>();
}

std::string Fields::bytes(const char* name) const {
    return bytesOrNone(name).value_or(std::string());
}

std::optional<std::string> Fields::bytesOrNone(const char* name) const {
    const Json& value = member(name);
    if (value.is_null()) {
        return std::nullopt;
    }
    std::string plain = text(name);
    const std::string escapedName = std::string(name) + kEscaped;
    if (!has(escapedName.c_str())) {
        return plain;
    }
    const std::optional<std::string> exact = bytesUnescaped(text(escapedName.c_str()));
    require(exact && replaced(*exact) == value, escapedName.c_str(),
            "is not an escaped form of the member beside it");
    return exact;
}

bool Fields::flag(const char* name) const {
    const Json& value = member(name);
    require(value.is_boolean(), name, "is not true or false");
    return value.get<bool>();
}

std::uint64_t Fields::number(const char* name, std::uint64_t least, std::uint64_t most) const {
    const Json& value = member(name);
    const bool isRight = value.is_number_unsigned() && value.get<std::uint64_t>() >= least &&
                         value.get<std::uint64_t>() <= most;
    if (!isRight) {
        refuse(name, "is not a whole number from " + std::to_string(least) + " to " +
                         std::to_string(most));
    }
    return value.get<std::uint64_t>();
}

double Fields::seconds(const char* name) const {
    const Json& value = member(name);
    const bool isRight =
        value.is_number() && std::isfinite(value.get<double>()) && value.get<double>() >= 0;
    require(isRight, name, "is not a number of seconds");
    return value.get<double>();
}

std::string Fields::digest(const char* name) const {
    if (member(name).is_null()) {
        return std::string();
    }
    std::string digest = text(name);
    require(isDigest(digest), name, "is not a SHA-256 in hexadecimal");
    return digest;
}

std::size_t Fields::word(const char* name, std::span<const std::string_view> words) const {
    const auto found = std::find(words.begin(), words.end(), text(name));
    require(found != words.end(), name, "is not a word that can stand here");
    return static_cast<std::size_t>(found - words.begin());
}

Fields Fields::object(const char* name) const {
    return {member(name), placeOf(name)};
}

std::vector<Fields> Fields::objects(const char* name) const {
    const Json& all = array(name);
    std::vector<Fields> objects;
    objects.reserve(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        objects.emplace_back(all[i], element(placeOf(name), i));
    }
    return objects;
}

const Json& Fields::array(const char* name) const {
    const Json& value = member(name);
    require(value.is_array(), name, kNotAnArray);
    return value;
}

void Fields::refuse(const char* name, std::string_view cause) const {
    throw FieldFault{placeOf(name), std::string(cause)};
}

void Fields::require(bool isRight, const char* name, std::string_view cause) const {
    if (!isRight) {
        refuse(name, cause);
    }
}

const Json& Fields::member(const char* name) const {
    const auto found = object_->find(name);
    if (found == object_->end()) {
        refuse(name, kMissing);
    }
    return *found;
}

std::string Fields::placeOf(const char* name) const {
    return cli::member(place_, name);
}

bool isDigest(std::string_view text) {
    return text.size() == kDigestSize &&
           text.find_first_not_of(kHexadecimal) == std::string_view::npos;
}

}  // namespace pkgvet::cli
