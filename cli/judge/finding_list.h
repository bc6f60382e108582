// The findings of one package under one profile, bounded.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// The most findings of a rule that are kept. A package of less than a megabyte can draw a million.
inline constexpr std::size_t kMostOfARule = 1000;

// Keeps findings in the order in which they come, and of those of one rule the first ones.
class FindingList {
public:
    void add(Finding finding);

    // All findings since the last call, which are handed over. Behind them stands one for each rule
    // that has more, with their number.
    std::vector<Finding> take();

private:
    // A rule can have findings of more than one severity.
    using Kind = std::pair<std::string, Severity>;

    std::vector<Finding> findings_;
    std::map<Kind, std::size_t> counts_;
};

}  // namespace pkgvet::cli
