// Finds the rule tree that comes with the program.
#include "cli/rules/default_rules.h"

#include <filesystem>

namespace pkgvet::cli {

namespace {

// Unlike the name that the program was called by, this leads through links to where it lies.
constexpr const char* kOwnProgram = "/proc/self/exe";

}  // namespace

std::string defaultRules() {
    const std::filesystem::path program = std::filesystem::read_symlink(kOwnProgram);
    return program.parent_path() / PKGVET_RULES_FROM_PROGRAM / "pkgvet.json";
}

}  // namespace pkgvet::cli
