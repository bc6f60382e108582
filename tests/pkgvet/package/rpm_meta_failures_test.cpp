// Packages that cannot be read, and headers that were tampered with.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/descriptor.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/child_process.h"
#include "tests/support/package/crafted_package.h"
#include "tests/support/package/package_builder.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using TransactionSetHandle = pkgvet::CHandle<rpmts_s, rpmtsFree>;

constexpr std::size_t kLeadSize = 96;
constexpr std::size_t kIntroSize = 16;
constexpr std::size_t kEntrySize = 16;

std::uint32_t numberAt(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | static_cast<unsigned char>(bytes.at(at + i));
    }
    return number;
}

void setNumber(std::string* bytes, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes->at(at + i) = static_cast<char>(number >> (24 - 8 * i));
    }
}

// A header is an introduction, an index of entries and the data that they point to.
std::size_t sizeOfHeader(const std::string& bytes, std::size_t at) {
    return kIntroSize + kEntrySize * numberAt(bytes, at + 8) + numberAt(bytes, at + 12);
}

// Where the header begins that stands behind the one of signatures.
std::size_t mainHeader(const std::string& bytes) {
    const std::size_t end = kLeadSize + sizeOfHeader(bytes, kLeadSize);
    return (end + 7) / 8 * 8;
}

// Where the index entry of tag begins.
std::size_t entryOf(const std::string& bytes, std::uint32_t tag) {
    const std::size_t header = mainHeader(bytes);
    for (std::size_t i = 0; i < numberAt(bytes, header + 8); ++i) {
        const std::size_t entry = header + kIntroSize + i * kEntrySize;
        if (numberAt(bytes, entry) == tag) {
            return entry;
        }
    }
    throw std::out_of_range("no such tag");
}

std::string samplePackage(const TemporaryDirectory& directory) {
    return PackageBuilder("org.example.app").tag("Requires: foo").file("/a", "x").build(directory);
}

// Reads with a transaction set, whose flags leave the digest of a changed header unverified.
RpmMeta read(const std::string& path) {
    const TransactionSetHandle transactions(rpmtsCreate());
    return RpmMeta(path.c_str(), transactions.get());
}

RpmMeta readBytes(const std::string& bytes) {
    const TemporaryDirectory directory;
    return read(directory.write("changed.rpm", bytes));
}

void expectEmpty(const RpmMeta& meta) {
    EXPECT_EQ(meta.name() + meta.version() + meta.release() + meta.vendor() + meta.arch(), "");
    EXPECT_FALSE(meta.scriptsFlag());
    for (const auto accessor :
         {&RpmMeta::requireNames, &RpmMeta::provides, &RpmMeta::obsoletes, &RpmMeta::conflicts,
          &RpmMeta::paths, &RpmMeta::users, &RpmMeta::groups}) {
        EXPECT_THAT((meta.*accessor)(), IsEmpty());
    }
}

TEST(RpmMetaFailures, WhatIsNoPackageLeavesAnEmptyRecord) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", directory / "zero");
    std::filesystem::create_symlink("loop", directory / "loop");
    const CapturedDescriptor standardError;
    for (const std::string& path :
         {directory / "missing", directory.path().string(), directory / "fifo", directory / "zero",
          directory / "loop", std::string(), directory.write("empty.rpm", ""),
          directory.write("text.rpm", "no package"),
          directory.write("long.rpm", std::string(100000, 'x'))}) {
        SCOPED_TRACE(path);
        expectEmpty(RpmMeta(path.c_str()));
        expectEmpty(read(path));
    }
    expectEmpty(RpmMeta(nullptr));
}

// What librpm writes while the package at path is read.
std::string messageAbout(const std::string& path) {
    const CapturedDescriptor standardError;
    expectEmpty(read(path));
    return standardError.text();
}

TEST(RpmMetaFailures, WhatIsMissingOrADirectoryIsLeftToLibrpmToName) {
    const TemporaryDirectory directory;
    std::filesystem::create_symlink("missing", directory / "dangling");
    for (const std::string& path :
         {directory / "missing", directory / "dangling", "file://" + (directory / "missing")}) {
        SCOPED_TRACE(path);
        EXPECT_THAT(messageAbout(path), HasSubstr("No such file or directory"));
    }
    EXPECT_THAT(messageAbout(directory.path()), HasSubstr("Is a directory"));
}

