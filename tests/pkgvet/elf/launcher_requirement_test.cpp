// The rule on the requirement for the launcher.
#include <gtest/gtest.h>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"

namespace pkgvet {
namespace {

using Strings = std::vector<std::string>;

const std::string kAdd =
    errorLine("[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file");

std::string invalid(const std::string& requirement) {
    return errorLine("[libtessaraapp] Invalid Requires: " + requirement);
}

struct Case {
    const char* name;
    bool isQmlOnly;
    Strings requirements;
    Strings lines;
    bool launcherSpec;
    bool launcherDesktop;
};

void expectOutcome(const Case& test) {
    BinaryFacts facts;
    Findings findings;
    const CapturedLog log;
    processLiblumbraapp(test.requirements, test.isQmlOnly, &facts, &findings);
    EXPECT_EQ(log.lines(), test.lines);
    EXPECT_EQ(facts.launcherSpec, test.launcherSpec);
    EXPECT_EQ(facts.launcherDesktop, test.launcherDesktop);
    EXPECT_EQ(findings.failures(), test.lines.empty() ? 0U : kViolation);
}

TEST(LauncherRequirement, EachOutcome) {
    const std::string old = "liblumbraapp-launcher";
    const std::string present = "libtessaraapp-launcher";
    const Case cases[] = {
        {"QML, present name", true, {present}, {}, false, false},
        {"QML, old name", true, {old}, {}, false, false},
        {"QML, both names", true, {old, present}, {}, false, false},
        {"QML, among others", true, {"foo", present, "bar"}, {}, false, false},
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
        {"program, one name twice",
         false,
         {present, present},
         {invalid(present), invalid(present)},
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
    BinaryFacts facts;
    Findings findings;
    const CapturedLog log;
    processLiblumbraapp({}, true, &facts, &findings);
    EXPECT_TRUE(facts.launcherSpec);
    processLiblumbraapp({}, false, &facts, &findings);
    EXPECT_FALSE(facts.launcherSpec);
}

}  // namespace
}  // namespace pkgvet
