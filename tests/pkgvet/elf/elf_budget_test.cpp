// The ceiling on what one ELF file may cost.
#include "pkgvet/elf/elf_budget.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using pkgvet::ElfBudget;

constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20U;
constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(ElfBudget, GrowsWithTheFileUpToACeiling) {
    struct Case {
        const char* name;
        std::uint64_t fileSize;
        std::uint64_t budget;
    };
    const Case cases[] = {
        {"empty file", 0, kMebibyte},
        {"a megabyte", kMebibyte, 17 * kMebibyte},
        {"a large file", 31 * kMebibyte, 497 * kMebibyte},
        {"a very large file", 1024 * kMebibyte, 512 * kMebibyte},
        {"a file of any size", kHuge, 512 * kMebibyte},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        ElfBudget budget(test.fileSize);
        EXPECT_FALSE(budget.spend(test.budget + 1));
        EXPECT_TRUE(budget.spend(test.budget));
        EXPECT_FALSE(budget.spend(1));
    }
}

TEST(ElfBudget, RefusesWhatIsMoreThanIsLeft) {
    ElfBudget budget(0);
    EXPECT_TRUE(budget.spend(kMebibyte - 1));
    EXPECT_FALSE(budget.spend(kHuge));
    EXPECT_FALSE(budget.spend(2));
    EXPECT_TRUE(budget.spend(1));
    EXPECT_TRUE(budget.spend(0));
}

TEST(ElfBudget, EntryWithoutANameCostsAStringAllTheSame) {
    ElfBudget budget(0);
    std::size_t entries = 0;
    while (budget.spendEntry(0)) {
        ++entries;
    }
    EXPECT_EQ(entries, kMebibyte / sizeof(std::string));
}

}  // namespace
