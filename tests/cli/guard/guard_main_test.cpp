// The guard as a program, in the place of cpio.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <limits>

#include "cli/guard/guard_note.h"
#include "cli/worker/guard_program.h"
#include "pkgvet/base/descriptor.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/cpio_archive.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/package/rpm_install.h"

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

constexpr std::uint64_t kNoCeiling = std::numeric_limits<std::uint64_t>::max();

std::string file(const std::string& name, const std::string& data = "content") {
    return cpioEntry({.name = name, .data = data});
}

std::string symbolicLink(const std::string& name, const std::string& target) {
    return cpioEntry({.name = name, .data = target, .mode = 0120777});
}

struct GuardRun {
    int status;
    std::string output;
    std::optional<GuardNote> note;
};

class GuardMain : public testing::Test {
protected:
    void SetUp() override { fs::create_directory(tree_); }

    static std::string guard() { return findGuard().directory + "/cpio"; }

    // Runs the shell's command line in the tree, with the guard as "$GUARD" and what it needs.
    GuardRun runLine(const std::string& line,
                     const GuardOrders& orders = {kNoCeiling, kNoCeiling, {}}) {
        const std::string ordersFile = directory_.write("orders", formatOrders(orders));
        const std::string noteFile = directory_ / "note";
        fs::remove(noteFile);
        GuardRun run{};
        run.status = runProgram(
            {"env", "-C", tree_, "GUARD=" + guard(), kGuardOrdersVariable + ("=" + ordersFile),
             kGuardNoteVariable + ("=" + noteFile), "sh", "-c", line},
            &run.output);
        if (fs::exists(noteFile)) {
            run.note = parseNote(readFile(noteFile));
        }
        return run;
    }

    GuardRun unpack(const std::string& archive,
                    const GuardOrders& orders = {kNoCeiling, kNoCeiling, {}}) {
        directory_.write("archive", archive);
        return runLine("cat ../archive | \"$GUARD\" -idm --quiet", orders);
    }

    // What cpio makes of the command that writes an archive, and what the guard makes of it.
    void compare(const std::string& writer) {
        const fs::path plain = directory_ / "plain";
        fs::create_directory(plain);
        ASSERT_EQ(
            runProgram({"env", "-C", plain.string(), "sh", "-c", writer + " | cpio -idm --quiet"}),
            0);
        const GuardRun run = runLine(writer + " | \"$GUARD\" -idm --quiet");
        EXPECT_EQ(run.status, 0) << run.output;
        EXPECT_EQ(run.note, GuardNote{.end = GuardEnd::Whole});
        EXPECT_EQ(treeBelow(tree_), treeBelow(plain));
        EXPECT_EQ(runProgram({"diff", "-r", "--no-dereference", tree_, plain}), 0);
        fs::remove_all(plain);
        fs::remove_all(tree_);
        fs::create_directory(tree_);
    }

    TemporaryDirectory directory_;
    std::string tree_ = directory_ / "tree";
};

TEST_F(GuardMain, NeedsNoLibrary) {
    std::string sections;
    ASSERT_EQ(runProgram({"readelf", "-d", guard()}, &sections), 0);
    EXPECT_THAT(sections, Not(HasSubstr("NEEDED")));
}

// Large data goes from pipe to file, small data through a buffer, and from a file neither way
// fails.
TEST_F(GuardMain, ArchivesOfCpioUnpackAsByCpio) {
    const fs::path source = directory_ / "source";
    fs::create_directories(source / "a/b");
    for (const std::size_t size : {0, 1, 4095, 65535, 65536, 65537, 3000001}) {
        writeFile(source / ("a/" + std::to_string(size)), std::string(size, 'x') + "end");
    }
    fs::create_hard_link(source / "a/4095", source / "a/b/other");
    fs::create_symlink("../nowhere", source / "a/b/link");
    writeFile(source / "a/b/odd \n'\"$", "content");
    writeFile(source / "TRAILER!!", "");
    const std::string archive = directory_ / "archive";
    ASSERT_EQ(
        runProgram({"sh", "-c",
                    "cd '" + source.string() +
                        "' && find . -print0 | cpio -o -0 -H newc --quiet >'" + archive + "'"}),
        0);
    compare("cat " + archive);
    compare("cat <" + archive);
    compare("dd bs=7001 status=none if=" + archive);
}

