// Entries of the catalogue as a terminal shows them.
#include "cli/command/explain.h"

#include <gtest/gtest.h>

#include <sstream>

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

}  // namespace pkgvet::cli
