// A ceiling on what one ELF file may cost.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

namespace pkgvet {

// Tables of an honest file share at most a string section. Those of a hostile one may lie on top of
// each other, and a million entries may name one string of a megabyte: a small file then stands for
// more than a machine can hold. Whatever is read or kept is paid for from here, and a file that
// overdraws is not loaded. Honest files were measured at no more than three times their size.
class ElfBudget {
public:
    explicit ElfBudget(std::uint64_t fileSize)
        : left_(std::min(kMost, kLeast + std::min(fileSize, kMost) * kTimesFileSize)) {}

    // False when there is not enough left.
    bool spend(std::uint64_t bytes) {
        if (bytes > left_) {
            return false;
        }
        left_ -= bytes;
        return true;
    }

    // An entry costs a string even if its name is empty or of no interest.
    bool spendEntry(std::uint64_t nameSize) { return spend(sizeof(std::string) + nameSize); }

private:
    static constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20U;
    static constexpr std::uint64_t kLeast = kMebibyte;
    static constexpr std::uint64_t kMost = 512 * kMebibyte;
    static constexpr std::uint64_t kTimesFileSize = 16;

    std::uint64_t left_;
};

}  // namespace pkgvet
