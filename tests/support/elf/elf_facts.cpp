#include "tests/support/elf/elf_facts.h"

#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"

ElfReaderPrivate readElfImage(const std::string& image) {
    const TemporaryDirectory directory;
    return pkgvet::readElfWithSymbols(directory.write("file", image));
}

void expectElfFacts(const std::vector<ElfCase>& cases) {
    for (const ElfCase& test : cases) {
        SCOPED_TRACE(test.name);
        const ElfReaderPrivate facts = readElfImage(elfImage(test.description));
        EXPECT_NE(facts.elfClass, ElfClass::NotLoaded);
        EXPECT_EQ(facts.symbols, test.symbols);
        EXPECT_EQ(facts.libraries, test.libraries);
        EXPECT_EQ(facts.rpath, test.rpath);
    }
}
