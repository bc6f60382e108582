// What is left of ELF files whose sizes, counts and offsets lie, each named for its defect.
#include <elf.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>

#include "pkgvet/elf/elf_sections.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_facts.h"
#include "tests/support/elf/elf_image.h"

namespace {

using Strings = std::vector<std::string>;

const Strings kNone;

constexpr long kMebibyte = 1 << 20;
const std::string kLongText(kMebibyte, 'x');

long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

// By how many bytes the reading of image raises what a process takes at most.
long memoryToRead(const std::string& image) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", image);
    const std::string answer = directory / "answer";
    holdsInChild([&] {
        const long before = peakMemory();
        pkgvet::readElfWithSymbols(path);
        writeFile(answer, std::to_string(peakMemory() - before));
        return true;
    });
    return std::stol(readFile(answer));
}

TEST(ReadElfBounds, OddEntrySizesReadNothingOutOfBounds) {
    expectElfFacts({
        {"no entry size", R"(elf 64 little
            section strtab
            section symtab link=1 entsize=0
              symbol a
            section dynamic link=1 entsize=0
              needed libone.so)",
         kNone, kNone, ""},
        {"entry size beyond the section", R"(elf 64 little
            section strtab
            section symtab link=1 entsize=0xFFFFFFFFFFFFFFFF
              symbol a
            section dynamic link=1 entsize=17
              needed libone.so)",
         kNone, kNone, ""},
        {"entry size twice too large",
         R"(elf 64 little
            section strtab
            section symtab link=1 entsize=48
              symbol a
              symbol b
              symbol c
              symbol d)",
         {"", "b"},
         kNone,
         ""},
        {"entry size too small for a symbol",
         R"(elf 64 little
            section strtab
              text abc
            section symtab link=1 size=8 entsize=2
              symbol @1)",
         {"", "", "", ""},
         kNone,
         ""},
        {"entry size of a name alone",
         R"(elf 32 little
            section strtab
              text abc
            section symtab link=1 entsize=4
              symbol @1)",
         {"", "", "", "", "abc", "", "", ""},
         kNone,
         ""},
        {"entry size of a tag alone",
         R"(elf 64 little
            section strtab
              text libone.so
            section dynamic link=1 entsize=8
              tag 1 1
              tag 1 1)",
         kNone,
         {"libone.so", "libone.so", "libone.so"},
         ""},
        {"last entry incomplete",
         R"(elf 64 little
            section strtab
            section symtab link=1
              symbol a
              drop 1
            section dynamic link=1
              needed libone.so
              needed libtwo.so
              drop 1)",
         {""},
         {"libone.so"},
         ""},
    });
}

TEST(ReadElfBounds, EntryBehindTheEndOfTheFileHasTheEmptyName) {
    expectElfFacts({
        {"tables behind the file",
         R"(elf 64 little
            section strtab
            section symtab link=1 offset=0x7FFFFFFFFFFFFFFF
              symbol a
            section dynsym link=1 offset=0xFFFFFFFFFFFFFFFF
              symbol a
              symbol b
            section dynamic link=1 offset=0xFFFFFFFFFFFFFFFF
              needed libone.so)",
         {"", "", "", "", ""},
         kNone,
         ""},
        {"tables larger than the file",
         R"(elf 32 little
            section strtab
            section symtab link=1 size=0x640 entsize=0x100
              symbol name
            section dynsym link=1 size=0x8000 entsize=0x4000
            section strtab
            section dynsym link=4
              symbol good)",
         {"", "", "", "", "", "", "", "", "", "good"},
         kNone,
         ""},
        {"strings and dynamic section larger than the file",
         R"(elf 64 little
            section strtab size=0xFFFFFFFFFFFFFFFF
              text name
            section dynamic link=1 size=0x1000000000
              needed @1)",
         kNone,
         {"name"},
         ""},
        {"file cut in the middle of a table",
         R"(elf 64 little
            set shoff=64
            byte 60=1
            byte 64=0
            byte 68=11
            byte 88=128
            byte 96=80
            byte 120=24
            end 152)",
         {"", "", ""},
         kNone,
         ""},
    });
}

