// The directories that payloads are extracted to.
#pragma once

#include <string>
#include <vector>

// The trees extracted on this machine that hold path, a path in a package, in no order. A test
// finds its own by a path that no other package has.
std::vector<std::string> extractedTreesWith(const std::string& path);
