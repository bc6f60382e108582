// Ceilings on what ELF files may cost.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

namespace pkgvet {

// A section header may state any number of entries, tables may lie on top of each other, and a
// million entries may name one string of a megabyte: a small file then stands for more than a
// machine can hold. Whatever is loaded and kept of one file is paid for from here, before it takes
// any memory. By itself, a file has the same ceiling whatever its size, so that it is refused for
// what it costs and never for its proportions.
class ElfBudget {
public:
    static constexpr std::uint64_t kCeiling = std::uint64_t{512} << 20U;

    explicit ElfBudget(std::uint64_t most = kCeiling) : most_(most), left_(most) {}

    // False when there is not enough left, and then nothing is taken.
    bool spend(std::uint64_t bytes) {
        if (bytes > left_) {
            return false;
        }
        left_ -= bytes;
        return true;
    }

    // The strings that hold count names. An empty name needs one as well.
    bool spendNames(std::uint64_t count) {
        return count <= left_ / sizeof(std::string) && spend(count * sizeof(std::string));
    }

    std::uint64_t spent() const { return most_ - left_; }

private:
    std::uint64_t most_;
    std::uint64_t left_;
};

// What the files of a package may cost together: as much as one file, and many times their size
// beside it. Thousands of small files that each stand for as much as they can would take minutes.
class ElfAllowance {
public:
    // An honest file costs some three times its size.
    static constexpr std::uint64_t kCostOfAByte = 64;

    // For one more file of this size.
    ElfBudget budgetFor(std::uint64_t size) {
        left_ += kCostOfAByte * size;
        return ElfBudget(std::min(left_, ElfBudget::kCeiling));
    }

    // Once the file has been read.
    void pay(const ElfBudget& budget) { left_ -= budget.spent(); }

private:
    std::uint64_t left_ = ElfBudget::kCeiling;
};

}  // namespace pkgvet
