// A rule tree: parts of the input are the configuration file, the list files of one profile by
// their kind, and the disallowed components. "@" in the first part stands for their directory.
#include <array>
#include <stdexcept>

#include "cli/rules/rule_check.h"
#include "cli/rules/rule_set.h"
#include "fuzz/fuzz_target.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/temporary_directory.h"

namespace {

constexpr std::array<const char*, 7> kFiles = {
    "pkgvet.json",     "paths.json",       "libraries.json", "requires.json",
    "qmlimports.json", "permissions.json", "components.json"};

std::string withDirectory(std::string text, const std::string& directory) {
    for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos;) {
        text.replace(at, 1, directory);
        at += directory.size();
    }
    return text;
}

// Without a fault of a rule tree, nothing in it stops the library.
void load(const std::string& path, Profiles profile, bool isFaultless) {
    try {
        const Configuration configuration(path, profile);
    } catch (const std::logic_error&) {
        pkgvet::fuzz::expect(!isFaultless, "a tree that the library refuses has a fault");
    }
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    const std::vector<std::string> parts = partsOf(input, kFiles.size());
    for (std::size_t i = 0; i < kFiles.size(); ++i) {
        directory.write(kFiles[i], i == 0 ? withDirectory(parts[i], directory.path()) : parts[i]);
    }
    const std::string path = directory / kFiles[0];
    for (const Profiles profile : {Profiles::Regular, Profiles::Extended}) {
        const cli::RuleFaults faults = cli::checkRuleTree(path, {profile});
        cli::loadRuleSet(path, profile);
        load(path, profile, faults.unusable.empty());
    }
}
