// The rules on binaries in their order, on packages with real programs.
#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

// What the findings on binaries have in them, and no others.
const char* const kTexts[] = {"] Library ", "] Executable ",    "[rpath] ",
                              "[binary] ",  "[libtessaraapp] ", "[arch] "};

bool isAboutBinaries(const std::string& line) {
    return std::any_of(std::begin(kTexts), std::end(kTexts),
                       [&line](const char* text) { return line.find(text) != std::string::npos; });
}

constexpr const char* kLibrary = "int answer() { return 42; }\n";
constexpr const char* kProgram = "int answer();\nint main() { return answer(); }\n";

// A launcher starts the application, which is written in QML alone.
PackageBuilder qmlPackage() {
    PackageBuilder package("org.example.app");
    package.file("/usr/share/applications/org.example.app.desktop",
                 "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
                 "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n");
    return package;
}

class BinaryPackage : public testing::Test {
protected:
    BinaryPackage() {
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

    // The lines about binaries for the package. What the rules found out stays in validator_, and
    // their verdict in isAccepted_.
    Lines validate(const PackageBuilder& package) {
        const std::string path = package.build(directory_);
        const CapturedDescriptor cpio;  // tells how many blocks it has read
        validator_ = std::make_unique<ContentValidator>(path);
        const CapturedLog log;
        isAccepted_ = validator_->validateContent(load(tree_), RpmMeta(path.c_str()));
        Lines lines = log.lines();
        std::erase_if(lines, [](const std::string& line) { return !isAboutBinaries(line); });
        return lines;
    }

    TemporaryDirectory directory_;
    RuleTree tree_;
    std::unique_ptr<ContentValidator> validator_;
    bool isAccepted_ = false;
};

TEST_F(BinaryPackage, GoodPackageHasNoFinding) {
    PackageBuilder package = PackageBuilder("org.example.app").native();
    package.copy("/usr/bin/org.example.app", program("/usr/share/org.example.app/lib"));
    package.copy("/usr/share/org.example.app/lib/libown.so.1", library());
    EXPECT_THAT(validate(package), IsEmpty());
    EXPECT_TRUE(validator_->mainBinExec());
    EXPECT_TRUE(validator_->rpathExists() && validator_->rpathStatus());
    EXPECT_TRUE(validator_->mainSymbol() && validator_->mainExport() && validator_->booster());
    EXPECT_FALSE(validator_->launcherSpec() || validator_->launcherDesktop());
}

TEST_F(BinaryPackage, BadPackageHasItsFindingsInOrder) {
    PackageBuilder package("org.example.app");
    package.tag("Requires: libtessaraapp-launcher");
    package.copy("/usr/bin/helper", program("/opt/nowhere"));
    package.copy("/usr/bin/org.example.app", program("/opt/nowhere"));
    package.file("/usr/share/org.example.app/start.sh", "#!/bin/sh\n", "0755");
    const std::string noarch =
        warningLine("[arch] RPMs containing arch-specific content should not be noarch");
    EXPECT_THAT(
        validate(package),
        ElementsAre(noarch, noarch,
                    errorLine("[/usr/share/org.example.app/start.sh] Executable has a wrong format "
                              "or encoding"),
                    errorLine("[/usr/bin/helper] Executable is in wrong location"),
                    errorLine("[libown.so.1] Library is not allowed"),
                    errorLine("[rpath] This rpath in binary is not allowed"),
                    errorLine("[libtessaraapp] Invalid Requires: libtessaraapp-launcher")));
    EXPECT_FALSE(isAccepted_);
    EXPECT_TRUE(validator_->launcherDesktop());
}

// What one rule finds is what the next one builds on.
TEST_F(BinaryPackage, PrivateLibraryMakesARunPathMandatory) {
    PackageBuilder package = PackageBuilder("org.example.app").native();
    package.copy("/usr/bin/org.example.app",
                 compileElf(directory_, "program", kProgram, {library(), "-rdynamic"}));
    package.copy("/usr/share/org.example.app/lib/libown.so.1", library());
    EXPECT_THAT(validate(package),
                ElementsAre(warningLine("[rpath] The rpath in binary is empty"),
                            errorLine("[rpath] Rpath is missing where it is mandatory")));
}

TEST_F(BinaryPackage, PackageWithoutAProgramLacksItAndItsRunPath) {
    EXPECT_THAT(validate(PackageBuilder("org.example.app")),
                ElementsAre(errorLine("[binary] Main binary must be an executable"),
                            warningLine("[rpath] The rpath in binary is empty"),
                            errorLine("[binary] Main binary must exist, but it is not found")));
}

// Neither a program nor a run path, but the launcher.
TEST_F(BinaryPackage, QmlPackageLacksItsLauncherOnly) {
    PackageBuilder package = qmlPackage();
    EXPECT_THAT(validate(package),
                ElementsAre(errorLine(
                    "[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file")));
    EXPECT_TRUE(validator_->launcherSpec());
    EXPECT_THAT(validate(package.tag("Requires: liblumbraapp-launcher")), IsEmpty());
    EXPECT_FALSE(validator_->launcherSpec());
}

// Machine code, even in a library that nothing links, is a reason not to be noarch.
TEST_F(BinaryPackage, QmlPackageForOneArchitectureNeedsAReason) {
    PackageBuilder package = qmlPackage().native().tag("Requires: libtessaraapp-launcher");
    EXPECT_THAT(validate(package),
                ElementsAre(warningLine("[arch] QML-only RPMs should be noarch")));
    package.copy("/usr/share/org.example.app/lib/libown.so.1", library());
    EXPECT_THAT(validate(package), IsEmpty());
}

// Only an application that imports the toolkit is sure to be started by the launcher.
TEST_F(BinaryPackage, ImportOfTheToolkitDemandsThatMainIsExported) {
    PackageBuilder package = PackageBuilder("org.example.app").native();
    package.copy("/usr/bin/org.example.app",
                 compileElf(directory_, "program", "int main() {}\n", {"-s"}));
    const std::string noRunPath = warningLine("[rpath] The rpath in binary is empty");
    EXPECT_THAT(validate(package),
                ElementsAre(noRunPath, warningLine("[binary] Binary does not export main() symbol "
                                                   "- booster might fail")));
    package.file("/usr/share/org.example.app/main.qml", "import Lumbra.Ostrand 1.0\n");
    EXPECT_THAT(validate(package),
                ElementsAre(noRunPath, errorLine("[binary] Binary must export main() symbol for "
                                                 "booster to work (Q_DECL_EXPORT)")));
}

}  // namespace
