// What counts as a program that the platform can run.
#pragma once

#include <string>

#include "pkgvet/elf/elf_budget.h"

namespace pkgvet {

// Whether the file at path, on disk, can be loaded and is in little-endian byte order. Its class,
// 32 or 64 bit, and its machine make no difference.
bool hasGoodFormat(const std::string& path, ElfAllowance* allowance);

// The same for a file by itself.
bool hasGoodFormat(const std::string& path);

}  // namespace pkgvet
