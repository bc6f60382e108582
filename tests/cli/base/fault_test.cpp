// Faults as lines.
#include "cli/base/fault.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::cli::describe;
using pkgvet::cli::Fault;

TEST(Fault, LineHoldsWhatIsKnown) {
    struct Case {
        Fault fault;
        std::string line;
    };
    const std::string longText = "\"" + std::string(200, 'x') + "\"";
    const Case cases[] = {
        {{"a.json", "", "cannot be read"}, "a.json: cannot be read"},
        {{"a.json", "b[0].c", "is missing"}, "a.json: \"b[0].c\" is missing"},
        {{"a.json", "b[0].c", "is missing", {12, 9}}, "a.json:12:9: \"b[0].c\" is missing"},
        {{"a.json", "b", "is not a string", {1, 2}, "7"}, "a.json:1:2: 7 is not a string"},
        {{"\033", "", "is \n", {1, 1}}, "\\x1b:1:1: is \\x0a"},
        {{"a.json", "b", "is long", {1, 2}, longText},
         "a.json:1:2: \"" + std::string(79, 'x') + "... is long"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(describe(test.fault), test.line);
    }
}

}  // namespace
