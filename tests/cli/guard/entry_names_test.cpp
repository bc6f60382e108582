// The tree of names that an archive makes.
#include "cli/guard/entry_names.h"

#include <gtest/gtest.h>

#include <vector>

namespace pkgvet::cli {

namespace {

using Answer = EntryNames::Answer;

struct Case {
    const char* path;
    bool isDirectory;
    Answer answer;
    std::uint64_t count;  // afterwards
};

}  // namespace

TEST(EntryNames, EachNameIsThereOnce) {
    const std::vector<Case> cases = {
        {"usr/share/a", false, Answer::Added, 3},
        {"usr/share/b", true, Answer::Added, 4},
        {"usr/share/a", false, Answer::Twice, 4},
        {"usr/share/b", true, Answer::Twice, 4},
        {"usr/share", true, Answer::Added, 4},
        {"usr/share", true, Answer::Twice, 4},
        {"usr", false, Answer::IsDirectory, 4},
        {"usr", true, Answer::Added, 4},
        {"usr/share/a/x", false, Answer::BelowNonDirectory, 4},
        {"usr/share/a/x/y", true, Answer::BelowNonDirectory, 4},
        {"usr/share/b/x", false, Answer::Added, 5},
        {"share", false, Answer::Added, 6},
        {"share/b", false, Answer::BelowNonDirectory, 6},
        {"a/share", false, Answer::Added, 8},
    };
    EntryNames names;
    for (const Case& row : cases) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(names.add(row.path, row.isDirectory), row.answer);
        EXPECT_EQ(names.count(), row.count);
    }
}

// The directory of the entry before is not looked up again, and must be the right one.
TEST(EntryNames, DirectoriesOfOneNameAreKeptApart) {
    EntryNames names;
    EXPECT_EQ(names.add("a/x/f", false), Answer::Added);
    EXPECT_EQ(names.add("b/x/f", false), Answer::Added);
    EXPECT_EQ(names.add("a/x/f", false), Answer::Twice);
    EXPECT_EQ(names.add("x/f", false), Answer::Added);
    EXPECT_EQ(names.add("f", false), Answer::Added);
    EXPECT_EQ(names.add("f", false), Answer::Twice);
}

}  // namespace pkgvet::cli
