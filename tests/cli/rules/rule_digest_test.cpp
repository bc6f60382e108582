// The digest of the rules that are in force.
#include "cli/rules/rule_digest.h"

#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;

RuleSet someRules() {
    RuleSet rules;
    rules.scalars = {{"bin_dir", "/usr/bin/", "dirs.bin_dir"},
                     {"inheritance", "regular", "profiles[1].inheritance"}};
    rules.lists = {{"paths", {{"/a", "/etc/x", "paths[0]"}, {"/b", "/etc/x", "paths[1]"}}},
                   {"permissions", {}}};
    return rules;
}

TEST(RuleDigest, IsThatOfTheRulesAndNotOfTheFiles) {
    const std::string digest = digestOf(someRules());
    EXPECT_EQ(digest.size(), 64U);
    RuleSet same = someRules();
    same.lists[0].elements = {{"/b", "/other", "k"}, {"/a", "/y", "k"}, {"/a", "/z", "k"}};
    same.scalars[1].value = "extended";
    same.files = {"/other"};
    EXPECT_EQ(digestOf(same), digest);
}

TEST(RuleDigest, DiffersWithEachRule) {
    const std::string digest = digestOf(someRules());
    RuleSet other = someRules();
    other.scalars[0].value = "/bin/";
    EXPECT_NE(digestOf(other), digest);
    other = someRules();
    other.lists[0].elements[0].text = "/c";
    EXPECT_NE(digestOf(other), digest);
    other = someRules();
    other.lists[0].elements.pop_back();
    EXPECT_NE(digestOf(other), digest);
    other = someRules();
    std::swap(other.lists[0].elements, other.lists[1].elements);
    EXPECT_NE(digestOf(other), digest);
}

}  // namespace
