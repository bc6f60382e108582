// The ceiling on what one ELF file may cost.
#include "pkgvet/elf/elf_budget.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using pkgvet::ElfBudget;

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(ElfBudget, CeilingIsHalfAGibibyte) {
    ElfBudget budget;
    EXPECT_EQ(ElfBudget::kCeiling, std::uint64_t{1} << 29U);
    EXPECT_FALSE(budget.spend(ElfBudget::kCeiling + 1));
    EXPECT_TRUE(budget.spend(ElfBudget::kCeiling));
    EXPECT_FALSE(budget.spend(1));
}

TEST(ElfBudget, RefusesWhatIsMoreThanIsLeft) {
    ElfBudget budget;
    EXPECT_TRUE(budget.spend(ElfBudget::kCeiling - 1));
    EXPECT_FALSE(budget.spend(kHuge));
    EXPECT_FALSE(budget.spend(2));
    EXPECT_TRUE(budget.spend(1));
    EXPECT_TRUE(budget.spend(0));
}

TEST(ElfBudget, NameCostsAStringEvenWhenEmpty) {
    constexpr std::uint64_t kMost = ElfBudget::kCeiling / sizeof(std::string);
    ElfBudget budget;
    EXPECT_FALSE(budget.spendNames(kMost + 1));
    EXPECT_FALSE(budget.spendNames(kHuge));
    EXPECT_FALSE(budget.spendNames(kHuge / sizeof(std::string) + 2));
    EXPECT_TRUE(budget.spendNames(kMost - 1));
    EXPECT_TRUE(budget.spendNames(1));
    EXPECT_FALSE(budget.spendNames(1));
    EXPECT_TRUE(budget.spendNames(0));
}

using pkgvet::ElfAllowance;

TEST(ElfAllowance, FilesShareOneCeilingBesideTheirSizes) {
    ElfAllowance allowance;
    ElfBudget first = allowance.budgetFor(0);
    EXPECT_TRUE(first.spend(ElfBudget::kCeiling));
    EXPECT_EQ(first.spent(), ElfBudget::kCeiling);
    allowance.pay(first);
    ElfBudget second = allowance.budgetFor(1000);
    EXPECT_FALSE(second.spend(1000 * ElfAllowance::kCostOfAByte + 1));
    EXPECT_TRUE(second.spend(1000 * ElfAllowance::kCostOfAByte));
}

TEST(ElfAllowance, WhatOneFileLeavesIsForTheNext) {
    ElfAllowance allowance;
    ElfBudget first = allowance.budgetFor(1000);
    EXPECT_TRUE(first.spend(3000));
    allowance.pay(first);
    EXPECT_TRUE(allowance.budgetFor(1000).spend(ElfBudget::kCeiling));
    EXPECT_FALSE(allowance.budgetFor(1000).spend(ElfBudget::kCeiling + 1));
}

}  // namespace
