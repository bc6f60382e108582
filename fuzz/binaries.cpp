// An ELF file through its reader and all rules on binaries.
#include <sys/stat.h>

#include <stdexcept>

#include "fuzz/fuzz_target.h"
#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/elf/read_elf.h"
#include "pkgvet/report/findings.h"
#include "tests/support/rules/rule_tree.h"

namespace {

const std::string kBinary = "/usr/bin/app";
constexpr std::size_t kMostSymbols = 10'000;

RuleTree rules() {
    RuleTree tree;
    tree.regular().libraries = {{R"(libc\.so\.6)", "libQt5.*"}, {"libold.*"}, {"libm.*"}};
    return tree;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    static const Configuration configuration = load(rules());
    static const TemporaryDirectory directory;
    const std::string name = "app";
    const std::string arch = "armv7hl";
    const std::string file = directory.write(kBinary.substr(1), input);
    const std::vector<std::string> paths = {kBinary, "/usr/share/app/lib/libown.so.1"};
    const std::vector<mode_t> modes = {S_IFREG | 0755, S_IFREG | 0644};
    BinaryFacts facts;
    Findings findings;
    checkExecutables({name, arch, paths, modes, directory.path(), false}, configuration, &facts,
                     &findings);
    // A name of less than three characters, which is on no list.
    tolerate<std::out_of_range>(
        [&] { checkLibraries(name, paths, file, configuration, &facts, &findings); });
    checkRpath(name, file, false, &facts, &findings);
    checkArch(arch, false, facts, &findings);
    processElfTabs(file, true, false, &facts, &findings);
    std::size_t count = 0;
    readElf(file, [&count](const SymbolVisit& symbol) { count = symbol.count; });
    // A reader keeps all names, of which a file can claim millions.
    if (count > kMostSymbols) {
        return;
    }
    const ElfReader reader(file.c_str());
    expect(reader.elfClass() != ElfClass::NotLoaded || reader.symbols().empty(),
           "a file that was not loaded has no symbols");
    expect(isRpathEmpty(reader) == reader.rpath().empty(), "the run path has one answer");
}
