// Shards that are put together.
#include "cli/records/shard_merge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/readable_runs.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

// The first or second of two shards over four packages, "1.rpm" to "4.rpm".
RunReport shardOf(unsigned number) {
    RunReport run = readableRuns()[1].run;
    const PackageReport model = run.packages.at(0);
    run.packages.clear();
    for (std::size_t position = number; position <= 4; position += 2) {
        PackageReport package = model;
        package.position = position;
        package.path = std::to_string(position) + ".rpm";
        run.packages.push_back(package);
    }
    run.shard = Shard{number, 2, 4, std::string(64, 'c')};
    return run;
}

class ShardMergeTest : public testing::Test {
protected:
    std::string write(const RunReport& run) const {
        const std::string path = directory_ / std::to_string(run.shard->number);
        writeFile(path, reportOf(Format::Jsonl, run));
        return path;
    }

    static std::vector<std::string> pathsOf(const ShardMerge& merge) {
        std::vector<std::string> paths;
        merge.forEach([&paths](const PackageReport& package) { paths.push_back(package.path); });
        return paths;
    }

    TemporaryDirectory directory_;
};

TEST_F(ShardMergeTest, PackagesComeInTheOrderOfTheWholeInput) {
    const ShardMerge merge({write(shardOf(2)), write(shardOf(1))});
    ASSERT_THAT(merge.faults(), IsEmpty());
    EXPECT_THAT(pathsOf(merge), ElementsAre("1.rpm", "2.rpm", "3.rpm", "4.rpm"));
    EXPECT_FALSE(merge.run().shard);
}

// The file stays the same one and of the same size, so that nothing but the packages tells.
TEST_F(ShardMergeTest, PackagesThatStandElsewhereAtTheSecondReadingAreRefused) {
    const RunReport second = shardOf(2);
    const std::string path = write(second);
    const ShardMerge merge({write(shardOf(1)), path});
    ASSERT_THAT(merge.faults(), IsEmpty());
    RunReport swapped = second;
    std::swap(swapped.packages[0], swapped.packages[1]);
    write(swapped);
    try {
        pathsOf(merge);
        FAIL() << "nothing was noticed";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), path + ": has been replaced meanwhile");
    }
}

}  // namespace
