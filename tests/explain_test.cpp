#include "cli/explain.h"

#include <gtest/gtest.h>

#include <sstream>

#include "cli/wrapped_text.h"
#include "tests/support/temporary_directory.h"

namespace pkgvet::cli {

namespace {

std::string textOf(std::string_view id) {
    std::ostringstream stream;
    writeEntry(*findEntry(id), stream);
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
        for (const std::string_view line : linesOf(text.substr(0, text.find("\nExample\n")))) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
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
    EXPECT_EQ(page.str(), readFile(PKGVET_SOURCE_DIR "/docs/findings.md"));
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
