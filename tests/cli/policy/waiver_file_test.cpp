// Files of waivers as the program writes them.
#include "cli/policy/waiver_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/policy/waivers.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using testing::IsEmpty;

TEST(WaiverFile, PatternMatchesItsTextAndNothingElse) {
    struct Case {
        std::string text;
        std::string other;
    };
    const Case cases[] = {
        {"", "x"},
        {"libfoo.so.1", "libfooxso.1"},
        {"libc++.so(a)[b]{2}", "libc+.so(a)[b]{2}"},
        {"a|b", "a"},
        {"^x$", "x"},
        {"C:\\d*?", "C:\\d"},
        {"\xff\xfe.so", "\xff\xfd.so"},
        {"caf\xe9/\xc3\xa9", "caf\xe8/\xc3\xa9"},
        {"/usr/share/a b/é-\"x\"", "/usr/share/a b/e-\"x\""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        pkgvet::WholePattern pattern(patternFor(test.text));
        EXPECT_TRUE(pattern.matches(test.text));
        EXPECT_FALSE(pattern.matches(test.other));
    }
}

// What is written excuses what it was written for.
TEST(WaiverFile, IsReadBack) {
    const TemporaryDirectory directory;
    const NewWaiver waiver = {"icon-missing", "a[0]\n.png", "org.x", "\"so\"",
                              parseDate("2027-01-31")};
    const std::string path = directory.write("w.json", formatWaivers({waiver, waiver}));
    std::vector<Fault> faults;
    std::vector<Waiver> waivers = readWaivers(path, &faults);
    EXPECT_THAT(faults, IsEmpty());
    ASSERT_EQ(waivers.size(), 1U);
    EXPECT_EQ(waivers[0].reason, "\"so\"");
    EXPECT_EQ(waivers[0].lastDay, waiver.lastDay);
    Finding finding;
    finding.rule = "icon-missing";
    finding.subject = "a[0]\n.png";
    EXPECT_TRUE(covers(&waivers[0], finding, "org.x"));
    EXPECT_FALSE(covers(&waivers[0], finding, "org-x"));
}

}  // namespace
