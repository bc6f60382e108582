// What C libraries write to standard error while a package is judged does not become a finding.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/package/package_builder.h"
#include "tests/support/package/png_image.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

constexpr const char* kIconDirectory = "/usr/share/icons/hicolor/";
constexpr const char* kSealwatchdFile = "/etc/sealwatchd/config.d/org.example.app.json";

// A package that is accepted: a QML application needs no binary.
PackageBuilder builder() {
    PackageBuilder package("org.example.app");
    package.tag("Requires: libtessaraapp-launcher")
        .file("/usr/share/applications/org.example.app.desktop",
              "[Desktop Entry]\nName=App\nType=Application\nIcon=org.example.app\n"
              "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n"
              "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n");
    return package;
}

class LibraryMessages : public testing::Test {
protected:
    ProgramResult check(const PackageBuilder& package, const std::vector<int>& iconSizes = {}) {
        RuleTree tree;
        tree.iconSizes = iconSizes;
        tree.regular().requireIcons = true;
        tree.regular().requires_.allowed = {"libtessaraapp-launcher"};
        const std::string rules = tree.write(directory_);
        std::filesystem::rename(package.build(directory_), path_);
        return runPkgvet({"check", "--validation", "on", "--rules", rules, path_});
    }

    TemporaryDirectory directory_;
    const std::string path_ = directory_ / "app.rpm";
    // What the report begins with.
    const std::string remark_ = path_ +
                                "  (regular)\n  Desktop file\n    info      qml-only-application  "
                                "[desktop] Application is a QML-only app\n";
};

TEST_F(LibraryMessages, DamagedIcons) {
    const std::string data = pngChunk("IDAT", "\x78\x9C");
    const std::string warnedOf =
        pngSignature() + pngHeader(86, 86) + pngChunk("gAMA", "short") + data;
    const std::string refused = pngSignature() + pngHeader(0, 108) + data;
    const std::string name = "/apps/org.example.app.png";
    const ProgramResult result = check(builder()
                                           .file(kIconDirectory + ("86x86" + name), warnedOf)
                                           .file(kIconDirectory + ("108x108" + name), refused),
                                       {86, 108});
    EXPECT_EQ(result.output, remark_ + "  Files\n    error     icon-missing  [" + kIconDirectory +
                                 "108x108" + name +
                                 "] Icon not found or file resolution is incorrect\n" + path_ +
                                 ": rejected: 1 error, 0 warnings\n"
                                 "  next: pkgvet explain icon-missing\n" +
                                 "1 package: 0 accepted, 1 rejected, 0 not judged\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(LibraryMessages, JsonOfAnotherShape) {
    const ProgramResult result = check(builder().file(kSealwatchdFile, "[]"));
    EXPECT_EQ(result.output, remark_ + path_ + ": accepted\n" +
                                 "1 package: 1 accepted, 0 rejected, 0 not judged\n");
    EXPECT_EQ(result.errors, "");
}

}  // namespace
