// The rule on the requirement for the launcher.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_messages.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/logger.h"

namespace {

// The same library under its former name and its present one.
constexpr std::array<std::string_view, 2> kLaunchers = {"liblumbraapp-launcher",
                                                        "libtessaraapp-launcher"};

bool isLauncher(const std::string& name) {
    return std::find(kLaunchers.begin(), kLaunchers.end(), name) != kLaunchers.end();
}

}  // namespace

// QML-only packages must require the launcher, all others must not.
void ContentValidator::processLiblumbraapp(const RpmMeta& rpm) {
    d_ptr->binaryFacts.launcherSpec = d_ptr->desktopFacts.qmlOnly;
    for (const std::string& name : rpm.requireNames()) {
        if (!isLauncher(name)) {
            continue;
        }
        if (d_ptr->desktopFacts.qmlOnly) {
            d_ptr->binaryFacts.launcherSpec = false;
        } else {
            d_ptr->failures |= pkgvet::kViolation;
            d_ptr->binaryFacts.launcherDesktop = true;
            Logger::log(LogLevel::Error, {pkgvet::kInvalidRequires, name});
        }
    }
    if (d_ptr->binaryFacts.launcherSpec) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {pkgvet::kAddRequires});
    }
}
