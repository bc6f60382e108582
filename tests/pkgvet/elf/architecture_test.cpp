// The rule on the architecture of packages without machine code.
#include <gtest/gtest.h>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"

namespace pkgvet {
namespace {

TEST(CheckArch, WarnsOfQmlOnlyPackagesForOneArchitecture) {
    struct Case {
        const char* name;
        const char* arch;
        bool isQmlOnly;
        bool archSpecificContent;
        bool isWarnedOf;
    };
    const Case cases[] = {
        {"noarch", "noarch", true, false, false},
        {"noarch with an executable", "noarch", true, true, false},
        {"native", "aarch64", true, false, true},
        {"native with an executable", "aarch64", true, true, false},
        {"native with a main binary", "aarch64", false, false, false},
        {"no architecture", "", true, false, true},
        {"other case", "NOARCH", true, false, true},
        {"longer name", "noarch2", true, false, true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        BinaryFacts facts;
        facts.archSpecificContent = test.archSpecificContent;
        Findings findings;
        const CapturedLog log;
        checkArch(test.arch, test.isQmlOnly, facts, &findings);
        EXPECT_EQ(log.text(),
                  test.isWarnedOf ? warningLine("[arch] QML-only RPMs should be noarch\n") : "");
        EXPECT_EQ(findings.failures(), 0U);
    }
}

}  // namespace
}  // namespace pkgvet
