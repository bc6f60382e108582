// Packages that say one thing and do another are never called accepted.
#include "tests/support/hostile/lies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "cli/catalogue/catalogue.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/package/rpm_install.h"
#include "tests/support/program/judged_package.h"

namespace {

using Words = std::vector<std::string>;

std::set<std::string> integrityIds() {
    std::set<std::string> ids;
    for (const pkgvet::cli::Chapter& chapter : pkgvet::cli::chapters()) {
        for (const pkgvet::cli::Entry& entry : chapter.entries) {
            if (chapter.title == "Package integrity") {
                ids.emplace(entry.id);
            }
        }
    }
    return ids;
}

// Those of the program itself. What the library makes of a header that it cannot read is its own
// business.
Words ownFindings(const JudgedPackage& package) {
    const std::set<std::string> own = integrityIds();
    Words ids;
    std::copy_if(package.findings.begin(), package.findings.end(), std::back_inserter(ids),
                 [&own](const std::string& id) { return own.contains(id); });
    return ids;
}

Words writeAll(const std::vector<Lie>& lies, const TemporaryDirectory& directory) {
    Words paths;
    for (const Lie& lie : lies) {
        CraftedPackage package = acceptedPackage();
        lie.tell(&package);
        paths.push_back(package.write(directory));
    }
    return paths;
}

void expectFoundOut(const std::vector<Lie>& lies) {
    const TemporaryDirectory directory;
    const std::vector<JudgedPackage> packages =
        judgePackages(acceptingRules(), writeAll(lies, directory));
    ASSERT_EQ(packages.size(), lies.size());
    for (std::size_t i = 0; i < lies.size(); ++i) {
        SCOPED_TRACE(lies[i].name);
        // What cpio cannot unpack is not judged.
        EXPECT_EQ(packages[i].cause.empty(), !lies[i].findings.empty()) << packages[i].cause;
        EXPECT_EQ(ownFindings(packages[i]), lies[i].findings) << packages[i].messages;
        EXPECT_FALSE(packages[i].intact);
        EXPECT_FALSE(packages[i].passes);
    }
}

void expectInstalled(const std::vector<Lie>& lies) {
    if (!canInstall()) {
        GTEST_SKIP() << "rpm cannot install into a directory here";
    }
    const TemporaryDirectory directory;
    const Words paths = writeAll(lies, directory);
    for (std::size_t i = 0; i < lies.size(); ++i) {
        if (!lies[i].installed.empty()) {
            SCOPED_TRACE(lies[i].name);
            const TemporaryDirectory root;
            const Installation installation = install(paths[i], root);
            EXPECT_EQ(installation.status, 0) << installation.output;
            const std::string tree = treeBelow(root.path());
            EXPECT_NE(tree.find(lies[i].installed + "\n"), std::string::npos) << tree;
        }
    }
}

}  // namespace

TEST(Lies, WithoutOneThePackageIsAccepted) {
    const TemporaryDirectory directory;
    const auto packages = judgePackages(acceptingRules(), {acceptedPackage().write(directory)});
    ASSERT_EQ(packages.size(), 1U);
    EXPECT_TRUE(packages[0].passes) << packages[0].cause;
    EXPECT_EQ(ownFindings(packages[0]), Words()) << packages[0].messages;
}

TEST(Lies, OfTheHeader) {
    expectFoundOut(liesOfTheHeader());
}

TEST(Lies, InTags) {
    expectFoundOut(liesInTags());
}

TEST(Lies, AboutFiles) {
    expectFoundOut(liesAboutFiles());
}

TEST(Lies, OfTheArchive) {
    expectFoundOut(liesOfTheArchive());
}

TEST(Lies, InDigests) {
    expectFoundOut(liesInDigests());
}

// No package draws the first two: the guard refuses devices, and librpm has always said what it
// cannot verify. The others take signed packages.
TEST(Lies, EachFindingIsDrawnBySomePackage) {
    std::set<std::string> drawn = {"payload-device-differs", "package-not-verified",
                                   "package-not-signed", "signature-not-checked",
                                   "signature-not-good"};
    for (const Lie& lie : allLies()) {
        drawn.insert(lie.findings.begin(), lie.findings.end());
    }
    EXPECT_EQ(drawn, integrityIds());
}

// Where rpm does not refuse the package, this is what would have come to the device.
TEST(Lies, OfTheHeaderAreInstalled) {
    expectInstalled(liesOfTheHeader());
}

TEST(Lies, AboutFilesAreInstalled) {
    expectInstalled(liesAboutFiles());
}

TEST(Lies, OfTheArchiveAreInstalled) {
    expectInstalled(liesOfTheArchive());
}
