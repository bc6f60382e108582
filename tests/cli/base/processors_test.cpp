// How many processors a process may use.
#include "cli/base/processors.h"

#include <gtest/gtest.h>
#include <sched.h>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::availableProcessors;
using pkgvet::cli::processorQuota;

TEST(Processors, QuotaOfTheControlGroupAndOfThoseAroundIt) {
    const TemporaryDirectory root;
    root.write("two/cpu.max", "200000 100000\n");
    root.write("two/inner/cpu.max", "max 100000\n");
    root.write("two/less/cpu.max", "150001 100000\n");
    root.write("half/cpu.max", "50000 100000\n");
    root.write("odd/cpu.max", "200000 0\n");
    root.write("text/cpu.max", "many\n");
    root.write("cpu/old/cpu.cfs_quota_us", "300000\n");
    root.write("cpu/old/cpu.cfs_period_us", "100000\n");
    root.write("cpu/free/cpu.cfs_quota_us", "-1\n");
    root.write("cpu/free/cpu.cfs_period_us", "100000\n");
    struct Case {
        std::string groups;
        unsigned quota;
    };
    const Case cases[] = {
        {"", 0},
        {"nonsense\n:\n", 0},
        {"0::/\n", 0},
        {"0::/two\n", 2},
        {"0::/two/inner\n", 2},
        {"0::/two/less\n", 2},
        {"0::/two/inner/unknown\n", 2},
        {"0::/half\n", 1},
        {"0::/odd\n", 0},
        {"0::/text\n", 0},
        {"0::/../../two\n", 0},
        {"4:cpu,cpuacct:/old\n", 3},
        {"4:cpuacct,cpu:/old\n1:memory:/two\n", 3},
        {"4:cpuset:/old\n", 0},
        {"4:cpu:/free\n", 0},
        {"4:cpu:/old\n0::/two\n", 2},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.groups);
        EXPECT_EQ(processorQuota(test.groups, root.path()), test.quota);
    }
}

TEST(Processors, LimitOfTheRootCountsWhereTheGroupLeadsNowhere) {
    const TemporaryDirectory root;
    root.write("cpu.max", "100000 100000\n");
    EXPECT_EQ(processorQuota("0::/docker/0123\n", root.path()), 1U);
}

TEST(Processors, AffinityBoundsThem) {
    cpu_set_t former;
    ASSERT_EQ(sched_getaffinity(0, sizeof former, &former), 0);
    int first = 0;
    while (!CPU_ISSET(first, &former)) {
        ++first;
    }
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(availableProcessors(), 1U);
    sched_setaffinity(0, sizeof former, &former);
    EXPECT_GE(availableProcessors(), 1U);
}

}  // namespace
