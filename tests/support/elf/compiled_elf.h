// Real ELF files, made by the compiler that builds the tests.
#pragma once

#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"

// Compiles C++ source with the compiler's arguments flags to the file name in directory, and
// returns its path there. std::runtime_error with the compiler's output when it fails.
std::string compileElf(const TemporaryDirectory& directory, const std::string& name,
                       const std::string& source, const std::vector<std::string>& flags = {});

// The same; an empty path when it fails, for what not every compiler can do.
std::string tryCompileElf(const TemporaryDirectory& directory, const std::string& name,
                          const std::string& source, const std::vector<std::string>& flags = {},
                          std::string* output = nullptr);
