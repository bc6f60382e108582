// The facts of ELF files, of real ones and of others that any reader must agree on.
#include "pkgvet/elf/elf_reader.h"

#include <elf.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/elf/elf_image.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kProgram = "int main() { return 0; }\n";
constexpr const char* kLibrary =
    "extern \"C\" int exported() { return 1; }\n"
    "extern \"C\" __attribute__((visibility(\"hidden\"))) int concealed() { return 2; }\n";

constexpr const char* kSmallElf = R"(
    elf 64 little
    section strtab
    section dynamic link=1
      needed libone.so
      rpath /one
    section dynsym link=1
      symbol first
)";

ElfReader read(const std::string& path) {
    return ElfReader(path.c_str());
}

// What a load that failed leaves.
void expectNotLoaded(const ElfReader& reader) {
    EXPECT_EQ(reader.elfClass(), ElfClass::NotLoaded);
    EXPECT_THAT(reader.symbols(), IsEmpty());
    EXPECT_THAT(reader.libraries(), IsEmpty());
    EXPECT_EQ(reader.rpath(), "");
}

TEST(ElfReader, EnumeratorsHaveTheirFixedValues) {
    EXPECT_EQ(static_cast<std::uint32_t>(ElfClass::Elf32), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(ElfClass::Elf64), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(ElfClass::NotLoaded), 2U);
    EXPECT_EQ(static_cast<std::uint32_t>(ElfEncoding::LittleEndian), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(ElfEncoding::BigEndian), 1U);
}

TEST(ElfReader, ReadsAProgram) {
    const TemporaryDirectory directory;
    const ElfReader reader = read(compileElf(directory, "program", kProgram));
    EXPECT_EQ(reader.elfClass(), sizeof(void*) == 8 ? ElfClass::Elf64 : ElfClass::Elf32);
    EXPECT_EQ(reader.encoding(), ElfEncoding::LittleEndian);
    EXPECT_THAT(reader.symbols(), Contains("main"));
    EXPECT_THAT(reader.libraries(), Contains("libc.so.6"));
    EXPECT_EQ(reader.rpath(), "");
}

// Debuggers and packers leave such files behind, which run like any other.
TEST(ElfReader, ReadsAProgramWithASectionBehindItsEnd) {
    if (sizeof(void*) != sizeof(Elf64_Off)) {
        GTEST_SKIP() << "the compiler makes no 64-bit code";
    }
    const TemporaryDirectory directory;
    const std::string path = compileElf(directory, "program", kProgram);
    std::string image = readFile(path);
    Elf64_Ehdr header{};
    std::memcpy(&header, image.data(), sizeof(header));
    const Elf64_Off far = std::uint64_t{1} << 40U;
    std::memcpy(&image[header.e_shoff + sizeof(Elf64_Shdr) + offsetof(Elf64_Shdr, sh_offset)], &far,
                sizeof(far));
    const ElfReader whole = read(path);
    const ElfReader damaged = read(directory.write("damaged", image));
    EXPECT_EQ(damaged.elfClass(), ElfClass::Elf64);
    EXPECT_EQ(damaged.symbols(), whole.symbols());
    EXPECT_EQ(damaged.libraries(), whole.libraries());
}

TEST(ElfReader, BothSymbolTablesContribute) {
    const TemporaryDirectory directory;
    const std::string path =
        compileElf(directory, "library.so", kLibrary, {"-shared", "-fPIC", "-nostdlib"});
    const std::vector<std::string> symbols = read(path).symbols();
    EXPECT_EQ(std::count(symbols.begin(), symbols.end(), "exported"), 2);
    EXPECT_EQ(std::count(symbols.begin(), symbols.end(), "concealed"), 1);
    EXPECT_GE(std::count(symbols.begin(), symbols.end(), ""), 2);
}

TEST(ElfReader, StrippedLibraryKeepsItsDynamicSymbols) {
    const TemporaryDirectory directory;
    const std::string path =
        compileElf(directory, "library.so", kLibrary, {"-shared", "-fPIC", "-nostdlib", "-s"});
    const ElfReader reader = read(path);
    EXPECT_EQ(std::count(reader.symbols().begin(), reader.symbols().end(), "exported"), 1);
    EXPECT_THAT(reader.symbols(), Not(Contains("concealed")));
}

