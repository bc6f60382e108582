// Addresses of packages.
#include "cli/page/package_keys.h"

#include <gtest/gtest.h>

#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

TEST(PackageKeys, APackageIsKnownByItsDigest) {
    EXPECT_EQ(PackageKeys().of(package({})), std::string(64, 'a'));
}

TEST(PackageKeys, WhatHasNoDigestIsKnownByItsPath) {
    const std::string key = PackageKeys().of(unreadable("a.rpm", "missing"));
    EXPECT_EQ(key.size(), std::string("path-").size() + 64);
    EXPECT_EQ(PackageKeys().of(unreadable("a.rpm", "other")), key);
    EXPECT_NE(PackageKeys().of(unreadable("b.rpm", "missing")), key);
}

TEST(PackageKeys, NoTwoPackagesOfARunShareOne) {
    PackageKeys keys;
    std::set<std::string> all;
    for (int i = 0; i < 4; ++i) {
        all.insert(keys.of(package({})));
    }
    EXPECT_EQ(all.size(), 4U);
}

}  // namespace
