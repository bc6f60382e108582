// How much memory there is.
#include "cli/base/memory.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::availableMemory;
using pkgvet::cli::memoryLimit;

constexpr std::uint64_t kNone = std::numeric_limits<std::uint64_t>::max();

TEST(Memory, LeastLimitOfAGroupAndThoseAroundItCounts) {
    const TemporaryDirectory root;
    root.write("outer/memory.max", "1000\n");
    root.write("outer/inner/memory.max", "max\n");
    root.write("outer/tight/memory.max", "10\n");
    root.write("memory/old/memory.limit_in_bytes", "500\n");
    struct Case {
        const char* groups;
        std::uint64_t limit;
    };
    const Case cases[] = {
        {"", kNone},
        {"0::/\n", kNone},
        {"0::/outer\n", 1000},
        {"0::/outer/inner\n", 1000},
        {"0::/outer/tight\n", 10},
        {"0::/missing\n", kNone},
        {"0::/../..\n", kNone},
        {"4:memory:/old\n0::/outer\n", 500},
        {"nonsense", kNone},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(memoryLimit(test.groups, root.path()), test.limit) << test.groups;
    }
}

TEST(Memory, RootMayHaveALimitOfItsOwn) {
    const TemporaryDirectory root;
    root.write("memory.max", "700\n");
    EXPECT_EQ(memoryLimit("0::/anything\n", root.path()), 700U);
}

TEST(Memory, ThisMachineHasSome) {
    EXPECT_GT(availableMemory(), std::uint64_t{1} << 20);
    EXPECT_LT(availableMemory(), kNone);
}

}  // namespace
