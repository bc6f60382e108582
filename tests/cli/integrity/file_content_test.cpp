// What is known of a file once it was read.
#include "cli/integrity/file_content.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <rpm/rpmpgp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/rpm_file.h"

namespace {

using namespace pkgvet::cli;

class FileContentTest : public testing::Test {
protected:
    FileContent contentOf(const std::string& text, int algorithm = PGPHASHALGO_SHA256) {
        return ContentReader(algorithm).read(directory_.write("file", text));
    }

    TemporaryDirectory directory_;
};

TEST_F(FileContentTest, DigestIsThatOfTheWholeFile) {
    for (const std::string& text : {std::string(), std::string("x"), std::string(1'000'000, 'y')}) {
        for (const int algorithm : {PGPHASHALGO_MD5, PGPHASHALGO_SHA1, PGPHASHALGO_SHA256,
                                    PGPHASHALGO_SHA384, PGPHASHALGO_SHA512}) {
            EXPECT_EQ(contentOf(text, algorithm).digest, digestOf(algorithm, text));
        }
    }
    EXPECT_EQ(contentOf("x", 99).digest, "");
}

TEST_F(FileContentTest, NulBytesAreSeenWhereverTheyAre) {
    EXPECT_FALSE(contentOf("").holdsNul);
    EXPECT_FALSE(contentOf(std::string(1'000'000, 'y')).holdsNul);
    EXPECT_TRUE(contentOf(std::string(1, '\0')).holdsNul);
    EXPECT_TRUE(contentOf(std::string(1'000'000, 'y') + '\0').holdsNul);
    EXPECT_TRUE(contentOf('\0' + std::string(1'000'000, 'y')).holdsNul);
}

// An error of a disk comes behind the bytes that could be read.
TEST_F(FileContentTest, FileThatBreaksOffSaysWhy) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    const pkgvet::Descriptor reading(ends[0]);
    const pkgvet::Descriptor writing(ends[1]);
    ASSERT_EQ(write(writing.get(), "text", 4), 4);
    std::string bytes;
    const auto content =
        ContentReader(PGPHASHALGO_SHA256).read(reading, [&](std::string_view piece) {
            bytes += piece;
            return true;
        });
    ASSERT_TRUE(content);
    EXPECT_EQ(content->error, EAGAIN);
    EXPECT_EQ(bytes, "text");
}

TEST_F(FileContentTest, WhatIsNotAFileSaysWhyItCannotBeRead) {
    symlink("/etc/passwd", (directory_ / "link").c_str());
    EXPECT_EQ(ContentReader(PGPHASHALGO_SHA256).read(directory_ / "link").error, ELOOP);
    EXPECT_EQ(ContentReader(PGPHASHALGO_SHA256).read(directory_ / "missing").error, ENOENT);
    EXPECT_EQ(ContentReader(PGPHASHALGO_SHA256).read(directory_.path()).error, EISDIR);
    EXPECT_EQ(contentOf("x").error, 0);
}

}  // namespace
