// An effect as a page.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/base/version.h"
#include "cli/effect/effect_formats.h"
#include "cli/page/html.h"
#include "cli/page/page_files.h"
#include "tests/cli/effect/sample_effects.h"

namespace {

using namespace pkgvet::cli;

std::string pageOf(const Effect& effect) {
    std::ostringstream stream;
    writeEffectHtml(effect, stream);
    return stream.str();
}

// Without the head, which is mostly styles.
std::string bodyOf(const Effect& effect) {
    const std::string page = pageOf(effect);
    return page.substr(page.find("<body>"));
}

std::size_t count(const std::string& text, std::string_view part) {
    std::size_t number = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++number;
    }
    return number;
}

TEST(EffectHtml, PolicyKnowsItsStyleAndNoScript) {
    const std::string page = pageOf(sampleEffect());
    EXPECT_EQ(page.rfind("<!DOCTYPE html>\n<html lang=\"en\">\n", 0), 0U);
    EXPECT_NE(page.find("content=\"default-src 'none'; style-src " + policySource(kPageStyle) +
                        "; script-src 'none'; base-uri 'none'; form-action 'none'\">"),
              std::string::npos);
    EXPECT_NE(page.find("<title>1 verdict turns – pkgvet</title>"), std::string::npos);
    for (const char* word : {"<script", "{{", "src=", "url(", "<link", "style=\""}) {
        EXPECT_EQ(page.find(word), std::string::npos) << word;
    }
}

TEST(EffectHtml, PageTellsAllOfIt) {
    EXPECT_EQ(bodyOf(sampleEffect()), R"(<body>
<header>
<p class="wordmark">pkgvet</p>
<h1>1 verdict turns</h1>
<p class="lead">3 packages compared</p>
<p class="notice grave">Not all packages were judged: a run was interrupted. What was not reached by then is not told here.</p>
</header>
<main class="effect">
<section class="panel" aria-labelledby="totals-title">
<h2 id="totals-title">Totals</h2>
<dl class="figures">
<div class="figure rejected"><dt class="figure-label">packages accepted before, rejected now</dt><dd class="figure-number">1</dd></div>
<div class="figure accepted"><dt class="figure-label">packages rejected before, accepted now</dt><dd class="figure-number">0</dd></div>
<div class="figure unjudged"><dt class="figure-label">packages not judged</dt><dd class="figure-number">1</dd></div>
<div class="figure "><dt class="figure-label">findings that appear</dt><dd class="figure-number">12</dd></div>
<div class="figure "><dt class="figure-label">findings that vanish</dt><dd class="figure-number">0</dd></div>
</dl>
</section>
<section class="panel" aria-labelledby="sides-title">
<h2 id="sides-title">What was compared</h2>
<dl class="facts">
<dt>Before</dt><dd><bdi>old.json</bdi>, by pkgvet <bdi>1.0.0</bdi>, interrupted</dd>
<dt>Its rules of <bdi>mdm</bdi></dt><dd>SHA-256 <bdi>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</bdi></dd>
<dt>Its rules of <bdi>auth</bdi></dt><dd>not known</dd>
<dt>Now</dt><dd><bdi>new.json</bdi>, by pkgvet <bdi>1.1.0</bdi></dd>
<dt>Its rules of <bdi>mdm</bdi></dt><dd>SHA-256 <bdi>bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb</bdi></dd>
</dl>
</section>
<section id="unjudged" aria-labelledby="unjudged-title">
<h2 id="unjudged-title">Not judged <span class="times">1</span></h2>
<p class="hint">Of these packages no finding appears or vanishes: what they hold is not known.</p>
<div class="frame">
<table>
<caption class="unseen">Packages that could not be judged, with the cause on each side.</caption>
<thead><tr><th scope="col">Package</th><th scope="col">Before</th><th scope="col">Now</th></tr></thead>
<tbody>
<tr><th scope="row"><bdi>e.rpm</bdi></th><td><bdi></bdi></td><td><bdi>it took too long</bdi></td></tr>
</tbody>
</table>
</div>
</section>
<section id="turned" aria-labelledby="turned-title">
<h2 id="turned-title">Verdicts that turn <span class="times">1</span></h2>
<div class="frame">
<table>
<caption class="unseen">Packages whose verdict under a profile is another than it was.</caption>
<thead><tr><th scope="col">Package</th><th scope="col">Profile</th><th scope="col">Before</th><th scope="col">Now</th></tr></thead>
<tbody>
<tr><th scope="row"><b><bdi>org.example.a</bdi></b> <span class="place"><bdi>a.rpm</bdi></span></th><td><bdi>mdm</bdi></td><td><span class="pill accepted">accepted</span></td><td><span class="pill rejected">rejected</span></td></tr>
</tbody>
</table>
</div>
</section>
<section id="appeared" aria-labelledby="appeared-title">
<h2 id="appeared-title">Findings that appear <span class="times">12</span></h2>
<div class="frame">
<table>
<caption class="unseen">Rules whose findings appear, those with most findings first. Below each rule stand the cause and the first packages.</caption>
<thead><tr><th scope="col">Rule</th><th scope="col" class="count">Findings</th><th scope="col" class="count">Packages</th></tr></thead>
<tbody>
<tr><th scope="rowgroup"><span class="severity error">error</span> <b>Program links a library that is not allowed</b> <code class="rule-id"><bdi>library-not-allowed</bdi></code></th><td class="count">12</td><td class="count">3</td></tr>
<tr><td colspan="3"><dl class="facts">
<dt>Because of</dt><dd><ul>
<li><bdi>lost libx.so.1</bdi> <span class="times">2 findings</span></li>
</ul></dd>
<dt>First packages</dt><dd><ul>
<li><bdi>a.rpm</bdi> <span class="subject"><bdi>libx.so.1</bdi></span></li>
<li><bdi>b.rpm</bdi></li>
<li class="note">and 1 more</li>
</ul></dd>
</dl></td></tr>
</tbody>
</table>
</div>
</section>
<section id="vanished" aria-labelledby="vanished-title">
<h2 id="vanished-title">Findings that vanish <span class="times">0</span></h2>
<p class="hint">No finding vanishes.</p>
</section>
<section id="added" aria-labelledby="added-title">
<h2 id="added-title">Packages added <span class="times">1</span></h2>
<ul class="panel">
<li><bdi>c.rpm</bdi></li>
</ul>
</section>
<section id="removed" aria-labelledby="removed-title">
<h2 id="removed-title">Packages removed <span class="times">1</span></h2>
<ul class="panel">
<li><bdi>d.rpm</bdi></li>
</ul>
</section>
</main>
<footer>
<p>pkgvet )" + std::string(programVersion()) +
                                          R"(</p>
</footer>
</body>
</html>
)");
}

