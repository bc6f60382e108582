#include "tests/support/elf/readelf.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/support/package/package_builder.h"

namespace {

constexpr std::string_view kUnknownBinding = "<OS specific>: ";

// "     5: 0000000000000000     0 FUNC    GLOBAL DEFAULT  UND puts@GLIBC_2.2.5 (2)": the name is
// the eighth word, unless there are remarks in front of it.
void addSymbol(std::string line, std::vector<std::string>& symbols) {
    if (const std::size_t binding = line.find(kUnknownBinding); binding != std::string::npos) {
        line.erase(binding, kUnknownBinding.size());
    }
    std::istringstream words(line);
    std::string number, value, size, type, binding, visibility, index, name;
    words >> number >> value >> size >> type >> binding >> visibility >> index;
    if (index.starts_with("[")) {
        for (std::string remark = index; !remark.ends_with("]"); words >> remark) {
        }
        words >> index;
    }
    words >> name;
    symbols.push_back(type == "SECTION" ? std::string() : withoutVersion(name));
}

bool isSymbol(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(' ');
    const std::size_t end = line.find_first_not_of("0123456789", begin);
    return begin != std::string::npos && end != begin && end != std::string::npos &&
           line[end] == ':';
}

std::string bracketed(const std::string& line) {
    const std::size_t begin = line.find('[') + 1;
    return line.substr(begin, line.rfind(']') - begin);
}

}  // namespace

std::string withoutVersion(const std::string& name) {
    return name.substr(0, name.find('@'));
}

ReadelfFacts askReadelf(const std::string& path) {
    std::string output;
    if (runProgram({"readelf", "-W", "-s", "-d", path}, &output) != 0) {
        throw std::runtime_error("readelf failed for " + path);
    }
    ReadelfFacts facts;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        if (isSymbol(line)) {
            addSymbol(line, facts.symbols);
        } else if (line.find("(NEEDED)") != std::string::npos) {
            facts.libraries.push_back(bracketed(line));
        } else if (line.find("(RPATH)") != std::string::npos) {
            facts.rpath = bracketed(line);
        }
    }
    return facts;
}
