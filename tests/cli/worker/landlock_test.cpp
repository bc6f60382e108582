// What Landlock lets a process do with files.
#include "cli/worker/landlock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::FileAccess;
using pkgvet::cli::LandlockRules;

class Landlock : public testing::Test {
protected:
    void SetUp() override {
        if (!pkgvet::cli::hasLandlock()) {
            GTEST_SKIP() << "this kernel has no Landlock";
        }
    }

    // Whether condition holds in a process that has this access to the directory, and no other.
    bool holdsWith(FileAccess access, const std::function<bool()>& condition) const {
        return holdsInChild([&] {
            LandlockRules rules;
            rules.permit(directory_.path(), access);
            rules.apply();
            return condition();
        });
    }

    std::string path(const char* name) const { return directory_ / name; }

    static bool opens(const std::string& path, int flags) {
        return pkgvet::Descriptor(open(path.c_str(), flags | O_CLOEXEC, 0600)).isOpen();
    }

    TemporaryDirectory directory_;
};

TEST_F(Landlock, WhoMayReadMayNotWrite) {
    const std::string file = directory_.write("file", "x");
    EXPECT_TRUE(holdsWith(FileAccess::Read, [&] { return opens(file, O_RDONLY); }));
    EXPECT_TRUE(holdsWith(FileAccess::Read, [&] {
        return !opens(file, O_WRONLY) && errno == EACCES &&
               !opens(path("other"), O_WRONLY | O_CREAT) && errno == EACCES;
    }));
}

TEST_F(Landlock, NothingElseCanBeRead) {
    const TemporaryDirectory elsewhere;
    const std::string file = elsewhere.write("file", "x");
    EXPECT_TRUE(holdsWith(FileAccess::Write, [&] { return !opens(file, O_RDONLY); }));
}

// The superuser could make them otherwise; anybody else is refused for another reason.
TEST_F(Landlock, WhoMayWriteMakesNoDevices) {
    for (const mode_t type : {S_IFCHR, S_IFBLK}) {
        SCOPED_TRACE(type);
        EXPECT_TRUE(holdsWith(FileAccess::Write, [&] {
            return mknod(path("device").c_str(), type | 0600, makedev(1, 3)) != 0 &&
                   errno == EACCES;
        }));
    }
    EXPECT_TRUE(holdsWith(FileAccess::Write, [&] {
        return mkfifo(path("fifo").c_str(), 0600) == 0 && opens(path("file"), O_WRONLY | O_CREAT);
    }));
}

TEST_F(Landlock, LaterRulesGiveNothingBack) {
    EXPECT_TRUE(holdsWith(FileAccess::Read, [&] {
        LandlockRules rules;
        rules.permit(directory_.path(), FileAccess::Write);
        rules.apply();
        return !opens(path("file"), O_WRONLY | O_CREAT);
    }));
}

TEST_F(Landlock, PathThatDoesNotExistIsPassedOver) {
    EXPECT_TRUE(holdsInChild([] {
        LandlockRules().permit("/does/not/exist", FileAccess::Read);
        return true;
    }));
}

}  // namespace
