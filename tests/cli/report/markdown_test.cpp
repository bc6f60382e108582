// Markdown for pages of other people.
#include "cli/report/markdown.h"

#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;

TEST(Markdown, EntryIsParagraphsAndAnExample) {
    Entry entry;
    entry.demand = "Demand of a few words.";
    entry.why = "Why.";
    entry.fix = "Fix.";
    entry.example = "%files\n";
    EXPECT_EQ(markdownOf(entry, 20),
              "**Rule.** Demand of\na few words.\n\n**Why.** Why.\n\n**What to do.** Fix.\n\n"
              "```\n%files\n```\n");
    EXPECT_EQ(markdownOf(entry, kAnyWidth).find("**Rule.** Demand of a few words.\n"), 0U);
}

TEST(Markdown, TextMarksNothingUp) {
    EXPECT_EQ(markdownText("a|b<i>*_`[x](y)@me #1\n"),
              "a\\|b\\<i\\>\\*\\_\\`\\[x\\]\\(y\\)\\@me \\#1\\\\x0a");
}

}  // namespace
