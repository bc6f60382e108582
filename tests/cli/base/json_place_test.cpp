// How places in a JSON file are named.
#include "cli/base/json_place.h"

#include <gtest/gtest.h>

namespace pkgvet::cli {

TEST(JsonPlace, MembersFollowADot) {
    EXPECT_EQ(member("dirs", "bin_dir"), "dirs.bin_dir");
    EXPECT_EQ(member("profiles[0]", ""), "profiles[0].");
}

TEST(JsonPlace, MembersOfTheRootStandAlone) {
    EXPECT_EQ(member("", "dirs"), "dirs");
}

TEST(JsonPlace, ElementsStandInBrackets) {
    EXPECT_EQ(element("paths", 0), "paths[0]");
    EXPECT_EQ(element(member(element("libraries", 12), "list"), 3), "libraries[12].list[3]");
}

}  // namespace pkgvet::cli
