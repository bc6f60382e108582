// Measures how far words are from one another.
#include "cli/base/nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace pkgvet::cli {

namespace {

// How many characters may be wrong: half of them, and those ahead of an option's name say nothing.
std::size_t mostWrong(std::string_view word) {
    return (word.size() - std::min(word.find_first_not_of('-'), word.size())) / 2;
}

}  // namespace

std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string nearestWord(std::string_view word, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = mostWrong(word) + 1;
    for (const std::string& candidate : words) {
        const std::size_t distance = editDistance(word, candidate);
        if (distance < least) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string suggestion(std::string_view word, const std::vector<std::string>& words) {
    const std::string nearest = nearestWord(word, words);
    return nearest.empty() ? std::string() : ": did you mean " + nearest + "?";
}

}  // namespace pkgvet::cli
