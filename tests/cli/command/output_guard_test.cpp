// Outputs that would take the place of something else.
#include "cli/command/output_guard.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::refuseLossOfFiles;

namespace fs = std::filesystem;

std::string errorOf(const std::vector<std::string>& outputs,
                    const std::vector<std::string>& inputs) {
    try {
        refuseLossOfFiles(outputs, inputs);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

class OutputGuard : public testing::Test {
protected:
    const TemporaryDirectory directory_;
    const std::string input_ = directory_.write("input", "text");
};

TEST_F(OutputGuard, InputIsRecognisedByAnyName) {
    fs::create_symlink("input", directory_ / "link");
    fs::create_hard_link(input_, directory_ / "twin");
    fs::create_directory_symlink(".", directory_ / "here");
    for (const char* name : {"input", "link", "twin", "here/input", "./here/./input"}) {
        SCOPED_TRACE(name);
        const std::string path = directory_ / name;
        EXPECT_EQ(errorOf({path}, {input_}), "cannot write " + path + ": it is also read");
        EXPECT_EQ(errorOf({input_}, {path}), "cannot write " + input_ + ": it is also read");
    }
}

TEST_F(OutputGuard, TwoOutputsDoNotGoToOneFile) {
    fs::create_directory_symlink(".", directory_ / "here");
    const std::string added = ": another output goes there as well";
    struct Case {
        std::string one;
        std::string other;
    };
    const Case cases[] = {{input_, input_}, {directory_ / "new", directory_ / "here/new"}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.other);
        EXPECT_EQ(errorOf({test.one, test.other}, {}), "cannot write " + test.other + added);
    }
    EXPECT_EQ(errorOf({input_, directory_ / "new", directory_ / "other"}, {}), "");
}

TEST_F(OutputGuard, PackageIsNotReplacedWhateverItsName) {
    const std::string package = directory_.write("report.json", "\xed\xab\xee\xdb\x03");
    EXPECT_EQ(errorOf({package}, {}), "cannot write " + package + ": there is a package");
    fs::create_symlink(package, directory_ / "link");
    EXPECT_NE(errorOf({directory_ / "link"}, {}), "");
    EXPECT_EQ(errorOf({directory_.write("short", "\xed\xab")}, {}), "");
}

TEST_F(OutputGuard, DevicesTakeAnyNumber) {
    EXPECT_EQ(errorOf({"/dev/null", "/dev/null", "/dev/full"}, {"/dev/null"}), "");
}

TEST_F(OutputGuard, PipeIsNotWaitedFor) {
    const std::string pipe = directory_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOf({pipe}, {pipe}), "");
    EXPECT_NE(errorOf({pipe, pipe}, {}), "");
}

TEST_F(OutputGuard, FileOfStandardOutputTakesNothingElse) {
    EXPECT_TRUE(holdsInChild([this] {
        const std::string path = directory_ / "output";
        dup2(open(path.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
        return errorOf({path}, {}) == "cannot write " + path + ": standard output goes there" &&
               errorOf({"/dev/stdout"}, {}) != "" &&
               errorOf({}, {path}) == "standard output goes to a file that is also read" &&
               errorOf({directory_ / "other"}, {input_}).empty();
    }));
}

}  // namespace
