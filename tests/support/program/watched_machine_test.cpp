// Changes on the machine are seen, and do not happen.
#include "tests/support/program/watched_machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WatchedMachineTest : public testing::Test {
protected:
    void SetUp() override {
        if (!WatchedMachine::isPossible()) {
            GTEST_SKIP() << "this machine gives no view of itself";
        }
    }

    static std::vector<std::string> changesBy(const std::string& script) {
        const WatchedMachine machine;
        std::vector<std::string> words = machine.words();
        words.insert(words.end(), {"sh", "-c", script});
        EXPECT_EQ(runProgram(words), 7);
        return machine.changes();
    }
};

TEST_F(WatchedMachineTest, SeesWhatIsMadeWherever) {
    EXPECT_THAT(changesBy("touch /var/pkgvet-of-a-test /usr/pkgvet-of-a-test; exit 7"),
                ElementsAre("/usr/pkgvet-of-a-test", "/var/pkgvet-of-a-test"));
    EXPECT_FALSE(std::filesystem::exists("/var/pkgvet-of-a-test"));
}

TEST_F(WatchedMachineTest, SeesWhatIsChangedOrRemoved) {
    EXPECT_THAT(changesBy("chmod 600 /etc/passwd; rm /etc/group; exit 7"),
                ElementsAre("/etc/group", "/etc/passwd"));
}

TEST_F(WatchedMachineTest, SeesNothingElse) {
    EXPECT_THAT(changesBy("ls -R /etc >/dev/null; exit 7"), IsEmpty());
    // What is gone again was never there.
    EXPECT_THAT(changesBy("mkdir /var/of-a-test; rmdir /var/of-a-test; exit 7"), IsEmpty());
}

// Other tests beside this one kill runs, which leave such directories to the next.
TEST_F(WatchedMachineTest, LeavesAloneWhatKilledRunsHaveLeft) {
    std::string left = "/tmp/pkgvet.XXXXXX";
    ASSERT_NE(mkdtemp(left.data()), nullptr);
    chmod(left.c_str(), S_IRWXU | S_ISVTX);
    EXPECT_THAT(
        changesBy("'" + programPath() + "' check --sandbox off /missing.rpm >/dev/null; exit 7"),
        IsEmpty());
    rmdir(left.c_str());
}

}  // namespace
