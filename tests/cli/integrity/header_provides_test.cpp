// What a package may provide.
#include <gmock/gmock.h>
#include <rpm/rpmds.h>
#include <rpm/rpmtag.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesWith(const std::string& name) {
    CraftedPackage package = honestPackage();
    package.set(RPMTAG_PROVIDENAME, rpmTexts({name}));
    package.set(RPMTAG_PROVIDEFLAGS, rpmInt32({RPMSENSE_ANY}));
    package.set(RPMTAG_PROVIDEVERSION, rpmTexts({""}));
    return linesOf(package, checkProvides);
}

TEST(HeaderProvides, OrdinaryNamesAreFine) {
    EXPECT_THAT(linesOf(honestPackage(), checkProvides), IsEmpty());
    for (const char* const name : {"org.example.app", "application(user(x))", "user", "users(x)"}) {
        EXPECT_THAT(linesWith(name), IsEmpty()) << name;
    }
}

TEST(HeaderProvides, AccountsAreAFindingWithAndWithoutAVersion) {
    EXPECT_THAT(linesWith("user(evil)"),
                ElementsAre("account-created: [user(evil)] Provides that make users or groups are "
                            "not allowed in RPM"));
    EXPECT_THAT(linesWith("group(evil)"),
                ElementsAre("account-created: [group(evil)] Provides that make users or groups are "
                            "not allowed in RPM"));
    EXPECT_THAT(linesWith("groupmember(evil/wheel)"),
                ElementsAre("account-created: [groupmember(evil/wheel)] Provides that make users "
                            "or groups are not allowed in RPM"));
}

}  // namespace
