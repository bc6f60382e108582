// The rule on what a package provides.
#include <rpm/rpmtag.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// Later versions of rpm make the users and groups that such names provide, with the ids that the
// version behind the name says. The version is not looked at: what it takes is theirs to change.
constexpr std::array<std::string_view, 3> kAccounts = {"user(", "group(", "groupmember("};

}  // namespace

void checkProvides(const PackageHeader& header, IntegrityFindings* findings) {
    for (const std::string& name : header.texts(RPMTAG_PROVIDENAME)) {
        if (std::any_of(kAccounts.begin(), kAccounts.end(),
                        [&name](std::string_view begin) { return name.starts_with(begin); })) {
            findings->add(kAccount, {name});
        }
    }
}

}  // namespace pkgvet::cli
