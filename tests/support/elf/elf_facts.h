// What is read out of described ELF files.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/elf/read_elf.h"

// The facts of a file that holds image.
ElfReaderPrivate readElfImage(const std::string& image);

struct ElfCase {
    const char* name;
    const char* description;  // as elfImage takes it
    std::vector<std::string> symbols;
    std::vector<std::string> libraries;
    std::string rpath;
};

// Each file must be loaded, and give these facts.
void expectElfFacts(const std::vector<ElfCase>& cases);
