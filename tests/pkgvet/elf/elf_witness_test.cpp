// ElfReader and readelf on the programs and libraries of this machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

#include "pkgvet/elf/elf_reader.h"
#include "tests/support/elf/readelf.h"

namespace {

namespace fs = std::filesystem;

const char* const kDirectories[] = {"/usr/bin", "/usr/lib"};

// Enough for a look in every test run.
constexpr std::size_t kSampleSize = 12;
constexpr std::uintmax_t kSampleFileSize = 1 << 20;

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
constexpr std::uintmax_t kAnySize = std::numeric_limits<std::uintmax_t>::max();

bool isElfFile(const fs::directory_entry& entry) {
    std::error_code error;
    if (!entry.is_regular_file(error) || entry.is_symlink(error)) {
        return false;
    }
    char magic[4] = {};
    std::ifstream(entry.path(), std::ios::binary).read(magic, sizeof(magic));
    return std::equal(std::begin(magic), std::end(magic),
                      "\x7F"
                      "ELF");
}

// As many as count of them, none larger than maxSize.
std::vector<std::string> elfFilesBelow(const std::string& directory, std::size_t count,
                                       std::uintmax_t maxSize) {
    std::vector<std::string> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(
             directory, fs::directory_options::skip_permission_denied, error)) {
        if (files.size() == count) {
            break;
        }
        if (isElfFile(entry) && entry.file_size() <= maxSize) {
            files.push_back(entry.path());
        }
    }
    return files;
}

void expectAgreement(const std::string& path) {
    SCOPED_TRACE(path);
    const ElfReader reader(path.c_str());
    const ReadelfFacts facts = askReadelf(path);
    std::vector<std::string> symbols = reader.symbols();
    std::transform(symbols.begin(), symbols.end(), symbols.begin(), withoutVersion);
    EXPECT_NE(reader.elfClass(), ElfClass::NotLoaded);
    EXPECT_EQ(reader.libraries(), facts.libraries);
    EXPECT_EQ(reader.rpath(), facts.rpath);
    ASSERT_EQ(symbols.size(), facts.symbols.size());
    const auto [ours, theirs] =
        std::mismatch(symbols.begin(), symbols.end(), facts.symbols.begin());
    if (ours != symbols.end()) {
        FAIL() << "symbol " << ours - symbols.begin() << ": " << *ours << ", readelf: " << *theirs;
    }
}

TEST(ElfWitness, SampleOfTheMachineAgrees) {
    for (const char* directory : kDirectories) {
        for (const std::string& path : elfFilesBelow(directory, kSampleSize, kSampleFileSize)) {
            expectAgreement(path);
        }
    }
}

// Takes minutes: run it with --gtest_also_run_disabled_tests.
TEST(ElfWitness, DISABLED_WholeMachineAgrees) {
    for (const char* directory : kDirectories) {
        for (const std::string& path : elfFilesBelow(directory, kAll, kAnySize)) {
            expectAgreement(path);
        }
    }
}

}  // namespace
