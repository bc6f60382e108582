// What ELF files tell whose tables are in order, or nearly so, each named for its oddity.
#include <gtest/gtest.h>

#include "tests/support/elf/elf_facts.h"
#include "tests/support/elf/elf_image.h"

namespace {

using Strings = std::vector<std::string>;

const Strings kNone;

TEST(ReadElf, DynamicEntriesAreReadUpToTheirEnd) {
    expectElfFacts({
        {"run path of the new kind", R"(elf 64 little
            section strtab
            section dynamic link=1
              runpath /new)",
         kNone, kNone, ""},
        {"run paths of both kinds", R"(elf 64 little
            section strtab
            section dynamic link=1
              rpath /old
              runpath /new)",
         kNone, kNone, "/old"},
        {"two run paths", R"(elf 64 little
            section strtab
            section dynamic link=1
              rpath /one
              rpath /two)",
         kNone, kNone, "/two"},
        {"empty run path behind another", R"(elf 64 little
            section strtab
            section dynamic link=1
              rpath /one
              rpath -)",
         kNone, kNone, "/one"},
        {"empty library",
         R"(elf 64 little
            section strtab
            section dynamic link=1
              needed -
              needed libone.so)",
         kNone,
         {"libone.so"},
         ""},
        {"library twice",
         R"(elf 64 little
            section strtab
            section dynamic link=1
              needed libtwo.so
              needed libone.so
              needed libtwo.so)",
         kNone,
         {"libtwo.so", "libone.so", "libtwo.so"},
         ""},
        {"entries behind the end",
         R"(elf 64 little
            section strtab
            section dynamic link=1
              needed libone.so
              tag 0 0
              needed libtwo.so
              rpath /two)",
         kNone,
         {"libone.so"},
         ""},
        {"end with a value", R"(elf 32 big
            section strtab
            section dynamic link=1
              tag 0 1
              needed libtwo.so)",
         kNone, kNone, ""},
        {"other tags that name strings",
         R"(elf 64 little
            section strtab
              text libself.so
            section dynamic link=1
              tag 14 1
              tag 0x7FFFFFFF 1
              tag 0x100000001 1
              needed libone.so)",
         kNone,
         {"libone.so"},
         ""},
    });
}

TEST(ReadElf, AllSectionsOfAKindContribute) {
    expectElfFacts({
        {"two dynamic sections",
         R"(elf 64 little
            section strtab
            section dynamic link=1
              needed libone.so
              rpath /one
              tag 0 0
            section dynamic link=1
              needed libtwo.so
              rpath /two)",
         kNone,
         {"libone.so", "libtwo.so"},
         "/two"},
        {"two tables of each kind",
         R"(elf 32 little
            section strtab
            section symtab link=1
              symbol a
            section dynsym link=1
              symbol b
            section symtab link=1
              symbol c
            section dynsym link=1)",
         {"", "a", "", "b", "", "c", ""},
         kNone,
         ""},
        {"names of sections that mislead",
         R"(elf 64 little
            section strtab
            section progbits link=1 name=4096 entsize=16
              needed libone.so
            section dynamic link=1 name=0xFFFFFFFF
              needed libtwo.so)",
         kNone,
         {"libtwo.so"},
         ""},
        {"string table behind its user",
         R"(elf 64 little
            section dynamic link=2
              needed @1
            section strtab
              text liblate.so)",
         kNone,
         {"liblate.so"},
         ""},
    });
}

TEST(ReadElf, NameThatCannotBeResolvedIsEmpty) {
    expectElfFacts({
        {"link to no section",
         R"(elf 64 little
            section strtab
            section symtab link=77
              symbol @1
            section dynamic link=77
              needed @1
              rpath @1)",
         {"", ""},
         kNone,
         ""},
        {"link that is right in its low half only",
         R"(elf 64 little
            section strtab
              text libone.so
            section symtab link=0x10001
              symbol @1)",
         {"", ""},
         kNone,
         ""},
        {"link to the null section",
         R"(elf 64 little
            section symtab link=0
              symbol @1)",
         {"", ""},
         kNone,
         ""},
        {"link to a section without bytes",
         R"(elf 64 little
            section nobits size=64
            section symtab link=1
              symbol @0)",
         {"", ""},
         kNone,
         ""},
        {"names behind the end of the strings",
         R"(elf 64 little
            section strtab
              text abc
            section symtab link=1
              symbol @4
              symbol @5
              symbol @0xFFFFFFFF
            section dynamic link=1
              needed @5
              needed @0xFFFFFFFFFFFFFFFF
              needed @0x100000001
              rpath @6)",
         {"", "", "", ""},
         kNone,
         ""},
        {"strings outside the file",
         R"(elf 64 little
            section strtab offset=0xFFFFFFFFFFFFFFF0
            section symtab link=1
              symbol @1)",
         {"", ""},
         kNone,
         ""},
        {"strings outside the file, and a good table behind them",
         R"(elf 32 big
            section strtab offset=0xFFFFFFF0
            section symtab link=1
              symbol @1
            section strtab
            section dynsym link=3
              symbol good)",
         {"", "", "", "good"},
         kNone,
         ""},
        {"table that is its own string table",
         R"(elf 64 little
            section symtab link=1
              symbol @1)",
         {"", ""},
         kNone,
         ""},
    });
}

