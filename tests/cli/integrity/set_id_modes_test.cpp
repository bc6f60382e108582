// The set-id bits that a header asks for.
#include "cli/integrity/set_id_modes.h"

#include <gmock/gmock.h>

#include "cli/integrity/rpm_session.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;

SetIdModes modesOf(const CraftedPackage& package) {
    const TemporaryDirectory directory;
    const RpmSession rpm;
    return readSetIdModes(PackageHeader(package.write(directory), rpm.transactions()));
}

TEST(SetIdModes, HonestPackageAsksForNone) {
    EXPECT_EQ(modesOf(honestPackage()), SetIdModes());
}

TEST(SetIdModes, AreThoseBitsAloneByPath) {
    CraftedPackage package = honestPackage();
    package.file(packedFile("/usr/bin/both", "x", 06755))
        .file(packedFile("/usr/bin/sticky", "x", 01755))
        .file(packedFile("/usr/bin/user", "x", 04711))
        .file(packedDirectory("/usr/share/group", 02755));
    EXPECT_EQ(modesOf(package), (SetIdModes{{"/usr/bin/both", 06000},
                                            {"/usr/bin/user", 04000},
                                            {"/usr/share/group", 02000}}));
}

}  // namespace