TEST(EffectHtml, NothingIsToldAsSuch) {
    EXPECT_EQ(bodyOf({}), R"(<body>
<header>
<p class="wordmark">pkgvet</p>
<h1>No verdict turns</h1>
<p class="lead">0 packages compared</p>
</header>
<main class="effect">
<section class="panel" aria-labelledby="totals-title">
<h2 id="totals-title">Totals</h2>
<dl class="figures">
<div class="figure rejected"><dt class="figure-label">packages accepted before, rejected now</dt><dd class="figure-number">0</dd></div>
<div class="figure accepted"><dt class="figure-label">packages rejected before, accepted now</dt><dd class="figure-number">0</dd></div>
<div class="figure unjudged"><dt class="figure-label">packages not judged</dt><dd class="figure-number">0</dd></div>
<div class="figure "><dt class="figure-label">findings that appear</dt><dd class="figure-number">0</dd></div>
<div class="figure "><dt class="figure-label">findings that vanish</dt><dd class="figure-number">0</dd></div>
</dl>
</section>
<section id="turned" aria-labelledby="turned-title">
<h2 id="turned-title">Verdicts that turn <span class="times">0</span></h2>
<p class="hint">No verdict turns.</p>
</section>
<section id="appeared" aria-labelledby="appeared-title">
<h2 id="appeared-title">Findings that appear <span class="times">0</span></h2>
<p class="hint">No finding appears.</p>
</section>
<section id="vanished" aria-labelledby="vanished-title">
<h2 id="vanished-title">Findings that vanish <span class="times">0</span></h2>
<p class="hint">No finding vanishes.</p>
</section>
</main>
<footer>
<p>pkgvet )" + std::string(programVersion()) +
                              R"(</p>
</footer>
</body>
</html>
)");
}

TEST(EffectHtml, PackageCountsOnceInADirection) {
    Effect effect;
    effect.turned = {{"a", "a", "mdm", Verdict::Accepted, Verdict::Rejected},
                     {"a", "a", "auth", Verdict::Accepted, Verdict::Rejected},
                     {"b", "b", "mdm", Verdict::Rejected, Verdict::Accepted},
                     {"c", "c", "mdm", Verdict::Accepted, Verdict::NotJudged}};
    const std::string body = bodyOf(effect);
    EXPECT_NE(body.find("<h1>4 verdicts turn</h1>"), std::string::npos);
    EXPECT_NE(body.find("accepted before, rejected now</dt><dd class=\"figure-number\">1<"),
              std::string::npos);
    EXPECT_NE(body.find("rejected before, accepted now</dt><dd class=\"figure-number\">1<"),
              std::string::npos);
}

TEST(EffectHtml, InterruptedRunIsTold) {
    Effect effect = sampleEffect();
    EXPECT_EQ(count(bodyOf(effect), "class=\"notice grave\""), 1U);
    effect.partial = false;
    EXPECT_EQ(count(bodyOf(effect), "class=\"notice grave\""), 0U);
}

TEST(EffectHtml, TextsOfPackagesAreIsolatedAndNeverMarkup) {
    const std::string markup = "</bdi></table><img src=x onerror=alert(1)>\"'&\u202e";
    const std::string page = pageOf(effectOfTexts(markup));
    for (const char* word : {"<img", "</bdi></table>", "\u202e", "onerror=alert(1)>"}) {
        EXPECT_EQ(page.find(word), std::string::npos) << word;
    }
    const std::string shown = htmlText(markup);
    // The old side 4, not judged 3, turned 3, vanished 4, added 1.
    EXPECT_EQ(count(page, shown), 15U);
    EXPECT_EQ(count(page, "<bdi>" + shown + "</bdi>"), 15U);
}

TEST(EffectHtml, EveryTableHasACaptionAndHeadings) {
    const std::string body = bodyOf(effectOfTexts(hostileBytes()));
    EXPECT_EQ(count(body, "<table>"), 4U);
    EXPECT_EQ(count(body, "<table>\n<caption"), 4U);
    EXPECT_EQ(count(body, "<th "), count(body, "<th scope=\""));
    EXPECT_EQ(count(body, "<h1"), 1U);
}

}  // namespace
