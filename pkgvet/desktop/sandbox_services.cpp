// Judges the D-Bus service and the system service of an application.
#include "pkgvet/desktop/sandbox_services.h"

#include <limits.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iostream>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/vocabulary.h"

namespace pkgvet {

namespace {

// The key that starts the service by itself is not counted: without it a description is complete.
constexpr std::array<std::string_view, 3> kCountedKeys = {kSystemServiceKey, kSystemServiceUserKey,
                                                          kSystemServiceGroupKey};

constexpr std::string_view kSystemServiceUser = "lumbra-mdm";
constexpr std::string_view kSystemServiceGroup = "privileged";

// realpath writes up to as much, with the terminating NUL.
using PathBuffer = std::array<char, PATH_MAX>;

// Where path leads to. Where it leads nowhere, the part that was resolved, as realpath leaves it in
// the buffer, and a remark. The remark is not a finding, so it goes to standard error itself.
std::string resolve(const std::string& path) {
    PathBuffer buffer{};
    if (realpath(path.c_str(), buffer.data()) == nullptr) {
        const char* reason = std::strerror(errno);
        std::cerr << kDBusPathErrorWords << reason << std::endl;
    }
    return buffer.data();
}

// The last blank divides, not the first: of several arguments all but one stay with the program.
std::string programOf(const std::string& launchLine) {
    return launchLine.substr(0, launchLine.rfind(kBlank));
}

// A line below "/usr/bin/" is judged by its text and needs no file; any other counts only through
// where it leads. There the directory may stand anywhere in the path, even as the beginning of a
// longer name.
bool isCorrectDBusService(const std::string& launchLine, const std::string& resolvedProgram,
                          const std::string& packageName) {
    const std::string program = std::string(kProgramDirectory) + packageName;
    const std::string privateDirectory = std::string(kPrivateProgramDirectory) + packageName;
    return launchLine == program || launchLine.starts_with(program + kBlank) ||
           resolvedProgram.find(privateDirectory) != std::string::npos;
}

}  // namespace

void judgeDBusService(const DesktopEntry& entry, const std::string& packageName,
                      const std::string& tempDir, DesktopFacts* facts) {
    const std::string& section = facts->pinfoldGroupName;
    if (!entry.hasKey(section, kExecDBusKey)) {
        return;
    }
    facts->dbusError = facts->dbusWarning;
    const std::string launchLine = entry.string(section, kExecDBusKey);
    const std::string resolvedProgram = resolve(tempDir + programOf(launchLine));
    facts->correctDbus = isCorrectDBusService(launchLine, resolvedProgram, packageName);
}

// An incomplete description is reported as such and judged no further.
void judgeSystemService(const DesktopEntry& entry, const std::string& packageName,
                        DesktopFacts* facts) {
    const std::string& section = facts->pinfoldGroupName;
    const auto present =
        std::count_if(kCountedKeys.begin(), kCountedKeys.end(),
                      [&](std::string_view key) { return entry.hasKey(section, key); });
    const bool isComplete = present == static_cast<std::ptrdiff_t>(kCountedKeys.size());
    facts->incompleteSystemService = present > 0 && !isComplete;
    if (!isComplete) {
        return;
    }
    facts->dbusError = facts->dbusWarning;
    facts->correctSystemService =
        entry.string(section, kSystemServiceKey)
            .starts_with(std::string(kPrivateProgramDirectory) + packageName + "/");
    facts->correctSystemServiceAccount =
        entry.string(section, kSystemServiceUserKey) == kSystemServiceUser &&
        entry.string(section, kSystemServiceGroupKey) == kSystemServiceGroup;
}

}  // namespace pkgvet
