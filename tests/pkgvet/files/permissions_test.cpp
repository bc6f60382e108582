// Modes and owners of files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <stdexcept>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The files of a package, on disk and in its header.
class Permissions : public testing::Test {
protected:
    void file(const std::string& path, mode_t mode, const std::string& user = "root",
              const std::string& group = "root") {
        root_.write(path.substr(1), "");
        list(path, mode, user, group);
    }

    void directory(const std::string& path, mode_t mode, const std::string& user = "root",
                   const std::string& group = "root") {
        std::filesystem::create_directories(root_ / path.substr(1));
        list(path, mode, user, group);
    }

    RuleRun check(Profiles profile = Profiles::Regular, const std::string& packageName = "app") {
        const Configuration configuration = load(RuleTree(), profile);
        return runRule([&](pkgvet::Findings* findings) {
            pkgvet::processPermissions(packageName, paths_, pkgvet::readModes(root_.path(), paths_),
                                       users_, groups_, configuration, root_.path(), findings);
        });
    }

    TemporaryDirectory root_;
    std::vector<std::string> paths_;
    std::vector<std::string> users_;
    std::vector<std::string> groups_;

private:
    void list(const std::string& path, mode_t mode, const std::string& user,
              const std::string& group) {
        ASSERT_EQ(chmod((root_ / path.substr(1)).c_str(), mode), 0);
        paths_.push_back(path);
        users_.push_back(user);
        groups_.push_back(group);
    }
};

std::string executableLine(const std::string& path) {
    return errorLine("[" + path + "] File must not be executable");
}

