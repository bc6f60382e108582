// Which package of one run is which of another.
#include "cli/records/package_matching.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::Eq;

TEST(PackageMatching, BestSignCountsFirst) {
    const std::vector<PackageIdentity> before = {
        {"a.rpm", "app", "noarch", "1-1"},
        {"b.rpm", "tool", "armv7hl", "1-1"},
        {"c.rpm", "", "", "-"},
        {"d.rpm", "gone", "noarch", "1-1"},
        {"old/e.rpm", "moved", "noarch", "2-1"},
        {"old/f.rpm", "moved", "noarch", "1-1"},
    };
    const std::vector<PackageIdentity> after = {
        {"new.rpm", "tool", "armv7hl", "2-1"},  // another version
        {"a.rpm", "app", "noarch", "2-1"},      // the same path
        {"new/f.rpm", "moved", "noarch", "1-1"},
        {"new/e.rpm", "moved", "noarch", "2-1"},
        {"c.rpm", "read now", "noarch", "1-1"},
        {"d.rpm", "other", "noarch", "1-1"},  // another package at the path
        {"tool64.rpm", "tool", "aarch64", "1-1"},
    };
    EXPECT_THAT(matched(before, after), ElementsAre(Eq(1U), Eq(0U), Eq(5U), Eq(4U), Eq(2U),
                                                    Eq(std::nullopt), Eq(std::nullopt)));
}

TEST(PackageMatching, EachIsTakenOnce) {
    const PackageIdentity same = {"a.rpm", "app", "noarch", "1-1"};
    EXPECT_THAT(matched({same, same}, {same, same, same}),
                ElementsAre(Eq(0U), Eq(1U), Eq(std::nullopt)));
    EXPECT_THAT(matched({}, {same}), ElementsAre(Eq(std::nullopt)));
}

}  // namespace
