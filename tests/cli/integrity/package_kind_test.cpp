// What kind of package a header may stand for.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PackageKind, BinaryPackageForLinuxWithAnArchive) {
    EXPECT_THAT(linesOf(honestPackage(), checkKind), IsEmpty());
    EXPECT_THAT(linesOf(honestPackage().remove(RPMTAG_PAYLOADFORMAT), checkKind), IsEmpty());
}

TEST(PackageKind, SourcesAreAFinding) {
    EXPECT_THAT(
        linesOf(honestPackage().remove(RPMTAG_SOURCERPM), checkKind),
        ElementsAre("source-package: This is a source package; hand in the binary package that is "
                    "built from it"));
    EXPECT_THAT(
        linesOf(honestPackage().set(RPMTAG_SOURCEPACKAGE, rpmInt32({1})), checkKind),
        ElementsAre("source-package: This is a source package; hand in the binary package that is "
                    "built from it"));
}

TEST(PackageKind, OtherSystemsAreAFinding) {
    EXPECT_THAT(linesOf(honestPackage().set(RPMTAG_OS, rpmText("darwin")), checkKind),
                ElementsAre("other-operating-system: Package is for another operating system: "
                            "darwin"));
    EXPECT_THAT(linesOf(honestPackage().remove(RPMTAG_OS), checkKind),
                ElementsAre("other-operating-system: Package is for another operating system: "));
}

TEST(PackageKind, OtherPayloadsAreAFinding) {
    EXPECT_THAT(linesOf(honestPackage().set(RPMTAG_PAYLOADFORMAT, rpmText("drpm")), checkKind),
                ElementsAre("payload-format-unknown: Payload is not an archive of cpio: drpm"));
}

}  // namespace
