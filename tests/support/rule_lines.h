// What a rule reports when it is called by itself.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "pkgvet/report/findings.h"

// Runs rule with a sink of its own and returns the lines that it wrote. A violation is expected to
// have been noted in the sink exactly if one of the lines is an error.
std::vector<std::string> linesOf(const std::function<void(pkgvet::Findings*)>& rule);
