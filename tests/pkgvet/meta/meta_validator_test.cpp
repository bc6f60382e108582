// The order of the rules on a header, its verdict, and the rules that need no list.
#include "pkgvet/meta/meta_validator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <utility>

#include "pkgvet/package/rpm_meta.h"
#include "tests/support/captured_log.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;

RpmMeta cleanPackage() {
    return metaOf(PackageBuilder("org.example.app"));
}

// Violates every rule, with one line for each.
RpmMeta badPackage() {
    return metaOf(PackageBuilder("bad")
                      .tag("Provides: other")
                      .tag("Conflicts: foe")
                      .tag("Obsoletes: old")
                      .tag("Vendor: Acme")
                      .tag("Requires: needed")
                      .script("%post\ntrue"));
}

Configuration strictRules(bool validationEnabled = true) {
    RuleTree tree;
    tree.regular().provides = "mandatory";
    Configuration configuration = load(tree);
    configuration.setValidationEnabled(validationEnabled);
    return configuration;
}

const Configuration kNoRules = load(RuleTree());

TEST(MetaValidator, FactsHaveTheirInitialValues) {
    const MetaValidator fresh;
    EXPECT_TRUE(fresh.domainNotation());
    EXPECT_TRUE(fresh.mandatoryProvide());
    EXPECT_TRUE(fresh.mandatoryConflict());
    EXPECT_FALSE(fresh.scripts());
}

TEST(MetaValidator, ConstructionRunsNoRule) {
    const CapturedLog log;
    const MetaValidator validator(strictRules(), badPackage());
    EXPECT_TRUE(validator.domainNotation());
    EXPECT_TRUE(validator.mandatoryProvide());
    EXPECT_TRUE(validator.mandatoryConflict());
    EXPECT_FALSE(validator.scripts());
    EXPECT_EQ(log.text(), "");
}

TEST(MetaValidator, AllRulesRunInTheirOrder) {
    CapturedLog log;
    MetaValidator validator;
    EXPECT_FALSE(validator.validateMeta(strictRules(), badPackage()));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(errorLine("Package name should follow reverse domain notation (e.g. "
                              "\"org.example.app\")"),
                    criticalLine("[scripts] Script sections are not allowed in RPM"),
                    errorLine("[mandatory] Provides: mandatory must be specified in RPM"),
                    errorLine("[mandatory] Conflicts: mandatory must be specified in RPM"),
                    errorLine("[other] Provides: other is not allowed in RPM"),
                    errorLine("[foe] Conflicts: foe is not allowed in RPM"),
                    errorLine("[old] Obsoletes: old is not allowed in RPM"),
                    errorLine("[vendor] Vendor is set to Acme. Setting a vendor in RPM is not "
                              "allowed"),
                    errorLine("[needed] Dependency is not allowed")));
    EXPECT_FALSE(validator.domainNotation());
    EXPECT_FALSE(validator.mandatoryProvide());
    EXPECT_FALSE(validator.mandatoryConflict());
    EXPECT_TRUE(validator.scripts());
}

TEST(MetaValidator, CleanPackageIsAcceptedInSilence) {
    const CapturedLog log;
    MetaValidator validator;
    EXPECT_TRUE(validator.validateMeta(kNoRules, cleanPackage()));
    EXPECT_EQ(log.text(), "");
}

TEST(MetaValidator, OnlyScriptsRejectWithValidationOff) {
    const RpmMeta violations = metaOf(PackageBuilder("bad").tag("Obsoletes: old"));
    const RpmMeta scripts = metaOf(PackageBuilder("org.example.app").script("%post -p /bin/true"));
    struct Case {
        const char* name;
        const RpmMeta& meta;
        bool enabled;
        bool expected;
        std::size_t lines;
    };
    const Case cases[] = {
        {"violations, on", violations, true, false, 2},
        {"violations, off", violations, false, true, 2},
        {"scripts, on", scripts, true, false, 1},
        {"scripts, off", scripts, false, false, 1},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Configuration rules(kNoRules);
        rules.setValidationEnabled(test.enabled);
        const CapturedLog log;
        EXPECT_EQ(MetaValidator().validateMeta(rules, test.meta), test.expected);
        EXPECT_EQ(log.lines().size(), test.lines);
    }
}

TEST(MetaValidator, VerdictOnAConfigurationAloneIsFalseAndRunsNothing) {
    const CapturedLog log;
    MetaValidator validator;
    EXPECT_FALSE(validator.validateMeta(kNoRules));
    EXPECT_FALSE(std::as_const(validator).validateMeta(kNoRules));
    EXPECT_TRUE(validator.validateMeta(kNoRules, cleanPackage()));
    EXPECT_FALSE(validator.validateMeta(kNoRules));
    EXPECT_EQ(log.text(), "");
}