// As far as the machine allows.
TEST_F(GuardMain, PipeInFrontOfItIsWidened) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pkgvet::Descriptor reading(ends[0]);
    pkgvet::Descriptor writing(ends[1]);
    const std::string archive = cpioTrailer();
    ASSERT_EQ(write(writing.get(), archive.data(), archive.size()),
              static_cast<ssize_t>(archive.size()));
    writing.reset();
    const GuardRun run = runLine("\"$GUARD\" -idm --quiet </proc/" + std::to_string(getpid()) +
                                 "/fd/" + std::to_string(reading.get()));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(fcntl(reading.get(), F_GETPIPE_SZ),
              std::min(1 << 20, std::stoi(readFile("/proc/sys/fs/pipe-max-size"))));
}

TEST_F(GuardMain, ArchiveInAFileUnpacksAsFromAPipe) {
    directory_.write("archive", file("./a", std::string(300000, 'x')) + cpioTrailer());
    const GuardRun run = runLine("\"$GUARD\" -idm --quiet <../archive");
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(readFile(tree_ + "/a"), std::string(300000, 'x'));
}

TEST_F(GuardMain, PackagesOfEachCompressorUnpackAsByCpio) {
    for (const char* const payload :
         {"w9.gzdio", "w6.xzdio", "w3.zstdio", "w6.lzdio", "w9.bzdio", "w.ufdio"}) {
        SCOPED_TRACE(payload);
        const TemporaryDirectory work;
        PackageBuilder package("org.example.app");
        package.tag(std::string("%define _binary_payload ") + payload);
        package.file("/usr/share/x/a b\\c", "content").file("/usr/share/x/empty", "");
        package.file("/usr/share/x/large", std::string(200000, 'x'));
        package.link("/usr/share/x/link", "/nowhere").directory("/usr/share/x/sub", "0700");
        const std::string built = package.build(work);
        compare("rpm2cpio '" + built + "'");
    }
}

TEST_F(GuardMain, PackageWithoutFilesUnpacks) {
    const TemporaryDirectory work;
    compare("rpm2cpio '" + PackageBuilder("org.example.app").build(work) + "'");
}

TEST_F(GuardMain, NothingOfAnIrregularEntryIsUnpacked) {
    const fs::path outside = directory_ / "outside";
    fs::create_directory(outside);
    const std::string good = file("./good");
    for (const std::string& entry :
         {file(outside.string() + "/x"), file("../outside/x"),
          symbolicLink("./l", outside) + file("./l/x"), "junk" + file("./x"),
          cpioEntry({.name = "./x", .mode = 0104755}), cpioEntry({.name = "./x", .mode = 010644}),
          cpioLargeFileEntry(0, file("./x") + cpioTrailer())}) {
        const GuardRun run = unpack(good + entry + file("./x") + cpioTrailer());
        EXPECT_NE(run.status, 0);
        ASSERT_TRUE(run.note);
        EXPECT_EQ(run.note->end, GuardEnd::Irregular);
        EXPECT_TRUE(fs::is_empty(outside));
        EXPECT_TRUE(fs::exists(tree_ + "/good"));
        EXPECT_FALSE(fs::exists(tree_ + "/x"));
        fs::remove_all(tree_);
        fs::create_directory(tree_);
    }
}

TEST_F(GuardMain, SetIdBitOfTheHeaderIsUnpacked) {
    const GuardRun run = unpack(cpioEntry({.name = "./x", .mode = 0104755}) + cpioTrailer(),
                                {kNoCeiling, kNoCeiling, {{"/x", 04000}}});
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.note, GuardNote{.end = GuardEnd::Whole});
}

TEST_F(GuardMain, CeilingsHoldAndAreTold) {
    const std::string archive = file("./a", "12345") + file("./b", "12345") + cpioTrailer();
    const GuardRun large = unpack(archive, {9, kNoCeiling, {}});
    EXPECT_NE(large.status, 0);
    EXPECT_EQ(large.note, GuardNote{.end = GuardEnd::TooLarge});
    EXPECT_FALSE(fs::exists(tree_ + "/b"));
    const GuardRun many = unpack(archive, {kNoCeiling, 1, {}});
    EXPECT_NE(many.status, 0);
    EXPECT_EQ(many.note, GuardNote{.end = GuardEnd::TooManyFiles});
    EXPECT_FALSE(fs::exists(tree_ + "/b"));
}

