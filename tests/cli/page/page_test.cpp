// The page as a whole.
#include "cli/page/page.h"

#include <gtest/gtest.h>

#include "cli/page/html.h"
#include "cli/page/page_files.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

TEST(Page, PolicyKnowsItsOwnStyleAndScriptAndNothingElse) {
    const std::string page = reportOf(Format::Html, runOf({}));
    EXPECT_NE(page.find("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src "
                        "'none'; style-src " +
                        policySource(kPageStyle) + "; script-src " + policySource(kPageScript) +
                        "; base-uri 'none'; form-action 'none'\">"),
              std::string::npos);
    EXPECT_NE(page.find("<style>" + std::string(kPageStyle) + "</style>"), std::string::npos);
    EXPECT_NE(page.find("<script>" + std::string(kPageScript) + "</script>"), std::string::npos);
}

TEST(Page, NothingInItIsFetched) {
    const std::string page = reportOf(Format::Html, sampleRuns()[4].run);
    for (const char* word : {"src=", "url(", "@import", "<link", "<iframe", "<img"}) {
        EXPECT_EQ(page.find(word), std::string::npos) << word;
    }
}

TEST(Page, ScriptsReadNoMarkup) {
    for (const char* word : {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write",
                             "eval(", "new Function", "DOMParser", "</script"}) {
        EXPECT_EQ(kPageScript.find(word), std::string_view::npos) << word;
    }
}

TEST(Page, EveryPartIsFilledIn) {
    for (const SampleRun& one : sampleRuns()) {
        SCOPED_TRACE(one.name);
        const std::string page = reportOf(Format::Html, one.run);
        EXPECT_EQ(page.find("{{"), std::string::npos);
        EXPECT_EQ(page.rfind("</html>\n"), page.size() - std::string("</html>\n").size());
    }
}

TEST(Page, NothingOfAPackageIsMarkup) {
    PackageReport report = package({judgement({findingAbout(
        "</script><script>alert(1)</script>", "path-not-allowed", Severity::Error, "<b>")})});
    report.name = "<!--<script>";
    RunReport run = runOf({report, unreadable("</noscript><img>", "<b>")});
    run.notices = {"</title></style>"};
    const std::string page = reportOf(Format::Html, run);
    for (const char* markup : {"<script>alert", "<!--<", "</noscript><", "</title></", "<img>"}) {
        EXPECT_EQ(page.find(markup), std::string::npos) << markup;
    }
}

}  // namespace