TEST(MetaValidator, FailedStaysFailed) {
    const CapturedLog log;
    const RpmMeta clean = cleanPackage();
    MetaValidator validator;
    EXPECT_FALSE(validator.validateMeta(strictRules(), badPackage()));
    EXPECT_FALSE(validator.validateMeta(kNoRules, clean));
    EXPECT_FALSE(validator.domainNotation());
    EXPECT_TRUE(validator.scripts());
    MetaValidator alone;
    alone.checkVendor(badPackage());
    EXPECT_FALSE(alone.validateMeta(kNoRules, clean));
}

TEST(MetaValidator, UnreadablePackageFailsByItsName) {
    CapturedLog log;
    MetaValidator validator;
    const RpmMeta meta("/nonexistent.rpm");
    EXPECT_FALSE(validator.validateMeta(kNoRules, meta));
    EXPECT_THAT(log.lines(), ElementsAre(errorLine("Package name should follow reverse domain "
                                                   "notation (e.g. \"org.example.app\")")));
    log.clear();
    EXPECT_FALSE(MetaValidator().validateMeta(strictRules(), meta));
    EXPECT_EQ(log.lines().size(), 3U);
}

TEST(MetaValidator, BadPatternLeavesAsAnException) {
    RuleTree tree;
    tree.regular().requires_.allowed = {"("};
    const CapturedLog log;
    MetaValidator validator;
    EXPECT_THROW(validator.validateMeta(load(tree), badPackage()), std::regex_error);
    EXPECT_TRUE(validator.scripts()) << "the rules that had run have left their marks";
}

TEST(MetaValidator, CopyIsIndependent) {
    const CapturedLog log;
    MetaValidator source;
    source.checkScripts(badPackage());
    MetaValidator copy(source);
    EXPECT_TRUE(copy.scripts());
    EXPECT_FALSE(copy.validateMeta(kNoRules, cleanPackage()));
    copy.checkDomainNotation(badPackage());
    EXPECT_FALSE(copy.domainNotation());
    EXPECT_TRUE(source.domainNotation());
}

TEST(MetaValidator, MoveAssignmentExchanges) {
    const CapturedLog log;
    MetaValidator failed;
    failed.checkScripts(badPackage());
    MetaValidator fresh;
    fresh = std::move(failed);
    EXPECT_TRUE(fresh.scripts());
    EXPECT_FALSE(failed.scripts());  // NOLINT(bugprone-use-after-move)
    MetaValidator& self = fresh;
    fresh = std::move(self);
    EXPECT_TRUE(fresh.scripts());
}

TEST(CheckScripts, PackageWithoutScriptsHasNoLine) {
    const CapturedLog log;
    MetaValidator validator;
    validator.checkScripts(cleanPackage());
    EXPECT_EQ(log.text(), "");
    EXPECT_FALSE(validator.scripts());
}

TEST(CheckObsoletes, EachIsALine) {
    const CapturedLog log;
    MetaValidator validator;
    validator.checkObsoletes(
        metaOf(PackageBuilder("org.example.app").tag("Obsoletes: b < 2").tag("Obsoletes: a")));
    EXPECT_THAT(log.lines(),
                testing::UnorderedElementsAre(errorLine("[b] Obsoletes: b is not allowed in RPM"),
                                              errorLine("[a] Obsoletes: a is not allowed in RPM")));
    EXPECT_TRUE(validator.domainNotation());
}

TEST(CheckVendor, OneVendorIsToleratedAndNoneWanted) {
    struct Case {
        std::string vendor;
        std::vector<std::string> lines;
        bool accepted;
    };
    const Case cases[] = {
        {"pelzo", {warningLine("[vendor] Vendor is set to pelzo, this is not recommended")}, true},
        {"Pelzo",
         {errorLine("[vendor] Vendor is set to Pelzo. Setting a vendor in RPM is not allowed")},
         false},
        {"pelzo2",
         {errorLine("[vendor] Vendor is set to pelzo2. Setting a vendor in RPM is not allowed")},
         false},
        {"the pelzo",
         {errorLine("[vendor] Vendor is set to the pelzo. Setting a vendor in RPM is not allowed")},
         false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.vendor);
        const CapturedLog log;
        EXPECT_EQ(
            MetaValidator().validateMeta(
                kNoRules, metaOf(PackageBuilder("org.example.app").tag("Vendor: " + test.vendor))),
            test.accepted);
        EXPECT_EQ(log.lines(), test.lines);
    }
}

}  // namespace
