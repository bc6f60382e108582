// Divides inputs.
#include "cli/records/shard_input.h"

#include <algorithm>
#include <charconv>

#include "cli/base/checksum.h"

namespace pkgvet::cli {

namespace {

// No path holds it.
constexpr std::string_view kSeparator("\0", 1);

// Nothing unless all of text is a plain number.
std::optional<unsigned> numberIn(std::string_view text) {
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::string digestOf(const std::vector<Input>& inputs) {
    Checksum sum;
    for (const Input& input : inputs) {
        sum.add(input.path);
        sum.add(kSeparator);
    }
    return sum.finish();
}

}  // namespace

std::optional<ShardNumber> parseShard(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return std::nullopt;
    }
    const std::optional<unsigned> number = numberIn(text.substr(0, slash));
    const std::optional<unsigned> of = numberIn(text.substr(slash + 1));
    if (!number || !of || *number < 1 || *number > *of || *of > kMostShards) {
        return std::nullopt;
    }
    return ShardNumber(*number, *of);
}

Shard keepShard(const ShardNumber& number, std::vector<Input>* inputs) {
    std::stable_sort(inputs->begin(), inputs->end(),
                     [](const Input& one, const Input& other) { return one.path < other.path; });
    Shard shard{number.first, number.second, inputs->size(), digestOf(*inputs)};
    std::vector<Input> kept;
    for (std::size_t i = number.first - 1; i < inputs->size(); i += number.second) {
        kept.push_back(std::move((*inputs)[i]));
    }
    *inputs = std::move(kept);
    return shard;
}

}  // namespace pkgvet::cli
