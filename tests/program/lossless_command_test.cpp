// `pkgvet check` loses no file of the user's, and ends as other tools do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>

#include "tests/support/program/one_package.h"
#include "tests/support/program/program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

class LosslessCommand : public testing::Test {
protected:
    static void SetUpTestSuite() { shared_ = std::make_unique<OnePackage>(); }
    static void TearDownTestSuite() { shared_.reset(); }

    void SetUp() override { fs::copy_file(shared_->path, app_); }

    static ProgramResult check(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {"check", "--validation", "off", "--rules", rules()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runPkgvet(command);
    }

    static const std::string& rules() { return shared_->rules; }

    // Every file of the test before and after is the same.
    std::string content() const {
        std::string all;
        for (const auto& entry : fs::recursive_directory_iterator(own_.path())) {
            all += entry.is_regular_file() ? readFile(entry.path()) : "";
        }
        return all;
    }

    const TemporaryDirectory own_;
    const std::string app_ = own_ / "app.rpm";

private:
    static inline std::unique_ptr<OnePackage> shared_;
};

TEST_F(LosslessCommand, NoOutputTakesThePlaceOfWhatIsReadOrOfAnotherOutput) {
    const std::string waivers = own_.write("waivers.json", R"({"waivers": []})");
    const std::string baseline =
        own_.write("known.json", R"({"schema_version": 1, "findings": []})");
    const std::string list = own_.write("list", app_ + "\n");
    const std::string part = own_.write("app-3.sarif", R"({"waivers": []})");
    const std::string another = own_ / "another.rpm";
    fs::copy_file(app_, another);
    const std::string report = own_ / "report.json";
    const std::vector<std::string> lines[] = {
        {"--write-baseline", app_},
        {"-o", "json:" + app_, app_},
        {"-o", "json:" + another, app_},
        {"-o", "json:" + report, "-o", "sarif:" + report, app_},
        {"-o", "json:" + report, "--write-baseline", report, app_},
        {"-o", "json:" + waivers, "--waivers", waivers, app_},
        {"--write-baseline", baseline, "--baseline", baseline, app_},
        {"-o", "json:" + list, "--files-from", list},
        {"-o", "sarif:" + own_ / "app.sarif", "--split", "--waivers", part, app_},
        {"-o", "json:" + rules(), app_},
        {"-o", "json:" + fs::path(rules()).replace_filename("regular/paths.json").native(), app_},
    };
    const std::string before = content() + readFile(rules());
    for (std::vector<std::string> line : lines) {
        if (line.size() == 2 && line.front() == "--write-baseline") {
            line.push_back(another);
        }
        SCOPED_TRACE(line[1]);
        const ProgramResult result = check(line);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, StartsWith("pkgvet: cannot write "));
        EXPECT_EQ(content() + readFile(rules()), before);
        EXPECT_FALSE(fs::exists(report));
    }
}

TEST_F(LosslessCommand, HyphenIsStandardOutput) {
    const ProgramResult result = check({"-o", "json:-", app_});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, check({"--format", "json", app_}).output);
    EXPECT_FALSE(fs::exists("-"));
}

TEST_F(LosslessCommand, ReportKeepsTheModeOfTheFormerOne) {
    const std::string report = own_.write("report.json", "former");
    ASSERT_EQ(chmod(report.c_str(), 0640), 0);
    EXPECT_EQ(check({"-o", "json:" + report, app_}).status, 0);
    struct stat status {};
    ASSERT_EQ(stat(report.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    EXPECT_THAT(readFile(report), StartsWith("{\n"));
}

TEST_F(LosslessCommand, ReaderThatGoesAwayEndsTheRunQuietly) {
    const std::string errorFile = own_ / "errors";
    const std::string status = own_ / "status";
    std::string line = "{ '" + programPath() + "' check -q --rules '" + rules() + "' -j1";
    for (int i = 0; i < 20; ++i) {
        line += " '" + app_ + "'";
    }
    line += " 2>'" + errorFile + "'; echo $? >'" + status + "'; } | head -n1 >/dev/null";
    EXPECT_EQ(runProgram({"/bin/sh", "-c", line}), 0);
    std::string errors = readFile(errorFile);
    takeSandboxRemark(&errors);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(readFile(status), "141\n");
}

TEST_F(LosslessCommand, SeveralProfilesAreAllJudgedUnder) {
    const ProgramResult result =
        check({"-q", "--profile", "mdm", "--profile", "auth", "--profile", "mdm", app_});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(
        result.output,
        HasSubstr(app_ + ": accepted under mdm, auth: 2 errors, 2 warnings; validation off\n"));
}

}  // namespace
