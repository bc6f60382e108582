// Markdown, as pages and code-scanning services show it.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

inline constexpr std::size_t kAnyWidth = std::numeric_limits<std::size_t>::max();

// What the entry's rule demands, why, and how to put a finding right, with its prose in lines of at
// most columns. The texts of the catalogue are Markdown as they stand.
std::string markdownOf(const Entry& entry, std::size_t columns);

// text as it should be read, with whatever Markdown or HTML would act upon escaped, and fit for
// a cell of a table.
std::string markdownText(std::string_view text);

}  // namespace pkgvet::cli
