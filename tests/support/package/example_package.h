// The packages that come with the documentation.
#pragma once

#include <string>

// Builds the one called name below directory, as its page says, and returns the package.
std::string buildExample(const std::string& name, const std::string& directory);
