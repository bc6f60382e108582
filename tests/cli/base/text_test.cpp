#include "cli/base/text.h"

#include <gtest/gtest.h>

namespace pkgvet::cli {

TEST(Wrapped, BreaksAtSpacesWhereALineIsFull) {
    struct Case {
        const char* name;
        const char* text;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"nothing", "", {}},
        {"one word", "one", {"one"}},
        {"fits exactly", "one two", {"one two"}},
        {"one byte too many", "one twos", {"one", "twos"}},
        {"a word longer than a line", "a incompatibility b", {"a", "incompatibility", "b"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(wrapped(c.text, 7), c.lines);
    }
}

}  // namespace pkgvet::cli
