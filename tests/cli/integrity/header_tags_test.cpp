// Which tags a header may have.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>

#include "cli/integrity/header_rules.h"
#include "cli/integrity/rpm_session.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesWith(std::uint32_t tag, const RpmValue& value) {
    CraftedPackage package = honestPackage();
    package.set(tag, value);
    return linesOf(package, checkTags);
}

TEST(HeaderTags, HonestPackageHasNoFinding) {
    EXPECT_THAT(linesOf(honestPackage(), checkTags), IsEmpty());
}

TEST(HeaderTags, WhatRpmRunsHasAFindingOfItsKind) {
    struct Case {
        std::uint32_t tag;
        RpmValue value;
        const char* line;
    };
    const Case cases[] = {
        {RPMTAG_TRIGGERSCRIPTS, rpmTexts({"true"}),
         "trigger-not-allowed: [%trigger] Triggers are not allowed in RPM"},
        {RPMTAG_TRIGGERNAME, rpmTexts({"bash"}),
         "trigger-not-allowed: [%trigger] Triggers are not allowed in RPM"},
        {RPMTAG_TRIGGERSCRIPTPROG, rpmTexts({"/bin/sh"}),
         "trigger-not-allowed: [%trigger] Triggers are not allowed in RPM"},
        {RPMTAG_FILETRIGGERSCRIPTS, rpmTexts({"true"}),
         "file-trigger-not-allowed: [%filetrigger] File triggers are not allowed in RPM"},
        {RPMTAG_FILETRIGGERPRIORITIES, rpmInt32({1}),
         "file-trigger-not-allowed: [%filetrigger] File triggers are not allowed in RPM"},
        {RPMTAG_TRANSFILETRIGGERSCRIPTPROG, rpmTexts({"<lua>"}),
         "transaction-file-trigger-not-allowed: [%transfiletrigger] File triggers of transactions "
         "are not allowed in RPM"},
        {RPMTAG_VERIFYSCRIPT, rpmText("true"),
         "verify-script-not-allowed: [%verifyscript] Verify scripts are not allowed in RPM"},
        {RPMTAG_VERIFYSCRIPTPROG, rpmTexts({"/bin/sh"}),
         "verify-script-not-allowed: [%verifyscript] Verify scripts are not allowed in RPM"},
        {5104, rpmText("true"),
         "transaction-script-not-allowed: [%postuntrans] Scripts around a removal are not allowed "
         "in RPM"},
        {RPMTAG_POSTINFLAGS, rpmInt32({1}),
         "script-flags-not-allowed: [%post] Flags of scripts are not allowed in RPM"},
        {RPMTAG_PREFIXES, rpmTexts({"/usr"}),
         "relocatable-package: [Prefix] Files can be installed in another place"},
    };
    for (const Case& test : cases) {
        EXPECT_THAT(linesWith(test.tag, test.value), ElementsAre(test.line));
    }
}

TEST(HeaderTags, ASectionHasOneFindingHoweverManyTagsItMakes) {
    const TemporaryDirectory directory;
    const std::string path = PackageBuilder("org.example.app")
                                 .script("%triggerin -- bash\ntrue\n%verifyscript\ntrue")
                                 .build(directory);
    const RpmSession rpm;
    IntegrityFindings findings;
    checkTags(PackageHeader(path, rpm.transactions()), &findings);
    EXPECT_THAT(linesOf(findings.take()),
                ElementsAre("trigger-not-allowed: [%trigger] Triggers are not allowed in RPM",
                            "verify-script-not-allowed: [%verifyscript] Verify scripts are not "
                            "allowed in RPM"));
}

TEST(HeaderTags, ScriptsAreForTheLibraryToReject) {
    EXPECT_THAT(linesWith(RPMTAG_POSTIN, rpmText("true")), IsEmpty());
    EXPECT_THAT(linesWith(RPMTAG_POSTINPROG, rpmTexts({"/bin/sh"})), IsEmpty());
}

TEST(HeaderTags, WhatIsNotKnownToBeHarmlessIsAFinding) {
    EXPECT_THAT(linesWith(5109, rpmTexts({"u eve"})),
                ElementsAre("header-tag-unknown: [5109] Header has a tag that no package needs"));
    EXPECT_THAT(linesWith(RPMTAG_POLICIES, rpmTexts({"x"})),
                ElementsAre("header-tag-unknown: [Policies] Header has a tag that no package "
                            "needs"));
    EXPECT_THAT(linesWith(99999, rpmText("x")),
                ElementsAre("header-tag-unknown: [99999] Header has a tag that no package needs"));
}

}  // namespace
