// Files of records that are read to their end and then in parts.
#include "cli/records/record_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <stdexcept>
#include <thread>

#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;
using testing::ThrowsMessage;

std::string wholeOf(RecordFile* file) {
    std::vector<char> buffer(3);
    std::string all;
    while (const std::size_t size = file->read(&buffer)) {
        all.append(buffer.data(), size);
    }
    return all;
}

TEST(RecordFile, PartsCanBeReadBeforeTheEndAndAfterIt) {
    const TemporaryDirectory directory;
    RecordFile file(directory.write("file", "0123456789"));
    EXPECT_EQ(file.textAt(8, 2), "89");
    EXPECT_EQ(wholeOf(&file), "0123456789");
    EXPECT_EQ(file.textAt(2, 3), "234");
    EXPECT_EQ(wholeOf(&file), "");
}

TEST(RecordFile, PipeIsReadOnceAndKept) {
    const TemporaryDirectory directory;
    const std::string path = directory / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&path] { writeFile(path, "0123456789"); });
    RecordFile file(path);
    writer.join();
    EXPECT_EQ(wholeOf(&file), "0123456789");
    EXPECT_EQ(file.textAt(2, 3), "234");
}

TEST(RecordFile, AnotherFileInItsPlaceIsNotRead) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "0123456789");
    RecordFile file(path);
    EXPECT_EQ(wholeOf(&file), "0123456789");
    std::filesystem::rename(directory.write("other", "9876543210"), path);
    EXPECT_THAT([&] { file.textAt(2, 3); },
                ThrowsMessage<std::runtime_error>(path + ": has been replaced meanwhile"));
    std::filesystem::remove(path);
    EXPECT_THAT([&] { file.textAt(2, 3); },
                ThrowsMessage<std::runtime_error>(HasSubstr("No such file")));
}

TEST(RecordFile, ShorterFileIsAnError) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "0123456789");
    RecordFile file(path);
    EXPECT_EQ(wholeOf(&file), "0123456789");
    std::filesystem::resize_file(path, 4);
    EXPECT_THAT([&] { file.textAt(2, 3); },
                ThrowsMessage<std::runtime_error>(path + ": has become shorter meanwhile"));
}

}  // namespace
