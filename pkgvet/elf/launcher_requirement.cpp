// The rule on the requirement for the launcher.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// The same library under its former name and its present one. Either counts as the launcher, while
// the finding on a missing requirement asks for the present one only.
constexpr std::array<std::string_view, 2> kLaunchers = {"liblumbraapp-launcher",
                                                        "libtessaraapp-launcher"};

bool isLauncher(const std::string& name) {
    return std::find(kLaunchers.begin(), kLaunchers.end(), name) != kLaunchers.end();
}

}  // namespace

void processLiblumbraapp(const std::vector<std::string>& requireNames, bool isQmlOnly,
                         BinaryFacts* facts, Findings* findings) {
    facts->launcherSpec = isQmlOnly;
    for (const std::string& name : requireNames) {
        if (!isLauncher(name)) {
            continue;
        }
        if (isQmlOnly) {
            facts->launcherSpec = false;
        } else {
            facts->launcherDesktop = true;
            findings->violation(kInvalidRequires, {name});
        }
    }
    if (facts->launcherSpec) {
        findings->violation(kAddRequires);
    }
}

}  // namespace pkgvet
