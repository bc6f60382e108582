// How often texts come.
#include "cli/base/text_counts.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using pkgvet::cli::TextCounts;

TEST(TextCounts, EachTextIsCountedByItself) {
    TextCounts counts;
    EXPECT_EQ(counts.size(), 0U);
    EXPECT_EQ(counts.add("a"), 1U);
    EXPECT_EQ(counts.add("b"), 1U);
    EXPECT_EQ(counts.add("a"), 2U);
    EXPECT_EQ(counts.add(""), 1U);
    EXPECT_EQ(counts.add(std::string("a\0", 2)), 1U);
    EXPECT_EQ(counts.add("a"), 3U);
    EXPECT_EQ(counts.size(), 4U);
}

TEST(TextCounts, ManyTextsStayApart) {
    TextCounts counts;
    for (int i = 0; i < 10'000; ++i) {
        EXPECT_EQ(counts.add(std::to_string(i)), 1U);
    }
    EXPECT_EQ(counts.add(std::to_string(1234)), 2U);
    EXPECT_EQ(counts.size(), 10'000U);
}

}  // namespace
