// Patterns that a package brings.
#include "pkgvet/pattern/package_patterns.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <regex>

#include "pkgvet/pattern/pattern_list.h"

namespace {

using namespace std::regex_constants;
using pkgvet::matchPackagePatterns;
using pkgvet::PatternAnswer;
using pkgvet::PatternList;
using Strings = std::vector<std::string>;

// An answer, or the error that was thrown in its place.
struct Outcome {
    bool isMatched = false;
    std::optional<error_type> error;
    bool operator==(const Outcome&) const = default;
};

template <typename Match>
Outcome outcomeOf(const Match& match) {
    try {
        return {match(), std::nullopt};
    } catch (const std::regex_error& error) {
        return {false, error.code()};
    }
}

std::vector<Outcome> outcomes(const Strings& patterns, const Strings& texts) {
    std::vector<Outcome> result;
    for (const PatternAnswer& answer : matchPackagePatterns(patterns, texts)) {
        result.push_back(outcomeOf([&answer] { return answer.get(); }));
    }
    return result;
}

// The plain reading: each text walks the list.
std::vector<Outcome> expected(const Strings& patterns, const Strings& texts) {
    PatternList list(patterns);
    std::vector<Outcome> result;
    for (const std::string& text : texts) {
        result.push_back(outcomeOf([&] { return list.matches(text); }));
    }
    return result;
}

Strings repeated(std::size_t count, const std::string& before, const std::string& behind) {
    Strings texts;
    for (std::size_t i = 0; i < count; ++i) {
        texts.push_back(before + std::to_string(i) + behind);
    }
    return texts;
}

TEST(PackagePatterns, AnswerAsAListOfPatterns) {
    const Strings pieces = {"a", "b", ".", "a.b", "a+", "(a|b)", "(", "\\.", "[ab]", "\n", "a*"};
    std::mt19937 random(1);
    const auto generated = [&](std::size_t most) {
        Strings texts(1 + random() % most);
        for (std::string& text : texts) {
            for (std::size_t left = random() % 4; left > 0; --left) {
                text += pieces[random() % pieces.size()];
            }
        }
        return texts;
    };
    for (int i = 0; i < 2000; ++i) {
        const Strings patterns = generated(6);
        const Strings texts = generated(6);
        EXPECT_EQ(outcomes(patterns, texts), expected(patterns, texts));
    }
}

TEST(PackagePatterns, ABadOneEndsTheWalkOfTheTextsThatGetToIt) {
    EXPECT_EQ(outcomes({"first", "(", "second"}, {"first", "second", "third"}),
              (std::vector<Outcome>{{true, {}}, {false, error_paren}, {false, error_paren}}));
    EXPECT_EQ(outcomes({"first", "("}, {"first"}), (std::vector<Outcome>{{true, {}}}));
}

TEST(PackagePatterns, WithoutPatternsNothingMatches) {
    EXPECT_EQ(outcomes({}, {"", "a"}), (std::vector<Outcome>(2)));
    EXPECT_EQ(outcomes({"a"}, {}), std::vector<Outcome>());
}

// Five thousand links into a package of five thousand files: as pairs, more than all steps.
TEST(PackagePatterns, PlainTextsAreLookedUpAndNotTriedInPairs) {
    const Strings paths = repeated(5000, "/usr/share/application/data/file-", ".dat");
    const std::vector<Outcome> answers = outcomes(paths, paths);
    EXPECT_EQ(answers, (std::vector<Outcome>(paths.size(), {true, {}})));
    EXPECT_GT(paths.size() * paths.size() * paths.front().size(), pkgvet::kMaxListSteps);
}

TEST(PackagePatterns, LargeAutomataUseUpTheStepsOfTheList) {
    const Strings patterns = repeated(1000, "[a-z]{9000}", "");
    EXPECT_EQ(outcomes(patterns, {"a"}), (std::vector<Outcome>{{false, error_complexity}}));
}

TEST(PackagePatterns, MatchesThatAreHardUseUpTheStepsOfTheList) {
    const Strings patterns(100, "(a*)*(a*)*(a*)*(a*)*(a*)*b");
    const Strings texts = repeated(100, std::string(1000, 'a'), "");
    for (const Outcome& outcome : outcomes(patterns, texts)) {
        EXPECT_EQ(outcome, (Outcome{false, error_complexity}));
    }
}

// Of plain patterns, each shape takes a look at all texts of its size. Those that begin with a line
// feed are as soon done with.
TEST(PackagePatterns, ShapesOfPlainTextUseUpTheStepsOfTheList) {
    const Strings texts(2000, "\n" + std::string(999, 'x'));
    Strings patterns;
    for (std::size_t i = 0; i < 101; ++i) {
        patterns.emplace_back(1000, 'x');
        patterns.back()[i] = '.';
    }
    EXPECT_EQ(outcomes(patterns, texts),
              std::vector<Outcome>(texts.size(), Outcome{false, error_complexity}));
    patterns.pop_back();
    EXPECT_EQ(outcomes(patterns, texts), std::vector<Outcome>(texts.size()));
}

// At each place in a text, whether the engine gets there or not.
TEST(PackagePatterns, AlternativesUseUpTheStepsOfTheList) {
    const Strings texts = {std::string(1000, 'y')};
    const Strings few = repeated(9, "z(" + std::string(1000, '|') + ")", "");
    const Strings many = repeated(11, "z(" + std::string(1000, '|') + ")", "");
    EXPECT_EQ(outcomes(few, texts), std::vector<Outcome>{Outcome()});
    EXPECT_EQ(outcomes(many, texts), std::vector<Outcome>({Outcome{false, error_complexity}}));
}

// The engine clears a mark of each state wherever it gets to in a text.
TEST(PackagePatterns, StatesUseUpTheStepsOfTheListAtEachPlaceOfAText) {
    const Strings texts = repeated(300, std::string(4000, 'a'), "");
    const std::vector<Outcome> all(texts.size(), {true, {}});
    EXPECT_EQ(outcomes({"a*(b{90})?[0-9]*"}, texts), all);
    std::vector<Outcome> some = outcomes({"a*(b{90000})?[0-9]*"}, texts);
    EXPECT_EQ(some.front(), (Outcome{true, {}}));
    EXPECT_EQ(some.back(), (Outcome{false, error_complexity}));
    // Not where it never gets to.
    EXPECT_EQ(outcomes({"c(b{90000})?[0-9]*"}, texts), std::vector<Outcome>(texts.size()));
}

// Honest names may hold a "|".
TEST(PackagePatterns, FewAlternativesCostNothingMore) {
    const Strings patterns = repeated(100, "z|x", "");
    const Strings texts = repeated(1000, std::string(100, 'y'), "");
    EXPECT_EQ(outcomes(patterns, texts), std::vector<Outcome>(texts.size()));
}

// What is matched before the steps are used up keeps its answer.
TEST(PackagePatterns, AnswersAheadOfTheEndStay) {
    Strings patterns = repeated(1000, "[a-z]{9000}", "");
    patterns.insert(patterns.begin(), "found");
    EXPECT_EQ(outcomes(patterns, {"found", "a"}),
              (std::vector<Outcome>{{true, {}}, {false, error_complexity}}));
}

}  // namespace
