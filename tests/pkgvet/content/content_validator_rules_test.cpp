// The rules as members: what each is given of the package and of what was found before.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/elf/elf_image.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kParameterFile =
    "/usr/share/org.example.app/managed-configuration/configuration.xml";

class Members : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory_ = new TemporaryDirectory;
        path_ = PackageBuilder(kPackage)
                    .file("/usr/share/org.example.app/home", "/home/defaultuser", "0644", "nobody")
                    .directory("/usr/share/org.example.app/empty")
                    .file("/usr/share/common/org.example/app/x", "")
                    .file(kParameterFile, "<")
                    .build(*directory_);
        meta_ = new RpmMeta(path_.c_str());
    }

    static void TearDownTestSuite() {
        delete meta_;
        delete directory_;
    }

    static const RpmMeta& meta() { return *meta_; }

    std::vector<std::string> linesOf(const std::function<void()>& rule) {
        const CapturedLog log;
        rule();
        return log.lines();
    }

    static inline TemporaryDirectory* directory_ = nullptr;
    static inline std::string path_;
    static inline RpmMeta* meta_ = nullptr;
    const Configuration rules_ = load(RuleTree());
};

TEST_F(Members, LookAtTheDirectoryThatTheyAreGiven) {
    ContentValidator validator{std::string()};
    const TemporaryDirectory root;
    root.write("usr/share/org.example.app/home", "/home/defaultuser");
    EXPECT_THAT(linesOf([&] { validator.checkSandboxing(meta(), root.path()); }),
                ElementsAre(errorLine("[/usr/share/org.example.app/home] Hardcoded path found")));
    EXPECT_THAT(linesOf([&] { validator.checkSandboxing(meta(), root / "missing"); }), IsEmpty());
}

TEST_F(Members, LookAtTheUnpackedPayloadOtherwise) {
    const CapturedDescriptor cpio;
    ContentValidator validator(path_);
    EXPECT_THAT(linesOf([&] { validator.checkEmptyDirectories(meta()); }),
                ElementsAre(warningLine("[/usr/share/org.example.app/empty] Empty directory (can "
                                        "be omitted during package installation)")));
    EXPECT_THAT(linesOf([&] { validator.checkConfigurationParameterFile(meta()); }),
                ElementsAre(errorLine(std::string("[") + kParameterFile +
                                      "] Configuration parameter file for managed configuration "
                                      "is invalid")));
}

TEST_F(Members, TellUsersFromGroups) {
    ContentValidator validator{std::string()};
    const TemporaryDirectory root;
    root.write("usr/share/org.example.app/home", "");
    EXPECT_THAT(
        linesOf([&] { validator.processPermissions(rules_, meta(), root.path()); }),
        testing::Contains(errorLine("[/usr/share/org.example.app/home] User owner should be root"))
            .Times(1));
    EXPECT_THAT(linesOf([&] { validator.processPermissions(rules_, meta(), root.path()); }),
                testing::Not(testing::Contains(testing::HasSubstr("Group owner"))));
}

TEST_F(Members, KnowTheNamesInTheSandboxSection) {
    ContentValidator validator{std::string()};
    const std::string line = errorLine(
        "[/usr/share/common/org.example/app/x] Installation not allowed in this location");
    const auto places = [&] {
        return linesOf([&] { validator.checkExcludedPaths(rules_, meta(), ""); });
    };
    EXPECT_THAT(places(), testing::Contains(line));
    const CapturedLog log;
    validator.processPinfold(rules_, meta(), desktopEntry(kGoodSection), "");
    EXPECT_THAT(places(), testing::Not(testing::Contains(line)));
}

TEST_F(Members, OnFieldsSayWhatTheRulesSay) {
    ContentValidator validator{std::string()};
    const DesktopEntry entry = desktopEntry("[G]\nF=a;z;\nC=blue\n");
    pkgvet::Findings findings;
    const auto expectSame = [&](const std::function<void()>& member,
                                const std::function<void()>& rule) {
        const std::vector<std::string> lines = linesOf(member);
        EXPECT_THAT(lines, testing::Not(IsEmpty()));
        EXPECT_EQ(lines, linesOf(rule));
    };
    expectSame(
        [&] { validator.validateDesktopEntryFieldStringValues("G", "F", {"a"}, entry); },
        [&] { pkgvet::validateDesktopEntryFieldStringValues("G", "F", {"a"}, entry, &findings); });
    expectSame(
        [&] {
            validator.validateDesktopEntryGroupStringFields("G", {{{"F"}, {"a"}}}, entry);
        },
        [&] {
            pkgvet::validateDesktopEntryGroupStringFields("G", {{{"F"}, {"a"}}}, entry, &findings);
        });
    expectSame([&] { validator.validateDesktopEntryFieldColorValue("G", "C", entry); },
               [&] { pkgvet::validateDesktopEntryFieldColorValue("G", "C", entry, &findings); });
    expectSame([&] { validator.validateDesktopEntryGroupColorFields("G", {"C"}, entry); },
               [&] { pkgvet::validateDesktopEntryGroupColorFields("G", {"C"}, entry, &findings); });
}

TEST_F(Members, TellAnEmptyRunPath) {
    const ContentValidator validator{std::string()};
    const TemporaryDirectory root;
    const std::string plain = elfImage("elf 64 little");
    const std::string linked =
        elfImage("elf 64 little\nsection strtab\nsection dynamic link=1\nrpath /usr/lib/x\n");
    EXPECT_TRUE(validator.isRpathEmpty(ElfReader(root.write("plain", plain).c_str())));
    EXPECT_FALSE(validator.isRpathEmpty(ElfReader(root.write("linked", linked).c_str())));
}

}  // namespace
