// `pkgvet check -o in-toto:DIR` and `pkgvet verify`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "tests/support/base/source_tree.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/one_package.h"
#include "tests/support/program/program.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

class RecordCommand : public testing::Test {
protected:
    static void SetUpTestSuite() { shared_ = std::make_unique<OnePackage>(); }
    static void TearDownTestSuite() { shared_.reset(); }

    static ProgramResult run(const std::string& command, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(),
                         {command, "--validation", "on", "--rules", shared_->rules});
        return runPkgvet(arguments);
    }

    std::vector<std::string> records() const {
        std::vector<std::string> paths;
        for (const auto& entry : fs::directory_iterator(own_ / "records")) {
            paths.push_back(entry.path());
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    static inline std::unique_ptr<OnePackage> shared_;
    const TemporaryDirectory own_;
};

TEST_F(RecordCommand, EachPackageAndProfileHasAFileWithTheBytesOfItsLine) {
    const std::string copy = own_ / "copy.rpm";
    fs::copy_file(shared_->path, copy);
    const ProgramResult result =
        run("check", {"--format", "in-toto", "-o", "in-toto:" + (own_ / "records"), "--profile",
                      "regular", "--profile", "mdm", shared_->path, copy, shared_->rules});
    EXPECT_EQ(result.status, 3) << "the rule file is not a package";
    ASSERT_EQ(records().size(), 2U);
    EXPECT_THAT(result.output, testing::AnyOf(readFile(records()[0]) + readFile(records()[1]),
                                              readFile(records()[1]) + readFile(records()[0])));
    EXPECT_THAT(fs::path(records()[0]).filename().string(),
                testing::MatchesRegex("org\\.example\\.app-[0-9a-f]*\\.mdm\\.intoto\\.json"));
}

TEST_F(RecordCommand, SameRulesGiveTheSameBytesAndReplaceThem) {
    const std::vector<std::string> arguments = {"-j", "2", "-o", "in-toto:" + (own_ / "records"),
                                                shared_->path};
    run("check", arguments);
    const std::string first = readFile(records().at(0));
    EXPECT_EQ(run("check", arguments).errors, "");
    ASSERT_EQ(records().size(), 1U);
    EXPECT_EQ(readFile(records()[0]), first);
}

TEST_F(RecordCommand, NothingButRecordsIsReplaced) {
    run("check", {"-o", "in-toto:" + (own_ / "records"), shared_->path});
    const std::string path = records().at(0);
    fs::remove(path);
    fs::copy_file(shared_->path, path);
    const ProgramResult result = run("check", {"-o", "in-toto:" + (own_ / "records"), path});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.errors, HasSubstr("cannot write " + path + ": there is a file that is not"));
    EXPECT_EQ(readFile(path), readFile(shared_->path));
    EXPECT_EQ(run("check", {"-o", "in-toto:" + path, shared_->path}).status, 2);
    EXPECT_EQ(run("check",
                  {"-o", "in-toto:" + (own_ / "a"), "-o", "in-toto:" + (own_ / "a"), shared_->path})
                  .status,
              2);
}

TEST_F(RecordCommand, RecordHoldsOrTheLineSaysInWhatItDiffers) {
    run("check", {"-o", "in-toto:" + (own_ / "records"), shared_->path});
    const std::string path = records().at(0);
    const ProgramResult sound = run("verify", {path, shared_->path});
    EXPECT_EQ(sound.status, 0) << sound.errors;
    EXPECT_EQ(sound.output, path + ": holds: org.example.app FAILED under regular\n");

    json record = json::parse(readFile(path));
    record["predicate"]["result"] = "PASSED";
    const std::string forged = own_.write("forged.json", record.dump());
    const ProgramResult result = run("verify", {forged, shared_->path});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              forged + ": does not hold: result: PASSED in the record, FAILED here\n");

    const std::string other = PackageBuilder("org.example.other").build(own_);
    EXPECT_THAT(run("verify", {path, other}).output, HasSubstr("does not hold: subject: "));
    const ProgramResult elsewhere = run("verify", {"--profile", "mdm", path, shared_->path});
    EXPECT_EQ(elsewhere.status, 1);
    EXPECT_THAT(elsewhere.output, HasSubstr("does not hold: configuration: rules profile regular"));
    EXPECT_EQ(run("verify", {"--integrity", "off", path, shared_->path}).status, 1);
}

TEST_F(RecordCommand, WhatCannotBeCheckedIsToldApart) {
    run("check", {"-o", "in-toto:" + (own_ / "records"), shared_->path});
    const std::string path = records().at(0);
    const ProgramResult noRecord = run("verify", {own_.write("r", "{}"), shared_->path});
    EXPECT_EQ(noRecord.status, 3);
    EXPECT_EQ(noRecord.output, "");
    EXPECT_THAT(noRecord.errors, HasSubstr("\"subject\" is missing"));
    EXPECT_EQ(run("verify", {own_ / "none", shared_->path}).status, 3);
    EXPECT_EQ(run("verify", {path, own_ / "none.rpm"}).status, 3);
    EXPECT_EQ(run("verify", {path}).status, 2);
    EXPECT_EQ(runPkgvet({"verify", "--rules", own_ / "none.json", path, shared_->path}).status, 2);
}

// The commands of the manual work as they stand there.
TEST_F(RecordCommand, SigningAndCheckingWorkAsTheManualShows) {
    const std::string manual = readFile(sourceFile("docs/man/pkgvet.1.scd"));
    const std::size_t section = manual.find("# RECORDS");
    ASSERT_NE(section, std::string::npos);
    std::string script = "set -e\npkgvet() { command=$1; shift; \"" + programPath() +
                         "\" $command --validation on --rules \"" + acceptingRules().write(own_) +
                         "\" \"$@\"; }\n";
    std::size_t blocks = 0;
    for (std::size_t at = manual.find("```\n", section);
         at != std::string::npos && at < manual.find("\n# ", section);
         at = manual.find("```\n", at + 4), ++blocks) {
        const std::size_t end = manual.find("```\n", at + 4);
        script += manual.substr(at + 4, end - at - 4);
        at = end;
    }
    EXPECT_EQ(blocks, 2U);
    own_.write("my-app.rpm", acceptedPackage().bytes());
    const std::string file = own_.write("script", "cd " + own_.path().string() + "\n" + script);
    const std::string told = own_ / "told";
    const int status = std::system(("/bin/sh " + file + " >" + told + " 2>&1").c_str());
    const std::string output = readFile(told);
    EXPECT_EQ(status, 0) << output;
    EXPECT_THAT(output, HasSubstr("Signature Verified Successfully"));
    EXPECT_THAT(output, HasSubstr(": holds: "));
}

}  // namespace