// None of these reaches librpm, whose open or read would not return.
TEST(RpmMetaFailures, WhatMayNeverEndIsNotOpened) {
    const TemporaryDirectory directory;
    const std::string fifo = directory / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::filesystem::create_symlink("fifo", directory / "link");
    for (const std::string& path : {fifo, directory / "link", "file://" + fifo,
                                    "file://localhost" + fifo, std::string("/dev/zero")}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(messageAbout(path), "");
    }
}

TEST(RpmMetaFailures, UrlOfAFileIsAPath) {
    const TemporaryDirectory directory;
    const std::string path = samplePackage(directory);
    EXPECT_EQ(read("file://" + path).name(), "org.example.app");
    EXPECT_EQ(read("file://localhost" + path).name(), "org.example.app");
}

// In a child, since standard input is that of the whole process.
TEST(RpmMetaFailures, DashIsStandardInput) {
    const TemporaryDirectory directory;
    const std::string path = samplePackage(directory);
    EXPECT_TRUE(holdsInChild([&] {
        const pkgvet::Descriptor file(open(path.c_str(), O_RDONLY));
        return dup2(file.get(), STDIN_FILENO) == STDIN_FILENO &&
               read("-").name() == "org.example.app" && fcntl(STDIN_FILENO, F_GETFD) != -1;
    }));
}

// The package is smaller than what a pipe holds, so that nobody has to write at the same time.
TEST(RpmMetaFailures, StandardInputMayBeAPipe) {
    const TemporaryDirectory directory;
    const std::string bytes = readFile(samplePackage(directory));
    EXPECT_TRUE(holdsInChild([&] {
        std::array<int, 2> ends{};
        return pipe(ends.data()) == 0 && write(ends[1], bytes.data(), bytes.size()) > 0 &&
               dup2(ends[0], STDIN_FILENO) == STDIN_FILENO && read("-").name() == "org.example.app";
    }));
}

TEST(RpmMetaFailures, LinkToAPackageIsFollowed) {
    const TemporaryDirectory directory;
    std::filesystem::create_symlink(samplePackage(directory), directory / "link.rpm");
    EXPECT_EQ(read(directory / "link.rpm").name(), "org.example.app");
}

TEST(RpmMetaFailures, CutPackageIsReadOrEmptyButNeverHalf) {
    const TemporaryDirectory directory;
    const std::string bytes = readFile(samplePackage(directory));
    const std::size_t header = mainHeader(bytes);
    const std::size_t payload = header + sizeOfHeader(bytes, header);
    const CapturedDescriptor standardError;
    for (std::size_t size = 0; size < payload; size += 37) {
        SCOPED_TRACE(size);
        expectEmpty(readBytes(bytes.substr(0, size)));
    }
    EXPECT_EQ(readBytes(bytes.substr(0, payload)).name(), "org.example.app")
        << "the payload is not read";
}

TEST(RpmMetaFailures, TagsThatAreMissingLeaveTheirFieldsEmpty) {
    const TemporaryDirectory directory;
    const std::string sound = readFile(samplePackage(directory));
    struct Case {
        std::uint32_t tag;
        const std::string& (RpmMeta::*accessor)() const;
    };
    for (const Case& test :
         {Case{RPMTAG_NAME, &RpmMeta::name}, Case{RPMTAG_ARCH, &RpmMeta::arch},
          Case{RPMTAG_RELEASE, &RpmMeta::release}, Case{RPMTAG_VERSION, &RpmMeta::version}}) {
        SCOPED_TRACE(test.tag);
        std::string bytes = sound;
        setNumber(&bytes, entryOf(bytes, test.tag), RPMTAG_URL);
        const CapturedDescriptor standardError;
        const RpmMeta meta = readBytes(bytes);
        EXPECT_EQ((meta.*test.accessor)(), "");
        EXPECT_THAT(meta.paths(), ElementsAre("/a"));
        EXPECT_THAT(meta.requireNames(), ElementsAre("foo"));
    }
}

