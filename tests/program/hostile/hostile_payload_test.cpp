// Packages whose payload reaches out of its directory, or holds more than it may, in every world.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/crafted_package.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/program/sandboxes.h"
#include "tests/support/rules/rule_tree.h"

namespace {

namespace fs = std::filesystem;

using Json = nlohmann::json;
using Words = std::vector<std::string>;

const std::string kName = "org.example.hostile";

// How packages are judged: what there is of a sandbox, and where they are unpacked.
struct World {
    const char* name;
    const char* sandbox;  // as JSON tells it; empty where the machine decides
    Words options;
    Words environment;
};

void PrintTo(const World& world, std::ostream* stream) {
    *stream << world.name;
}

std::string file(const std::string& name, const std::string& data = "content") {
    return cpioEntry({.name = name, .data = data});
}

std::string symbolicLink(const std::string& name, const std::string& target) {
    return cpioEntry({.name = name, .data = target, .mode = 0120777});
}

class HostilePayload : public testing::TestWithParam<World> {
protected:
    // Whoever judges may write to what is outside.
    void SetUp() override {
        fs::create_directory(outside_);
        for (const fs::path& path : {directory_.path(), outside_, scratch_}) {
            fs::create_directory(path);
            fs::permissions(path, fs::perms::all);
        }
        rules_ = RuleTree().write(directory_);
    }

