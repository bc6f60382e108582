// The two sample packages under the default rules, with the whole output of the program.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/example_package.h"
#include "tests/support/program/program.h"

namespace {

TEST(Examples, GoodOneHasNoFindingAtAll) {
    const TemporaryDirectory directory;
    const std::string package = buildExample("good", directory.path());
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
    const std::string package = buildExample("bad", directory.path());
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
