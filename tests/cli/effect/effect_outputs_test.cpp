// Where an effect goes.
#include "cli/effect/effect_outputs.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "tests/cli/effect/sample_effects.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;

std::string written(EffectFormat format) {
    std::ostringstream stream;
    writeEffect(sampleEffect(), format, stream);
    return stream.str();
}

TEST(EffectOutputs, EachGoesToItsPlace) {
    const TemporaryDirectory directory;
    const std::string page = directory / "effect.html";
    const std::string json = directory / "effect.json";
    EffectOutputs outputs({{}, {{EffectFormat::Html, page}, {EffectFormat::Json, json}}});
    std::ostringstream stream;
    outputs.write(sampleEffect(), stream);
    EXPECT_EQ(stream.str(), written(EffectFormat::Text));
    EXPECT_EQ(readFile(page), written(EffectFormat::Html));
    EXPECT_EQ(readFile(json), written(EffectFormat::Json));
}

TEST(EffectOutputs, HyphenIsStandardOutput) {
    EffectOutputs outputs({{}, {{EffectFormat::Html, "-"}}});
    std::ostringstream stream;
    outputs.write(sampleEffect(), stream);
    EXPECT_EQ(stream.str(), written(EffectFormat::Html));
}

TEST(EffectOutputs, StandardOutputTakesOneFormat) {
    EXPECT_EQ(conflictIn({EffectFormat::Html, {{EffectFormat::Html, "-"}}}), "");
    EXPECT_EQ(conflictIn({EffectFormat::Json, {{EffectFormat::Html, "-"}}}),
              "standard output takes one format: --format or one --output to -");
}

TEST(EffectOutputs, FileThatCannotBeWrittenIsToldAtOnce) {
    const TemporaryDirectory directory;
    EXPECT_THROW(EffectOutputs({{}, {{EffectFormat::Html, directory / "none/effect.html"}}}),
                 std::runtime_error);
}

TEST(EffectOutputs, OptionsTakeFormatAndPath) {
    EffectOutputOptions options;
    const Option option = effectOutputOptions(&options).back();
    EXPECT_EQ(option.set("html:a:b"), "");
    EXPECT_EQ(option.set("sarif:a"), "not FORMAT:PATH: sarif:a");
    EXPECT_EQ(option.set("html:"), "not FORMAT:PATH: html:");
    ASSERT_EQ(options.outputs.size(), 1U);
    EXPECT_EQ(options.outputs[0].format, EffectFormat::Html);
    EXPECT_EQ(options.outputs[0].path, "a:b");
}

}  // namespace
