// What counts as a program that the platform can run.
#include "pkgvet/elf/executable_format.h"

#include <gtest/gtest.h>

#include "pkgvet/elf/elf_reader.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"

namespace pkgvet {
namespace {

TEST(ExecutableFormat, LittleEndianFilesOfBothClassesAreGood) {
    struct Case {
        const char* name;
        std::string content;
        bool isGood;
    };
    const std::string good = elfImage("elf 64 little");
    const Case cases[] = {
        {"64 bit", good, true},
        {"32 bit", elfImage("elf 32 little"), true},
        {"foreign machine", elfImage("elf 32 little\nbyte 18=0x28"), true},
        {"64 bit, big-endian", elfImage("elf 64 big"), false},
        {"32 bit, big-endian", elfImage("elf 32 big"), false},
        {"unknown byte order", elfImage("elf 64 little\nbyte 5=0"), false},
        {"unknown class", elfImage("elf 64 little\nbyte 4=3"), false},
        {"header incomplete", good.substr(0, 63), false},
        {"script", "#!/bin/sh\n", false},
        {"empty", "", false},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const std::string path = directory.write("file", test.content);
        EXPECT_EQ(hasGoodFormat(path), test.isGood);
    }
}

TEST(ExecutableFormat, FileThatIsNotThereIsNotGood) {
    const TemporaryDirectory directory;
    const std::string path = directory / "missing";
    EXPECT_FALSE(hasGoodFormat(path));
}

}  // namespace
}  // namespace pkgvet
