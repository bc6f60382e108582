// The rules on a package's dependency lists.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <regex>

#include "pkgvet/meta/header_facts.h"
#include "pkgvet/meta/header_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/rules/rule_tree.h"

namespace pkgvet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Strings = std::vector<std::string>;

constexpr const char* kPackage = "org.example.app";

RuleTree treeWithProvides(const std::string& provides) {
    RuleTree tree;
    tree.regular().provides = provides;
    return tree;
}

// The lines of a rule, which must set the bits that fit them.
Strings linesOf(const std::function<void(Findings*)>& rule) {
    const CapturedLog log;
    Findings findings;
    rule(&findings);
    Strings lines = log.lines();
    const std::string error = errorLine("");
    const bool hasError = std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.starts_with(error);
    });
    EXPECT_EQ(findings.failures(), hasError ? kViolation : 0U);
    return lines;
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

std::string isObsoleted(const std::string& name) {
    return errorLine("[" + name + "] Obsoletes: " + name + " is not allowed in RPM");
}

Strings provideFindings(const Strings& provides, const RuleTree& tree = RuleTree()) {
    return linesOf(
        [&](Findings* findings) { checkProvides(kPackage, provides, load(tree), findings); });
}

Strings conflictFindings(const std::string& mandatoryName, const Strings& conflicts) {
    return linesOf([&](Findings* findings) { checkConflicts(mandatoryName, conflicts, findings); });
}

Strings requireFindings(const Strings& requirements, const RuleTree& tree = RuleTree()) {
    return linesOf([&](Findings* findings) { checkRequires(requirements, load(tree), findings); });
}

// What the two rules on the mandatory name say of a package with these lists.
Strings mandatoryFindings(const std::string& mandatoryName, const Strings& provides,
                          const Strings& conflicts, HeaderFacts* facts) {
    return linesOf([&](Findings* findings) {
        checkMandatoryProvide(mandatoryName, provides, facts, findings);
        checkMandatoryConflict(mandatoryName, conflicts, facts, findings);
    });
}

const std::string kProvideMissing =
    errorLine("[market.app] Provides: market.app must be specified in RPM");
const std::string kConflictMissing =
    errorLine("[market.app] Conflicts: market.app must be specified in RPM");

TEST(MandatoryName, MustBeProvidedAndConflictedWith) {
    struct Case {
        const char* name;
        bool isHeld;
    };
    const Case cases[] = {{"market.app", true},    {"market.app-extra", true},
                          {"my-market.app", true}, {"marketXapp", false},
                          {"market", false},       {"Market.app", false}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        HeaderFacts facts;
        EXPECT_EQ(mandatoryFindings("market.app", {"a", test.name}, {test.name, "b"}, &facts),
                  test.isHeld ? Strings() : Strings({kProvideMissing, kConflictMissing}));
        EXPECT_EQ(facts.mandatoryProvide, test.isHeld);
        EXPECT_EQ(facts.mandatoryConflict, test.isHeld);
    }
}

TEST(MandatoryName, OneOfTwoIsNotEnough) {
    HeaderFacts provided;
    EXPECT_THAT(mandatoryFindings("market.app", {"market.app"}, {}, &provided),
                ElementsAre(kConflictMissing));
    EXPECT_TRUE(provided.mandatoryProvide);
    EXPECT_FALSE(provided.mandatoryConflict);

    HeaderFacts conflicted;
    EXPECT_THAT(mandatoryFindings("market.app", {}, {"market.app"}, &conflicted),
                ElementsAre(kProvideMissing));
    EXPECT_FALSE(conflicted.mandatoryProvide);
    EXPECT_TRUE(conflicted.mandatoryConflict);
}

TEST(MandatoryName, EmptyDemandsNothing) {
    HeaderFacts facts;
    EXPECT_THAT(mandatoryFindings("", {}, {}, &facts), IsEmpty());
    EXPECT_TRUE(facts.mandatoryProvide);
    EXPECT_TRUE(facts.mandatoryConflict);
}

TEST(CheckConflicts, OnlyTheMandatoryNameMayBeConflictedWith) {
    const Strings conflicts = {"other", "market.app", "foe", "market.app-2", "marketXapp"};
    EXPECT_THAT(conflictFindings("market.app", conflicts),
                ElementsAre(noConflict("other"), noConflict("foe"), noConflict("marketXapp")));
}

TEST(CheckConflicts, WithoutAMandatoryNameEachIsAFinding) {
    EXPECT_THAT(conflictFindings("", {"market.app", "foe"}),
                ElementsAre(noConflict("market.app"), noConflict("foe")));
    EXPECT_THAT(conflictFindings("", {}), IsEmpty());
}

