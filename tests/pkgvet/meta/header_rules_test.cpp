// The rules on a package's name, scripts and vendor.
#include "pkgvet/meta/header_rules.h"

#include <gmock/gmock.h>

#include "pkgvet/meta/header_facts.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"

namespace pkgvet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Strings = std::vector<std::string>;

TEST(CheckDomainNotation, WantsThreeComponentsSomewhere) {
    struct Case {
        const char* name;
        bool isGood;
    };
    const Case cases[] = {
        {"org.example.app", true},
        {"a.b.c", true},
        {"a.b.c.d", true},
        {"org.example-x.app_y", true},
        {"x+.y.z", true},
        {".a.b.c", true},
        {"a.b.c.", true},
        {"x..a.b.c", true},
        {"org.example", false},
        {"app", false},
        {"org.example.", false},
        {".org.example", false},
        {"org..example", false},
        {"_.b", false},
        {"...", false},
        {"", false},
    };
    const std::string line =
        errorLine("Package name should follow reverse domain notation (e.g. \"org.example.app\")");
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        HeaderFacts facts;
        Findings findings;
        const CapturedLog log;
        checkDomainNotation(test.name, &facts, &findings);
        EXPECT_EQ(facts.domainNotation, test.isGood);
        EXPECT_EQ(log.lines(), test.isGood ? Strings() : Strings{line});
        EXPECT_EQ(findings.failures(), test.isGood ? 0U : kViolation);
    }
}

TEST(CheckScripts, PackageWithScriptsHasAGraveFinding) {
    HeaderFacts facts;
    Findings findings;
    const CapturedLog log;
    checkScripts(true, &facts, &findings);
    EXPECT_THAT(log.lines(),
                ElementsAre(criticalLine("[scripts] Script sections are not allowed in RPM")));
    EXPECT_TRUE(facts.scripts);
    EXPECT_EQ(findings.failures(), kGraveFinding);
}

TEST(CheckScripts, PackageWithoutScriptsHasNoLine) {
    HeaderFacts facts;
    Findings findings;
    const CapturedLog log;
    checkScripts(false, &facts, &findings);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_FALSE(facts.scripts);
    EXPECT_EQ(findings.failures(), 0U);
}

TEST(CheckVendor, OneVendorIsToleratedAndNoneWanted) {
    struct Case {
        std::string vendor;
        Strings lines;
        std::uint32_t failures;
    };
    const Case cases[] = {
        {"", {}, 0},
        {"pelzo", {warningLine("[vendor] Vendor is set to pelzo, this is not recommended")}, 0},
        {"Pelzo",
         {errorLine("[vendor] Vendor is set to Pelzo. Setting a vendor in RPM is not allowed")},
         kViolation},
        {"pelzo2",
         {errorLine("[vendor] Vendor is set to pelzo2. Setting a vendor in RPM is not allowed")},
         kViolation},
        {"the pelzo",
         {errorLine("[vendor] Vendor is set to the pelzo. Setting a vendor in RPM is not allowed")},
         kViolation},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.vendor);
        Findings findings;
        const CapturedLog log;
        checkVendor(test.vendor, &findings);
        EXPECT_EQ(log.lines(), test.lines);
        EXPECT_EQ(findings.failures(), test.failures);
    }
}

}  // namespace
}  // namespace pkgvet
