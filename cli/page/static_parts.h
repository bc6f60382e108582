// The parts of the page that are the same with and without scripts.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

#include "cli/model/model.h"

namespace pkgvet::cli {

// "10,000", as people read it.
std::string grouped(std::size_t number);

// "3 rejected, 1 not judged of 10,000 packages".
std::string headlineOf(const RunReport& run);

// What a reader must know of the whole run: that it was interrupted, and its notices.
void writeNotices(const RunReport& run, std::ostream& stream);

// How the verdicts came about.
void writeProvenance(const RunReport& run, std::ostream& stream);

}  // namespace pkgvet::cli
