// `pkgvet compare` on reports of runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/program/corpus.h"

namespace {

using testing::HasSubstr;

class CompareCommand : public testing::Test {
protected:
    static void SetUpTestSuite() { corpus_ = new Corpus; }
    static void TearDownTestSuite() { delete corpus_; }

    static const Corpus& corpus() { return *corpus_; }

    std::string reportOn(const std::string& name, const std::vector<std::string>& arguments) const {
        // Only scripts reject then.
        std::vector<std::string> all = {"-q", "-o", "jsonl:" + own_ / name, "--validation", "off"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        corpus().check(all);
        return own_ / name;
    }

    static std::string package(const std::string& name) { return corpus().packages() + "/" + name; }

    TemporaryDirectory own_;

private:
    static Corpus* corpus_;
};

Corpus* CompareCommand::corpus_ = nullptr;

TEST_F(CompareCommand, RunIsLikeItself) {
    const std::string report = reportOn("a", {package("a.rpm"), package("d.rpm")});
    const ProgramResult result = runPkgvet({"compare", report, report});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output,
              "Before: " + report + "\nNow: " + report +
                  "\nVerdicts that turn: 0\nFindings that appear: 0\nFindings that vanish: 0\n"
                  "Packages not judged: 0\nPackages added: 0\nPackages removed: 0\n2 packages "
                  "compared; 0 verdicts turn\n");
}

TEST_F(CompareCommand, OtherContentAtAPathTurnsItsVerdict) {
    const std::string path = own_ / "x.rpm";
    std::filesystem::copy_file(package("a.rpm"), path);
    const std::string before = reportOn("before", {path, package("b.rpm")});
    std::filesystem::copy_file(package("d.rpm"), path,
                               std::filesystem::copy_options::overwrite_existing);
    const std::string after = reportOn("after", {path, package("c.rpm"), package("g.rpm")});
    const ProgramResult result = runPkgvet({"compare", "--format", "json", before, after});
    EXPECT_EQ(result.status, 1);
    const auto json = nlohmann::json::parse(result.output);
    EXPECT_EQ(json["compared"], 2);
    EXPECT_EQ(json["added"][0]["path"], package("g.rpm"));
    for (const auto& turned : json["turned"]) {
        EXPECT_EQ(turned["path"], path);
    }
    EXPECT_THAT(runPkgvet({"compare", "--format", "markdown", before, after}).output,
                HasSubstr("## pkgvet: 2 packages compared"));
    EXPECT_EQ(runPkgvet({"compare", after, before}).status, 1);
}

TEST_F(CompareCommand, PackagesThatWereNotJudgedAreStatusThree) {
    const std::string before = reportOn("before", {package("a.rpm")});
    const std::string after = reportOn("after", {package("a.rpm"), package("e.rpm")});
    const ProgramResult result = runPkgvet({"compare", before, after});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.output,
                HasSubstr("Packages not judged: 1\n  " + package("e.rpm") + ": now: "));
    EXPECT_EQ(runPkgvet({"compare", after, after}).status, 3);
    EXPECT_EQ(runPkgvet({"compare", after, before}).status, 0);
}

TEST_F(CompareCommand, InterruptedRunIsTold) {
    const std::string report = reportOn("a", {package("a.rpm")});
    const std::string partial = own_ / "partial";
    const std::string whole = "\"complete\":true,\"summary\"";
    std::string text = readFile(report);
    const std::size_t at = text.find(whole);
    ASSERT_NE(at, std::string::npos);
    writeFile(partial, text.replace(at, whole.size(), "\"complete\":false,\"summary\""));
    const ProgramResult result = runPkgvet({"compare", report, partial});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.output, HasSubstr("\nNow: " + partial + ", interrupted\n"));
    EXPECT_THAT(result.output, HasSubstr("a run was interrupted"));
    EXPECT_EQ(result.errors, "pkgvet: " + partial + ": is partial: its run was interrupted\n");
}

TEST_F(CompareCommand, PageGoesToAFileThatIsNotRead) {
    const std::string report = reportOn("a", {package("a.rpm")});
    const std::string page = own_ / "effect.html";
    EXPECT_EQ(runPkgvet({"compare", "-o", "html:" + page, report, report}).status, 0);
    EXPECT_EQ(readFile(page), runPkgvet({"compare", "--format", "html", report, report}).output);
    EXPECT_EQ(runPkgvet({"compare", "-o", "html:" + report, report, report}).errors,
              "pkgvet: cannot write " + report + ": it is also read\n");
}

TEST_F(CompareCommand, ReportsThatCannotBeComparedAreErrors) {
    const std::string report = reportOn("a", {package("a.rpm")});
    const std::string other = own_ / "other";
    writeFile(other, "{}");
    EXPECT_EQ(runPkgvet({"compare", report, other}).status, 2);
    const std::string none = reportOn("none", {package("e.rpm")});
    EXPECT_EQ(runPkgvet({"compare", report, none}).status, 2);
    EXPECT_EQ(runPkgvet({"compare", report}).status, 2);
    EXPECT_EQ(runPkgvet({"compare", report, report, report}).status, 2);
}

}  // namespace