TEST(ReadElf, StringWithoutAnEndStopsWithItsSection) {
    expectElfFacts({
        {"last string",
         R"(elf 64 little
            section strtab
              text abc
              drop 1
            section symtab link=1
              symbol @1
              symbol @3)",
         {"", "abc", "c"},
         kNone,
         ""},
        {"last string, with text behind the section",
         R"(elf 32 big
            section strtab
              text abc
              drop 2
            section strtab
              drop 1
              text def
            section dynamic link=1
              needed @1
              rpath @2)",
         kNone,
         {"ab"},
         "b"},
    });
}

// A program that is damaged there still runs.
TEST(ReadElf, DamageOutsideTheTablesCostsNothing) {
    const Strings damages[] = {
        {},
        {"byte 54=1", "byte 56=1"},                      // program headers of one byte
        {"byte 39=0x7F", "byte 54=56", "byte 56=1"},     // program headers behind the file
        {"byte 54=56", "byte 56=0xFF", "byte 57=0xFF"},  // far too many of them
        {"byte 62=77"},                                  // names of sections in no section
        {"byte 62=1"},                                   // names of sections that mislead
    };
    for (const Strings& damage : damages) {
        std::string description = R"(elf 64 little
            section strtab name=0xFFFF
            section progbits offset=0x7FFFFFFFFFFFFFFF size=16 name=1
            section progbits offset=8 size=0xFFFFFFFFFFFFFFFF name=1
            section dynamic link=1 name=3
              needed libone.so
              rpath /one
            section dynsym link=1
              symbol first
            )";
        for (const std::string& line : damage) {
            description += line + "\n";
        }
        SCOPED_TRACE(testing::PrintToString(damage));
        const ElfReaderPrivate facts = readElfImage(elfImage(description));
        EXPECT_EQ(facts.elfClass, ElfClass::Elf64);
        EXPECT_EQ(facts.symbols, (Strings{"", "first"}));
        EXPECT_EQ(facts.libraries, Strings{"libone.so"});
        EXPECT_EQ(facts.rpath, "/one");
    }
}

TEST(ReadElf, SectionMayBeTheWholeFile) {
    expectElfFacts({
        {"in a known byte order",
         R"(elf 64 little
            section strtab offset=0 size=0xFFFF
            section dynsym link=1
              symbol @1)",
         {"\x7F"
          "ELF\x2\x1\x1",
          "ELF\x2\x1\x1"},
         kNone,
         ""},
        {"in an unknown one",
         R"(elf 32 big
            section strtab offset=0 size=0xFFFF
            section dynsym link=1
              symbol @1
            byte 5=3)",
         {"\x7F"
          "ELF\x1\x3\x1",
          "ELF\x1\x3\x1"},
         kNone,
         ""},
    });
}

TEST(ReadElf, UnknownByteOrderIsReadAsBigEndian) {
    for (const char* order : {"byte 5=0", "byte 5=3", "byte 5=255"}) {
        SCOPED_TRACE(order);
        const ElfReaderPrivate facts = readElfImage(elfImage(R"(elf 64 big
            section strtab
            section dynamic link=1
              needed libone.so
            )" + std::string(order)));
        EXPECT_EQ(facts.elfClass, ElfClass::Elf64);
        EXPECT_EQ(facts.encoding, ElfEncoding::BigEndian);
        EXPECT_EQ(facts.libraries, Strings{"libone.so"});
    }
}

}  // namespace
