// What findings have in common.
#include "cli/page/finding_kinds.h"

#include <gmock/gmock.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

const std::string kMark(1, kSubjectMark);

FindingKind kindOf(const Finding& finding) {
    FindingKinds kinds(runOf({}));
    return *kinds.all()[kinds.of({&finding, {"regular"}})];
}

TEST(FindingKinds, SubjectIsTakenOutOfTheText) {
    struct Case {
        const char* name;
        Finding finding;
        std::string text;
        std::string withoutSubject;
    };
    const Case cases[] = {
        {"in front", findingAbout("/usr/a", "r", Severity::Error, "Not here"),
         "[" + kMark + "] Not here", "Not here"},
        {"twice", findingAbout("libx", "r", Severity::Error, "Provides: libx is bad"),
         "[" + kMark + "] Provides: " + kMark + " is bad", "Provides: … is bad"},
        {"short ones are parts of words", findingAbout("a", "r", Severity::Error, "A bad day"),
         "[" + kMark + "] A bad day", "A bad day"},
        {"hostile", findingAbout("\x1b<b>", "r", Severity::Error, "Of \x1b<b>"),
         "[" + kMark + "] Of " + kMark, "Of …"},
        {"the mark itself", findingAbout("\x01", "r", Severity::Error, "\x01"),
         "[" + kMark + "] " + kMark, "…"},
        {"none", finding("r", Severity::Error, "[x] Alone"), "[x] Alone", "[x] Alone"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        const FindingKind kind = kindOf(one.finding);
        EXPECT_EQ(kind.text, one.text);
        EXPECT_EQ(textWithoutSubject(kind), one.withoutSubject);
    }
}

TEST(FindingKinds, FindingsThatDifferInTheSubjectAloneAreOfOneKind) {
    FindingKinds kinds(runOf({}));
    const Finding a = findingAbout("/usr/a", "r", Severity::Error, "Not here");
    const Finding b = findingAbout("/usr/b", "r", Severity::Error, "Not here");
    EXPECT_EQ(kinds.of({&a, {"regular"}}), 0U);
    EXPECT_EQ(kinds.of({&b, {"regular"}}), 0U);
    EXPECT_EQ(kinds.of({&b, {"regular", "mdm"}}), 1U);
    EXPECT_THAT(kinds.profiles(), ElementsAre("regular", "mdm"));
}

TEST(FindingKinds, AnyOtherDifferenceMakesAKind) {
    const Finding a = finding("a", Severity::Error, "A");
    std::vector<Finding> others(5, a);
    others[0].rule = "b";
    others[1].severity = Severity::Warning;
    others[2].message = "B";
    others[3].standing = Standing::Waived;
    others[4].reason = "agreed";
    for (const Finding& other : others) {
        FindingKinds kinds(runOf({}));
        kinds.of({&a, {"regular"}});
        EXPECT_EQ(kinds.of({&other, {"regular"}}), 1U);
    }
}

}  // namespace