TEST(CheckObsoletes, EachIsALine) {
    const auto findingsOn = [](const Strings& obsoletes) {
        return linesOf([&](Findings* findings) { checkObsoletes(obsoletes, findings); });
    };
    EXPECT_THAT(findingsOn({}), IsEmpty());
    EXPECT_THAT(findingsOn({"b", "a"}), ElementsAre(isObsoleted("b"), isObsoleted("a")));
}

TEST(CheckProvides, OwnNameAndApplicationArePermitted) {
    EXPECT_THAT(provideFindings({"org.example.app", "org.example.app-data", "application()",
                                 "my-org.example.app", "application(org.example.app.desktop)"}),
                IsEmpty());
}

TEST(CheckProvides, OthersAreFindings) {
    for (const char* name : {"other", "orgXexample.app", "application(other.desktop)",
                             "application(x)", "mimehandler", "mimehandler(x", "Mimehandler(x)"}) {
        SCOPED_TRACE(name);
        EXPECT_THAT(provideFindings({name}), ElementsAre(notProvided(name)));
    }
}

TEST(CheckProvides, MandatoryNameIsPermitted) {
    EXPECT_THAT(provideFindings({"market.app", "market.app-2"}, treeWithProvides("market.app")),
                IsEmpty());
    EXPECT_THAT(provideFindings({"marketXapp"}, treeWithProvides("market.app")),
                ElementsAre(notProvided("marketXapp")));
}

TEST(CheckProvides, HandlersAreHeldAgainstTheDisallowedOnes) {
    RuleTree tree;
    tree.disallowedHandlers = {"text/.*", "x"};
    EXPECT_THAT(provideFindings({"mimehandler(text/plain)", "mimehandler(image/png)",
                                 "mimehandler()", "mimehandler(xx)", "mimehandler(x)"},
                                tree),
                ElementsAre(notProvided("mimehandler(text/plain)"), notProvided("mimehandler(x)")));
}

TEST(CheckProvides, HandlerIsCutByFixedPositions) {
    RuleTree tree;
    tree.disallowedHandlers = {"x", "r\\(y"};
    EXPECT_THAT(provideFindings({"a-mimehandler(x)"}, tree), IsEmpty())
        << "the handler reads as r(x";
    EXPECT_THAT(provideFindings({"a-mimehandler(y)"}, tree),
                ElementsAre(notProvided("a-mimehandler(y)")));
    EXPECT_THAT(provideFindings({"mimehandler(x)y)"}, tree), IsEmpty());
}

TEST(CheckProvides, HandlersLoseTheirWideSuffix) {
    RuleTree tree;
    tree.disallowedHandlers = {"x"};
    EXPECT_THAT(provideFindings({"mimehandler(x(64bit))"}, tree),
                ElementsAre(notProvided("mimehandler(x(64bit))")));
}

TEST(CheckRequires, WithoutRequirementsThereIsNoLine) {
    EXPECT_THAT(requireFindings({}), IsEmpty());
}

TEST(CheckRequires, WithEmptyListsEachIsAFindingUnderItsFullName) {
    EXPECT_THAT(requireFindings({"libfoo.so.1()(64bit)", "bar"}),
                ElementsAre(notAllowed("libfoo.so.1()(64bit)"), notAllowed("bar")));
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
    EXPECT_THAT(requireFindings({"d", "a", "c", "b", "a"}, tree),
                ElementsAre(unstable("d"), notAllowed("a"), unstable("b"), notAllowed("a")));
}

TEST(CheckRequires, WideNameIsToleratedByItsBaseAndToldInFull) {
    RuleTree tree;
    tree.regular().libraries.deprecated = {R"(libold\.so\.1)"};
    EXPECT_THAT(requireFindings({"libold.so.1()(64bit)"}, tree),
                ElementsAre(unstable("libold.so.1()(64bit)")));
}

TEST(CheckRequires, BadPatternThrowsBeforeAnyLine) {
    RuleTree tree;
    tree.regular().libraries.deprecated = {"b", "("};
    Findings findings;
    const CapturedLog log;
    EXPECT_THROW(checkRequires({"b", "a"}, load(tree), &findings), std::regex_error);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(findings.failures(), 0U);
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
        EXPECT_EQ(vectorContains({test.pattern}, test.text), test.expected)
            << test.text << " against " << test.pattern;
    }
}

TEST(VectorContains, WalksUpToTheFirstHit) {
    EXPECT_FALSE(vectorContains({}, "a"));
    EXPECT_TRUE(vectorContains({"x", "a.*", "("}, "abc"));
    EXPECT_THROW(vectorContains({"x", "("}, "abc"), std::regex_error);
}

}  // namespace
}  // namespace pkgvet
