// Files that are there whole or not at all.
#include "cli/base/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::OutputFile;

std::size_t filesIn(const TemporaryDirectory& directory) {
    const auto range = std::filesystem::directory_iterator(directory.path());
    return static_cast<std::size_t>(std::distance(begin(range), end(range)));
}

std::string errorOf(const std::string& path) {
    try {
        const OutputFile file(path);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(OutputFile, AppearsWhenItIsWhole) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("report", "former");
    OutputFile file(path);
    file.write("one ");
    file.write("two");
    EXPECT_EQ(readFile(path), "former");
    file.commit();
    EXPECT_EQ(readFile(path), "one two");
    EXPECT_EQ(filesIn(directory), 1U);
}

TEST(OutputFile, LeavesNothingWithoutCommit) {
    const TemporaryDirectory directory;
    OutputFile(directory / "report").write("half");
    EXPECT_EQ(filesIn(directory), 0U);
}

TEST(OutputFile, LeavesNothingWhereItCannotTakeItsPlace) {
    const TemporaryDirectory directory;
    const std::string path = directory / "report";
    {
        OutputFile file(path);
        file.write("whole");
        std::filesystem::create_directory(path);
        EXPECT_THROW(file.commit(), std::runtime_error);
    }
    EXPECT_EQ(filesIn(directory), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(path));
}

TEST(OutputFile, FileThatIsReplacedKeepsItsMode) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("report", "former");
    for (const mode_t mode : {0600U, 0664U, 0444U}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        OutputFile file(path);
        file.write("next");
        file.commit();
        struct stat status {};
        ASSERT_EQ(stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, mode);
    }
}

TEST(OutputFile, ModeFollowsTheMask) {
    const TemporaryDirectory directory;
    const mode_t former = umask(027);
    OutputFile file(directory / "report");
    umask(former);
    file.commit();
    struct stat status {};
    ASSERT_EQ(stat((directory / "report").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(OutputFile, LinkStaysALink) {
    const TemporaryDirectory directory;
    const std::string target = directory.write("there/report", "former");
    std::filesystem::create_symlink(target, directory / "link");
    OutputFile file(directory / "link");
    file.write("new");
    file.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(directory / "link"));
    EXPECT_EQ(readFile(target), "new");
}

TEST(OutputFile, DeviceStaysADevice) {
    OutputFile file("/dev/null");
    file.write("gone");
    file.commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, PipeIsWrittenTo) {
    const TemporaryDirectory directory;
    const std::string pipe = directory / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    OutputFile file(pipe);
    file.write("text");
    file.commit();
    char buffer[8] = {};
    EXPECT_EQ(read(reader, buffer, sizeof buffer), 4);
    close(reader);
    EXPECT_STREQ(buffer, "text");
}

TEST(OutputFile, NamesWhatCannotBeWritten) {
    const TemporaryDirectory directory;
    const std::string missing = directory / "missing/report";
    EXPECT_EQ(errorOf(missing), "cannot write " + missing + ": No such file or directory");
    const std::string itself = directory.path();
    EXPECT_EQ(errorOf(itself), "cannot write " + itself + ": Is a directory");
    EXPECT_EQ(errorOf(directory / "\033/x"),
              "cannot write " + directory.path().string() + "/\\x1b/x: No such file or directory");
}

TEST(OutputFile, FullDeviceIsAnError) {
    OutputFile file("/dev/full");
    EXPECT_THROW(file.write("text"), std::runtime_error);
}

TEST(OutputFile, TwoFilesOfOneNameDoNotMix) {
    const TemporaryDirectory directory;
    OutputFile first(directory / "report");
    OutputFile second(directory / "report");
    first.write("first");
    second.write("second");
    first.commit();
    second.commit();
    EXPECT_EQ(readFile(directory / "report"), "second");
    EXPECT_EQ(filesIn(directory), 1U);
}

// Whatever ends the process, even without its knowledge.
TEST(OutputFile, HasNoNameBeforeItIsWhole) {
    const TemporaryDirectory directory;
    OutputFile file(directory / "report");
    file.write("half");
    if (filesIn(directory) != 0) {
        GTEST_SKIP() << "the file system has no files without names";
    }
    file.commit();
    EXPECT_EQ(readFile(directory / "report"), "half");
    EXPECT_EQ(filesIn(directory), 1U);
}

}  // namespace
