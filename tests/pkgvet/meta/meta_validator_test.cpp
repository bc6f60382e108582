// The life of a MetaValidator, the order of its rules and its verdict.
#include "pkgvet/meta/meta_validator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <regex>
#include <utility>

#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;

// The header of the package, once it is built.
RpmMeta headerOf(const PackageBuilder& package) {
    const TemporaryDirectory directory;
    return RpmMeta(package.build(directory).c_str());
}

RpmMeta cleanPackage() {
    return headerOf(PackageBuilder("org.example.app"));
}

// Violates every rule, with one line for each.
RpmMeta badPackage() {
    return headerOf(PackageBuilder("bad")
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

TEST(MetaValidator, WarningsRejectNothing) {
    RuleTree tree;
    tree.regular().libraries.deprecated = {R"(libold\.so\.1)"};
    const RpmMeta meta = headerOf(PackageBuilder("org.example.app")
                                      .tag("Vendor: pelzo")
                                      .tag("Requires: libold.so.1()(64bit)"));
    const CapturedLog log;
    EXPECT_TRUE(MetaValidator().validateMeta(load(tree), meta));
    EXPECT_THAT(
        log.lines(),
        ElementsAre(warningLine("[vendor] Vendor is set to pelzo, this is not recommended"),
                    warningLine("[libold.so.1()(64bit)] Dependency is unstable or deprecated")));
}

TEST(MetaValidator, OnlyScriptsRejectWithValidationOff) {
    const RpmMeta violations = headerOf(PackageBuilder("bad").tag("Obsoletes: old"));
    const RpmMeta scripts =
        headerOf(PackageBuilder("org.example.app").script("%post -p /bin/true"));
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

// Each rule looks at the part of the header that it is called for.
TEST(MetaValidator, RulesCanBeCalledOneByOne) {
    const RpmMeta meta = badPackage();
    const Configuration rules = strictRules();
    const std::function<void(MetaValidator*)> calls[] = {
        [&](MetaValidator* validator) { validator->checkDomainNotation(meta); },
        [&](MetaValidator* validator) { validator->checkScripts(meta); },
        [&](MetaValidator* validator) { validator->checkMandatoryProvide(rules, meta); },
        [&](MetaValidator* validator) { validator->checkMandatoryConflict(rules, meta); },
        [&](MetaValidator* validator) { validator->checkProvides(rules, meta); },
        [&](MetaValidator* validator) { validator->checkConflicts(rules, meta); },
        [&](MetaValidator* validator) { validator->checkObsoletes(meta); },
        [&](MetaValidator* validator) { validator->checkVendor(meta); },
        [&](MetaValidator* validator) { validator->checkRequires(rules, meta); },
    };
    CapturedLog log;
    MetaValidator().validateMeta(rules, meta);
    const std::vector<std::string> all = log.lines();
    ASSERT_EQ(all.size(), std::size(calls));
    const RpmMeta clean = cleanPackage();
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i]);
        log.clear();
        MetaValidator validator;
        calls[i](&validator);
        EXPECT_THAT(log.lines(), ElementsAre(all[i]));
        EXPECT_FALSE(validator.validateMeta(kNoRules, clean)) << "the effect lasts";
    }
}

TEST(MetaValidator, VectorContainsReadsNothingOfTheObject) {
    EXPECT_TRUE(MetaValidator().vectorContains({"bar", "foo"}, "foo()(64bit)"));
    EXPECT_FALSE(MetaValidator().vectorContains({"foo"}, "foobar"));
}

}  // namespace
