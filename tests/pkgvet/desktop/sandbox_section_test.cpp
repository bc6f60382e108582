// The rule on the sandbox section of the desktop file.
#include <gtest/gtest.h>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_run.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kDisallowedSection =
    errorLine("[pinfold] Pinfold section is not allowed (use X-Application instead)");
const std::string kMultipleSections = errorLine(
    "[pinfold] Multiple pinfold sections are not allowed, please use only \"X-Application\"");
const std::string kDeprecatedSection = warningLine(
    "[pinfold] \"X-Pinfold\" section will be deprecated in future versions, please use "
    "\"X-Application\" instead");
const std::string kIllegalApplication =
    errorLine("[pinfold] ApplicationName contains illegal characters");
const std::string kWrongPair = errorLine(
    "[pinfold] OrganizationName and ApplicationName pair should form a package name (e.g. for "
    "package \"com.example.app\" ApplicationName must be \"app\" and OrganizationName must be "
    "\"com.example\").");
const std::string kIllegalOrganization =
    errorLine("[pinfold] OrganizationName contains illegal characters");
const std::string kLeadingDigit =
    errorLine("[pinfold] OrganizationName may not start with a number");
const std::string kNoDomain = errorLine(
    "[pinfold] OrganizationName should follow reverse domain notation (at least up to second-level "
    "domain), e.g.: \"org.example\".");
const std::string kHyphen = warningLine(
    "[pinfold] ExecDBus and/or ExecSystemService will not work, remove \"-\" from Application "
    "name");

std::string reserved(const std::string& part) {
    return errorLine("[pinfold] ApplicationName contains reserved prefix " + part);
}

std::string badKey(const std::string& key) {
    return errorLine("[" + key + "] X-Pinfold key is not allowed");
}

std::string badPermission(const std::string& permission) {
    return errorLine("[" + permission + "] Permission is not allowed");
}

// The rule on one desktop file.
struct Judgement {
    explicit Judgement(const std::string& content, const std::string& package = kPackage)
        : lines(linesOf([&](pkgvet::Findings* findings) {
              pkgvet::processPinfold(package, desktopEntry(content), rulesNamed("regular"), "",
                                     &facts, findings);
          })) {}

    pkgvet::DesktopFacts facts;
    Strings lines;
};

std::string names(const std::string& organization, const std::string& application) {
    return "OrganizationName=" + organization + "\nApplicationName=" + application + "\n";
}

std::string section(const std::string& organization, const std::string& application) {
    return "[X-Application]\n" + names(organization, application);
}

TEST(SandboxSection, AGoodOneHasNoFinding) {
    const Judgement judgement(kGoodSection);
    EXPECT_EQ(judgement.lines, Strings());
    EXPECT_TRUE(judgement.facts.isSandboxed);
    EXPECT_EQ(judgement.facts.pinfoldGroupName, "X-Application");
    EXPECT_EQ(judgement.facts.organizationName, "org.example");
    EXPECT_EQ(judgement.facts.applicationName, "app");
    EXPECT_TRUE(judgement.facts.orgDomainName);
    EXPECT_TRUE(judgement.facts.correctOrgName);
    EXPECT_TRUE(judgement.facts.correctOrgNameAppNamePair);
    EXPECT_TRUE(judgement.facts.correctDbus);
    EXPECT_TRUE(judgement.facts.correctSystemService);
    EXPECT_FALSE(judgement.facts.illegalCharacters || judgement.facts.wrongLeadingOrgName ||
                 judgement.facts.pinfoldSection || judgement.facts.multiplePinfoldSection ||
                 judgement.facts.dbusError || judgement.facts.dbusWarning);
}

TEST(SandboxSection, WithoutOneNothingElseIsJudged) {
    for (const char* content : {"", kGoodEntry, "[x-application]\n", "malformed"}) {
        const Judgement judgement(content);
        EXPECT_EQ(judgement.lines,
                  Strings{errorLine(
                      "[pinfold] X-Application section should be specified in desktop file")});
        EXPECT_FALSE(judgement.facts.isSandboxed);
        EXPECT_EQ(judgement.facts.pinfoldGroupName, "");
        EXPECT_FALSE(judgement.facts.orgDomainName);
        EXPECT_TRUE(judgement.facts.correctOrgName);
        EXPECT_TRUE(judgement.facts.correctOrgNameAppNamePair);
    }
}

