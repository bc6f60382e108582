// The part of an input that one run of several judges.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// The number of a shard, from 1, and how many there are.
using ShardNumber = std::pair<unsigned, unsigned>;

// "K/N" with 1 <= K <= N <= kMostShards; nothing for anything else.
std::optional<ShardNumber> parseShard(std::string_view text);

// Takes away all inputs but those of the shard: of the sorted paths each of-th one from the
// number-th on. Whatever the order in which two runs are given the same paths, they agree on that.
// Those that are left are sorted, and keep their positions in the whole input.
Shard keepShard(const ShardNumber& number, std::vector<Input>* inputs);

}  // namespace pkgvet::cli
