#include "tests/support/elf/compiled_elf.h"

#include <stdexcept>

#include "tests/support/package/package_builder.h"

std::string compileElf(const TemporaryDirectory& directory, const std::string& name,
                       const std::string& source, const std::vector<std::string>& flags) {
    std::string output;
    const std::string path = tryCompileElf(directory, name, source, flags, &output);
    if (path.empty()) {
        throw std::runtime_error("the compiler failed:\n" + output);
    }
    return path;
}

std::string tryCompileElf(const TemporaryDirectory& directory, const std::string& name,
                          const std::string& source, const std::vector<std::string>& flags,
                          std::string* output) {
    const std::string path = directory / name;
    std::vector<std::string> command = {
        PKGVET_CXX_COMPILER, "-x", "c++", directory.write(name + ".cpp", source), "-x", "none"};
    command.insert(command.end(), flags.begin(), flags.end());
    command.insert(command.end(), {"-o", path});
    return runProgram(command, output) == 0 ? path : std::string();
}
