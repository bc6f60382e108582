// `pkgvet check` with waivers, baselines and --fail-on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr const char* kRule = "dependency-not-allowed";

// A QML application that breaks one rule: it requires what no rule file admits.
PackageBuilder application() {
    PackageBuilder package("org.example.app");
    package.tag("Requires: libtessaraapp-launcher")
        .tag("Requires: stranger")
        .file("/usr/share/applications/org.example.app.desktop",
              "[Desktop Entry]\nName=App\nType=Application\nIcon=org.example.app\n"
              "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n"
              "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n");
    return package;
}

class PolicyCommand : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory_ = new TemporaryDirectory;
        RuleTree tree;
        tree.regular().requires_.allowed = {"libtessaraapp-launcher"};
        tree.regular().requires_.unstable = {"unstable"};
        rules_ = new std::string(tree.write(*directory_));
        package_ = new std::string(application().build(*directory_));
    }

    static void TearDownTestSuite() {
        delete package_;
        delete rules_;
        delete directory_;
    }

    static const std::string& package() { return *package_; }

    static ProgramResult check(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {"check", "--validation", "on", "--rules", *rules_};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runPkgvet(command);
    }

    std::string waivers(const std::string& rule, const std::string& members = "") const {
        return own_.write("waivers.json", R"({"waivers": [{"rule": ")" + rule +
                                              R"(", "subject": ".*", "package": "org\\..*",
                                              "reason": "agreed")" +
                                              members + "}]}");
    }

    const TemporaryDirectory own_;

private:
    static TemporaryDirectory* directory_;
    static std::string* rules_;
    static std::string* package_;
};

TemporaryDirectory* PolicyCommand::directory_ = nullptr;
std::string* PolicyCommand::rules_ = nullptr;
std::string* PolicyCommand::package_ = nullptr;

TEST_F(PolicyCommand, WaivedPackagePassesAndTheLibrarysVerdictIsSeen) {
    EXPECT_EQ(check({package()}).status, 1);
    const ProgramResult result =
        check({"--waivers", waivers(kRule), "--format", "json", package()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const json judgement = json::parse(result.output)["packages"][0]["judgements"][0];
    EXPECT_FALSE(judgement["accepted"]);
    EXPECT_TRUE(judgement["passes"]);
    const json& findings = judgement["findings"];
    const auto waived = std::find_if(findings.begin(), findings.end(), [](const json& finding) {
        return finding["standing"] == "waived";
    });
    ASSERT_NE(waived, findings.end());
    EXPECT_EQ((*waived)["rule"], kRule);
    EXPECT_EQ((*waived)["subject"], "stranger");
    EXPECT_EQ((*waived)["reason"], "agreed");
}

TEST_F(PolicyCommand, ExpiredAndUnusedWaiversAreReported) {
    struct Case {
        std::string file;
        std::string notice;
        int status;
    };
    const TemporaryDirectory other;
    const std::string unused = other.write("unused.json", R"({"waivers": [{"rule": "icon-missing",
        "subject": "x", "package": "x", "reason": "x"}]})");
    const std::string expired = waivers(kRule, R"(, "expires": "2020-01-31")");
    const Case cases[] = {
        {unused, unused + ":1:14: the waiver for icon-missing was never used", 1},
        {expired, expired + ":2:78: the waiver for " + kRule + " expired on 2020-01-31", 1}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.notice);
        const ProgramResult result = check({"--waivers", test.file, "--format", "json", package()});
        EXPECT_EQ(result.status, test.status);
        EXPECT_EQ(result.errors, "pkgvet: " + test.notice + "\n");
        EXPECT_EQ(json::parse(result.output)["notices"], json::array({test.notice}));
    }
}