TEST(SandboxSection, TheDeprecatedNameIsAWarning) {
    const Judgement judgement("[X-Pinfold]\n" + names("org.example", "app"));
    EXPECT_EQ(judgement.lines, Strings{kDeprecatedSection});
    EXPECT_TRUE(judgement.facts.isSandboxed);
    EXPECT_TRUE(judgement.facts.deprecatedPinfoldSection);
    EXPECT_FALSE(judgement.facts.pinfoldSection);
}

TEST(SandboxSection, TheFormerNameIsAnErrorAtTheEnd) {
    const Judgement judgement("[Pinfold]\n" + names("org.example", "app") + "Other=1\n");
    EXPECT_EQ(judgement.lines, (Strings{badKey("Other"), kDisallowedSection}));
    EXPECT_TRUE(judgement.facts.pinfoldSection);
    EXPECT_FALSE(judgement.facts.multiplePinfoldSection);
}

TEST(SandboxSection, OfSeveralTheLastInTheOrderOfTheSearchIsRead) {
    const std::string application = "[X-Application]\nA=1\n" + names("org.example", "app");
    const std::string deprecated = "[X-Pinfold]\nB=1\n" + names("org.example", "app");
    const std::string former = "[Pinfold]\nC=1\n" + names("org.example", "app");
    struct Case {
        std::string content;
        const char* section;
        Strings lines;
    };
    const Case cases[] = {
        {former + application, "Pinfold", {kMultipleSections, badKey("C"), kDisallowedSection}},
        {deprecated + application,
         "X-Pinfold",
         {kMultipleSections, kDeprecatedSection, badKey("B")}},
        {application + former + deprecated,
         "Pinfold",
         {kMultipleSections, badKey("C"), kDisallowedSection}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        const Judgement judgement(test.content);
        EXPECT_EQ(judgement.lines, test.lines);
        EXPECT_EQ(judgement.facts.pinfoldGroupName, test.section);
        EXPECT_TRUE(judgement.facts.multiplePinfoldSection);
    }
}

TEST(SandboxSection, OtherKeysAreNotAllowedWhateverTheSectionIsCalled) {
    const Judgement judgement(
        std::string(kGoodSection) +
        "Z=1\nPermissions=\nExportDBusInterfaces=any\nIntents=\npermissions=1\n"
        "Permissions[de]=x\nExecSystemService=x\nExecSystemServiceUser=x\n"
        "ExecSystemServiceGroup=x\nExecSystemServiceAutostart=x\n");
    EXPECT_EQ(judgement.lines,
              (Strings{badKey("Z"), badKey("permissions"), badKey("Permissions[de]"),
                       badKey("ExecSystemService"), badKey("ExecSystemServiceUser"),
                       badKey("ExecSystemServiceGroup"), badKey("ExecSystemServiceAutostart")}));
    EXPECT_TRUE(judgement.facts.correctSystemService);
}

TEST(SandboxSection, OrganizationNamesAndTheirFaults) {
    struct Case {
        const char* package;
        const char* organization;
        Strings lines;
    };
    const Case cases[] = {
        {"org.1example.app", "org.1example", {kLeadingDigit}},
        {"1org.example.app", "1org.example", {kLeadingDigit}},
        {"org.exa1mple.app", "org.exa1mple", {}},
        {"Org.example.app", "Org.example", {kIllegalOrganization}},
        {"example.app", "example", {kNoDomain}},
        {"org.example.app", "org.example ", {kWrongPair, kIllegalOrganization}},
        {"org.example.app", "org/example", {kWrongPair, kIllegalOrganization, kNoDomain}},
        {"org.example.app", "", {kWrongPair, kIllegalOrganization, kNoDomain}},
        {"org.example.app", "org.", {kWrongPair, kNoDomain}},
        {"org.example.app", ".org", {kWrongPair, kNoDomain}},
        {"org.example.app", "..org.x", {kWrongPair}},
        // The engine lets one line feed stand at the end.
        {"org.example.app", "org.example\\n", {kWrongPair}},
        {"org.example.app", "org.example\\n\\n", {kWrongPair, kIllegalOrganization}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.organization);
        EXPECT_EQ(Judgement(section(test.organization, "app"), test.package).lines, test.lines);
    }
}

TEST(SandboxSection, TheFactsOnAnOrganizationNameAreKept) {
    const Judgement digit(section("org.1example", "app"));
    EXPECT_TRUE(digit.facts.wrongLeadingOrgName);
    EXPECT_TRUE(digit.facts.correctOrgName);
    EXPECT_TRUE(digit.facts.orgDomainName);
    EXPECT_FALSE(digit.facts.correctOrgNameAppNamePair);
    const Judgement capital(section("Org", "app"));
    EXPECT_FALSE(capital.facts.wrongLeadingOrgName);
    EXPECT_FALSE(capital.facts.correctOrgName);
    EXPECT_FALSE(capital.facts.orgDomainName);
}

TEST(SandboxSection, ApplicationNamesAndTheirFaults) {
    struct Case {
        const char* application;
        Strings lines;
    };
    const Case cases[] = {
        {"other", {kWrongPair}},
        {"_App.x-1", {kWrongPair, kHyphen}},
        {"1app", {kIllegalApplication, kWrongPair}},
        {".app", {kIllegalApplication, kWrongPair}},
        {"ap p", {kIllegalApplication, kWrongPair}},
        {"", {kIllegalApplication, kWrongPair}},
        {"my.task_x", {reserved(".task_"), kWrongPair}},
        {"a.service_.instance_", {reserved(".instance_"), reserved(".service_"), kWrongPair}},
        {"a.tessara_b", {reserved(".tessara_"), kWrongPair}},
        {"task_x", {kWrongPair}},
        {"a.Task_x", {kWrongPair}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.application);
        const Judgement judgement(section("org.example", test.application));
        EXPECT_EQ(judgement.lines, test.lines);
    }
}

TEST(SandboxSection, AHyphenInTheApplicationNameAloneIsAWarning) {
    const Judgement judgement(section("org.example", "my-app"), "org.example.my-app");
    EXPECT_EQ(judgement.lines, Strings{kHyphen});
    EXPECT_TRUE(judgement.facts.dbusWarning);
    EXPECT_FALSE(judgement.facts.dbusError);
    EXPECT_FALSE(judgement.facts.illegalCharacters);
}

TEST(SandboxSection, MissingNamesHaveALineForEachRule) {
    EXPECT_EQ(Judgement("[X-Application]\n").lines,
              (Strings{kIllegalApplication, kWrongPair, kIllegalOrganization, kNoDomain}));
}

TEST(SandboxSection, PermissionsAreOnTheListOrOfTheFormNameAtName) {
    struct Case {
        const char* permissions;
        Strings bad;
    };
    const Case cases[] = {
        {"Internet;Location;", {}},
        {"Audio@Foo;a@b", {}},
        {"Audio@Foo@Bar", {"Audio@Foo@Bar"}},
        {"@Foo;Foo@;@;Foo", {"@Foo", "Foo@", "@", "Foo"}},
        {"internet;Internet ;;Location", {"internet", "Internet ", ""}},
        {"", {}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.permissions);
        Strings lines;
        for (const std::string& permission : test.bad) {
            lines.push_back(badPermission(permission));
        }
        EXPECT_EQ(
            Judgement(std::string(kGoodSection) + "Permissions=" + test.permissions + "\n").lines,
            lines);
    }
}

TEST(SandboxSection, IntentsAreJudged) {
    EXPECT_EQ(Judgement(std::string(kGoodSection) + "Intents=Start;open;Fly;OpenURI:fast\n").lines,
              (Strings{errorLine("Invalid intent specification: open"),
                       errorLine("Non standard intent name: Fly"),
                       errorLine("Unknown intent flag: fast")}));
}

TEST(SandboxSection, TheSectionIsReportedAfterItsKeys) {
    const Judgement judgement(
        "[X-Application]\n[Pinfold]\nIntents=open\nPermissions=Root\nApplicationName=1-x.task_\n"
        "OrganizationName=1Org\nOther=1\n");
    EXPECT_EQ(judgement.lines,
              (Strings{kMultipleSections, badKey("Other"), reserved(".task_"),
                       badPermission("Root"), errorLine("Invalid intent specification: open"),
                       kDisallowedSection, kIllegalApplication, kWrongPair, kIllegalOrganization,
                       kLeadingDigit, kNoDomain, kHyphen}));
}

TEST(SandboxSection, VeryLongValuesAreJudged) {
    const std::string text(2000000, 'a');
    std::string permissions;
    for (int i = 0; i < 200000; ++i) {
        permissions += "Internet;";
    }
    const Judgement judgement(section(text, text) + "Permissions=" + permissions + text + "\n");
    EXPECT_EQ(judgement.lines, (Strings{badPermission(text), kWrongPair, kNoDomain}));
}

}  // namespace
