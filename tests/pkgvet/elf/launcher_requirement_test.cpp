// The rule on the requirement for the launcher.
#include <gtest/gtest.h>

#include "tests/support/captured_log.h"
#include "tests/support/validator_record.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kAdd =
    errorLine("[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file");

std::string invalid(const std::string& requirement) {
    return errorLine("[libtessaraapp] Invalid Requires: " + requirement);
}

RpmMeta metaWith(const Strings& requirements) {
    PackageBuilder package("foo");
    for (const std::string& requirement : requirements) {
        package.tag("Requires: " + requirement);
    }
    return metaOf(package);
}

struct Case {
    const char* name;
    bool qmlOnly;
    Strings requirements;
    Strings lines;
    bool launcherSpec;
    bool launcherDesktop;
};

void expectOutcome(const Case& test) {
    ContentValidator validator{std::string()};
    recordOf(validator).desktopFacts.qmlOnly = test.qmlOnly;
    const CapturedLog log;
    validator.processLiblumbraapp(metaWith(test.requirements));
    EXPECT_EQ(log.lines(), test.lines);
    EXPECT_EQ(validator.launcherSpec(), test.launcherSpec);
    EXPECT_EQ(validator.launcherDesktop(), test.launcherDesktop);
    EXPECT_EQ(recordOf(validator).failures, test.lines.empty() ? 0U : pkgvet::kViolation);
}

TEST(LauncherRequirement, EachOutcome) {
    const std::string old = "liblumbraapp-launcher";
    const std::string present = "libtessaraapp-launcher";
    const Case cases[] = {
        {"QML, present name", true, {present}, {}, false, false},
        {"QML, old name", true, {old}, {}, false, false},
        {"QML, both names", true, {old, present}, {}, false, false},
        {"QML, with a version", true, {present + " >= 1.2"}, {}, false, false},
        {"QML, none", true, {}, {kAdd}, true, false},
        {"QML, names alike",
         true,
         {old + "2", "libtessaraapp", "lib" + present},
         {kAdd},
         true,
         false},
        {"QML, other case", true, {"LIBTESSARAAPP-LAUNCHER"}, {kAdd}, true, false},
        {"program, present name", false, {present}, {invalid(present)}, false, true},
        {"program, old name", false, {old}, {invalid(old)}, false, true},
        {"program, both names",
         false,
         {old, present},
         {invalid(old), invalid(present)},
         false,
         true},
        {"program, none", false, {}, {}, false, false},
        {"program, names alike", false, {old + "2", "libtessaraapp"}, {}, false, false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        expectOutcome(test);
    }
}

TEST(LauncherRequirement, SpecStartsAnewWithEachRun) {
    ContentValidator validator{std::string()};
    const CapturedLog log;
    const RpmMeta meta = metaWith({});
    recordOf(validator).desktopFacts.qmlOnly = true;
    validator.processLiblumbraapp(meta);
    EXPECT_TRUE(validator.launcherSpec());
    recordOf(validator).desktopFacts.qmlOnly = false;
    validator.processLiblumbraapp(meta);
    EXPECT_FALSE(validator.launcherSpec());
}

}  // namespace
