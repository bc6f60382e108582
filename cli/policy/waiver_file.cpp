// Writes files of waivers.
#include "cli/policy/waiver_file.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr std::string_view kSyntax = "^$\\.*+?()[]{}|";

// A byte that is not UTF-8, which JSON cannot hold.
std::string bytePattern(char byte) {
    constexpr const char* kDigits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    return {'\\', 'x', kDigits[value >> 4U], kDigits[value & 0xfU]};
}

// The bytes of the character that text begins with; 0 where they are not UTF-8.
std::size_t characterSize(std::string_view text) {
    constexpr std::size_t kLongest = 4;
    for (std::size_t size = 1; size <= std::min(kLongest, text.size()); ++size) {
        if (!bytesEscaped(text.substr(0, size))) {
            return size;
        }
    }
    return 0;
}

OrderedJson toJson(const NewWaiver& waiver) {
    OrderedJson object;
    object["rule"] = waiver.rule;
    object["subject"] = patternFor(waiver.subject);
    object["package"] = patternFor(waiver.package);
    object["reason"] = waiver.reason;
    if (waiver.lastDay) {
        object["expires"] = formatDate(*waiver.lastDay);
    }
    return object;
}

}  // namespace

std::string patternFor(const std::string& text) {
    std::string pattern;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t size = characterSize(rest);
        if (size == 0) {
            pattern += bytePattern(rest.front());
        } else {
            pattern.append(kSyntax.find(rest.front()) == std::string_view::npos ? 0 : 1, '\\');
            pattern += rest.substr(0, size);
        }
        rest.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return pattern;
}

std::string formatWaivers(const std::vector<NewWaiver>& waivers) {
    constexpr int kIndent = 4;
    OrderedJson objects = OrderedJson::array();
    for (const NewWaiver& waiver : waivers) {
        OrderedJson object = toJson(waiver);
        if (std::find(objects.begin(), objects.end(), object) == objects.end()) {
            objects.push_back(std::move(object));
        }
    }
    return OrderedJson{{"waivers", std::move(objects)}}.dump(kIndent) + "\n";
}

}  // namespace pkgvet::cli
