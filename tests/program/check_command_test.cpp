// `pkgvet check` as a user runs it: exit status and both streams compared whole.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

constexpr const char* kName = "org.example.app";

// A rule tree that accepts a plain package, and such a package.
class CheckCommand : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory_ = new TemporaryDirectory;
        RuleTree tree;
        tree.regular().requires_.allowed = {"libtessaraapp-launcher"};
        tree.profiles[2].provides = "mdm-provider";
        tree.profiles[2].inheritance = "regular";
        rules_ = new std::string(tree.write(*directory_));
        // A QML application needs no binary, which keeps its package small.
        package_ = new std::string(builder().build(*directory_));
    }

    static void TearDownTestSuite() {
        delete package_;
        delete rules_;
        delete directory_;
    }

    static PackageBuilder builder() {
        PackageBuilder package(kName);
        package.tag("Requires: libtessaraapp-launcher")
            .file("/usr/share/applications/org.example.app.desktop",
                  "[Desktop Entry]\nName=App\nType=Application\nIcon=org.example.app\n"
                  "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n"
                  "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n");
        return package;
    }

    static const std::string& package() { return *package_; }
    static const TemporaryDirectory& directory() { return *directory_; }

    static ProgramResult check(std::vector<std::string> arguments,
                               const std::vector<std::string>& environment = {}) {
        std::vector<std::string> command = {"check", "--validation", "on", "--rules", *rules_};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runPkgvet(command, environment);
    }

    static std::string notJudged(const std::string& path, const std::string& cause) {
        return "pkgvet: " + path + ": could not be judged: " + cause + "\n";
    }

private:
    static TemporaryDirectory* directory_;
    static std::string* rules_;
    static std::string* package_;
};

TemporaryDirectory* CheckCommand::directory_ = nullptr;
std::string* CheckCommand::rules_ = nullptr;
std::string* CheckCommand::package_ = nullptr;

const std::string kNextStep = "  next: pkgvet explain not-judged\n";
const std::string kNothingJudged = "1 package: 0 accepted, 0 rejected, 1 not judged\n";

TEST_F(CheckCommand, FilesThatAreNoPackagesAreNotJudged) {
    const std::string pipe = directory() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string text = directory().write("text.rpm", "no package\n");
    const std::string truncated =
        directory().write("truncated.rpm", readFile(package()).substr(0, 200));
    struct Case {
        const char* name;
        std::string path;
        std::string cause;
    };
    const Case cases[] = {
        {"missing", directory() / "missing.rpm", "No such file or directory"},
        {"pipe", pipe, "not a regular file"},
        {"device", "/dev/zero", "not a regular file"},
        {"text", text, "not an RPM package"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const ProgramResult result = check({test.path});
        EXPECT_EQ(result.status, 3);
        EXPECT_EQ(result.output,
                  test.path + ": not judged: " + test.cause + "\n" + kNextStep + kNothingJudged);
        EXPECT_EQ(result.errors, notJudged(test.path, test.cause));
    }
    const ProgramResult result = check({truncated});
    EXPECT_EQ(result.status, 3);
    EXPECT_TRUE(result.output.ends_with("\n" + kNothingJudged));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

TEST_F(CheckCommand, PayloadThatDoesNotUnpackIsNotJudged) {
    const std::string content = readFile(package());
    const std::string broken =
        directory().write("broken.rpm", content.substr(0, content.size() - 60));
    const ProgramResult result = check({broken});
    EXPECT_EQ(result.status, 3);
    EXPECT_TRUE(result.output.starts_with(broken + ": not judged: the payload did not unpack"));
    EXPECT_EQ(result.errors.find(
                  notJudged(broken, "the payload did not unpack").substr(0, broken.size() + 50)),
              0U)
        << result.errors;
}

// To decompress it, xz sets 64 MiB aside before the first byte.
TEST_F(CheckCommand, PayloadThatTakesMoreMemoryThanAllowedIsNotJudged) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "with the sanitizers there is no limit on addresses";
#endif
    const TemporaryDirectory directory;
    const std::string file = builder().tag("%global _binary_payload w9.xzdio").build(directory);
    const ProgramResult result = check({"--format", "json", "--memory", "64M", file});
    EXPECT_EQ(result.status, 3);
    EXPECT_NE(result.output.find(R"("cause_code": "out-of-memory")"), std::string::npos)
        << result.output;
    EXPECT_NE(result.errors.find("it took more memory than --memory allows"), std::string::npos)
        << result.errors;
    EXPECT_EQ(check({"--memory", "1G", file}).status, 0);
}

// GLib ends a process that gets none.
TEST_F(CheckCommand, RuleThatTakesMoreMemoryThanAllowedIsNotJudged) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "with the sanitizers there is no limit on addresses";
#endif
    constexpr int kElements = 4'000'000;
    std::string json = "[0";
    for (int i = 0; i < kElements; ++i) {
        json += ",0";
    }
    const TemporaryDirectory directory;
    const std::string file =
        builder()
            .file("/etc/sealwatchd/config.d/" + std::string(kName) + ".json", json + "]")
            .build(directory);
    for (const char* sandbox : {"auto", "off"}) {
        SCOPED_TRACE(sandbox);
        const ProgramResult result =
            check({"--format", "json", "--memory", "192M", "--sandbox", sandbox, file});
        EXPECT_EQ(result.status, 3);
        EXPECT_NE(result.output.find(R"("cause_code": "out-of-memory")"), std::string::npos)
            << result.output;
        EXPECT_NE(result.errors.find("it took more memory than --memory allows"), std::string::npos)
            << result.errors;
    }
}