TEST(ElfReader, ExportedMainOfAStrippedProgramIsASymbol) {
    const TemporaryDirectory directory;
    EXPECT_THAT(read(compileElf(directory, "plain", kProgram, {"-s"})).symbols(),
                Not(Contains("main")));
    EXPECT_THAT(read(compileElf(directory, "exported", kProgram, {"-s", "-rdynamic"})).symbols(),
                Contains("main"));
}

TEST(ElfReader, StaticProgramNeedsNothing) {
    const TemporaryDirectory directory;
    const char* source = "extern \"C\" void _start() { for (;;) {} }\n";
    const std::string path =
        compileElf(directory, "program", source, {"-static", "-nostdlib", "-fno-stack-protector"});
    const ElfReader reader = read(path);
    EXPECT_THAT(reader.libraries(), IsEmpty());
    EXPECT_THAT(reader.symbols(), Contains("_start"));
}

TEST(ElfReader, OnlyTheOldRunPathIsRead) {
    const TemporaryDirectory directory;
    const auto rpath = [&directory](const std::string& name, const std::string& tags) {
        return read(
                   compileElf(directory, name, kProgram, {"-Wl," + tags + ",-rpath,/opt/x:/opt/y"}))
            .rpath();
    };
    EXPECT_EQ(rpath("old", "--disable-new-dtags"), "/opt/x:/opt/y");
    EXPECT_EQ(rpath("new", "--enable-new-dtags"), "");
}

TEST(ElfReader, LibrariesKeepTheOrderOfTheLinker) {
    const TemporaryDirectory directory;
    const auto library = [&directory](const std::string& name) {
        return compileElf(directory, name, "",
                          {"-shared", "-fPIC", "-nostdlib", "-Wl,-soname," + name});
    };
    const std::string second = library("libz.so.1");
    const std::string first = library("liba.so");
    const std::string path =
        compileElf(directory, "libuser.so", "",
                   {"-shared", "-fPIC", "-nostdlib", "-Wl,--no-as-needed", second, first});
    EXPECT_THAT(read(path).libraries(), ElementsAre("libz.so.1", "liba.so"));
}

TEST(ElfReader, ReadsA32BitObject) {
    const TemporaryDirectory directory;
    const std::string path = tryCompileElf(
        directory, "library.so", kLibrary,
        {"-m32", "-shared", "-fPIC", "-nostdlib", "-Wl,--disable-new-dtags,-rpath,/opt/x"});
    if (path.empty()) {
        GTEST_SKIP() << "the compiler makes no 32-bit code";
    }
    const ElfReader reader = read(path);
    EXPECT_EQ(reader.elfClass(), ElfClass::Elf32);
    EXPECT_EQ(reader.encoding(), ElfEncoding::LittleEndian);
    EXPECT_THAT(reader.symbols(), Contains("exported"));
    EXPECT_EQ(reader.rpath(), "/opt/x");
}

TEST(ElfReader, ReadsEachClassInEachByteOrder) {
    struct Case {
        const char* kind;
        ElfClass elfClass;
        ElfEncoding encoding;
    };
    const Case cases[] = {
        {"elf 32 little", ElfClass::Elf32, ElfEncoding::LittleEndian},
        {"elf 32 big", ElfClass::Elf32, ElfEncoding::BigEndian},
        {"elf 64 little", ElfClass::Elf64, ElfEncoding::LittleEndian},
        {"elf 64 big", ElfClass::Elf64, ElfEncoding::BigEndian},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.kind);
        const std::string description = std::string(test.kind) + R"(
            section strtab
            section dynamic link=1
              needed libone.so.1
              rpath /one
            section strtab
            section dynsym link=3
              symbol first
            section symtab link=3
              symbol first
              symbol second)";
        const ElfReader reader = read(directory.write("file", elfImage(description)));
        EXPECT_EQ(reader.elfClass(), test.elfClass);
        EXPECT_EQ(reader.encoding(), test.encoding);
        EXPECT_THAT(reader.symbols(), ElementsAre("", "first", "", "first", "second"));
        EXPECT_THAT(reader.libraries(), ElementsAre("libone.so.1"));
        EXPECT_EQ(reader.rpath(), "/one");
    }
}

