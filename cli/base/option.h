// What a command line can hold, as plain data.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pkgvet::cli {

// Takes one argument. Returns what is wrong with it, or an empty text.
using Setter = std::function<std::string(const std::string& argument)>;

// An option of a command, bound to the value that it sets, which must outlive it. The parser, the
// completions and the test of the manual page all read the same declaration.
struct Option {
    std::vector<std::string> names = {};  // such as "-q" and "--quiet"
    std::string description = {};
    std::string argument = {};            // what help calls it, such as "FILE"; empty for a flag
    std::vector<std::string> words = {};  // those that the argument can be; empty when it is any
    bool takesFile = false;
    // Each occurrence adds to the ones before. Otherwise the last one counts, and all are checked.
    bool mayRepeat = false;
    // Called for each occurrence in order; a flag has the empty argument. Null for what the parser
    // answers by itself, such as --help.
    Setter set = nullptr;
};

inline constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

// The arguments of a command that belong to no option.
struct Operand {
    std::string name = {};  // what help calls them
    std::string description = {};
    std::size_t least = 0;
    std::size_t most = kAnyNumber;
    bool takesFiles = false;
    std::vector<std::string> words = {};  // those that shells offer; others are not refused here
    Setter set = nullptr;
};

// The words by which the command line knows the values of an enumeration.
template <typename Value, std::size_t kSize>
using Words = std::array<std::pair<std::string_view, Value>, kSize>;

// Nothing when the word is not among words.
template <typename Value, std::size_t kSize>
std::optional<Value> valueOf(const Words<Value, kSize>& words, std::string_view word) {
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&](const auto& entry) { return entry.first == word; });
    return found == words.end() ? std::nullopt : std::optional<Value>(found->second);
}

// Empty when the value has no word.
template <typename Value, std::size_t kSize>
std::string_view wordOf(const Words<Value, kSize>& words, Value value) {
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&](const auto& entry) { return entry.second == value; });
    return found == words.end() ? std::string_view() : found->first;
}

template <typename Value, std::size_t kSize>
std::vector<std::string> allWords(const Words<Value, kSize>& words) {
    std::vector<std::string> all;
    for (const auto& entry : words) {
        all.emplace_back(entry.first);
    }
    return all;
}

// "x not in {a,b}".
std::string notAmong(const std::string& word, const std::vector<std::string>& words);

// A flag that sets value to true.
Option flagOption(std::vector<std::string> names, bool* value, const std::string& description);

// An option that takes one of words and hands it to set.
Option wordOption(const std::string& name, const std::vector<std::string>& words, Setter set,
                  const std::string& description);

// An option that takes one of words, which must outlive it, and nothing else: neither the numbers
// of the values nor other cases.
template <typename Target, typename Value, std::size_t kSize>
Option choiceOption(const std::string& name, const Words<Value, kSize>& words, Target* target,
                    const std::string& description) {
    const auto set = [&words, target](const std::string& word) {
        const std::optional<Value> value = valueOf(words, word);
        if (!value) {
            return notAmong(word, allWords(words));
        }
        *target = *value;
        return std::string();
    };
    return wordOption(name, allWords(words), set, description);
}

// An option that takes the path of a file, and one that takes a path each time.
Option fileOption(const std::string& name, std::string* path, const std::string& description);
Option filesOption(const std::string& name, std::vector<std::string>* paths,
                   const std::string& description);

// Options that take a number from least to most. A whole number may be written in decimal, octal or
// hexadecimal as in C; a time is in seconds.
Option numberOption(std::vector<std::string> names, unsigned* number, unsigned least, unsigned most,
                    const std::string& description);
Option timeOption(const std::string& name, double* seconds, double least, double most,
                  const std::string& description);

// An option that takes a number of bytes, at least least, with "K", "M" or "G" behind it for KiB,
// MiB or GiB.
Option sizeOption(const std::string& name, std::uint64_t* bytes, std::uint64_t least,
                  const std::string& description);

// Adds each argument to texts.
Setter appendTo(std::vector<std::string>* texts);

}  // namespace pkgvet::cli
