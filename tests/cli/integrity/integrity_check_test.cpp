// All rules on integrity, on a package and what was unpacked of it.
#include "cli/integrity/integrity_check.h"

#include <gmock/gmock.h>
#include <rpm/rpmtag.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "pkgvet/content/content_validator.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Lines = std::vector<std::string>;

const std::string kPage = "/usr/share/org.example.app/main.qml";

class IntegrityCheckTest : public testing::Test {
protected:
    // As in judges, whatever mask the tests run under.
    void SetUp() override { umask(S_IWGRP | S_IWOTH); }

    // change is what happens to the tree before it is compared.
    Lines lines(
        const CraftedPackage& package, const std::function<void()>& change = [] {}) {
        const std::string path = package.write(directory_);
        std::filesystem::create_directory(root_);
        EXPECT_EQ(ContentValidator(std::string()).extractRpm(root_.c_str(), path.c_str()), 0);
        RpmSession rpm;
        const PackageHeader header(path, rpm.transactions());
        IntegrityCheck check(header, path, root_, false, &rpm);
        check.awaitVerification();
        change();
        check.compareTree();
        return linesOf(check.findings());
    }

    TemporaryDirectory directory_;
    const std::string root_ = directory_ / "root";
};

TEST_F(IntegrityCheckTest, HonestPackageHasNoFinding) {
    EXPECT_THAT(lines(honestPackage()), IsEmpty());
}

TEST_F(IntegrityCheckTest, DigestsComeBeforeHeaderAndTree) {
    CraftedPackage package = honestPackage();
    package.setSignature(RPMSIGTAG_SHA256, rpmText(std::string(64, '0')));
    package.set(RPMTAG_PREFIXES, rpmTexts({"/usr"}));
    const Lines found = lines(package, [this] { std::filesystem::remove(root_ + kPage); });
    ASSERT_THAT(found, SizeIs(3));
    EXPECT_THAT(found[0], testing::HasSubstr("digest"));
    EXPECT_THAT(found[1], testing::StartsWith("relocatable-package: "));
    EXPECT_THAT(found[2], testing::HasSubstr(kPage));
}

TEST_F(IntegrityCheckTest, FileThatChangedIsFoundOut) {
    EXPECT_THAT(
        lines(honestPackage(), [this] { std::ofstream(root_ + kPage) << "import QtQuick 2.1\n"; }),
        SizeIs(1));
}

TEST_F(IntegrityCheckTest, SourcePackageHasNoFurtherFinding) {
    CraftedPackage package = honestPackage();
    package.set(RPMTAG_SOURCEPACKAGE, rpmInt32({1})).set(RPMTAG_PREFIXES, rpmTexts({"/usr"}));
    EXPECT_THAT(lines(package), ElementsAre(testing::StartsWith("source-package: ")));
}

TEST_F(IntegrityCheckTest, WithoutATreeTheHeaderAloneIsLookedAt) {
    CraftedPackage package = honestPackage();
    package.set(RPMTAG_PREFIXES, rpmTexts({"/usr"}));
    const std::string path = package.write(directory_);
    RpmSession rpm;
    const PackageHeader header(path, rpm.transactions());
    IntegrityCheck check(header, path, root_, false, &rpm);
    check.awaitVerification();
    EXPECT_THAT(linesOf(check.findings()),
                ElementsAre(testing::StartsWith("relocatable-package: ")));
}

TEST_F(IntegrityCheckTest, PlacesAreLookedAtForEachProfile) {
    CraftedPackage package = honestPackage();
    package.file(packedFile("/opt/usr/share/org.example.app/x", "x"));
    const std::string path = package.write(directory_);
    RpmSession rpm;
    const PackageHeader header(path, rpm.transactions());
    IntegrityCheck check(header, path, root_, false, &rpm);
    check.awaitVerification();
    EXPECT_THAT(check.findingsOnPlaces({"org.example.app", "/usr/libexec/", {}}), SizeIs(1));
    EXPECT_THAT(check.findingsOnPlaces({"org.example.app", "/usr/libexec/", {"/opt/.*"}}),
                IsEmpty());
}

}  // namespace
