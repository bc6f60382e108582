// A ceiling on what one ELF file may cost.
#pragma once

#include <cstdint>
#include <string>

namespace pkgvet {

// A section header may state any number of entries, tables may lie on top of each other, and a
// million entries may name one string of a megabyte: a small file then stands for more than a
// machine can hold. Whatever is loaded and kept of one file is paid for from here, before it takes
// any memory. The ceiling is the same for all files, so that a file is refused for what it costs
// and never for its proportions.
class ElfBudget {
public:
    static constexpr std::uint64_t kCeiling = std::uint64_t{512} << 20U;

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

private:
    std::uint64_t left_ = kCeiling;
};

}  // namespace pkgvet