TEST(ElfReader, ForeignMachineTypeAndVersionMakeNoDifference) {
    const TemporaryDirectory directory;
    for (const char* damage : {"byte 16=0xFE", "byte 18=0xFE", "byte 20=0xFE", "byte 6=0xFE"}) {
        SCOPED_TRACE(damage);
        const std::string description = kSmallElf + std::string(damage);
        const ElfReader reader = read(directory.write("file", elfImage(description)));
        EXPECT_EQ(reader.elfClass(), ElfClass::Elf64);
        EXPECT_THAT(reader.symbols(), ElementsAre("", "first"));
        EXPECT_THAT(reader.libraries(), ElementsAre("libone.so"));
    }
}

TEST(ElfReader, WhatIsNoElfFileIsNotLoaded) {
    const std::string whole = elfImage(kSmallElf);
    struct Case {
        const char* name;
        std::string content;
    };
    const Case cases[] = {
        {"empty", ""},
        {"shell script", "#!/bin/sh\nexec /usr/bin/true and a good deal more than a header\n"},
        {"magic alone",
         "\x7F"
         "ELF"},
        {"fifteen bytes", whole.substr(0, 15)},
        {"identification alone", whole.substr(0, 16)},
        {"63 bytes of a 64-bit header", whole.substr(0, 63)},
        {"51 bytes of a 32-bit header", elfImage("elf 32 little").substr(0, 51)},
        {"wrong magic", elfImage("elf 64 little\nbyte 3=0x66")},
        {"class 0", elfImage("elf 64 little\nbyte 4=0")},
        {"class 3", elfImage("elf 64 little\nbyte 4=3")},
        {"class 255", elfImage("elf 64 little\nbyte 4=255")},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        expectNotLoaded(read(directory.write("file", test.content)));
    }
}

TEST(ElfReader, HeaderAloneIsAnElfFile) {
    const TemporaryDirectory directory;
    for (const auto& [kind, size] : {std::pair("elf 32 big", 52), std::pair("elf 64 big", 64)}) {
        SCOPED_TRACE(kind);
        const std::string header = elfImage(kind).substr(0, static_cast<std::size_t>(size));
        const ElfReader reader = read(directory.write("file", header));
        EXPECT_NE(reader.elfClass(), ElfClass::NotLoaded);
        EXPECT_EQ(reader.encoding(), ElfEncoding::BigEndian);
        EXPECT_THAT(reader.symbols(), IsEmpty());
    }
}

TEST(ElfReader, WhatIsNoRegularFileIsNotLoaded) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", directory / "device");
    std::filesystem::create_symlink(directory.path(), directory / "directory");
    for (const char* name : {"fifo", "device", "directory", "missing"}) {
        SCOPED_TRACE(name);
        expectNotLoaded(read(directory / name));
    }
    expectNotLoaded(ElfReader(""));
}

TEST(ElfReader, NullPathIsAProgrammingError) {
    try {
        const ElfReader reader(nullptr);
        FAIL() << "nothing was thrown";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
}

TEST(ElfReader, CopyOutlivesItsSource) {
    const TemporaryDirectory directory;
    auto source = std::make_unique<ElfReader>(directory.write("file", elfImage(kSmallElf)).c_str());
    const ElfReader copy = *source;
    EXPECT_NE(&copy.symbols(), &source->symbols());
    source.reset();
    EXPECT_EQ(copy.elfClass(), ElfClass::Elf64);
    EXPECT_EQ(copy.encoding(), ElfEncoding::LittleEndian);
    EXPECT_THAT(copy.symbols(), ElementsAre("", "first"));
    EXPECT_THAT(copy.libraries(), ElementsAre("libone.so"));
    EXPECT_EQ(copy.rpath(), "/one");
}

TEST(ElfReader, MoveAssignmentExchangesTheRecords) {
    const TemporaryDirectory directory;
    ElfReader target = read(directory / "missing");
    ElfReader source = read(directory.write("file", elfImage(kSmallElf)));
    target = std::move(source);
    EXPECT_THAT(target.libraries(), ElementsAre("libone.so"));
    expectNotLoaded(source);  // NOLINT(bugprone-use-after-move): holds the other record
    ElfReader& self = target;
    target = std::move(self);
    EXPECT_THAT(target.libraries(), ElementsAre("libone.so"));
}

TEST(ElfReader, RunningProgramCanBeRead) {
    EXPECT_NE(read("/proc/self/exe").elfClass(), ElfClass::NotLoaded);
}

}  // namespace
