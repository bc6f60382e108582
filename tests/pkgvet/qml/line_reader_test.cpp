// Reading a file line by line.
#include "pkgvet/qml/line_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <vector>

#include "tests/support/base/temporary_directory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const std::string& path) {
    std::vector<std::string> lines;
    pkgvet::LineReader reader(path);
    for (std::string line; reader.next(&line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> linesOfText(const std::string& text) {
    const TemporaryDirectory directory;
    return linesOf(directory.write("text", text));
}

TEST(LineReader, LinesEndAtLineFeeds) {
    EXPECT_THAT(linesOfText(""), IsEmpty());
    EXPECT_THAT(linesOfText("\n"), ElementsAre(""));
    EXPECT_THAT(linesOfText("one"), ElementsAre("one"));
    EXPECT_THAT(linesOfText("one\n"), ElementsAre("one"));
    EXPECT_THAT(linesOfText("one\n\ntwo"), ElementsAre("one", "", "two"));
    EXPECT_THAT(linesOfText("one\r\ntwo\rthree\n\n"), ElementsAre("one\r", "two\rthree", ""));
}

TEST(LineReader, KeepsBytesThatAreNotText) {
    EXPECT_THAT(linesOfText(std::string("a\0b\n\xFF\n", 6)),
                ElementsAre(std::string("a\0b", 3), "\xFF"));
}

TEST(LineReader, AgreesWithGetlineWhereverLinesEnd) {
    const TemporaryDirectory directory;
    std::string text;
    for (std::size_t i = 0; text.size() < 300000; ++i) {
        text += std::string(i * 7919 % 5000, 'x') + "\n";
    }
    for (const std::size_t size : {65535U, 65536U, 65537U, 131072U, 300000U}) {
        const std::string path = directory.write("text", text.substr(0, size));
        std::ifstream stream(path);
        std::vector<std::string> expected;
        for (std::string line; std::getline(stream, line);) {
            expected.push_back(line);
        }
        EXPECT_EQ(linesOf(path), expected) << size;
    }
}

TEST(LineReader, LinesMayBeLong) {
    const std::string longLine(10 * 1024 * 1024, 'x');
    EXPECT_THAT(linesOfText(longLine + "\nshort"), ElementsAre(longLine, "short"));
}

TEST(LineReader, LineBeyondTheBoundIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("text", "");
    std::filesystem::resize_file(path, pkgvet::kMaxLineSize + 1);
    pkgvet::LineReader reader(path);
    std::string line;
    EXPECT_THROW(reader.next(&line), std::regex_error);
}

TEST(LineReader, WhatIsNotARegularFileHasNoLines) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    for (const std::string& path : {std::string(directory.path()), directory / "fifo",
                                    directory / "missing", std::string("/dev/zero")}) {
        EXPECT_THAT(linesOf(path), IsEmpty()) << path;
    }
}

}  // namespace