    Json judged(const std::string& package, const Words& more = {}) {
        Words arguments = {"check", "--format", "json", "--rules", rules_};
        const World& world = GetParam();
        arguments.insert(arguments.end(), world.options.begin(), world.options.end());
        if (std::string(world.name) == "Scratch") {
            arguments.insert(arguments.end(), {"--scratch", scratch_});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        arguments.push_back(package);
        const ProgramResult result = runPkgvet(arguments, world.environment);
        status_ = result.status;
        errors_ = result.errors;
        return Json::parse(result.output, nullptr, false);
    }

    // Whether this machine has the world.
    bool isThere() {
        const Json report = judged(CraftedPackage(kName).write(directory_));
        return report.is_object() && (GetParam().sandbox == std::string() ||
                                      report["sandbox"] == std::string(GetParam().sandbox));
    }

    static std::set<std::string> rulesOf(const Json& report) {
        std::set<std::string> rules;
        for (const Json& finding : report["packages"][0]["judgements"][0]["findings"]) {
            rules.insert(finding["rule"]);
        }
        return rules;
    }

    // The package is rejected for the one reason, and nothing was written outside.
    void expectStopped(const std::string& entries, const std::string& rule) {
        SCOPED_TRACE(rule);
        const std::string good = file("./usr/share/" + kName + "/good");
        const std::string path = CraftedPackage(kName)
                                     .archive(good + entries + file("./z") + cpioTrailer())
                                     .write(directory_);
        const Json report = judged(path, {"--validation", "off", "--fail-on", "error"});
        EXPECT_EQ(status_, 1) << errors_;
        EXPECT_TRUE(rulesOf(report).contains(rule)) << report.dump(1);
        EXPECT_EQ(report["packages"][0]["complete"], false);
        EXPECT_EQ(report["packages"][0]["judgements"][0]["intact"], false);
        EXPECT_TRUE(fs::is_empty(outside_)) << rule;
    }

    TemporaryDirectory directory_;
    fs::path outside_ = directory_ / "outside";
    fs::path scratch_ = directory_ / "scratch";
    std::string rules_;
    int status_ = 0;
    std::string errors_;
};

TEST_P(HostilePayload, IsStoppedAndRejected) {
    if (!isThere()) {
        GTEST_SKIP() << "this machine has no such world: " << errors_;
    }
    const std::string outside = outside_;
    expectStopped(file(outside + "/x"), "payload-name-absolute");
    expectStopped(file("./../../.." + outside + "/x"), "payload-name-leads-up");
    expectStopped(symbolicLink("./l", outside) + file("./l/x"), "payload-unpacks-through-link");
    expectStopped(symbolicLink("./l", outside) + file("./l"), "payload-name-twice");
    expectStopped(file("./d/x") + symbolicLink("./d", outside), "payload-directory-replaced");
    expectStopped("junk" + file(outside + "/x"), "payload-foreign-bytes");
    expectStopped(cpioLargeFileEntry(0, file(outside + "/x") + cpioTrailer()),
                  "payload-foreign-format");
    expectStopped(cpioEntry({.name = "./d", .data = file(outside + "/x"), .mode = 040755}),
                  "payload-directory-has-data");
    expectStopped(cpioEntry({.name = "./s", .mode = 0104755}), "payload-set-id-bit");
    expectStopped(cpioEntry({.name = "./p", .mode = 010644}), "payload-special-file");
    expectStopped(cpioTrailer() + file(outside + "/x"), "payload-goes-on");
}

// The rules on integrity may be off, but nothing is unpacked past the guard.
TEST_P(HostilePayload, IsStoppedWithIntegrityOffAsWell) {
    if (!isThere()) {
        GTEST_SKIP() << "this machine has no such world: " << errors_;
    }
    const std::string path = CraftedPackage(kName)
                                 .archive(file(outside_.string() + "/x") + cpioTrailer())
                                 .write(directory_);
    const Json report = judged(path, {"--integrity", "off"});
    EXPECT_EQ(status_, 1) << errors_;
    EXPECT_TRUE(rulesOf(report).contains("payload-name-absolute")) << report.dump(1);
    EXPECT_TRUE(fs::is_empty(outside_));
}

TEST_P(HostilePayload, MeetsTheCeilings) {
    if (!isThere()) {
        GTEST_SKIP() << "this machine has no such world: " << errors_;
    }
    const std::string large = CraftedPackage(kName)
                                  .file(packedFile("/usr/share/a", std::string(5000, 'x')))
                                  .file(packedFile("/usr/share/b", std::string(5000, 'y')))
                                  .write(directory_);
    EXPECT_EQ(judged(large, {"--max-unpacked", "9999"})["packages"][0]["cause_code"], "too-large");
    EXPECT_EQ(judged(large, {"--max-files", "3"})["packages"][0]["cause_code"], "too-many-files");
    EXPECT_EQ(status_, 3);
    const Json enough = judged(large, {"--max-unpacked", "10000", "--max-files", "4"});
    EXPECT_EQ(enough["packages"][0]["complete"], true) << enough.dump(1);
}

// A package that has the bit in its header as well is judged by the rule on modes.
TEST_P(HostilePayload, SetIdBitOfTheHeaderIsUnpackedAndRejected) {
    if (!isThere()) {
        GTEST_SKIP() << "this machine has no such world: " << errors_;
    }
    const std::string path = CraftedPackage(kName)
                                 .file(packedFile("/usr/share/" + kName + "/s", "x", 04755))
                                 .write(directory_);
    const Json report = judged(path);
    EXPECT_EQ(status_, 1) << errors_;
    EXPECT_EQ(report["packages"][0]["complete"], true) << report.dump(1);
    EXPECT_TRUE(rulesOf(report).contains("setuid-file"));
    EXPECT_FALSE(rulesOf(report).contains("payload-set-id-bit"));
}

TEST_P(HostilePayload, PayloadThatIsCutShortIsNotJudged) {
    if (!isThere()) {
        GTEST_SKIP() << "this machine has no such world: " << errors_;
    }
    const std::string path = CraftedPackage(kName).archive(file("./a")).write(directory_);
    EXPECT_EQ(judged(path)["packages"][0]["cause_code"], "unpack-failed");
    EXPECT_EQ(status_, 3);
}

INSTANTIATE_TEST_SUITE_P(Each, HostilePayload,
                         testing::Values(World{"Auto", "", {}, {}},
                                         World{"Landlock", "landlock", {}, withoutNamespaces()},
                                         World{"Off", "none", {"--sandbox", "off"}, {}},
                                         World{"Scratch", "", {}, {}}),
                         [](const auto& world) { return world.param.name; });

// The program without what is installed beside it.
TEST(MissingGuard, NothingIsUnpackedAndTheCauseIsTold) {
    const TemporaryDirectory directory;
    fs::permissions(directory.path(),
                    fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    const std::string program = directory / "bin/pkgvet";
    fs::create_directory(directory.path() / "bin");
    fs::copy_file(programPath(), program);
    // Where the program looks for its library.
    fs::create_directory_symlink(fs::path(programPath()).parent_path() / "../lib",
                                 directory.path() / "lib");
    fs::permissions(program, fs::perms::others_read | fs::perms::others_exec,
                    fs::perm_options::add);
    const std::string rules = RuleTree().write(directory);
    const std::string package = CraftedPackage(kName).write(directory);
    for (const char* const sandbox : {"auto", "off"}) {
        std::string output;
        EXPECT_EQ(runProgram({program, "check", "--format", "json", "--sandbox", sandbox, "--rules",
                              rules, package},
                             &output),
                  3);
        EXPECT_NE(output.find("the guard in the place of cpio cannot be run: No such file or "
                              "directory"),
                  std::string::npos)
            << output;
    }
}

}  // namespace
