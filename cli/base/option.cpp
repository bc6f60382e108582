// Makes options of the common kinds.
#include "cli/base/option.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

#include "cli/base/text.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kFile = "FILE";
constexpr const char* kNumber = "N";
constexpr const char* kSeconds = "SECONDS";
constexpr const char* kSize = "SIZE";

// By how many bits each shifts a number.
constexpr std::array<std::pair<std::string_view, unsigned>, 4> kUnits = {
    {{"", 0}, {"K", 10}, {"M", 20}, {"G", 30}}};

template <typename Number>
std::string outOfRange(const std::string& text, Number least, Number most) {
    std::string error = "Value " + text;
    error.append(" not in range ").append(std::to_string(least));
    return error.append(" to ").append(std::to_string(most));
}

// Whether all of text was read, of which the reading ended at end.
bool isWhole(const std::string& text, const char* end) {
    return !text.empty() && end == text.c_str() + text.size();
}

// Nothing for what is not a size, and for more than 64 bits hold.
std::optional<std::uint64_t> sizeOf(const std::string& text) {
    std::uint64_t number = 0;
    const char* const begin = text.data();
    const auto [end, error] = std::from_chars(begin, begin + text.size(), number);
    const std::string_view unit =
        std::string_view(text).substr(static_cast<std::size_t>(end - begin));
    const auto found = std::find_if(kUnits.begin(), kUnits.end(),
                                    [unit](const auto& known) { return known.first == unit; });
    if (error != std::errc() || found == kUnits.end() ||
        number > std::numeric_limits<std::uint64_t>::max() >> found->second) {
        return std::nullopt;
    }
    return number << found->second;
}

}  // namespace

std::string notAmong(const std::string& word, const std::vector<std::string>& words) {
    std::string error = word + " not in {";
    return error.append(joined(words, ",")).append("}");
}

Option flagOption(std::vector<std::string> names, bool* value, const std::string& description) {
    const auto set = [value](const std::string& /*argument*/) {
        *value = true;
        return std::string();
    };
    return {.names = std::move(names), .description = description, .set = set};
}

Option wordOption(const std::string& name, const std::vector<std::string>& words, Setter set,
                  const std::string& description) {
    return {.names = {name},
            .description = description,
            .argument = joined(words, "|"),
            .words = words,
            .set = std::move(set)};
}

Option fileOption(const std::string& name, std::string* path, const std::string& description) {
    const auto set = [path](const std::string& argument) {
        *path = argument;
        return std::string();
    };
    return {.names = {name},
            .description = description,
            .argument = kFile,
            .takesFile = true,
            .set = set};
}

Option filesOption(const std::string& name, std::vector<std::string>* paths,
                   const std::string& description) {
    return {.names = {name},
            .description = description,
            .argument = kFile,
            .takesFile = true,
            .mayRepeat = true,
            .set = appendTo(paths)};
}

Option numberOption(std::vector<std::string> names, unsigned* number, unsigned least, unsigned most,
                    const std::string& description) {
    const auto set = [=](const std::string& text) {
        char* end = nullptr;
        // A negative number comes back as a huge one, which is out of range too.
        const unsigned long long value = std::strtoull(text.c_str(), &end, 0);
        if (!isWhole(text, end) || value < least || value > most) {
            return outOfRange(text, least, most);
        }
        *number = static_cast<unsigned>(value);
        return std::string();
    };
    return {.names = std::move(names), .description = description, .argument = kNumber, .set = set};
}

Option timeOption(const std::string& name, double* seconds, double least, double most,
                  const std::string& description) {
    const auto set = [=](const std::string& text) {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (!isWhole(text, end) || value < least || value > most) {
            return outOfRange(text, least, most);
        }
        // "nan" is neither below nor above anything.
        if (std::isnan(value)) {
            return text + " is not a time";
        }
        *seconds = value;
        return std::string();
    };
    return {.names = {name}, .description = description, .argument = kSeconds, .set = set};
}

Option sizeOption(const std::string& name, std::uint64_t* bytes, std::uint64_t least,
                  const std::string& description) {
    const auto set = [=](const std::string& text) {
        const std::optional<std::uint64_t> value = sizeOf(text);
        if (!value) {
            return text + " is not a size such as 512M";
        }
        if (*value < least) {
            return text + " is less than " + std::to_string(least);
        }
        *bytes = *value;
        return std::string();
    };
    return {.names = {name}, .description = description, .argument = kSize, .set = set};
}

Setter appendTo(std::vector<std::string>* texts) {
    return [texts](const std::string& text) {
        texts->push_back(text);
        return std::string();
    };
}

}  // namespace pkgvet::cli
