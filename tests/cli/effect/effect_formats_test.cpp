// An effect in each format.
#include "cli/effect/effect_formats.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/program/sample_runs.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;

std::string written(const Effect& effect, EffectFormat format) {
    std::ostringstream stream;
    writeEffect(effect, format, stream);
    return stream.str();
}

Effect sample() {
    Effect effect;
    effect.compared = 3;
    effect.notJudged = 1;
    effect.turned = {{"a.rpm", "org.example.a", "mdm", Verdict::Accepted, Verdict::Rejected}};
    RuleChange rule;
    rule.rule = "library-not-allowed";
    rule.worst = Severity::Error;
    rule.findings = 12;
    rule.packages = 3;
    rule.first = {{"a.rpm", "libx.so.1"}, {"b.rpm", std::nullopt}};
    rule.causes = {{"lost libx.so.1", 2}};
    effect.appeared = {rule};
    effect.added = {"c.rpm"};
    effect.removed = {"d.rpm"};
    return effect;
}

Effect hostile() {
    const std::string bytes = hostileBytes();
    Effect effect = sample();
    effect.turned = {{bytes, bytes, bytes, Verdict::NotJudged, Verdict::Accepted}};
    effect.vanished = {{bytes, Severity::Critical, 1, 1, {{bytes, bytes}}, {{bytes, 1}}}};
    effect.added = {bytes};
    return effect;
}

TEST(EffectFormats, TextTellsAllOfIt) {
    EXPECT_EQ(written(sample(), EffectFormat::Text),
              "Verdicts that turn: 1\n"
              "  a.rpm (mdm): accepted, now rejected\n"
              "Findings that appear: 12\n"
              "  error     library-not-allowed  12 findings in 3 packages\n"
              "    because of lost libx.so.1: 2 findings\n"
              "    a.rpm [libx.so.1]\n"
              "    b.rpm\n"
              "    and in 1 more package\n"
              "Findings that vanish: 0\n"
              "Packages added: 1\n"
              "  c.rpm\n"
              "Packages removed: 1\n"
              "  d.rpm\n"
              "3 packages compared, 1 not judged; 1 verdict turns\n");
}

TEST(EffectFormats, NothingIsToldInEveryFormat) {
    EXPECT_EQ(written({}, EffectFormat::Text),
              "Verdicts that turn: 0\nFindings that appear: 0\nFindings that vanish: 0\n"
              "Packages added: 0\nPackages removed: 0\n0 packages compared; 0 verdicts turn\n");
    EXPECT_EQ(written({}, EffectFormat::Markdown),
              "## pkgvet: 0 packages compared; 0 verdicts turn\n");
}

TEST(EffectFormats, JsonKeepsToItsSchema) {
    std::vector<std::string> documents;
    for (const Effect& effect : {Effect(), sample(), hostile()}) {
        documents.push_back(written(effect, EffectFormat::Json));
    }
    EXPECT_EQ(jsonFaults("docs/effect.schema.json", documents), "");
    const auto json = nlohmann::json::parse(documents[1]);
    EXPECT_EQ(json["turned"][0]["after"], "rejected");
    EXPECT_EQ(json["appeared"][0]["first"][0]["subject"], "libx.so.1");
    EXPECT_EQ(json["appeared"][0]["causes"][0]["findings"], 2);
}

TEST(EffectFormats, SchemaRefusesWhatIsNotAnEffect) {
    EXPECT_NE(jsonFaults("docs/effect.schema.json", {"{}"}), "");
}

TEST(EffectFormats, MarkdownHasATableForEachSide) {
    EXPECT_EQ(written(sample(), EffectFormat::Markdown),
              "## pkgvet: 3 packages compared, 1 not judged; 1 verdict turns\n"
              "\n### Verdicts that turn\n\n"
              "| Package | Profile | Before | Now |\n|---|---|---|---|\n"
              "| a.rpm | mdm | accepted | rejected |\n"
              "\n### Findings that appear\n\n"
              "| Severity | Rule | Findings | Packages | First | Because of |\n"
              "|---|---|---|---|---|---|\n"
              "| error | library\\-not\\-allowed | 12 | 3 | a.rpm \\[libx.so.1\\], b.rpm | "
              "lost libx.so.1 (2) |\n"
              "\n### Packages added\n\n- c.rpm\n"
              "\n### Packages removed\n\n- d.rpm\n");
}

TEST(EffectFormats, HostileBytesStayInTheirLines) {
    const Effect plain = [] {
        Effect effect = hostile();
        effect.turned[0].path = effect.turned[0].profile = "x";
        effect.vanished[0].first = {{"x", "x"}};
        effect.vanished[0].causes = {{"x", 1}};
        effect.vanished[0].rule = "x";
        effect.added = {"x"};
        return effect;
    }();
    for (const EffectFormat format : {EffectFormat::Text, EffectFormat::Markdown}) {
        const std::string one = written(hostile(), format);
        const std::string other = written(plain, format);
        EXPECT_EQ(std::count(one.begin(), one.end(), '\n'),
                  std::count(other.begin(), other.end(), '\n'));
        EXPECT_EQ(one.find('\x1b'), std::string::npos);
    }
}

}  // namespace
