// What in the rules makes findings come and go.
#include "cli/impact/rule_causes.h"

#include <gtest/gtest.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

const std::vector<TreeChange> kChanges = {
    {"libraries.allowed", "libfoo\\.so\\..*", false, "old/libraries.json", {5, 9}},
    {"libraries.unstable", "libfoo\\.so\\.1", true, "new/libraries.json", {8, 9}},
    {"requires.allowed", "libfoo.*", false, "old/requires.json", {3, 1}},
    {"require_icons", "true", true, "new/p.json", {2, 1}},
    {"icon_sizes", "86", true, "new/p.json", {1, 1}},
    {"paths", "/opt/.*", false, "old/paths.json", {4, 1}},
};

Finding library(const std::string& name) {
    return findingAbout(name, "library-not-allowed", Severity::Error, "Library is not allowed");
}

TEST(RuleCauses, AreTheEntriesThatBearOnTheRuleAndMatchTheSubject) {
    const RuleCauses causes(kChanges);
    struct Case {
        Finding finding;
        std::string causes;
    };
    const Case cases[] = {
        {library("libfoo.so.1"),
         "old/libraries.json:5:9: libfoo\\.so\\..* removed from libraries.allowed; "
         "new/libraries.json:8:9: libfoo\\.so\\.1 added to libraries.unstable"},
        {library("libfoo.so.2"),
         "old/libraries.json:5:9: libfoo\\.so\\..* removed from libraries.allowed"},
        {library("libbar.so.1"), ""},
        {findingAbout("libfoo", "dependency-not-allowed", Severity::Error, "m"),
         "old/requires.json:3:1: libfoo.* removed from requires.allowed"},
        {findingAbout("libfoo.so.2()(64bit)", "dependency-not-allowed", Severity::Error, "m"),
         "old/libraries.json:5:9: libfoo\\.so\\..* removed from libraries.allowed; "
         "old/requires.json:3:1: libfoo.* removed from requires.allowed"},
        {findingAbout("/usr/share/icons/hicolor/86x86/apps/a.png", "icon-missing", Severity::Error,
                      "m"),
         "new/p.json:2:1: true added to require_icons; new/p.json:1:1: 86 added to icon_sizes"},
        {findingAbout("/usr/share/icons/hicolor/108x108/apps/a.png", "icon-missing",
                      Severity::Error, "m"),
         "new/p.json:2:1: true added to require_icons"},
        {findingAbout("/opt/x", "path-not-allowed", Severity::Error, "m"),
         "old/paths.json:4:1: /opt/.* removed from paths"},
        {findingAbout("/optional/x", "path-not-allowed", Severity::Error, "m"), ""},
        {finding("desktop-file-missing", Severity::Error, "m"), ""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.finding.message);
        EXPECT_EQ(causes.of(test.finding), test.causes);
    }
}

TEST(RuleCauses, PatternThatNoTextMatchesNamesNothing) {
    const RuleCauses causes({{"paths", "/opt/[", true, "a.json", {1, 1}}});
    EXPECT_EQ(causes.of(findingAbout("/opt/x", "path-not-allowed", Severity::Error, "m")), "");
}

}  // namespace
