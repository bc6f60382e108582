// Options of the common kinds, each handed arguments.
#include "cli/base/option.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

enum class Fruit { Apple, Pear };

constexpr Words<Fruit, 2> kFruit = {{{"apple", Fruit::Apple}, {"pear", Fruit::Pear}}};

TEST(Words, LeadFromWordToValueAndBack) {
    EXPECT_EQ(valueOf(kFruit, "pear"), Fruit::Pear);
    EXPECT_EQ(valueOf(kFruit, "Pear"), std::nullopt);
    EXPECT_EQ(valueOf(kFruit, ""), std::nullopt);
    EXPECT_EQ(wordOf(kFruit, Fruit::Apple), "apple");
    EXPECT_EQ(wordOf(kFruit, static_cast<Fruit>(2)), "");
    EXPECT_THAT(allWords(kFruit), ElementsAre("apple", "pear"));
}

TEST(FlagOption, SetsItsValue) {
    bool value = false;
    const Option option = flagOption({"-v", "--value"}, &value, "A flag");
    EXPECT_EQ(option.argument, "");
    EXPECT_EQ(option.set(""), "");
    EXPECT_TRUE(value);
}

TEST(ChoiceOption, TakesItsWordsAndNothingElse) {
    Fruit fruit = Fruit::Apple;
    const Option option = choiceOption("--fruit", kFruit, &fruit, "A fruit");
    EXPECT_EQ(option.argument, "apple|pear");
    EXPECT_THAT(option.words, ElementsAre("apple", "pear"));
    EXPECT_EQ(option.set("pear"), "");
    EXPECT_EQ(fruit, Fruit::Pear);
    for (const char* word : {"0", "Apple", "", "apple "}) {
        EXPECT_EQ(option.set(word), std::string(word) + " not in {apple,pear}");
    }
    EXPECT_EQ(fruit, Fruit::Pear);
}

TEST(FileOption, LastPathCounts) {
    std::string path;
    const Option option = fileOption("--file", &path, "A file");
    EXPECT_TRUE(option.takesFile);
    EXPECT_FALSE(option.mayRepeat);
    option.set("a");
    option.set("b");
    EXPECT_EQ(path, "b");
}

TEST(FilesOption, EachPathCounts) {
    std::vector<std::string> paths;
    const Option option = filesOption("--file", &paths, "Files");
    EXPECT_TRUE(option.takesFile);
    EXPECT_TRUE(option.mayRepeat);
    option.set("a");
    option.set("b");
    EXPECT_THAT(paths, ElementsAre("a", "b"));
}

TEST(NumberOption, TakesWholeNumbersInItsRange) {
    struct Case {
        const char* text;
        unsigned number;  // 0: refused
    };
    const Case cases[] = {
        {"1", 1},  {"16", 16}, {"0x10", 16},      {"010", 8},
        {"+4", 4}, {"0", 0},   {"17", 0},         {"-1", 0},
        {"", 0},   {"4x", 0},  {"x", 0},          {"1.5", 0},
        {"4 ", 0}, {"0x", 0},  {"4294967297", 0}, {"99999999999999999999", 0},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        unsigned number = 0;
        const Option option = numberOption({"--number"}, &number, 1, 16, "A number");
        const std::string refusal = std::string("Value ") + test.text + " not in range 1 to 16";
        EXPECT_EQ(option.set(test.text), test.number == 0 ? refusal : "");
        EXPECT_EQ(number, test.number);
    }
}

TEST(TimeOption, TakesSecondsInItsRange) {
    const std::string kRange = " not in range 0.500000 to 100.000000";
    struct Case {
        const char* text;
        double seconds;  // 0: refused
        std::string error;
    };
    const Case cases[] = {
        {"0.5", 0.5, ""},
        {"1e2", 100, ""},
        {"0.4", 0, "Value 0.4" + kRange},
        {"101", 0, "Value 101" + kRange},
        {"inf", 0, "Value inf" + kRange},
        {"", 0, "Value " + kRange},
        {"5s", 0, "Value 5s" + kRange},
        {"nan", 0, "nan is not a time"},
        {"-nan", 0, "-nan is not a time"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        double seconds = 0;
        const Option option = timeOption("--time", &seconds, 0.5, 100, "A time");
        EXPECT_EQ(option.set(test.text), test.error);
        EXPECT_EQ(seconds, test.seconds);
    }
}

TEST(Option, SizesHaveUnits) {
    struct Case {
        const char* text;
        std::string error;
        std::uint64_t bytes;
    };
    constexpr std::uint64_t kBefore = 7;
    const Case cases[] = {
        {"4096", "", 4096},
        {"1024K", "", 1 << 20},
        {"3M", "", 3 << 20},
        {"16777216G", "", std::uint64_t{1} << 54},
        {"1023", "1023 is less than 1024", kBefore},
        {"0", "0 is less than 1024", kBefore},
        {"", " is not a size such as 512M", kBefore},
        {"M", "M is not a size such as 512M", kBefore},
        {"4m", "4m is not a size such as 512M", kBefore},
        {"4MB", "4MB is not a size such as 512M", kBefore},
        {"-4M", "-4M is not a size such as 512M", kBefore},
        {"1.5G", "1.5G is not a size such as 512M", kBefore},
        {"18446744073709551615G", "18446744073709551615G is not a size such as 512M", kBefore},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        std::uint64_t bytes = kBefore;
        const Option option = sizeOption("--size", &bytes, 1024, "A size");
        EXPECT_EQ(option.set(test.text), test.error);
        EXPECT_EQ(bytes, test.bytes);
    }
}

}  // namespace
