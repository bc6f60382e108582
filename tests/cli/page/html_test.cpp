// Text in HTML and in script elements.
#include "cli/page/html.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

TEST(HtmlText, EscapesMarkup) {
    EXPECT_EQ(htmlText("<a href=\"x\">'&'</a>"),
              "&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;");
}

TEST(HtmlText, ShowsWhatCannotBeSeen) {
    EXPECT_EQ(htmlText("a\x1b\n\xff\u202e"), "a\\x1b\\x0a\\xff\\u{202e}");
}

TEST(HtmlProse, TextBetweenBackticksIsCode) {
    EXPECT_EQ(htmlProse("Remove `<b>` from `%files`."),
              "Remove <code>&lt;b&gt;</code> from <code>%files</code>.");
    EXPECT_EQ(htmlProse("Plain"), "Plain");
}

TEST(ScriptJson, NothingEndsTheElement) {
    const nlohmann::ordered_json json = {{"</script>", "<!-- & -->"}};
    const std::string text = scriptJson(json);
    EXPECT_EQ(text, "{\"\\u003c/script\\u003e\":\"\\u003c!-- \\u0026 --\\u003e\"}");
    EXPECT_EQ(nlohmann::ordered_json::parse(text), json);
}

TEST(ScriptJson, BytesThatAreNotUtf8DoNotThrow) {
    EXPECT_EQ(scriptJson(nlohmann::ordered_json(hostileBytes())).find_first_of("<>&"),
              std::string::npos);
}

TEST(PolicySource, IsTheDigestInBase64) {
    // As browsers and openssl compute it.
    EXPECT_EQ(policySource("alert('Hello, world.');"),
              "'sha256-qznLcsROx4GACP2dm0UCKCzCG+HiZ1guq6ZZDob/Tng='");
}

}  // namespace