TEST_F(GuardMain, ArchiveThatIsCutShortFails) {
    for (const std::string& archive : {std::string(), file("./a"), file("./a").substr(0, 50)}) {
        const GuardRun run = unpack(archive);
        EXPECT_NE(run.status, 0);
        EXPECT_EQ(run.note, GuardNote{.end = GuardEnd::CutShort});
        EXPECT_EQ(run.output, "");
    }
}

TEST_F(GuardMain, CanDoNothingElseThatCpioCan) {
    directory_.write("archive", file("./a") + cpioTrailer());
    for (const char* const arguments :
         {"", "--quiet", "-id", "--list --quiet", "-idm --make-directories", "-idm a"}) {
        const GuardRun run = runLine(std::string("\"$GUARD\" ") + arguments + " <../archive");
        EXPECT_EQ(run.status, 1) << arguments;
        EXPECT_THAT(run.output, HasSubstr("Invalid argument")) << arguments;
        EXPECT_EQ(run.note, std::nullopt) << arguments;
        EXPECT_TRUE(fs::is_empty(tree_)) << arguments;
    }
}

TEST_F(GuardMain, WhatCannotBeWrittenIsToldAndTheRestIsLookedAt) {
    writeFile(tree_ + "/b", "mine");
    const std::string archive = file("./a") + file("./b") + file("./c");
    const GuardRun whole = unpack(archive + cpioTrailer());
    EXPECT_EQ(whole.status, 1);
    EXPECT_EQ(whole.output, "cannot write ./b: File exists\n");
    EXPECT_EQ(whole.note, GuardNote{.end = GuardEnd::Whole});
    fs::remove(tree_ + "/a");
    const GuardRun irregular = unpack(archive + file("../d") + cpioTrailer());
    EXPECT_EQ(irregular.status, 1);
    EXPECT_EQ(irregular.note->irregularity, Irregularity::NameParent);
}

// What comes behind the last entry is looked at although it unpacks to nothing.
TEST_F(GuardMain, SecondArchiveIsSeenBehindMuchPadding) {
    const GuardRun run =
        unpack(file("./a") + cpioTrailer() + std::string(1 << 20, '\0') + file("./b"));
    EXPECT_NE(run.status, 0);
    ASSERT_TRUE(run.note);
    EXPECT_EQ(run.note->irregularity, Irregularity::BehindTrailer);
}

TEST_F(GuardMain, NothingIsUnpackedWithoutOrders) {
    directory_.write("archive", file("./a") + cpioTrailer());
    for (const char* const line : {"unset PKGVET_GUARD_ORDERS", "unset PKGVET_GUARD_NOTE",
                                   "PKGVET_GUARD_ORDERS=/dev/null", "echo >../note"}) {
        const GuardRun run = runLine(std::string(line) + "; \"$GUARD\" -idm <../archive");
        EXPECT_EQ(run.status, 1) << line;
        EXPECT_THAT(run.output, HasSubstr("guard in the place of cpio")) << line;
        EXPECT_TRUE(fs::is_empty(tree_)) << line;
    }
}

// Of names alone: in /proc nothing can be written.
class GuardMainMemory : public GuardMain {
protected:
    GuardRun unpackWithin(const char* kibibytes, const std::string& prefix) {
        std::string archive;
        for (int i = 0; i < 200000; ++i) {
            archive += cpioEntry({.name = prefix + std::to_string(i)});
        }
        const std::string path = directory_.write("archive", archive + cpioTrailer());
        return runLine(std::string("cd /proc; ulimit -v ") + kibibytes + "; \"$GUARD\" -idm <'" +
                       path + "'");
    }
};

TEST_F(GuardMainMemory, StaysSmall) {
    const GuardRun run = unpackWithin("65536", "./usr/share/org.example.app/");
    EXPECT_EQ(run.note, GuardNote{.end = GuardEnd::Whole});
}

TEST_F(GuardMainMemory, LackOfItIsNoted) {
    const GuardRun run = unpackWithin("32768", "./" + std::string(200, 'x'));
    EXPECT_NE(run.status, 0);
    EXPECT_EQ(run.note, GuardNote{.end = GuardEnd::OutOfMemory});
}

}  // namespace
