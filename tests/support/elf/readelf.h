// What the readelf program says of an ELF file.
#pragma once

#include <string>
#include <vector>

struct ReadelfFacts {
    std::vector<std::string> symbols;
    std::vector<std::string> libraries;
    std::string rpath;
};

// The facts as ElfReader orders them. Names are cut at their version, "@" and what follows, and
// those of section symbols, which readelf makes up, are empty.
ReadelfFacts askReadelf(const std::string& path);

// A name as the lists above hold it.
std::string withoutVersion(const std::string& name);
