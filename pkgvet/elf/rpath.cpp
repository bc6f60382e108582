// The rule on the run path of the main binary.
#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_messages.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/logger.h"

namespace {

constexpr char kSeparator = ':';

constexpr std::array<std::string_view, 2> kSystemDirectories = {"/usr/lib/", "/usr/lib64/"};

// Where a package may keep libraries of its own. Plain text: "$ORIGIN" is not expanded.
using PermittedDirectories = std::array<std::string, 4>;

PermittedDirectories permittedDirectories(const std::string& packageName) {
    return {"$ORIGIN/../share/" + packageName + "/lib", "/usr/share/" + packageName + "/lib",
            "/usr/share/" + packageName + "/libs", "/usr/lib/3rdparty/" + packageName};
}

bool rpathTokenPermitted(std::string_view token, std::string_view entry) {
    return token.starts_with(entry) && (token.size() == entry.size() || token[entry.size()] == '/');
}

// Only leading slashes are tidied, to one. ".." is not resolved.
bool isBelowSystemDirectory(const std::string& token) {
    const std::filesystem::path path = token;
    const std::string form = (path.root_path() /= path.relative_path()).string();
    return std::any_of(kSystemDirectories.begin(), kSystemDirectories.end(),
                       [&form](std::string_view directory) { return form.starts_with(directory); });
}

// A fold from left to right, not a conjunction: once a token has failed, the package's own
// directories are no longer good enough, but a later system directory makes up for all.
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

bool ContentValidator::isRpathEmpty(const ElfReader& reader) const {
    return reader.rpath().empty();
}

void ContentValidator::checkRpath(const RpmMeta& rpm, const std::string& path) {
    const ElfReader reader(path.c_str());
    if (!isRpathEmpty(reader)) {
        d_ptr->binaryFacts.rpathExists = true;
        d_ptr->binaryFacts.rpathStatus =
            isRpathPermitted(reader.rpath(), permittedDirectories(rpm.name()));
    }
    if (d_ptr->desktopFacts.qmlOnly) {
        return;
    }
    // Only a package that keeps libraries for its main binary needs a run path to them.
    if (!d_ptr->binaryFacts.rpathExists) {
        d_ptr->binaryFacts.rpathStatus = !d_ptr->binaryFacts.linksPrivateLibrary;
        Logger::log(LogLevel::Warning, {pkgvet::kRpathEmpty});
    }
    if (d_ptr->binaryFacts.rpathStatus) {
        return;
    }
    d_ptr->failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {d_ptr->binaryFacts.rpathExists ? pkgvet::kRpathNotAllowed
                                                                 : pkgvet::kRpathMissing});
}
