// The two sample packages under the default rules, with the whole output of the program.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"

namespace {

// Builds the sample called name as its page says, and returns the package under a short name.
std::string buildSample(const std::string& name, const TemporaryDirectory& directory) {
    const std::string sources = sourceFile("examples/" + name);
    const std::string recipe =
        name == "good" ? "/org.example.pilot.spec" : "/example.badpilot.spec";
    std::string log;
    const int status = runProgram(
        {"rpmbuild", "-bb", "--quiet", "--define", "_topdir " + directory.path().string(),
         "--define", "_dbpath " + directory / "db", "--define", "_sourcedir " + sources, "--define",
         "_build_name_fmt package.rpm", sources + recipe},
        &log);
    EXPECT_EQ(status, 0) << log;
    return directory / "RPMS/package.rpm";
}

TEST(Examples, GoodOneHasNoFindingAtAll) {
    const TemporaryDirectory directory;
    const std::string package = buildSample("good", directory);
    for (const char* profile : {"regular", "extended", "market"}) {
        const ProgramResult result =
            runPkgvet({"check", "--validation", "on", "--profile", profile, package});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output,
                  package + ": accepted\n1 package: 1 accepted, 0 rejected, 0 not judged\n");
        EXPECT_EQ(result.errors, "");
    }
}

// One package that draws what one package can. Links and machine code in it lead the order of the
// lines through every rule.
TEST(Examples, BadOneDrawsWhatIsExpectedLineByLine) {
    const TemporaryDirectory directory;
    const std::string package = buildSample("bad", directory);
    const ProgramResult result =
        runPkgvet({"check", "--validation", "on", "--format", "concise", package});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "");
    std::string output = result.output;
    for (std::size_t at = 0; (at = output.find(package, at)) != std::string::npos;) {
        output.replace(at, package.size(), "package.rpm");
    }
    EXPECT_EQ(output, readFile(sourceFile("tests/program/expected/bad_sample.txt")));
}

}  // namespace