TEST_F(PolicyCommand, FaultsInFilesEndTheRunBeforeTheFirstPackage) {
    const std::string bad = own_.write("bad.json", R"({"waivers": [{"rule": "icon-missing"}]})");
    const std::string baseline = own_.write("baseline.json", "[]");
    const ProgramResult result = check(
        {"--waivers", bad, "--waivers", own_ / "none.json", "--baseline", baseline, package()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "pkgvet: " + bad + ":1:14: \"waivers[0].subject\" is missing\n" +      //
                  "pkgvet: " + bad + ":1:14: \"waivers[0].package\" is missing\n" +  //
                  "pkgvet: " + bad + ":1:14: \"waivers[0].reason\" is missing\n" +   //
                  "pkgvet: " + (own_ / "none.json") + ": No such file or directory\n" +
                  "pkgvet: " + baseline + ":1:1: holds no JSON object\n");
}

TEST_F(PolicyCommand, OnlyNewFindingsCountAgainstABaseline) {
    const std::string baseline = own_ / "known.json";
    EXPECT_EQ(check({"--write-baseline", baseline, package()}).status, 1);
    EXPECT_EQ(check({"--baseline", baseline, package()}).status, 0);
    const std::string written = readFile(baseline);
    EXPECT_THAT(written, testing::Not(HasSubstr(package())));
    // Taking the same findings again changes nothing, although they are known by now.
    const std::string next = own_ / "next.json";
    EXPECT_EQ(check({"--baseline", baseline, "--write-baseline", next, package()}).status, 0);
    EXPECT_EQ(readFile(next), written);

    const std::string worse = application().tag("Requires: newcomer").build(own_);
    const ProgramResult result = check({"--baseline", baseline, "--format", "json", worse});
    EXPECT_EQ(result.status, 1);
    const json report = json::parse(result.output);
    for (const json& finding : report["packages"][0]["judgements"][0]["findings"]) {
        if (finding["rule"] == kRule) {
            EXPECT_EQ(finding["standing"], finding["subject"] == "newcomer" ? "counts" : "known");
        }
    }
}

TEST_F(PolicyCommand, GraveFindingsAreExcusedByNothing) {
    const std::string grave = application()
                                  .script("%post\ntrue")
                                  .file("/usr/share/org.example.app/x", "x", "4644")
                                  .build(own_);
    const std::string baseline = own_ / "known.json";
    EXPECT_EQ(check({"--write-baseline", baseline, grave}).status, 1);
    for (const char* rule : {"scripts-not-allowed", "setuid-file"}) {
        SCOPED_TRACE(rule);
        EXPECT_THAT(check({grave, "--format", "concise"}).output, HasSubstr(rule));
        EXPECT_THAT(readFile(baseline), testing::Not(HasSubstr(rule)));
        const ProgramResult result = check({"--waivers", waivers(rule), grave});
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, HasSubstr("cannot be waived"));
    }
    EXPECT_EQ(check({"--baseline", baseline, grave}).status, 1);
    EXPECT_EQ(check({"--validation", "off", "--baseline", baseline, grave}).status, 1);
}

TEST_F(PolicyCommand, FailOnSaysWhatRejects) {
    EXPECT_EQ(check({"--validation", "off", package()}).status, 0);
    EXPECT_EQ(check({"--validation", "off", "--fail-on", "error", package()}).status, 1);
    const std::string unstable = application().tag("Requires: unstable").build(own_);
    const std::string excused = waivers(kRule);
    EXPECT_EQ(check({"--waivers", excused, unstable}).status, 0);
    EXPECT_EQ(check({"--waivers", excused, "--fail-on", "error", unstable}).status, 0);
    EXPECT_EQ(check({"--waivers", excused, "--fail-on", "warning", unstable}).status, 1);
}

TEST_F(PolicyCommand, BaselineThatCannotBeWrittenIsAUsageError) {
    const ProgramResult result = check({"--write-baseline", own_ / "none/known.json", package()});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("none/known.json"));
}

// Through a pipe a file is read once, and no more.
TEST_F(PolicyCommand, ReportNamesTheFilesByTheirDigestsWhateverTheyAreReadFrom) {
    const std::string file = waivers(kRule);
    const std::string baseline =
        own_.write("known.json", R"({"schema_version": 1, "findings": []})");
    const auto provenanceOf = [](const ProgramResult& result) {
        return json::parse(result.output)["provenance"];
    };
    const json plain = provenanceOf(
        check({"--format", "json", "--waivers", file, "--baseline", baseline, package()}));
    EXPECT_EQ(plain["waivers"][0].get<std::string>().size(), 64U);
    EXPECT_EQ(plain["baseline"].get<std::string>().size(), 64U);
    const std::string pipe = own_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread writer([&] { writeFile(pipe, readFile(file)); });
    const json piped = provenanceOf(
        check({"--format", "json", "--waivers", pipe, "--baseline", baseline, package()}));
    writer.join();
    EXPECT_EQ(piped, plain);
    EXPECT_EQ(provenanceOf(check({"--format", "json", package()}))["baseline"], nullptr);
}

}  // namespace