TEST(RpmMetaFailures, TextThatIsNoTextMakesAPackageUnreadable) {
    const TemporaryDirectory directory;
    const std::string sound = readFile(samplePackage(directory));
    for (const std::uint32_t tag : {RPMTAG_NAME, RPMTAG_VERSION, RPMTAG_RELEASE, RPMTAG_ARCH,
                                    RPMTAG_FILEUSERNAME, RPMTAG_REQUIRENAME}) {
        for (const std::uint32_t type : {RPM_INT8_TYPE, RPM_BIN_TYPE}) {
            SCOPED_TRACE(std::to_string(tag) + " as " + std::to_string(type));
            std::string bytes = sound;
            setNumber(&bytes, entryOf(bytes, tag) + 4, type);
            const CapturedDescriptor standardError;
            expectEmpty(readBytes(bytes));
        }
    }
}

// librpm then has no file list at all.
TEST(RpmMetaFailures, FilesWithoutOwnersAreNoFiles) {
    const TemporaryDirectory directory;
    const std::string sound = readFile(samplePackage(directory));
    for (const std::uint32_t tag : {RPMTAG_FILEUSERNAME, RPMTAG_FILEGROUPNAME}) {
        SCOPED_TRACE(tag);
        std::string bytes = sound;
        setNumber(&bytes, entryOf(bytes, tag), RPMTAG_URL);
        const CapturedDescriptor standardError;
        const RpmMeta meta = readBytes(bytes);
        EXPECT_EQ(meta.name(), "org.example.app");
        EXPECT_THAT(meta.paths(), IsEmpty());
        EXPECT_THAT(meta.users(), IsEmpty());
        EXPECT_THAT(meta.groups(), IsEmpty());
        EXPECT_THAT(meta.requireNames(), ElementsAre("foo"));
    }
}

TEST(RpmMetaFailures, MissingDependencySetsAreEmpty) {
    const TemporaryDirectory directory;
    std::string bytes = readFile(samplePackage(directory));
    setNumber(&bytes, entryOf(bytes, RPMTAG_REQUIRENAME), RPMTAG_URL);
    const CapturedDescriptor standardError;
    const RpmMeta meta = readBytes(bytes);
    EXPECT_THAT(meta.requireNames(), IsEmpty());
    EXPECT_THAT(meta.provides(), ElementsAre("org.example.app"));
}

// In a child, since librpm itself leaks memory on some of these headers.
TEST(RpmMetaFailures, NoSingleByteOfTheIndexBringsTheReaderDown) {
    const TemporaryDirectory directory;
    const std::string sound = readFile(samplePackage(directory));
    const std::size_t header = mainHeader(sound);
    const std::size_t end = header + kIntroSize + kEntrySize * numberAt(sound, header + 8);
    const CapturedDescriptor standardError;
    EXPECT_TRUE(holdsInChild([&] {
        bool parallel = true;
        for (std::size_t at = header; at < end; at += 3) {
            std::string bytes = sound;
            bytes[at] = static_cast<char>(bytes[at] ^ 0x15);
            try {
                const RpmMeta meta = readBytes(bytes);
                parallel &= meta.paths().size() == meta.users().size() &&
                            meta.paths().size() == meta.groups().size();
            } catch (const std::logic_error&) {
                // A text of another type.
                continue;
            }
        }
        return parallel;
    }));
}

// A directory of 300 kB that is named once and holds a thousand files.
TEST(RpmMetaFailures, PathsThatTakeGigabytesThrow) {
    CraftedPackage package("org.example.app");
    const std::size_t count = 1000;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(std::to_string(i));
    }
    package.set(RPMTAG_BASENAMES, rpmTexts(names))
        .set(RPMTAG_DIRNAMES, rpmTexts({"/" + std::string(300000, 'x') + "/"}))
        .set(RPMTAG_DIRINDEXES, rpmInt32(std::vector<std::uint32_t>(count)))
        .set(RPMTAG_FILEUSERNAME, rpmTexts(std::vector<std::string>(count, "root")))
        .set(RPMTAG_FILEGROUPNAME, rpmTexts(std::vector<std::string>(count, "root")));
    EXPECT_THROW(readBytes(package.bytes()), std::length_error);
}

}  // namespace
