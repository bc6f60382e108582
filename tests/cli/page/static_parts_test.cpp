// Head and foot of the page.
#include "cli/page/static_parts.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

TEST(Grouped, DigitsStandInThrees) {
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1,000");
    EXPECT_EQ(grouped(1234567), "1,234,567");
}

TEST(Headline, SaysWhatBecameOfThePackages) {
    const PackageReport accepted = package({judgement({})});
    const PackageReport rejected = package({judgement({finding("a", Severity::Error, "A")})});
    const PackageReport broken = unreadable("x.rpm", "missing");
    struct Case {
        std::vector<PackageReport> packages;
        const char* headline;
    };
    const Case cases[] = {
        {{}, "No packages"},
        {{accepted}, "1 package accepted"},
        {{rejected}, "1 package rejected"},
        {{broken}, "1 package not judged"},
        {{accepted, accepted}, "All 2 packages accepted"},
        {{accepted, rejected}, "1 rejected of 2 packages"},
        {{accepted, broken}, "1 not judged of 2 packages"},
        {{broken, rejected, accepted}, "1 rejected, 1 not judged of 3 packages"},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(headlineOf(runOf(one.packages)), one.headline);
    }
}

TEST(Notices, TellOfAnInterruptionAndOfTheRemarks) {
    RunReport run = runOf({});
    run.partial = true;
    run.notices = {"a <waiver> is never used"};
    std::ostringstream stream;
    writeNotices(run, stream);
    EXPECT_EQ(stream.str(),
              "<p class=\"notice grave\">The run was interrupted. What was not reached by then is "
              "not on this page.</p>\n"
              "<p class=\"notice\">a &lt;waiver&gt; is never used</p>\n");
}

TEST(Provenance, TellsWhatDecidedTheVerdicts) {
    RunReport run = runOf({});
    run.sandbox = "full";
    run.provenance.profiles = {{"regular", "abc"}};
    run.provenance.validation = "on";
    run.provenance.failOn = "warning";
    run.provenance.waivers = {"def", ""};
    run.provenance.baseline = "012";
    std::ostringstream stream;
    writeProvenance(run, stream);
    for (const char* fact :
         {"<dt>Profile</dt><dd>regular</dd>", "<dt>Its rules</dt><dd>SHA-256 abc</dd>",
          "<dt>Validation</dt><dd>on</dd>", "<dt>Rejected from</dt><dd>warning</dd>",
          "<dt>Waivers</dt><dd>SHA-256 def</dd>", "<dt>Waivers</dt><dd>not a regular file</dd>",
          "<dt>Baseline</dt><dd>SHA-256 012</dd>", "<dt>Sandbox</dt><dd>full</dd>"}) {
        EXPECT_NE(stream.str().find(fact), std::string::npos) << fact << stream.str();
    }
}

}  // namespace
