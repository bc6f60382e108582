// The rule on the symbols of the main binary.
#include <gmock/gmock.h>

#include "tests/support/captured_log.h"
#include "tests/support/compiled_elf.h"
#include "tests/support/elf_image.h"
#include "tests/support/validator_record.h"

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
    bool ostrandImport;
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
    Lines process(const std::string& path) {
        const CapturedLog log;
        validator_.processElfTabs(path);
        return log.lines();
    }

    std::string binary(const std::string& description) {
        return directory_.write(
            "binary", description.empty() ? "#!/bin/sh\nexec true\n" : elfImage(description));
    }

    void expectFlags(const Case& test) {
        EXPECT_EQ(validator_.mainSymbol(), test.mainSymbol);
        EXPECT_EQ(validator_.mainExport(), test.mainExport);
        EXPECT_EQ(validator_.booster(), test.booster);
    }

    ContentValidatorPrivate& record() { return recordOf(validator_); }

    TemporaryDirectory directory_;
    ContentValidator validator_{std::string()};
};

TEST_F(ElfTabs, EachOutcome) {
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.name);
        record() = ContentValidatorPrivate();
        record().fileFacts.unwantedBinExists = true;
        record().qmlFacts.ostrandImport = test.ostrandImport;
        EXPECT_EQ(process(binary(test.description)), test.lines);
        expectFlags(test);
        const bool onlyWarns = test.lines.empty() || test.lines == Lines{kMightFail};
        EXPECT_EQ(record().failures, onlyWarns ? 0U : pkgvet::kViolation);
    }
}

TEST_F(ElfTabs, PackageWithoutAMainBinaryHasNoFinding) {
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.name);
        record() = ContentValidatorPrivate();
        record().qmlFacts.ostrandImport = test.ostrandImport;
        EXPECT_THAT(process(binary(test.description)), IsEmpty());
        expectFlags(test);
        EXPECT_EQ(record().failures, 0U);
    }
}

TEST_F(ElfTabs, FileThatIsNotThereHasNoSymbols) {
    EXPECT_THAT(process(directory_ / "missing"), IsEmpty());
    record().fileFacts.unwantedBinExists = true;
    EXPECT_THAT(process(directory_ / "missing"), ElementsAre(kNotLinked, kMustExport));
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
        record() = ContentValidatorPrivate();
        record().fileFacts.unwantedBinExists = true;
        EXPECT_EQ(process(compileElf(directory_, "program", program.source, program.flags)),
                  program.lines);
    }
}

}  // namespace
