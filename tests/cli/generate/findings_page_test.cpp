// The page of findings.
#include "cli/generate/findings_page.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"

namespace pkgvet::cli {

TEST(MessageForm, LeavesPackageDataOpen) {
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
