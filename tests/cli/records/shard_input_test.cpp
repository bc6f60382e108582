// Parts of an input.
#include "cli/records/shard_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

std::vector<Input> inputs(const std::vector<std::string>& paths) {
    std::vector<Input> all;
    for (const std::string& path : paths) {
        all.push_back({path, "", all.size() + 1});
    }
    return all;
}

std::vector<std::string> pathsOf(const std::vector<Input>& inputs) {
    std::vector<std::string> paths;
    for (const Input& input : inputs) {
        paths.push_back(input.path + " " + std::to_string(input.position));
    }
    return paths;
}

TEST(ShardInput, TakesEachNthOfTheSortedInput) {
    std::vector<Input> all = inputs({"c", "a", "e", "b", "d"});
    const Shard shard = keepShard({2, 2}, &all);
    EXPECT_THAT(pathsOf(all), ElementsAre("b 4", "d 5"));
    EXPECT_EQ(shard.number, 2U);
    EXPECT_EQ(shard.of, 2U);
    EXPECT_EQ(shard.packages, 5U);
}

TEST(ShardInput, AllShardsHoldEachPackageOnce) {
    for (const unsigned of : {1U, 2U, 3U, 7U, 20U}) {
        std::set<std::size_t> positions;
        std::size_t packages = 0;
        for (unsigned number = 1; number <= of; ++number) {
            std::vector<Input> all = inputs({"g", "f", "e", "d", "c", "b", "a", "a"});
            keepShard({number, of}, &all);
            packages += all.size();
            for (const Input& input : all) {
                positions.insert(input.position);
            }
        }
        EXPECT_EQ(packages, 8U) << of;
        EXPECT_EQ(positions.size(), 8U) << of;
    }
}

TEST(ShardInput, DigestIsThatOfThePathsInAnyOrder) {
    const auto digest = [](const std::vector<std::string>& paths) {
        std::vector<Input> all = inputs(paths);
        return keepShard({1, 2}, &all).input;
    };
    EXPECT_EQ(digest({"a", "b"}), digest({"b", "a"}));
    EXPECT_NE(digest({"a", "b"}), digest({"ab"}));
    EXPECT_EQ(digest({}).size(), 64U);
}

TEST(ShardInput, NumbersAreReadStrictly) {
    EXPECT_EQ(parseShard("3/8"), ShardNumber(3, 8));
    EXPECT_EQ(parseShard("100000/100000"), ShardNumber(100000, 100000));
    for (const char* text : {"", "/", "1/", "/1", "0/1", "2/1", "1/2/3", " 1/2", "+1/2", "1/100001",
                             "1/99999999999"}) {
        EXPECT_EQ(parseShard(text), std::nullopt) << text;
    }
}

}  // namespace
