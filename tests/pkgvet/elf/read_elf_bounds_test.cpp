// What is left of ELF files whose sizes, counts and offsets lie, each named for its defect.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/elf_facts.h"
#include "tests/support/elf_image.h"
#include "tests/support/temporary_directory.h"

namespace {

using Strings = std::vector<std::string>;

const Strings kNone;

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

TEST(ReadElfBounds, EntriesAreThoseInsideTheFile) {
    expectElfFacts({
        {"sections larger than the file",
         R"(elf 64 little
            section strtab size=0xFFFFFFFFFFFFFFFF
              text name
            section dynamic link=1 size=0x1000000000
              needed @1)",
         kNone,
         {"name"},
         ""},
        {"section behind the file", R"(elf 64 little
            section strtab
            section symtab link=1 offset=0x7FFFFFFFFFFFFFFF
              symbol a
            section dynamic link=1 offset=0xFFFFFFFFFFFFFFFF
              needed libone.so)",
         kNone, kNone, ""},
        {"file cut in the middle of a table",
         R"(elf 64 little
            set shoff=64
            byte 60=1
            byte 64=0
            byte 68=11
            byte 88=128
            byte 97=16
            byte 120=24
            end 152)",
         {""},
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

TEST(ReadElfBounds, CountOfFourBillionInASmallFileCostsNothing) {
    const ElfReaderPrivate facts = readElfImage(elfImage(R"(elf 32 little
        section strtab
        section symtab link=1 size=0xFFFFFFFF entsize=1
        set shnum=0xFFFF
        end 1024)"));
    EXPECT_LT(facts.symbols.size(), 1024U);
    EXPECT_EQ(facts.elfClass, ElfClass::Elf32);
}

// A table of symbols that all name one long string, and the same table in thousands of sections.
TEST(ReadElfBounds, FileThatStandsForFarMoreThanItHoldsIsNotLoaded) {
    std::string names = "elf 64 little\nsection strtab\ntext " + std::string(1 << 20, 'x') +
                        "\nsection symtab link=1\n";
    for (int i = 0; i < 10000; ++i) {
        names += "symbol @1\n";
    }
    EXPECT_EQ(readElfImage(elfImage(names)).elfClass, ElfClass::NotLoaded);

    std::string sections =
        "elf 64 little\nsection strtab\nsection progbits\ntext " + std::string(1 << 20, 'x') + "\n";
    for (int i = 0; i < 10000; ++i) {
        sections += "section dynamic link=1 offset=66 size=0x100000 entsize=16\n";
    }
    const ElfReaderPrivate facts = readElfImage(elfImage(sections));
    EXPECT_EQ(facts.elfClass, ElfClass::NotLoaded);
    EXPECT_EQ(facts.libraries, kNone);
}

TEST(ReadElfBounds, SparseFileOfManyGigabytesIsReadByItsTables) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", elfImage(R"(elf 64 little
        section strtab
        section dynamic link=1
          needed libone.so
        section progbits offset=4096 size=0x7FFFFFFFFF)"));
    std::filesystem::resize_file(path, std::uintmax_t{64} << 30U);
    EXPECT_EQ(pkgvet::readElf(path).libraries, Strings{"libone.so"});
}

}  // namespace
