// An effect in each format.
#include "cli/effect/effect_formats.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/cli/effect/sample_effects.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;

std::string written(const Effect& effect, EffectFormat format) {
    std::ostringstream stream;
    writeEffect(effect, format, stream);
    return stream.str();
}

TEST(EffectFormats, TextTellsAllOfIt) {
    EXPECT_EQ(
        written(sampleEffect(), EffectFormat::Text),
        "Before: old.json, interrupted\nNow: new.json\n"
        "Verdicts that turn: 1\n"
        "  a.rpm (mdm): accepted, now rejected\n"
        "Findings that appear: 12\n"
        "  error     library-not-allowed  12 findings in 3 packages\n"
        "    because of lost libx.so.1: 2 findings\n"
        "    a.rpm [libx.so.1]\n"
        "    b.rpm\n"
        "    and in 1 more package\n"
        "Findings that vanish: 0\n"
        "Packages not judged: 1\n"
        "  e.rpm: now: it took too long\n"
        "Packages added: 1\n"
        "  c.rpm\n"
        "Packages removed: 1\n"
        "  d.rpm\n"
        "Not all packages were judged: a run was interrupted. What was not reached by then is "
        "not told here.\n"
        "3 packages compared, 1 not judged; 1 verdict turns\n");
}

TEST(EffectFormats, NothingIsToldInEveryFormat) {
    EXPECT_EQ(written({}, EffectFormat::Text),
              "Verdicts that turn: 0\nFindings that appear: 0\nFindings that vanish: 0\n"
              "Packages not judged: 0\nPackages added: 0\nPackages removed: 0\n0 packages "
              "compared; 0 verdicts turn\n");
    EXPECT_EQ(written({}, EffectFormat::Markdown),
              "## pkgvet: 0 packages compared; 0 verdicts turn\n");
}

TEST(EffectFormats, JsonKeepsToItsSchema) {
    std::vector<std::string> documents;
    for (const Effect& effect : {Effect(), sampleEffect(), effectOfTexts(hostileBytes())}) {
        documents.push_back(written(effect, EffectFormat::Json));
    }
    EXPECT_EQ(jsonFaults("docs/effect.schema.json", documents), "");
    const auto json = nlohmann::json::parse(documents[1]);
    EXPECT_EQ(json["before"]["path"], "old.json");
    EXPECT_EQ(json["after"]["profiles"][0]["rules_digest"], std::string(64, 'b'));
    EXPECT_EQ(json["partial"], true);
    EXPECT_EQ(json["unjudged"][0]["after"], "it took too long");
    EXPECT_EQ(json["turned"][0]["after"], "rejected");
    EXPECT_EQ(json["appeared"][0]["first"][0]["subject"], "libx.so.1");
    EXPECT_EQ(json["appeared"][0]["causes"][0]["findings"], 2);
}

TEST(EffectFormats, CauseNamesTheSideUnlessBothHaveIt) {
    EXPECT_EQ(causeText({"a", "lost", "lost"}), "lost");
    EXPECT_EQ(causeText({"a", "lost", ""}), "before: lost");
    EXPECT_EQ(causeText({"a", "lost", "gone"}), "before: lost; now: gone");
}

TEST(EffectFormats, SchemaRefusesWhatIsNotAnEffect) {
    EXPECT_NE(jsonFaults("docs/effect.schema.json", {"{}"}), "");
}

TEST(EffectFormats, MarkdownHasATableForEachSide) {
    EXPECT_EQ(written(sampleEffect(), EffectFormat::Markdown),
              "## pkgvet: 3 packages compared, 1 not judged; 1 verdict turns\n"
              "\n**Not all packages were judged: a run was interrupted. What was not reached by "
              "then is not told here.**\n"
              "\n- Before: old.json, interrupted\n- Now: new.json\n"
              "\n### Verdicts that turn\n\n"
              "| Package | Profile | Before | Now |\n|---|---|---|---|\n"
              "| a.rpm | mdm | accepted | rejected |\n"
              "\n### Findings that appear\n\n"
              "| Severity | Rule | Findings | Packages | First | Because of |\n"
              "|---|---|---|---|---|---|\n"
              "| error | library\\-not\\-allowed | 12 | 3 | a.rpm \\[libx.so.1\\], b.rpm | "
              "lost libx.so.1 (2) |\n"
              "\n### Packages not judged\n\n| Package | Cause |\n|---|---|\n"
              "| e.rpm | now\\: it took too long |\n"
              "\n### Packages added\n\n- c.rpm\n"
              "\n### Packages removed\n\n- d.rpm\n");
}

TEST(EffectFormats, HostileBytesStayInTheirLines) {
    for (const EffectFormat format :
         {EffectFormat::Text, EffectFormat::Markdown, EffectFormat::Html}) {
        const std::string one = written(effectOfTexts(hostileBytes()), format);
        const std::string other = written(effectOfTexts("x"), format);
        EXPECT_EQ(std::count(one.begin(), one.end(), '\n'),
                  std::count(other.begin(), other.end(), '\n'));
        EXPECT_EQ(one.find('\x1b'), std::string::npos);
    }
}

}  // namespace