TEST_F(Permissions, OrdinaryFilesDrawNoLine) {
    directory("/usr/share/app", 0755);
    file("/usr/bin/app", 0755);
    file("/usr/share/app/data", 0644);
    file("/usr/share/app/secret", 0400);
    directory("/usr/share/app/hidden", 0700);
    const RuleRun run = check();
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST_F(Permissions, ExecutableFilesHaveTheirPlaces) {
    for (const char* path :
         {"/usr/bin/app", "/usr/bin/app2", "/usr/share/app/lib/foo.so.1", "/usr/share/app/x.sox",
          "/usr/lib/3rdparty/app/x.so", "/usr/libexec/app/any", "/usr/lib/qt5/qml/other/x.so",
          "/usr/lib64/qt5/qml/x.so.5", "/usr/lib/connman/plugins-vpn/x.so",
          "/usr/lib64/connman/plugins-vpn/x.so", "/opt/extension/p11-kit-modules/app/x.so",
          "/opt/extension/qca-plugins/app/x.so", "/elsewhere/usr/bin/app"}) {
        file(path, 0755);
    }
    EXPECT_THAT(check().lines, IsEmpty());
}

TEST_F(Permissions, ExecutableFilesElsewhereAreErrors) {
    std::vector<std::string> expected;
    for (const char* path :
         {"/opt/extension/p11-kit-modules/other/x.so", "/opt/extension/qca-plugins/app.so",
          "/usr/bin/other", "/usr/lib/3rdparty/other/x.so", "/usr/lib/qt5/qml/x",
          "/usr/lib32/qt5/qml/x.so", "/usr/libexec/other/any", "/usr/share/app/run.sh"}) {
        file(path, 0755);
        expected.push_back(executableLine(path));
    }
    const RuleRun run = check();
    EXPECT_EQ(run.lines, expected);
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Permissions, OnlyTheOwnersExecuteBitCounts) {
    file("/usr/share/app/x", 0655);
    file("/usr/share/app/y", 0700);
    EXPECT_THAT(check().lines, ElementsAre(executableLine("/usr/share/app/y")));
}

TEST_F(Permissions, NameIsEscaped) {
    file("/usr/bin/axp", 0755);
    EXPECT_THAT(check(Profiles::Regular, "a.p").lines, ElementsAre(executableLine("/usr/bin/axp")));
}

TEST_F(Permissions, SpecialBitsRejectInAnyCase) {
    file("/usr/bin/app", 0755);
    for (const mode_t mode : {04755U, 02755U, 01755U}) {
        SCOPED_TRACE(mode);
        ASSERT_EQ(chmod((root_ / "usr/bin/app").c_str(), mode), 0);
        const RuleRun run = check();
        EXPECT_THAT(
            run.lines,
            ElementsAre(errorLine("[/usr/bin/app] Found setuid, setgid or sticky bit set")));
        EXPECT_EQ(run.failures, pkgvet::kGraveFinding);
    }
}

TEST_F(Permissions, SpecialBitsOfDirectoriesArePassedOver) {
    directory("/usr/share/app/a", 01777);
    directory("/usr/share/app/b", 02755);
    const RuleRun run = check();
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Group or World writable directory")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Permissions, NeitherGroupNorOthersMayWrite) {
    file("/usr/share/app/a", 0664);
    file("/usr/share/app/b", 0646);
    directory("/usr/share/app/c", 0775);
    const RuleRun run = check();
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Group or World writable file"),
                            errorLine("[/usr/share/app/b] Group or World writable file"),
                            errorLine("[/usr/share/app/c] Group or World writable directory")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Permissions, RuleSetCalledAuthOnlyWarnsOfWritableFiles) {
    file("/usr/share/app/a", 0664);
    directory("/usr/share/app/b", 0777);
    const RuleRun run = check(Profiles::Auth);
    EXPECT_THAT(run.lines,
                ElementsAre(warningLine("[/usr/share/app/a] Group or World writable file"),
                            warningLine("[/usr/share/app/b] Group or World writable directory")));
    EXPECT_EQ(run.failures, 0U);
    EXPECT_EQ(check(Profiles::Mdm).failures, pkgvet::kViolation);
}

// A fifo shares no bit with regular files and is neither a directory.
TEST_F(Permissions, FifosAreWritableFilesAndNothingElse) {
    paths_ = {"/fifo"};
    users_ = groups_ = {"root"};
    ASSERT_EQ(mkfifo((root_ / "fifo").c_str(), 0), 0);
    ASSERT_EQ(chmod((root_ / "fifo").c_str(), 07777), 0);
    EXPECT_THAT(check().lines, ElementsAre(errorLine("[/fifo] Group or World writable file")));
}

TEST_F(Permissions, EverythingBelongsToRoot) {
    file("/usr/share/app/a", 0644, "nobody", "nobody");
    file("/usr/share/app/b", 0644, "root", "users");
    directory("/usr/share/app/c", 0755, "nobody", "root");
    const RuleRun run = check();
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[/usr/share/app/a] User owner should be root"),
                                       errorLine("[/usr/share/app/a] Group owner should be root"),
                                       errorLine("[/usr/share/app/b] Group owner should be root"),
                                       errorLine("[/usr/share/app/c] User owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

TEST_F(Permissions, ShorterListOfOwnersThrows) {
    file("/usr/share/app/a", 0644);
    groups_.clear();
    EXPECT_THROW(check(), std::out_of_range);
    users_.clear();
    EXPECT_THROW(check(), std::out_of_range);
    paths_ = {"/missing"};
    EXPECT_NO_THROW(check()) << "its owners are not looked at";
}

TEST_F(Permissions, OneFileDrawsALineForEachFault) {
    file("/opt/x", 04777, "nobody", "nobody");
    const RuleRun run = check();
    EXPECT_THAT(run.lines, ElementsAre(errorLine("[/opt/x] Found setuid, setgid or sticky bit set"),
                                       executableLine("/opt/x"),
                                       errorLine("[/opt/x] Group or World writable file"),
                                       errorLine("[/opt/x] User owner should be root"),
                                       errorLine("[/opt/x] Group owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kGraveFinding | pkgvet::kViolation);
}

// The owners of the next file are its own all the same.
TEST_F(Permissions, FileOfTheHeaderAloneCannotBeRead) {
    file("/usr/share/app/a", 0644, "nobody", "nobody");
    std::filesystem::remove(root_ / "usr/share/app/a");
    file("/usr/share/app/b", 0644, "nobody", "root");
    const RuleRun run = check();
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/share/app/a] Failed to read file attributes"),
                            errorLine("[/usr/share/app/b] User owner should be root")));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
}

}  // namespace
