// Modes and owners of files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "pkgvet/rules/configuration.h"
#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RuleRun check(const PackageBuilder& builder, Profiles profile = Profiles::Regular) {
    const UnpackedPackage package(builder);
    const Configuration configuration = load(RuleTree(), profile);
    ContentValidator validator = validatorOfNothing();
    return runRule(validator, [&] {
        validator.processPermissions(configuration, package.meta(), package.root());
    });
}

std::string executableLine(const std::string& path) {
    return errorLine("[" + path + "] File must not be executable");
}

TEST(Permissions, OrdinaryFilesDrawNoLine) {
    const RuleRun run = check(PackageBuilder("app")
                                  .directory("/usr/share/app")
                                  .file("/usr/bin/app", "", "0755")
                                  .file("/usr/share/app/data", "", "0644")
                                  .file("/usr/share/app/secret", "", "0400")
                                  .directory("/usr/share/app/hidden", "0700"));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST(Permissions, ExecutableFilesHaveTheirPlaces) {
    PackageBuilder builder("app");
    for (const char* path :
         {"/usr/bin/app", "/usr/bin/app2", "/usr/share/app/lib/foo.so.1", "/usr/share/app/x.sox",
          "/usr/lib/3rdparty/app/x.so", "/usr/libexec/app/any", "/usr/lib/qt5/qml/other/x.so",
          "/usr/lib64/qt5/qml/x.so.5", "/usr/lib/connman/plugins-vpn/x.so",
          "/usr/lib64/connman/plugins-vpn/x.so", "/opt/extension/p11-kit-modules/app/x.so",
          "/opt/extension/qca-plugins/app/x.so", "/elsewhere/usr/bin/app"}) {
        builder.file(path, "", "0755");
    }
    EXPECT_THAT(check(builder).lines, IsEmpty());
}

TEST(Permissions, ExecutableFilesElsewhereAreErrors) {
    const std::vector<std::string> paths = {"/opt/extension/p11-kit-modules/other/x.so",
                                            "/opt/extension/qca-plugins/app.so",
                                            "/usr/bin/other",
                                            "/usr/lib/3rdparty/other/x.so",
                                            "/usr/lib/qt5/qml/x",
                                            "/usr/lib32/qt5/qml/x.so",
                                            "/usr/libexec/other/any",
                                            "/usr/share/app/run.sh"};
    PackageBuilder builder("app");
    std::vector<std::string> expected;
    for (const std::string& path : paths) {
        builder.file(path, "", "0755");
        expected.push_back(executableLine(path));
    }
    const RuleRun run = check(builder);
    EXPECT_EQ(run.lines, expected);
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Permissions, OnlyTheOwnersExecuteBitCounts) {
    EXPECT_THAT(check(PackageBuilder("app").file("/usr/share/app/x", "", "0655")).lines, IsEmpty());
    EXPECT_THAT(check(PackageBuilder("app").file("/usr/share/app/x", "", "0700")).lines,
                ElementsAre(executableLine("/usr/share/app/x")));
}

TEST(Permissions, NameIsEscaped) {
    EXPECT_THAT(check(PackageBuilder("a.p").file("/usr/bin/axp", "", "0755")).lines,
                ElementsAre(executableLine("/usr/bin/axp")));
}

TEST(Permissions, SpecialBitsRejectInAnyCase) {
    for (const char* mode : {"4755", "2755", "1755"}) {
        SCOPED_TRACE(mode);
        const RuleRun run = check(PackageBuilder("app").file("/usr/bin/app", "", mode));
        EXPECT_THAT(
            run.lines,
            ElementsAre(errorLine("[/usr/bin/app] Found setuid, setgid or sticky bit set")));
        EXPECT_EQ(run.failures, pkgvet::kGraveFinding);
    }
}

TEST(Permissions, SpecialBitsOfDirectoriesArePassedOver) {
    const RuleRun run = check(PackageBuilder("app")
                                  .directory("/usr/share/app/a", "1777")
                                  .directory("/usr/share/app/b", "2755"));
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Group or World writable directory")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Permissions, NeitherGroupNorOthersMayWrite) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file("/usr/share/app/a", "", "0664")
                                  .file("/usr/share/app/b", "", "0646")
                                  .directory("/usr/share/app/c", "0775"));
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Group or World writable file"),
                            errorLine("[/usr/share/app/b] Group or World writable file"),
                            errorLine("[/usr/share/app/c] Group or World writable directory")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Permissions, RuleSetCalledAuthOnlyWarnsOfWritableFiles) {
    const PackageBuilder builder = PackageBuilder("app")
                                       .file("/usr/share/app/a", "", "0664")
                                       .directory("/usr/share/app/b", "0777");
    const RuleRun run = check(builder, Profiles::Auth);
    EXPECT_THAT(run.lines,
                ElementsAre(warningLine("[/usr/share/app/a] Group or World writable file"),
                            warningLine("[/usr/share/app/b] Group or World writable directory")));
    EXPECT_EQ(run.failures, 0U);
    EXPECT_EQ(check(builder, Profiles::Mdm).failures, pkgvet::kViolation);
}

TEST(Permissions, EverythingBelongsToRoot) {
    const RuleRun run = check(PackageBuilder("app")
                                  .file("/usr/share/app/a", "", "0644", "nobody", "nobody")
                                  .file("/usr/share/app/b", "", "0644", "root", "users")
                                  .directory("/usr/share/app/c", "0755", "nobody", "root"));
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[/usr/share/app/a] User owner should be root"),
                                       errorLine("[/usr/share/app/a] Group owner should be root"),
                                       errorLine("[/usr/share/app/b] Group owner should be root"),
                                       errorLine("[/usr/share/app/c] User owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST(Permissions, OneFileDrawsALineForEachFault) {
    const RuleRun run = check(PackageBuilder("app").file("/opt/x", "", "4777", "nobody", "nobody"));
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[/opt/x] Found setuid, setgid or sticky bit set"),
                                       executableLine("/opt/x"),
                                       errorLine("[/opt/x] Group or World writable file"),
                                       errorLine("[/opt/x] User owner should be root"),
                                       errorLine("[/opt/x] Group owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kGraveFinding | pkgvet::kViolation);
}

TEST(Permissions, FileOfTheHeaderAloneCannotBeRead) {
    const RuleRun run = check(PackageBuilder("app")
                                  .ghost("/usr/share/app/a")
                                  .file("/usr/share/app/b", "", "0644", "nobody", "root"));
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Failed to read file attributes"),
                            errorLine("[/usr/share/app/b] User owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

}  // namespace
