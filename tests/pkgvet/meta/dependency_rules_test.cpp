// The rules on a package's name and its dependency lists.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <regex>

#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/captured_log.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Strings = std::vector<std::string>;

RpmMeta packageWith(const Strings& tags, const std::string& name = "org.example.app") {
    PackageBuilder builder(name);
    for (const std::string& tag : tags) {
        builder.tag(tag);
    }
    return metaOf(builder);
}

Configuration rulesWithProvides(const std::string& provides) {
    RuleTree tree;
    tree.regular().provides = provides;
    return load(tree);
}

// The lines of one rule on its own.
Strings linesOf(const std::function<void(MetaValidator*)>& rule) {
    const CapturedLog log;
    MetaValidator validator;
    rule(&validator);
    return log.lines();
}

std::string notProvided(const std::string& name) {
    return errorLine("[" + name + "] Provides: " + name + " is not allowed in RPM");
}

std::string noConflict(const std::string& name) {
    return errorLine("[" + name + "] Conflicts: " + name + " is not allowed in RPM");
}

std::string notAllowed(const std::string& name) {
    return errorLine("[" + name + "] Dependency is not allowed");
}

std::string unstable(const std::string& name) {
    return warningLine("[" + name + "] Dependency is unstable or deprecated");
}

Strings provideFindings(const Strings& provides, const Configuration& rules) {
    Strings tags;
    for (const std::string& name : provides) {
        tags.push_back("Provides: " + name);
    }
    const RpmMeta meta = packageWith(tags);
    return linesOf([&](MetaValidator* validator) { validator->checkProvides(rules, meta); });
}

Strings requireFindings(const Strings& requirements, const RuleTree& tree) {
    Strings tags;
    for (const std::string& name : requirements) {
        tags.push_back("Requires: " + name);
    }
    const RpmMeta meta = packageWith(tags);
    const Configuration rules = load(tree);
    return linesOf([&](MetaValidator* validator) { validator->checkRequires(rules, meta); });
}

