// What is seen where no scripts run.
#include "cli/page/page_without_scripts.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

std::string htmlOf(const RunReport& run) {
    std::ostringstream stream;
    writeWithoutScripts(run, stream);
    return stream.str();
}

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(PageWithoutScripts, MessagesStandAboveTheirSubjects) {
    const Finding a = findingAbout("/usr/a", "path-not-allowed", Severity::Error, "Not here");
    const Finding b = findingAbout("/usr/b", "path-not-allowed", Severity::Error, "Not here");
    const std::string html = htmlOf(runOf({package({judgement({a, b})})}));
    EXPECT_TRUE(holds(html, "<article id=\"package=" + std::string(64, 'a') +
                                "\"><h3>rejected: <bdi>org.example.app</bdi> 1.0-1.noarch</h3>"
                                "<p>app.rpm\n"
                                "<dl>\n<dt>error path-not-allowed: Not here\n"
                                "<dd>/usr/a\n<dd>/usr/b\n</dl></article>\n"))
        << html;
    EXPECT_TRUE(
        holds(html, "<a href=\"#rule=path-not-allowed\">path-not-allowed</a><td>1<td>1<td>2"))
        << html;
    EXPECT_TRUE(holds(html, "<article id=\"rule=path-not-allowed\">")) << html;
}

TEST(PageWithoutScripts, InALargeRunMessagesStandWithTheirRules) {
    const std::vector<Finding> many(
        20001, findingAbout("/usr/a", "path-not-allowed", Severity::Error, "Not here"));
    const std::string html = htmlOf(runOf({package({judgement(many)})}));
    EXPECT_TRUE(holds(html, "<dt>error path-not-allowed\n<dd>/usr/a\n<dd>/usr/a\n")) << html.size();
    EXPECT_TRUE(holds(html, "<ul>\n<li>Not here\n</ul></article>\n")) << html.size();
}

TEST(PageWithoutScripts, TheMostSevereComesFirst) {
    const std::string html = htmlOf(runOf({package(
        {judgement({finding("a", Severity::Info, "A"), finding("b", Severity::Critical, "B")})})}));
    EXPECT_LT(html.find("<dt>critical"), html.find("<dt>info"));
}

TEST(PageWithoutScripts, WhatIsExcusedOrOfSomeProfilesSaysSo) {
    Finding waived = finding("a", Severity::Error, "A");
    waived.standing = Standing::Waived;
    waived.reason = "agreed";
    Finding known = finding("b", Severity::Error, "B");
    known.standing = Standing::Known;
    const std::string html =
        htmlOf(runOf({package({judgement({waived, known}), judgement({known}, "mdm")})}));
    EXPECT_TRUE(holds(html, "<dt>error a: A (waived: agreed) (regular)\n")) << html;
    EXPECT_TRUE(holds(html, "<dt>error b: B (known)\n")) << html;
    EXPECT_TRUE(holds(html, "<p>regular rejected, mdm rejected\n")) << html;
    EXPECT_FALSE(holds(html, "Rules that packages break")) << html;
}

TEST(PageWithoutScripts, WhatWasNotJudgedIsListedAheadOfThePackages) {
    const std::string html = htmlOf(runOf({unreadable("a<b>.rpm", "not an RPM package")}));
    EXPECT_TRUE(holds(html,
                      "<h2>Not judged</h2>\n<ul>\n<li><b>a&lt;b&gt;.rpm</b>: not an RPM "
                      "package\n</ul>\n"))
        << html;
    EXPECT_TRUE(holds(html, "<p class=cause>not an RPM package\n")) << html;
}

TEST(PageWithoutScripts, NothingOfAPackageIsMarkup) {
    PackageReport report = package(
        {judgement({findingAbout("</dl><script>", "path-not-allowed", Severity::Error, "<b>")})});
    report.name = "<img src=x>";
    report.path = "\"'><i>";
    const std::string html = htmlOf(runOf({report}));
    for (const char* markup : {"<script>", "<img", "<i>"}) {
        EXPECT_FALSE(holds(html, markup)) << html;
    }
}

}  // namespace
