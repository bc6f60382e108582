// What the first bytes of an ELF file tell, and how many section headers there are.
#include "pkgvet/elf/elf_header.h"

#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"

namespace {

using pkgvet::ElfHeader;

std::optional<ElfHeader> readHeader(const std::string& image) {
    const TemporaryDirectory directory;
    const pkgvet::FileRanges file(directory.write("file", image));
    return pkgvet::readElfHeader(file);
}

TEST(ElfHeader, SectionsAreThoseWhoseHeadersLieInsideTheFile) {
    struct Case {
        const char* damage;
        std::uint64_t count;
    };
    const Case cases[] = {
        {"", 3},
        {"set shnum=0", 0},
        {"set shnum=2", 2},
        {"set shnum=0xFFFF", 3},
        {"set shentsize=0", 0},
        {"set shentsize=39", 0},
        {"set shentsize=41", 2},
        {"set shentsize=0xFFFF", 1},
        {"set shoff=93", 2},
        {"set shoff=0xFFFFFFFF", 0},
        {"end 173", 3},
        {"end 172", 2},
        {"end 92", 0},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.damage);
        const std::string image = elfImage(std::string(R"(elf 32 big
            section strtab
            section nobits
            )") + test.damage);
        const std::optional<ElfHeader> header = readHeader(image);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->elfClass, ElfClass::Elf32);
        EXPECT_EQ(header->encoding, ElfEncoding::BigEndian);
        EXPECT_EQ(header->sectionCount, test.count);
    }
}

TEST(ElfHeader, IsNoneWithoutAllItsBytes) {
    EXPECT_TRUE(readHeader(elfImage("elf 64 little\nend 64")));
    EXPECT_FALSE(readHeader(elfImage("elf 64 little\nend 63")));
    EXPECT_FALSE(readHeader(elfImage("elf 64 little\nbyte 4=3")));
    EXPECT_FALSE(readHeader(""));
}

}  // namespace