TEST_F(CheckCommand, ExceptionOutOfARuleIsNotJudged) {
    RuleTree tree;
    tree.regular().requires_.allowed = {"(x*)*(x*)*\\1y"};
    const TemporaryDirectory rules;
    const std::string longName(2000, 'x');
    const std::string hostile = PackageBuilder(kName)
                                    .tag("Requires: " + longName)
                                    .file("/usr/share/org.example.app/x", "x")
                                    .build(directory());
    const ProgramResult result = runPkgvet({"check", "--rules", tree.write(rules), hostile});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors.find("pkgvet: " + hostile + ": could not be judged: a rule failed: "),
              0U)
        << result.errors;
}

TEST_F(CheckCommand, RejectionShowsFindingsAndVerdict) {
    const ProgramResult result = check({"--profile", "mdm", package()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output.find(package() + "  (mdm)\n  "), 0U) << result.output;
    for (const std::string kind : {"Provides", "Conflicts"}) {
        const std::string line = kind + ": mdm-provider must be specified in RPM\n";
        EXPECT_NE(result.output.find(line), std::string::npos) << result.output;
    }
    EXPECT_NE(result.output.find(package() + ": rejected: 2 errors"), std::string::npos);
    EXPECT_EQ(result.errors, "");
}

TEST_F(CheckCommand, UnreadablePackageOutranksARejectedOneAndTheRunGoesOn) {
    const std::string missing = directory() / "missing.rpm";
    const ProgramResult result = check({"--quiet", "--profile", "mdm", missing, package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged(missing, "No such file or directory"));
    EXPECT_NE(result.output.find(": rejected: 2 errors"), std::string::npos);
    EXPECT_NE(result.output.find("2 packages: 0 accepted, 1 rejected, 1 not judged\n"),
              std::string::npos);
}

TEST_F(CheckCommand, ValidationOffAcceptsWhatOnlyBreaksRules) {
    const ProgramResult result =
        check({"--quiet", "--profile", "mdm", "--validation", "off", package()});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find(package() + ": accepted: 2 errors"), std::string::npos);
}

TEST_F(CheckCommand, ValidationOffStillRejectsScripts) {
    const std::string scripted = builder().script("%post\ntrue").build(directory());
    const ProgramResult result = check({"--validation", "off", scripted});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.output.find("[scripts] Script sections are not allowed in RPM\n"),
              std::string::npos);
}

TEST_F(CheckCommand, ColourComesWhenAskedForOnly) {
    const auto hasColor = [](const ProgramResult& result) {
        return result.output.find('\033') != std::string::npos;
    };
    EXPECT_FALSE(hasColor(check({package()})));
    EXPECT_FALSE(hasColor(check({"--color", "never", package()})));
    EXPECT_TRUE(hasColor(check({"--color", "always", package()})));
    EXPECT_TRUE(hasColor(check({"--color", "always", package()}, {"NO_COLOR=1"})));
}

TEST_F(CheckCommand, UsageErrorsEndWithTwo) {
    EXPECT_EQ(runPkgvet({}).status, 2);
    EXPECT_EQ(runPkgvet({"check"}).status, 2);
    EXPECT_EQ(runPkgvet({"frobnicate"}).status, 2);
    EXPECT_EQ(check({"--profile", "none", package()}).status, 2);
    EXPECT_EQ(check({"--profile", "0", package()}).status, 2);
    EXPECT_EQ(check({"--validation", "maybe", package()}).status, 2);
    EXPECT_EQ(check({"--color", "maybe", package()}).status, 2);
    EXPECT_EQ(runPkgvet({"--help"}).status, 0);
    EXPECT_EQ(runPkgvet({"check", "--help"}).status, 0);
}

TEST_F(CheckCommand, UnusableRuleTreeEndsWithTwoBeforeTheFirstPackage) {
    const std::string rules = directory().write("empty.json", "{}");
    const ProgramResult result = runPkgvet({"check", "--rules", rules, package()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    const std::string start = "pkgvet: " + rules + ":1:1: ";
    EXPECT_EQ(result.errors, start + "\"icon_sizes\" is missing\n" + start +
                                 "\"dirs\" is missing\n" + start + "\"profiles\" is missing\n");
}

TEST_F(CheckCommand, NameThatMeansSomethingToAShellReachesNone) {
    const std::string marker = directory() / "marker";
    const std::string hostile = directory() / "a \"$(touch marker)`touch marker`.rpm";
    std::filesystem::copy_file(package(), hostile);
    const ProgramResult plain = check({"--quiet", package()});
    const ProgramResult result = check({"--quiet", hostile});
    EXPECT_EQ(result.status, plain.status);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output.find(hostile + ": "), 0U) << result.output;
    EXPECT_FALSE(std::filesystem::exists(marker));
    EXPECT_FALSE(std::filesystem::exists("marker"));
}

TEST_F(CheckCommand, ControlBytesOfAPackageDoNotReachTheTerminal) {
    const std::string colored = directory() / "\033[31mred.rpm";
    std::filesystem::copy_file(package(), colored);
    const ProgramResult result = check({"--quiet", colored});
    EXPECT_EQ(result.output.find('\033'), std::string::npos);
    EXPECT_NE(result.output.find("\\x1b[31mred.rpm"), std::string::npos);
}

TEST_F(CheckCommand, RelativePathsStartAtTheWorkingDirectory) {
    const std::string relative = std::filesystem::relative(package());
    EXPECT_EQ(check({"--quiet", relative}).output.find(relative + ": "), 0U);
}

}  // namespace