TEST(ReadElfBounds, DamagedSectionTableCostsItsSectionsOnly) {
    const char* const contents = R"(elf 64 little
        section strtab
        section dynamic link=1
          needed libone.so
        )";
    struct Damage {
        const char* name;
        const char* line;
        Strings libraries;
    };
    const Damage damages[] = {
        {"none", "", {"libone.so"}},
        {"no table", "set shoff=0", kNone},
        {"table behind the file", "set shoff=0xFFFFFFFF", kNone},
        {"table at the end of the address space", "set shoff=0xFFFFFFFFFFFFFFC0", kNone},
        {"table without sections", "set shnum=0", kNone},
        {"table that lacks its last section", "set shnum=2", kNone},
        {"table with more sections than there are", "set shnum=0xFFFF", {"libone.so"}},
        {"section headers without size", "set shentsize=0", kNone},
        {"section headers a byte too small", "set shentsize=63", kNone},
        {"section headers far apart", "set shentsize=0xFFFF", kNone},
    };
    for (const Damage& damage : damages) {
        SCOPED_TRACE(damage.name);
        const ElfReaderPrivate facts = readElfImage(elfImage(contents + std::string(damage.line)));
        EXPECT_EQ(facts.elfClass, ElfClass::Elf64);
        EXPECT_EQ(facts.libraries, damage.libraries);
    }
}

TEST(ReadElfBounds, LastSectionHeaderIncompleteIsNoSection) {
    const std::string image = elfImage(R"(elf 64 little
        section strtab
        section dynamic link=1
          needed libone.so
        section dynamic link=1
          needed libtwo.so)");
    const ElfReaderPrivate facts = readElfImage(image.substr(0, image.size() - 1));
    EXPECT_EQ(facts.libraries, Strings{"libone.so"});
}

// More than the file has bytes, and no reason to refuse it.
TEST(ReadElfBounds, CountThatAMachineCanHoldIsLoaded) {
    const std::string good = "elf 64 little\nsection strtab\nsection dynsym link=1\nsymbol main\n";
    struct Case {
        const char* table;
        std::size_t count;
    };
    const Case cases[] = {
        {"section symtab offset=0 size=307200 entsize=1\nend 307200", 307200},
        {"section symtab offset=4096 size=1000000 entsize=1", 1000000},
        {"section symtab link=1 offset=0xFFFFFFFF size=24000000 entsize=24", 1000000},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.table);
        const ElfReaderPrivate facts = readElfImage(elfImage(good + test.table));
        EXPECT_EQ(facts.elfClass, ElfClass::Elf64);
        ASSERT_EQ(facts.symbols.size(), 2 + test.count);
        EXPECT_EQ(facts.symbols[1], "main");
    }
}

TEST(ReadElfBounds, CountThatNoMachineCanHoldIsRefusedAtNoCost) {
    for (const char* size : {"0xFFFFFFFF", "0x1000000000000000", "0xFFFFFFFFFFFFFFFF"}) {
        SCOPED_TRACE(size);
        const std::string image = elfImage(R"(elf 64 little
            section strtab
            section dynsym link=1
              symbol main
            section symtab link=1 entsize=1 size=)" +
                                           std::string(size));
        EXPECT_LT(memoryToRead(image), 8 * kMebibyte);
        const ElfReaderPrivate facts = readElfImage(image);
        EXPECT_EQ(facts.elfClass, ElfClass::NotLoaded);
        EXPECT_EQ(facts.symbols, kNone);
    }
}

// Neither the bytes nor the name of a section that no rule asks for take any memory.
TEST(ReadElfBounds, SectionsOverTheSameMegabyteCostItOnce) {
    std::string description = "elf 64 little\nsection strtab\ntext " + kLongText + "\n";
    for (int i = 0; i < 300; ++i) {
        description += "section progbits name=1 offset=66 size=0x100000\n";
    }
    description += "section dynsym link=1\nsymbol @1\nbyte 62=1\n";
    const std::string image = elfImage(description);
    EXPECT_EQ(readElfImage(image).symbols, (Strings{"", kLongText}));
    EXPECT_LT(memoryToRead(image), 32 * kMebibyte);
}

TEST(ReadElfBounds, RunPathsThatAreReplacedCostNothing) {
    std::string description =
        "elf 64 little\nsection strtab\ntext " + kLongText + "\nsection dynamic link=1\n";
    for (int i = 0; i < 10000; ++i) {
        description += "rpath @1\n";
    }
    EXPECT_EQ(readElfImage(elfImage(description + "rpath @2")).rpath, kLongText.substr(1));
}

// A table of symbols that all name one long string, and the same table in thousands of sections.
TEST(ReadElfBounds, FileThatStandsForFarMoreThanItHoldsIsNotLoaded) {
    std::string names =
        "elf 64 little\nsection strtab\ntext " + kLongText + "\nsection symtab link=1\n";
    for (int i = 0; i < 10000; ++i) {
        names += "symbol @1\n";
    }
    EXPECT_EQ(readElfImage(elfImage(names)).elfClass, ElfClass::NotLoaded);

    std::string sections = "elf 64 little\nsection strtab\ntext " + kLongText + "\n";
    for (int i = 0; i < 10000; ++i) {
        sections += "section dynamic link=1 offset=66 size=0x100000 entsize=0x10000\n";
    }
    const ElfReaderPrivate facts = readElfImage(elfImage(sections));
    EXPECT_EQ(facts.elfClass, ElfClass::NotLoaded);
    EXPECT_EQ(facts.libraries, kNone);
}

