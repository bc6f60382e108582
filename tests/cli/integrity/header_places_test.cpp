// Where in a path a permitted place may stand.
#include <gmock/gmock.h>

#include "cli/integrity/place_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOfPath(const std::string& path,
                                     const std::vector<std::string>& listedPaths = {}) {
    HeaderFiles list;
    list.files = {headerFile(path)};
    IntegrityFindings findings;
    checkPlaces(list, {"pilot", "/usr/libexec/", listedPaths}, &findings);
    return linesOf(findings.take());
}

TEST(HeaderPlaces, StandAtTheBeginning) {
    for (const char* path :
         {"/usr/bin/pilot", "/usr/share/pilot", "/usr/share/pilot/x",
          "/usr/share/icons/hicolor/x.png", "/usr/share/pilot/usr/share/icons/hicolor/x.png",
          "/usr/share/applications/pilot.desktop", "/usr/share/common/org/pilot/x",
          "/etc/sealwatchd/config.d/pilot.json", "/usr/libexec/pilot/task",
          "/usr/lib/3rdparty/pilot/x", "/opt/other"}) {
        EXPECT_THAT(linesOfPath(path), IsEmpty()) << path;
    }
}

TEST(HeaderPlaces, InTheMiddleTheyAreFindings) {
    for (const std::string place :
         {"/usr/share/icons/hicolor/", "/usr/share/pilot", "/usr/share/applications/pilot.desktop",
          "/usr/share/common/", "/etc/sealwatchd/config.d/pilot.json", "/usr/libexec/pilot",
          "/usr/lib/3rdparty/pilot/"}) {
        const std::string path = "/etc/cron.d" + place + "evil";
        EXPECT_THAT(linesOfPath(path), ElementsAre("place-inside-path: [" + path +
                                                   "] Path does not begin with the "
                                                   "permitted place that it holds: " +
                                                   place));
    }
}

TEST(HeaderPlaces, PathsThatTheRuleTreeListsMayHoldOne) {
    EXPECT_THAT(linesOfPath("/opt/usr/share/pilot/x", {"/opt/.*"}), IsEmpty());
    EXPECT_EQ(linesOfPath("/opt/usr/share/pilot/x", {"/opt/"}).size(), 1U);
    EXPECT_EQ(linesOfPath("/opt/usr/share/pilot/x", {"("}).size(), 1U);
}

TEST(HeaderPlaces, ADirectoryThatIsNoneIsNotLookedFor) {
    HeaderFiles list;
    list.files = {headerFile("/usr/bin/pilot")};
    IntegrityFindings findings;
    checkPlaces(list, {"pilot", "", {}}, &findings);
    EXPECT_THAT(findings.take(), IsEmpty());
}

}  // namespace