TEST(CheckDomainNotation, WantsThreeComponentsSomewhere) {
    struct Case {
        const char* name;
        bool expected;
    };
    const Case cases[] = {
        {"org.example.app", true},
        {"a.b.c", true},
        {"a.b.c.d", true},
        {"org.example-x.app_y", true},
        {"x+.y.z", true},
        {"org.example", false},
        {"app", false},
        {"org.example.", false},
        {"_.b", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const RpmMeta meta = packageWith({}, test.name);
        ASSERT_EQ(meta.name(), test.name);
        const CapturedLog log;
        MetaValidator validator;
        validator.checkDomainNotation(meta);
        EXPECT_EQ(validator.domainNotation(), test.expected);
        EXPECT_EQ(log.text(), test.expected
                                  ? ""
                                  : errorLine("Package name should follow reverse domain notation "
                                              "(e.g. \"org.example.app\")\n"));
    }
}

TEST(CheckDomainNotation, EmptyNameFails) {
    const CapturedLog log;
    MetaValidator validator;
    validator.checkDomainNotation(RpmMeta("/nonexistent.rpm"));
    EXPECT_FALSE(validator.domainNotation());
}

TEST(MandatoryName, MustBeProvidedAndConflictedWith) {
    const Configuration rules = rulesWithProvides("market.app");
    struct Case {
        const char* name;
        bool held;
    };
    const Case cases[] = {{"market.app", true},    {"market.app-extra", true},
                          {"my-market.app", true}, {"marketXapp", false},
                          {"market", false},       {"Market.app", false}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const RpmMeta meta = packageWith(
            {std::string("Provides: ") + test.name, std::string("Conflicts: ") + test.name});
        const CapturedLog log;
        MetaValidator validator;
        validator.checkMandatoryProvide(rules, meta);
        validator.checkMandatoryConflict(rules, meta);
        EXPECT_EQ(validator.mandatoryProvide(), test.held);
        EXPECT_EQ(validator.mandatoryConflict(), test.held);
        const Strings missing = {
            errorLine("[market.app] Provides: market.app must be specified in RPM"),
            errorLine("[market.app] Conflicts: market.app must be specified in RPM")};
        EXPECT_EQ(log.lines(), test.held ? Strings() : missing);
    }
}

TEST(MandatoryName, OneOfTwoIsNotEnough) {
    const Configuration rules = rulesWithProvides("market.app");
    const RpmMeta meta = packageWith({"Provides: market.app"});
    const CapturedLog log;
    MetaValidator validator;
    validator.checkMandatoryProvide(rules, meta);
    validator.checkMandatoryConflict(rules, meta);
    EXPECT_TRUE(validator.mandatoryProvide());
    EXPECT_FALSE(validator.mandatoryConflict());
}

TEST(MandatoryName, EmptyDemandsNothing) {
    const RpmMeta meta = packageWith({});
    const Configuration rules = rulesWithProvides("");
    const CapturedLog log;
    MetaValidator validator;
    validator.checkMandatoryProvide(rules, meta);
    validator.checkMandatoryConflict(rules, meta);
    EXPECT_TRUE(validator.mandatoryProvide());
    EXPECT_TRUE(validator.mandatoryConflict());
    EXPECT_EQ(log.text(), "");
}

TEST(CheckConflicts, OnlyTheMandatoryNameMayBeConflictedWith) {
    const RpmMeta meta = packageWith({"Conflicts: market.app", "Conflicts: market.app-2",
                                      "Conflicts: foe", "Conflicts: other > 1"});
    const auto findings = [&](const std::string& name) {
        const Configuration rules = rulesWithProvides(name);
        return linesOf([&](MetaValidator* validator) { validator->checkConflicts(rules, meta); });
    };
    EXPECT_THAT(findings("market.app"),
                UnorderedElementsAre(noConflict("foe"), noConflict("other")));
    EXPECT_EQ(findings("").size(), 4U);
}

TEST(CheckProvides, OwnNameAndApplicationArePermitted) {
    EXPECT_THAT(provideFindings({"org.example.app-data", "application()", "my-org.example.app",
                                 "application(org.example.app.desktop)"},
                                rulesWithProvides("")),
                IsEmpty());
}

TEST(CheckProvides, OthersAreFindings) {
    for (const char* name : {"other", "orgXexample.app", "application(other.desktop)",
                             "application(x)", "mimehandler", "mimehandler(x", "Mimehandler(x)"}) {
        SCOPED_TRACE(name);
        EXPECT_THAT(provideFindings({name}, rulesWithProvides("")), ElementsAre(notProvided(name)));
    }
}

TEST(CheckProvides, MandatoryNameIsPermitted) {
    EXPECT_THAT(provideFindings({"market.app", "market.app-2"}, rulesWithProvides("market.app")),
                IsEmpty());
    EXPECT_THAT(provideFindings({"marketXapp"}, rulesWithProvides("market.app")),
                ElementsAre(notProvided("marketXapp")));
}

TEST(CheckProvides, HandlersAreHeldAgainstTheDisallowedOnes) {
    RuleTree tree;
    tree.disallowedHandlers = {"text/.*", "x"};
    const Configuration rules = load(tree);
    EXPECT_THAT(provideFindings({"mimehandler(text/plain)", "mimehandler(image/png)",
                                 "mimehandler()", "mimehandler(xx)", "mimehandler(x)"},
                                rules),
                UnorderedElementsAre(notProvided("mimehandler(text/plain)"),
                                     notProvided("mimehandler(x)")));
}

TEST(CheckProvides, HandlerIsCutByFixedPositions) {
    RuleTree tree;
    tree.disallowedHandlers = {"x", "r\\(y"};
    const Configuration rules = load(tree);
    EXPECT_THAT(provideFindings({"a-mimehandler(x)"}, rules), IsEmpty())
        << "the handler reads as r(x";
    EXPECT_THAT(provideFindings({"a-mimehandler(y)"}, rules),
                ElementsAre(notProvided("a-mimehandler(y)")));
    EXPECT_THAT(provideFindings({"mimehandler(x)y)"}, rules), IsEmpty());
}

TEST(CheckProvides, HandlersLoseTheirWideSuffix) {
    RuleTree tree;
    tree.disallowedHandlers = {"x"};
    EXPECT_THAT(provideFindings({"mimehandler(x(64bit))"}, load(tree)),
                ElementsAre(notProvided("mimehandler(x(64bit))")));
}

TEST(CheckRequires, WithoutRequirementsThereIsNoLine) {
    EXPECT_THAT(requireFindings({}, RuleTree()), IsEmpty());
}

TEST(CheckRequires, WithEmptyListsEachIsAFindingUnderItsFullName) {
    EXPECT_THAT(requireFindings({"libfoo.so.1()(64bit)", "bar >= 2"}, RuleTree()),
                UnorderedElementsAre(notAllowed("libfoo.so.1()(64bit)"), notAllowed("bar")));
}

TEST(CheckRequires, ListsAreAskedInTheirOrder) {
    struct Case {
        const char* name;
        std::function<void(ProfileRules*)> fill;
        Strings expected;
    };
    const Case cases[] = {
        {"allowed requires", [](ProfileRules* r) { r->requires_.allowed = {"foo"}; }, {}},
        {"allowed libraries", [](ProfileRules* r) { r->libraries.allowed = {"foo"}; }, {}},
        {"unstable requires",
         [](ProfileRules* r) { r->requires_.unstable = {"foo"}; },
         {unstable("foo")}},
        {"unstable libraries",
         [](ProfileRules* r) { r->libraries.unstable = {"foo"}; },
         {unstable("foo")}},
        {"deprecated requires",
         [](ProfileRules* r) { r->requires_.deprecated = {"foo"}; },
         {unstable("foo")}},
        {"deprecated libraries",
         [](ProfileRules* r) { r->libraries.deprecated = {"foo"}; },
         {unstable("foo")}},
        {"allowed and deprecated",
         [](ProfileRules* r) { r->requires_.allowed = r->requires_.deprecated = {"foo"}; },
         {}},
        {"QML imports do not count",
         [](ProfileRules* r) { r->qmlimports.allowed = {"foo"}; },
         {notAllowed("foo")}},
        {"part of the name",
         [](ProfileRules* r) {
             r->requires_.allowed = {"fo", "oo"};
         },
         {notAllowed("foo")}},
        {"bad pattern behind the hit",
         [](ProfileRules* r) {
             r->requires_.allowed = {"foo", "("};
         },
         {}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        RuleTree tree;
        test.fill(&tree.regular());
        EXPECT_EQ(requireFindings({"foo"}, tree), test.expected);
    }
}

TEST(CheckRequires, LinesFollowTheOrderOfTheHeader) {
    RuleTree tree;
    tree.regular().requires_.unstable = {"b"};
    tree.regular().requires_.allowed = {"c"};
    tree.regular().libraries.deprecated = {"d"};
    const RpmMeta meta = packageWith({"Requires: d, a, c, b"});
    Strings expected;
    for (const std::string& name : meta.requireNames()) {
        if (name != "c") {
            expected.push_back(name == "a" ? notAllowed(name) : unstable(name));
        }
    }
    const Configuration rules = load(tree);
    EXPECT_EQ(linesOf([&](MetaValidator* validator) { validator->checkRequires(rules, meta); }),
              expected);
}

TEST(CheckRequires, ToleratedRequirementDoesNotReject) {
    RuleTree tree;
    tree.regular().libraries.deprecated = {R"(libold\.so\.1)"};
    const CapturedLog log;
    EXPECT_TRUE(
        MetaValidator().validateMeta(load(tree), packageWith({"Requires: libold.so.1()(64bit)"})));
    EXPECT_THAT(log.lines(), ElementsAre(unstable("libold.so.1()(64bit)")));
}

TEST(CheckRequires, BadPatternThrowsBeforeAnyLine) {
    RuleTree tree;
    tree.regular().libraries.deprecated = {"("};
    const CapturedLog log;
    EXPECT_THROW(MetaValidator().checkRequires(load(tree), packageWith({"Requires: a"})),
                 std::regex_error);
    EXPECT_EQ(log.text(), "");
}

TEST(VectorContains, ComparesTheBaseOfAWideName) {
    struct Case {
        const char* pattern;
        const char* text;
        bool expected;
    };
    const Case cases[] = {
        {R"(libfoo\.so\.1)", "libfoo.so.1()(64bit)", true},
        {R"(libfoo\.so\.1)", "libfoo.so.1", true},
        {R"(libfoo\.so\.1)", "libfoo.so.1.2", false},
        {R"(libfoo\.so\.1)", "libfoo.so.1()", false},
        {"foo", "foo(64bit)", true},
        {"foo", "foo()(64bit)", true},
        {"foo", "foo(64bit)trailer", true},
        {R"(a\()", "a()b(64bit)", true},
        {R"(a\(\))", "a()b(64bit)", false},
        {"a", "a()b(64bit)", false},
        {R"(a\(64bit\))", "a(64bit)(64bit)", true},
        {"", "(64bit)", true},
        {"", "()(64bit)", true},
        {"", "", true},
        {"foo", "(64bit", false},
        {R"(x\(V\))", "x(V)(64bit)", true},
        {"foo", "foo(64bit)()", true},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(MetaValidator().vectorContains({test.pattern}, test.text), test.expected)
            << test.text << " against " << test.pattern;
    }
}

TEST(VectorContains, WalksUpToTheFirstHit) {
    MetaValidator validator;
    EXPECT_FALSE(validator.vectorContains({}, "a"));
    EXPECT_TRUE(validator.vectorContains({"x", "a.*", "("}, "abc"));
    EXPECT_THROW(validator.vectorContains({"x", "("}, "abc"), std::regex_error);
}

}  // namespace