// A file may shrink between two reads.
TEST(ReadElfBounds, FileWhoseSectionsCannotBeReadIsNotLoaded) {
    const pkgvet::ElfHeader header = {ElfClass::Elf64, ElfEncoding::LittleEndian};
    pkgvet::ElfAllowance allowance;
    pkgvet::ElfSectionSource source;
    source.load = [](std::size_t, std::uint64_t) { return std::nullopt; };
    source.copy = [](std::size_t, std::uint64_t, std::uint64_t) { return std::nullopt; };
    const pkgvet::ElfSection dynamic = {SHT_DYNAMIC, 0, 160, 0, 16};
    const pkgvet::ElfSection symbols = {SHT_SYMTAB, 0, 240, 0, 24};
    for (const pkgvet::ElfSection& section : {dynamic, symbols}) {
        const ElfReaderPrivate facts = pkgvet::readElfSections(header, 1000, {{}, section}, source,
                                                               pkgvet::ignoreSymbol, &allowance);
        EXPECT_EQ(facts.elfClass, ElfClass::NotLoaded) << section.type;
    }
}

// A library's name is paid for beside the section that holds it.
TEST(ReadElfBounds, NeededNameBeyondTheCeilingIsRefused) {
    const pkgvet::ElfHeader header = {ElfClass::Elf64, ElfEncoding::LittleEndian};
    constexpr std::uint64_t kSize = std::uint64_t{300} << 20U;
    const std::string names(kSize, 'x');
    std::string entry(16, '\0');
    entry[0] = DT_NEEDED;
    pkgvet::ElfAllowance allowance;
    pkgvet::ElfSectionSource source;
    source.load = [&](std::size_t index, std::uint64_t size) -> std::optional<std::string_view> {
        return std::string_view(index == 0 ? entry : names).substr(0, size);
    };
    const std::vector<pkgvet::ElfSection> sections = {{SHT_DYNAMIC, 0, 16, 1, 16},
                                                      {SHT_STRTAB, 16, kSize, 0, 0}};
    const ElfReaderPrivate facts = pkgvet::readElfSections(header, kSize + 16, sections, source,
                                                           pkgvet::ignoreSymbol, &allowance);
    EXPECT_EQ(facts.elfClass, ElfClass::NotLoaded);
    EXPECT_EQ(facts.libraries, kNone);
}

// A dynamic section over the same two mebibytes, so many times.
std::string overlaidSections(int count, int entrySize) {
    std::string description = "elf 64 little\nsection strtab\n";
    for (int i = 0; i < count; ++i) {
        description +=
            "section dynamic link=1 offset=0 size=0x200000 entsize=" + std::to_string(entrySize) +
            "\n";
    }
    return elfImage(description + "end 0x200000\n");
}

TEST(ReadElfBounds, DynamicEntriesThatOverlapArePaidForAsSymbolsAre) {
    EXPECT_NE(readElfImage(overlaidSections(7, 1)).elfClass, ElfClass::NotLoaded);
    EXPECT_EQ(readElfImage(overlaidSections(8, 1)).elfClass, ElfClass::NotLoaded);
    EXPECT_NE(readElfImage(overlaidSections(50, 16)).elfClass, ElfClass::NotLoaded);
}

// A file of a few hundred bytes may claim a million of them, and a package have thousands of files.
TEST(ReadElfBounds, SymbolsWithoutBytesAreVisitedAtOnce) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", elfImage(R"(elf 64 little
        section strtab
        section symtab link=1 size=24000000
          symbol main
          drop 12)"));
    std::vector<std::pair<std::string, std::size_t>> visits;
    pkgvet::readElf(path, [&visits](const pkgvet::SymbolVisit& symbol) {
        visits.emplace_back(symbol.name, symbol.repeats);
        EXPECT_EQ(symbol.count, 1'000'000U);
    });
    EXPECT_LE(visits.size(), 40U);
    std::size_t sum = 0;
    for (const auto& [name, repeats] : visits) {
        sum += repeats;
    }
    EXPECT_EQ(sum, 1'000'000U);
}

TEST(ReadElfBounds, SparseFileOfManyGigabytesIsReadByItsTables) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", elfImage(R"(elf 64 little
        section strtab
        section dynamic link=1
          needed libone.so
        section progbits offset=4096 size=0x7FFFFFFFFF)"));
    std::filesystem::resize_file(path, std::uintmax_t{64} << 30U);
    EXPECT_EQ(pkgvet::readElf(path, pkgvet::ignoreSymbol).libraries, Strings{"libone.so"});
}

}  // namespace
