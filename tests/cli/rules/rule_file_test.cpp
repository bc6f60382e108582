// One file of a rule tree, read by its keys.
#include "cli/rules/rule_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "tests/support/base/temporary_directory.h"

namespace pkgvet::cli {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RuleFileTest : public testing::Test {
protected:
    RuleFile read(const std::string& content) {
        return RuleFile(directory_.write("file.json", content), report_);
    }

    // The reports since the last call.
    std::vector<std::string> reports() { return std::exchange(reports_, {}); }

    const TemporaryDirectory directory_;
    std::vector<std::string> reports_;
    const RuleFile::Report report_ = [this](const Fault& fault) {
        EXPECT_EQ(fault.file, directory_ / "file.json");
        reports_.push_back(fault.key + "|" + fault.cause);
    };
};

TEST_F(RuleFileTest, GivesWhatIsThere) {
    const RuleFile file = read(R"({"text": "x", "object": {"a": 1}, "array": [{"b": 2}]})");
    EXPECT_EQ(file.path(), directory_ / "file.json");
    EXPECT_EQ(file.text(file.root(), "", "text"), "x");
    EXPECT_EQ(json_object_get_size(file.object(file.root(), "", "object")), 1U);
    JsonArray* array = file.array(file.root(), "", "array");
    ASSERT_NE(array, nullptr);
    EXPECT_NE(file.object(array, "array", 0), nullptr);
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(RuleFileTest, ReportsWhatIsMissing) {
    const RuleFile file = read(R"({"array": []})");
    EXPECT_EQ(file.text(file.root(), "", "a"), std::nullopt);
    EXPECT_EQ(file.value(file.root(), "dirs", "b", kFlagValue), std::nullopt);
    EXPECT_EQ(file.object(file.root(), "", "c"), nullptr);
    EXPECT_EQ(file.array(file.root(), "", "d"), nullptr);
    EXPECT_EQ(file.object(file.array(file.root(), "", "array"), "array", 0), nullptr);
    EXPECT_THAT(reports(), ElementsAre("a|is missing", "dirs.b|is missing", "c|is missing",
                                       "d|is missing", "array[0]|is missing"));
}

TEST_F(RuleFileTest, ReportsWhatIsOfTheWrongType) {
    const RuleFile file = read(R"({"number": 1, "array": ["x"]})");
    EXPECT_EQ(file.text(file.root(), "", "number"), std::nullopt);
    EXPECT_EQ(file.object(file.root(), "", "number"), nullptr);
    EXPECT_EQ(file.array(file.root(), "", "number"), nullptr);
    EXPECT_EQ(file.object(file.array(file.root(), "", "array"), "array", 0), nullptr);
    EXPECT_THAT(reports(), ElementsAre("number|is not a string", "number|is not an object",
                                       "number|is not an array", "array[0]|is not an object"));
}

TEST_F(RuleFileTest, ValuesOfTheWrongTypeAreReportedAndGivenAsText) {
    struct Case {
        const char* json;
        std::optional<std::string> text;
        std::vector<std::string> reportsAsText;
        std::vector<std::string> reportsAsFlag;
    };
    const std::vector<std::string> notText = {"k|is not a string"};
    const std::vector<std::string> notFlag = {"k|is neither true nor false"};
    const Case cases[] = {
        {"\"x\"", "x", {}, notFlag},   {"-7", "-7", notText, notFlag},
        {"true", "true", notText, {}}, {"false", "false", notText, {}},
        {"1.5", {}, notText, notFlag}, {"null", {}, notText, notFlag},
        {"[]", {}, notText, notFlag},  {"{}", {}, notText, notFlag},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.json);
        const RuleFile file = read(std::string("{\"k\": ") + c.json + "}");
        EXPECT_EQ(file.value(file.root(), "", "k", kTextValue), c.text);
        EXPECT_EQ(reports(), c.reportsAsText);
        EXPECT_EQ(file.value(file.root(), "", "k", kFlagValue), c.text);
        EXPECT_EQ(reports(), c.reportsAsFlag);
    }
}

TEST_F(RuleFileTest, SaysWhyTheLibraryTakesNothingFromAFile) {
    EXPECT_EQ(read("[]").root(), nullptr);
    EXPECT_THAT(reports(), ElementsAre("|holds no JSON object"));
    EXPECT_EQ(read("{").root(), nullptr);
    EXPECT_THAT(reports(), ElementsAre(testing::StartsWith("|parse error: ")));
    EXPECT_EQ(read("{\"k\": " + std::string(60000, '[') + std::string(60000, ']') + "}").root(),
              nullptr);
    EXPECT_THAT(reports(), ElementsAre("|is nested too deeply to be read"));
    std::filesystem::remove(directory_ / "file.json");
    std::filesystem::create_directory(directory_ / "file.json");
    EXPECT_EQ(RuleFile(directory_ / "file.json", report_).root(), nullptr);
    EXPECT_THAT(reports(), ElementsAre("|is not a regular file"));
}

}  // namespace

}  // namespace pkgvet::cli
