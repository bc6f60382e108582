#include <gtest/gtest.h>

#include <sstream>

#include "cli/command/explain.h"
#include "tests/support/program.h"
#include "tests/support/source_tree.h"
#include "tests/support/temporary_directory.h"

namespace pkgvet::cli {

namespace {

std::string textOf(std::string_view id) {
    std::ostringstream stream;
    writeEntry(*findEntry(id), false, stream);
    return stream.str();
}

}  // namespace

TEST(Explain, AnEntryTellsRuleReasonAndRemedy) {
    EXPECT_EQ(textOf("desktop-type-invalid"),
              "desktop-type-invalid (error)\n"
              "Desktop file does not describe an application\n"
              "\n"
              "Rule\n"
              "    `Type` in the group `Desktop Entry` is `Application`.\n"
              "\n"
              "Why\n"
              "    Only then is it offered to the user for starting.\n"
              "\n"
              "What to do\n"
              "    Set the key in the desktop file.\n"
              "\n"
              "Example\n"
              "    [Desktop Entry]\n"
              "    Type=Application\n"
              "\n"
              "See also\n"
              "    desktop-name-missing, desktop-exec-invalid\n");
}

TEST(Explain, AnEntryWithoutExampleOrRelativesHasNoSuchParts) {
    EXPECT_EQ(textOf("other-remark").find("Example"), std::string::npos);
    EXPECT_EQ(textOf("other-remark").find("See also"), std::string::npos);
}

TEST(Explain, ProseFitsATerminal) {
    for (const Entry* entry : entries()) {
        const std::string text = textOf(entry->id);
        std::istringstream prose(text.substr(0, text.find("\nExample\n")));
        for (std::string line; std::getline(prose, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

TEST(Explain, ColourMakesHeadingsStandOut) {
    std::ostringstream stream;
    writeEntry(*findEntry("desktop-type-invalid"), true, stream);
    EXPECT_TRUE(stream.str().starts_with("\033[1mdesktop-type-invalid (error)\033[m\n"));
    EXPECT_NE(stream.str().find("\n\033[1mRule\033[m\n"), std::string::npos);
}

TEST(ExplainCommand, PrintsTheEntriesThatWereAskedForInTheirOrder) {
    const ProgramResult result = runPkgvet({"explain", "rpath-missing", "setuid-file"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, textOf("rpath-missing") + "\n" + textOf("setuid-file"));
    EXPECT_EQ(result.errors, "");
}

TEST(ExplainCommand, PrintsAllEntriesByChapterWhenNoneIsAskedFor) {
    const ProgramResult result = runPkgvet({"explain"});
    EXPECT_EQ(result.status, 0);
    std::size_t position = 0;
    for (const Chapter& chapter : chapters()) {
        position = result.output.find(std::string(chapter.title) + "\n====", position);
        ASSERT_NE(position, std::string::npos) << chapter.title;
        for (const Entry& entry : chapter.entries) {
            position = result.output.find(textOf(entry.id), position);
            ASSERT_NE(position, std::string::npos) << entry.id;
        }
    }
}

TEST(ExplainCommand, AnUnknownIdIsAUsageErrorThatNamesTheNearest) {
    const ProgramResult result = runPkgvet({"explain", "setuid-file", "rpath", "libary\033"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.starts_with(
        "pkgvet: no finding has the id \"rpath\"; the nearest are rpath-empty, rpath-missing, "
        "rpath-not-allowed\npkgvet: no finding has the id \"libary"));
    EXPECT_EQ(result.errors.find('\033'), std::string::npos);
}

TEST(ExplainCommand, ColourIsForTerminalsUnlessAskedFor) {
    EXPECT_EQ(runPkgvet({"explain", "rpath-empty"}).output.find('\033'), std::string::npos);
    EXPECT_NE(runPkgvet({"explain", "--color", "always", "rpath-empty"}).output.find('\033'),
              std::string::npos);
}

TEST(Explain, TheFormOfAMessageLeavesPackageDataOpen) {
    EXPECT_EQ(messageForm(*findEntry("provide-not-allowed")),
              "[...] Provides: ... is not allowed in RPM");
    EXPECT_EQ(messageForm(*findEntry("other-remark")), "");
}

// After a change of the catalogue, ./dev docs writes the page anew.
TEST(FindingsPage, IsCurrent) {
    std::ostringstream page;
    writeFindingsPage(page);
    EXPECT_EQ(page.str(), readFile(sourceFile("docs/findings.md")));
}

TEST(FindingsPage, HasASectionForEachEntry) {
    std::ostringstream page;
    writeFindingsPage(page);
    for (const Entry* entry : entries()) {
        EXPECT_NE(page.str().find("\n### " + std::string(entry->id) + "\n"), std::string::npos)
            << entry->id;
    }
}

}  // namespace pkgvet::cli
