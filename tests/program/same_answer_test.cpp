// The same packages under the same rules give the same bytes, whoever judges them, and where.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/package/example_package.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/program/sample_packages.h"
#include "tests/support/program/sandboxes.h"

namespace {

namespace fs = std::filesystem;

using Json = nlohmann::json;
using Words = std::vector<std::string>;

class SameAnswer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory_ = new TemporaryDirectory;
        packages_ = new Words;
        for (const SamplePackage& sample : buildSamples(*directory_)) {
            packages_->push_back(sample.path);
        }
        for (const char* const name : {"good", "bad"}) {
            packages_->push_back(buildExample(name, *directory_ / name));
        }
        packages_->push_back(directory_->write("text.rpm", "not a package"));
        rules_ = new std::string(sampleRules().write(*directory_));
        makeReadable();
    }

    static void TearDownTestSuite() {
        delete rules_;
        delete packages_;
        delete directory_;
    }

    // For the other users.
    static void makeReadable() {
        fs::permissions(directory_->path(),
                        fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
        for (const auto& entry : fs::recursive_directory_iterator(directory_->path())) {
            if (!entry.is_symlink()) {
                fs::permissions(entry.path(), fs::perms::others_read | fs::perms::others_exec,
                                fs::perm_options::add);
            }
        }
    }

    static ProgramResult run(const Words& options, const Words& environment,
                             const Words& packages) {
        Words arguments = {"check",        "--format", "json",      "--rules", *rules_,
                           "--validation", "on",       "--profile", "all"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), packages.begin(), packages.end());
        return runPkgvet(arguments, environment);
    }

    // The report without what says how it came about.
    static std::string answer(const Words& options = {}, const Words& environment = {}) {
        Json report = Json::parse(run(options, environment, *packages_).output);
        report.erase("sandbox");
        for (Json& package : report["packages"]) {
            package.erase("judged_by");
        }
        return report.dump(1);
    }

    static inline TemporaryDirectory* directory_ = nullptr;
    static inline Words* packages_ = nullptr;
    static inline std::string* rules_ = nullptr;
};

TEST_F(SameAnswer, WhateverSurroundsTheProgram) {
    const TemporaryDirectory home;
    home.write(".rpmmacros",
               "%_tmppath /nowhere\n%__cpio false\n%_dbpath %(touch " + (home / "touched") + ")\n");
    home.write(".rpmrc", "macrofiles: /nowhere\n");
    const std::string expected = answer({"--jobs", "1"});
    struct Case {
        const char* name;
        Words options;
        Words environment;
    };
    const Case cases[] = {
        {"eight jobs", {"--jobs", "8"}, {}},
        {"another locale", {}, {"LC_ALL=de_DE.UTF-8", "LANGUAGE=de:fr", "LANG=xx_XX"}},
        {"another time zone", {}, {"TZ=Asia/Kolkata"}},
        {"a hostile home", {}, {"HOME=" + home.path().string()}},
        {"hostile variables", {}, {"RPM_CONFIGDIR=/nowhere", "TMPDIR=/nowhere", "CPIO=x"}},
        {"a tight umask", {}, {"sh", "-c", "umask 077 && exec \"$@\"", "sh"}},
        {"another directory", {}, {"sh", "-c", "cd / && exec \"$@\"", "sh"}},
        {"an empty environment", {}, {"-i"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(answer(test.options, test.environment), expected);
    }
    EXPECT_FALSE(fs::exists(home / "touched"));
    // librpm's database, among others, is not made.
    EXPECT_EQ(std::distance(fs::directory_iterator(home.path()), fs::directory_iterator()), 2);
}

TEST_F(SameAnswer, OnDiskAsInMemory) {
    const TemporaryDirectory scratch;
    fs::permissions(scratch.path(), fs::perms::all);
    if (run({"--scratch", scratch.path()}, {}, {packages_->front()}).status == 2) {
        GTEST_SKIP() << "this machine has no namespaces";
    }
    EXPECT_EQ(answer({"--scratch", scratch.path()}), answer());
    EXPECT_TRUE(fs::is_empty(scratch.path()));
    EXPECT_EQ(run({"--scratch", "/nowhere"}, {}, {packages_->front()}).status, 3);
}

TEST_F(SameAnswer, UnderLandlockAlone) {
    if (!isThere(landlockAlone())) {
        GTEST_SKIP() << "this machine does not let a test do without namespaces";
    }
    const ProgramResult one = run({}, withoutNamespaces(), {packages_->front()});
    EXPECT_NE(one.sandboxRemark.find("by landlock"), std::string::npos) << one.sandboxRemark;
    const std::string expected = answer();
    EXPECT_EQ(answer({}, withoutNamespaces()), expected);
    const TemporaryDirectory home;
    home.write(".rpmmacros", "%_tmppath /nowhere\n%__cpio false\n");
    Words surroundings = {"HOME=" + home.path().string(), "LC_ALL=de_DE.UTF-8", "LANGUAGE=de:fr",
                          "TZ=Asia/Kolkata"};
    const Words prefix = withoutNamespaces();
    surroundings.insert(surroundings.end(), prefix.begin(), prefix.end());
    EXPECT_EQ(answer({"--jobs", "8"}, surroundings), expected);
    EXPECT_EQ(run({"--sandbox", "require"}, withoutNamespaces(), {packages_->front()}).status, 2);
}

TEST_F(SameAnswer, ForAnotherUser) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can become another user";
    }
    const Words asNobody = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    const TemporaryDirectory shared;
    fs::permissions(shared.path(), fs::perms::all);
    if (run({}, asNobody, {"missing.rpm"}).status != 3) {
        GTEST_SKIP() << "another user may not run the program where it lies";
    }
    EXPECT_EQ(answer({}, asNobody), answer());
}

TEST_F(SameAnswer, InAnyOrder) {
    const auto byPath = [](const std::string& report) {
        std::set<std::string> packages;
        const Json parsed = Json::parse(report);
        for (const Json& package : parsed["packages"]) {
            packages.insert(package.dump());
        }
        return packages;
    };
    Words reversed = *packages_;
    std::reverse(reversed.begin(), reversed.end());
    EXPECT_EQ(byPath(run({"--jobs", "8"}, {}, reversed).output),
              byPath(run({"--jobs", "1"}, {}, *packages_).output));
}

TEST_F(SameAnswer, LinksToTheMachineLeadNowhere) {
    const TemporaryDirectory directory;
    const std::string secret = directory.write("secret", "[Desktop Entry]\nName=token-12345\n");
    const std::string package = PackageBuilder("org.example.app")
                                    .link("/usr/share/applications/org.example.app.desktop", secret)
                                    .link("/usr/share/org.example.app/passwd", "/etc/passwd")
                                    .build(directory);
    const ProgramResult result = run({}, {}, {package});
    if (Json::parse(result.output)["sandbox"] != "namespaces+landlock") {
        GTEST_SKIP() << "this machine has no whole sandbox";
    }
    EXPECT_EQ(result.output.find("token-12345"), std::string::npos);
    EXPECT_NE(result.output.find("Symbolic link is targeting to not allowed path for it: "
                                 "/etc/passwd"),
              std::string::npos);
}

}  // namespace
