// The sources that the tests were built from.
#pragma once

#include <string>

// The path on disk of a file of the source tree, such as "docs/findings.md".
std::string sourceFile(const std::string& path);
