// The rules on binaries in their order, on packages with real programs.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/support/captured_log.h"
#include "tests/support/compiled_elf.h"
#include "tests/support/package_builder.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

// What the findings on binaries have in them, and no others.
const char* const kTexts[] = {"] Library ", "] Executable ",    "[rpath] ",
                              "[binary] ",  "[libtessaraapp] ", "arch-specific"};

bool isAboutBinaries(const std::string& line) {
    return std::any_of(std::begin(kTexts), std::end(kTexts),
                       [&line](const char* text) { return line.find(text) != std::string::npos; });
}

constexpr const char* kLibrary = "int answer() { return 42; }\n";
constexpr const char* kProgram = "int answer();\nint main() { return answer(); }\n";

class ElfRules : public testing::Test {
protected:
    ElfRules() {
        tree_.regular().libraries.allowed = {"libc\\.so\\.6",
                                             "lib(stdc\\+\\+|m|gcc_s|[atu]+san)\\.so\\.[0-9]+"};
    }

    std::string library() {
        return compileElf(directory_, "libown.so.1", kLibrary,
                          {"-shared", "-fPIC", "-nostdlib", "-Wl,-soname,libown.so.1"});
    }

    std::string program(const std::string& rpath) {
        return compileElf(directory_, "program", kProgram,
                          {library(), "-rdynamic", "-Wl,--disable-new-dtags,-rpath," + rpath});
    }

    // The lines about binaries for the package; what the rules left behind goes to record.
    Lines validate(const PackageBuilder& package, ContentValidatorPrivate* record) {
        const std::string path = package.build(directory_);
        const CapturedDescriptor cpio;  // tells how many blocks it has read
        ContentValidator validator(path);
        CapturedLog log;
        validator.validateContent(load(tree_), RpmMeta(path.c_str()));
        *record = recordOf(validator);
        Lines lines = log.lines();
        std::erase_if(lines, [](const std::string& line) { return !isAboutBinaries(line); });
        return lines;
    }

    TemporaryDirectory directory_;
    RuleTree tree_;
};

TEST_F(ElfRules, GoodPackageHasNoFinding) {
    PackageBuilder package = PackageBuilder("org.example.app").native();
    package.copy("/usr/bin/org.example.app", program("/usr/share/org.example.app/lib"));
    package.copy("/usr/share/org.example.app/lib/libown.so.1", library());
    ContentValidatorPrivate record;
    EXPECT_THAT(validate(package, &record), IsEmpty());
    EXPECT_TRUE(record.binaryFacts.mainBinExec && record.binaryFacts.archSpecificContent &&
                record.binaryFacts.privateSharedObject);
    EXPECT_TRUE(record.binaryFacts.linksPrivateLibrary && record.binaryFacts.rpathExists &&
                record.binaryFacts.rpathStatus);
    EXPECT_TRUE(record.binaryFacts.mainSymbol && record.binaryFacts.mainExport &&
                record.binaryFacts.booster);
    EXPECT_FALSE(record.binaryFacts.launcherSpec || record.binaryFacts.launcherDesktop);
}

TEST_F(ElfRules, BadPackageHasItsFindingsInOrder) {
    PackageBuilder package("org.example.app");
    package.tag("Requires: libtessaraapp-launcher");
    package.copy("/usr/bin/helper", program("/opt/nowhere"));
    package.copy("/usr/bin/org.example.app", program("/opt/nowhere"));
    package.file("/usr/share/org.example.app/start.sh", "#!/bin/sh\n", "0755");
    ContentValidatorPrivate record;
    const std::string noarch =
        warningLine("[arch] RPMs containing arch-specific content should not be noarch");
    EXPECT_THAT(
        validate(package, &record),
        ElementsAre(noarch, noarch,
                    errorLine("[/usr/share/org.example.app/start.sh] Executable has a wrong format "
                              "or encoding"),
                    errorLine("[/usr/bin/helper] Executable is in wrong location"),
                    errorLine("[libown.so.1] Library is not allowed"),
                    errorLine("[rpath] This rpath in binary is not allowed"),
                    errorLine("[libtessaraapp] Invalid Requires: libtessaraapp-launcher")));
    EXPECT_EQ(record.failures & pkgvet::kViolation, pkgvet::kViolation);
    EXPECT_TRUE(record.binaryFacts.launcherDesktop);
}

// What one rule finds is what the next one builds on.
TEST_F(ElfRules, PrivateLibraryMakesARunPathMandatory) {
    PackageBuilder package = PackageBuilder("org.example.app").native();
    package.copy("/usr/bin/org.example.app",
                 compileElf(directory_, "program", kProgram, {library(), "-rdynamic"}));
    package.copy("/usr/share/org.example.app/lib/libown.so.1", library());
    ContentValidatorPrivate record;
    EXPECT_THAT(validate(package, &record),
                ElementsAre(warningLine("[rpath] The rpath in binary is empty"),
                            errorLine("[rpath] Rpath is missing where it is mandatory")));
}

TEST_F(ElfRules, PackageWithoutAProgramLacksItAndItsRunPath) {
    ContentValidatorPrivate record;
    EXPECT_THAT(validate(PackageBuilder("org.example.app"), &record),
                ElementsAre(errorLine("[binary] Main binary must be an executable"),
                            warningLine("[rpath] The rpath in binary is empty"),
                            errorLine("[binary] Main binary must exist, but it is not found")));
}

// Neither a program nor a run path, but the launcher.
TEST_F(ElfRules, QmlPackageLacksItsLauncherOnly) {
    PackageBuilder package("org.example.app");
    package.file("/usr/share/applications/org.example.app.desktop",
                 "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
                 "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n");
    ContentValidatorPrivate record;
    EXPECT_THAT(validate(package, &record),
                ElementsAre(errorLine(
                    "[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file")));
    EXPECT_TRUE(record.binaryFacts.launcherSpec);
    EXPECT_THAT(validate(package.tag("Requires: liblumbraapp-launcher"), &record), IsEmpty());
    EXPECT_FALSE(record.binaryFacts.launcherSpec);
}

}  // namespace
