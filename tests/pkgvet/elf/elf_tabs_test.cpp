// The rule on the symbols of the main binary.
#include <gmock/gmock.h>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/elf/elf_image.h"

namespace pkgvet {
namespace {

using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kNotLinked = errorLine("[binary] Binary does not link to __libc_start_main");
const std::string kMightFail =
    warningLine("[binary] Binary does not export main() symbol - booster might fail");
const std::string kMustExport =
    errorLine("[binary] Binary must export main() symbol for booster to work (Q_DECL_EXPORT)");

constexpr const char* kTable = "elf 64 little\nsection strtab\nsection dynsym link=1\n";
// A section without the null symbol, which each table has otherwise.
constexpr const char* kBareTable =
    "elf 64 little\nsection strtab\nsection dynsym link=1\ndrop 24\n";

struct Case {
    const char* name;
    std::string description;  // empty: a shell script
    bool importsToolkit;
    bool mainSymbol;
    bool mainExport;
    bool booster;
    Lines lines;
};

const Case kCases[] = {
    {"both",
     std::string(kTable) + "symbol __libc_start_main\nsymbol main",
     false,
     true,
     true,
     true,
     {}},
    {"both, with the toolkit",
     std::string(kTable) + "symbol __libc_start_main\nsymbol main",
     true,
     true,
     true,
     false,
     {}},
    {"main not exported",
     std::string(kTable) + "symbol __libc_start_main",
     false,
     true,
     false,
     true,
     {kMightFail}},
    {"main not exported, with the toolkit",
     std::string(kTable) + "symbol __libc_start_main",
     true,
     true,
     false,
     false,
     {kMustExport}},
    {"C library not linked",
     std::string(kTable) + "symbol main",
     false,
     false,
     true,
     true,
     {kNotLinked}},
    {"neither", kTable, false, false, false, true, {kNotLinked, kMightFail}},
    {"neither, with the toolkit", kTable, true, false, false, false, {kNotLinked, kMustExport}},
    {"no symbol but that of the C library",
     std::string(kBareTable) + "symbol __libc_start_main",
     false,
     true,
     false,
     false,
     {kMustExport}},
    {"names alike",
     std::string(kTable) + "symbol __libc_start_main@GLIBC_2.34\nsymbol main2",
     false,
     false,
     false,
     true,
     {kNotLinked, kMightFail}},
    {"names in two tables",
     "elf 64 big\nsection strtab\nsection symtab link=1\nsymbol main\n"
     "section dynsym link=1\nsymbol __libc_start_main",
     false,
     true,
     true,
     true,
     {}},
    {"no table", "elf 64 little", false, false, false, false, {kNotLinked, kMustExport}},
    {"shell script", "", false, false, false, false, {kNotLinked, kMustExport}},
};

class ElfTabs : public testing::Test {
protected:
    Lines process(const std::string& path, bool isInstalled = true, bool importsToolkit = false) {
        const CapturedLog log;
        processElfTabs(path, isInstalled, importsToolkit, &facts_, &findings_);
        return log.lines();
    }

    Lines processCase(const Case& test, bool isInstalled) {
        facts_ = BinaryFacts();
        findings_ = Findings();
        const std::string content =
            test.description.empty() ? "#!/bin/sh\nexec true\n" : elfImage(test.description);
        return process(directory_.write("binary", content), isInstalled, test.importsToolkit);
    }

    void expectFacts(const Case& test) const {
        EXPECT_EQ(facts_.mainSymbol, test.mainSymbol);
        EXPECT_EQ(facts_.mainExport, test.mainExport);
        EXPECT_EQ(facts_.booster, test.booster);
    }

    TemporaryDirectory directory_;
    BinaryFacts facts_;
    Findings findings_;
};

TEST_F(ElfTabs, EachOutcome) {
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(processCase(test, true), test.lines);
        expectFacts(test);
        const bool onlyWarns = test.lines.empty() || test.lines == Lines{kMightFail};
        EXPECT_EQ(findings_.failures(), onlyWarns ? 0U : kViolation);
    }
}

TEST_F(ElfTabs, PackageWithoutAMainBinaryHasNoFinding) {
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.name);
        EXPECT_THAT(processCase(test, false), IsEmpty());
        expectFacts(test);
        EXPECT_EQ(findings_.failures(), 0U);
    }
}

TEST_F(ElfTabs, FileThatIsNotThereHasNoSymbols) {
    EXPECT_THAT(process(directory_ / "missing", false), IsEmpty());
    EXPECT_THAT(process(directory_ / "missing"), ElementsAre(kNotLinked, kMustExport));
}

TEST_F(ElfTabs, WhatWasFoundOnceIsNotForgotten) {
    facts_.mainSymbol = facts_.mainExport = true;
    EXPECT_THAT(process(directory_ / "missing"), IsEmpty());
    EXPECT_TRUE(facts_.mainSymbol && facts_.mainExport);
    EXPECT_FALSE(facts_.booster);
}

TEST_F(ElfTabs, RealPrograms) {
    struct Program {
        const char* name;
        const char* source;
        Lines flags;
        Lines lines;
    };
    const char* const plain = "int main() { return 0; }\n";
    const char* const exported =
        "__attribute__((visibility(\"default\"))) int main() { return 0; }\n";
    const Program programs[] = {
        {"whole symbol table", plain, {}, {}},
        {"stripped", plain, {"-s"}, {kMightFail}},
        {"stripped, exported by the linker", plain, {"-s", "-rdynamic"}, {}},
        {"stripped, visible but not exported", exported, {"-s"}, {kMightFail}},
        {"stripped, hidden but exported by the linker",
         plain,
         {"-s", "-rdynamic", "-fvisibility=hidden"},
         {kMightFail}},
        {"shared object", exported, {"-s", "-shared", "-fPIC"}, {kNotLinked}},
    };
    for (const Program& program : programs) {
        SCOPED_TRACE(program.name);
        facts_ = BinaryFacts();
        EXPECT_EQ(process(compileElf(directory_, "program", program.source, program.flags)),
                  program.lines);
    }
}

}  // namespace
}  // namespace pkgvet
