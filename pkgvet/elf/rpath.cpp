// The rule on the run path of the main binary.
#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <string_view>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/elf/read_elf.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

constexpr char kSeparator = ':';

constexpr std::array<std::string_view, 2> kSystemDirectories = {"/usr/lib/", "/usr/lib64/"};

// Where a package may keep libraries of its own. Plain text: "$ORIGIN" is not expanded.
using PermittedDirectories = std::array<std::string, 4>;

PermittedDirectories permittedDirectories(const std::string& packageName) {
    return {"$ORIGIN/../share/" + packageName + "/lib", "/usr/share/" + packageName + "/lib",
            "/usr/share/" + packageName + "/libs", "/usr/lib/3rdparty/" + packageName};
}

// A directory below entry is permitted, and a sibling whose name only begins like it is not.
bool rpathTokenPermitted(std::string_view token, std::string_view entry) {
    return token.starts_with(entry) && (token.size() == entry.size() || token[entry.size()] == '/');
}

// Only leading slashes are tidied, to one. ".." is not resolved.
bool isBelowSystemDirectory(std::string_view token) {
    while (token.starts_with("//")) {
        token.remove_prefix(1);
    }
    return std::any_of(
        kSystemDirectories.begin(), kSystemDirectories.end(),
        [token](std::string_view directory) { return token.starts_with(directory); });
}

// Directories are taken from left to right, and not each is judged by itself: behind one that is
// not permitted, the package's own do not help, but a later system directory excuses all before it.
bool isRpathPermitted(const std::string& rpath, const PermittedDirectories& permitted) {
    bool status = true;
    std::istringstream tokens(rpath);
    for (std::string token; std::getline(tokens, token, kSeparator);) {
        const bool isPermitted = std::any_of(
            permitted.begin(), permitted.end(),
            [&token](const std::string& entry) { return rpathTokenPermitted(token, entry); });
        status = (status && isPermitted) || isBelowSystemDirectory(token);
    }
    return status;
}

}  // namespace

bool isRpathEmpty(const ElfReader& reader) {
    return reader.rpath().empty();
}

void checkRpath(const std::string& packageName, const std::string& binary, bool isQmlOnly,
                BinaryFacts* facts, Findings* findings) {
    const std::string rpath = readElf(binary, ignoreSymbol).rpath;
    if (!rpath.empty()) {
        facts->rpathExists = true;
        facts->rpathStatus = isRpathPermitted(rpath, permittedDirectories(packageName));
    }
    if (isQmlOnly) {
        return;
    }
    // Only a package that keeps libraries for its main binary needs a run path to them.
    if (!facts->rpathExists) {
        facts->rpathStatus = !facts->linksPrivateLibrary;
        findings->warning(kRpathEmpty);
    }
    if (!facts->rpathStatus) {
        findings->violation(facts->rpathExists ? kRpathNotAllowed : kRpathMissing);
    }
}

}  // namespace pkgvet
