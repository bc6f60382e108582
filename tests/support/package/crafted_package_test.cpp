// The packages written by hand, held against rpm and against packages of rpmbuild.
#include "tests/support/package/crafted_package.h"

#include <gtest/gtest.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>

#include "tests/support/package/package_builder.h"
#include "tests/support/package/rpm_install.h"

namespace {

const std::string kData = "/usr/share/org.example.crafted";

CraftedPackage crafted() {
    CraftedPackage package("org.example.crafted");
    package.file(packedFile("/usr/bin/org.example.crafted", "#!/bin/sh\n", 0755));
    package.file(packedDirectory(kData)).file(packedFile(kData + "/empty", ""));
    package.file(packedFile(kData + "/text", "text\n", 0640));
    package.file(packedLink(kData + "/link", "text")).file(packedDirectory(kData + "/z", 0700));
    return package;
}

PackageBuilder built() {
    PackageBuilder package("org.example.crafted");
    package.file("/usr/bin/org.example.crafted", "#!/bin/sh\n", "0755").directory(kData);
    package.file(kData + "/empty", "").file(kData + "/text", "text\n", "0640");
    package.link(kData + "/link", "text").directory(kData + "/z", "0700");
    return package;
}

std::string queried(const std::string& package, const std::string& format) {
    std::string output;
    runProgram({"rpm", "-qp", "--nosignature", "--qf", format, package}, &output);
    return output;
}

// rpm's own words on digests and sizes.
std::string checked(const std::string& package) {
    std::string output;
    runProgram({"rpm", "-Kv", "--nosignature", package}, &output);
    return output;
}

std::string unpacked(const std::string& package) {
    const TemporaryDirectory tree;
    std::string output;
    runProgram({"sh", "-c", "cd \"$1\" && rpm2cpio \"$2\" | cpio --quiet -idm", "sh",
                tree.path().string(), package},
               &output);
    return output + treeBelow(tree.path());
}

std::string installed(const std::string& package) {
    const TemporaryDirectory root;
    const Installation result = install(package, root);
    EXPECT_EQ(result.status, 0) << result.output;
    return treeBelow(root.path());
}

class CraftedPackageTest : public testing::Test {
protected:
    TemporaryDirectory directory_;
};

}  // namespace

TEST_F(CraftedPackageTest, SaysOfItsFilesWhatOneOfRpmbuildSays) {
    const char* format =
        "[%{FILENAMES} %{FILEMODES:octal} %{FILESIZES} %{FILEDIGESTS} %{FILELINKTOS} %{FILEFLAGS} "
        "%{FILERDEVS} %{FILEVERIFYFLAGS} %{FILENLINKS} %{FILEUSERNAME} %{FILEGROUPNAME}\n]"
        "[%{REQUIRENAME} %{REQUIREFLAGS} %{REQUIREVERSION}\n]"
        "[%{PROVIDENAME} %{PROVIDEFLAGS} %{PROVIDEVERSION}\n]"
        "%{NAME} %{VERSION} %{RELEASE} %{SUMMARY} %{DESCRIPTION} %{LICENSE} %{GROUP} %{OS} %{ARCH} "
        "%{PAYLOADFORMAT} %{PAYLOADCOMPRESSOR} %{SOURCERPM} %{FILEDIGESTALGO} %{ENCODING} %{SIZE}";
    const std::string expected = queried(built().build(directory_), format);
    EXPECT_NE(expected.find("/usr/bin/org.example.crafted 100755"), std::string::npos) << expected;
    EXPECT_EQ(queried(crafted().write(directory_), format), expected);
}

TEST_F(CraftedPackageTest, UnpacksToTheTreeOfOneOfRpmbuild) {
    EXPECT_EQ(unpacked(crafted().write(directory_)), unpacked(built().build(directory_)));
}

TEST_F(CraftedPackageTest, InstallsAsOneOfRpmbuildDoes) {
    if (!canInstall()) {
        GTEST_SKIP() << "rpm cannot install into a directory here";
    }
    EXPECT_EQ(installed(crafted().write(directory_)), installed(built().build(directory_)));
}

TEST_F(CraftedPackageTest, HasTheDigestsOfOneOfRpmbuild) {
    const auto words = [](const std::string& output) {
        const std::size_t name = output.find(".rpm:\n");
        return name == std::string::npos ? std::string() : output.substr(name);
    };
    const std::string expected = words(checked(built().build(directory_)));
    EXPECT_NE(expected.find("Payload SHA256 digest: OK"), std::string::npos) << expected;
    EXPECT_EQ(words(checked(crafted().write(directory_))), expected);
}

TEST_F(CraftedPackageTest, InstallsInEveryCompression) {
    if (!canInstall()) {
        GTEST_SKIP() << "rpm cannot install into a directory here";
    }
    const std::string expected = installed(built().build(directory_));
    for (const char* compressor : {"", "gzip", "xz", "zstd", "bzip2", "lzma"}) {
        SCOPED_TRACE(compressor);
        const std::string package = crafted().compressor(compressor).write(directory_);
        EXPECT_EQ(checked(package).find("BAD"), std::string::npos);
        EXPECT_EQ(installed(package), expected);
    }
}

TEST_F(CraftedPackageTest, InstallsWithEveryDigest) {
    if (!canInstall()) {
        GTEST_SKIP() << "rpm cannot install into a directory here";
    }
    const std::string expected = installed(built().build(directory_));
    for (const int algorithm : {PGPHASHALGO_MD5, PGPHASHALGO_SHA1, PGPHASHALGO_SHA256,
                                PGPHASHALGO_SHA384, PGPHASHALGO_SHA512}) {
        SCOPED_TRACE(algorithm);
        EXPECT_EQ(installed(crafted().digestAlgorithm(algorithm).write(directory_)), expected);
    }
}

TEST_F(CraftedPackageTest, InstallsHardLinksGhostsAndDevices) {
    if (!canInstall()) {
        GTEST_SKIP() << "rpm cannot install into a directory here";
    }
    CraftedPackage package("org.example.links");
    package.file({.path = "/a", .data = "one", .inode = 9})
        .file({.path = "/b", .data = "one", .inode = 9});
    package.file({.path = "/ghost", .flags = RPMFILE_GHOST});
    package.file({.path = "/null", .mode = 020666, .device = 0x103});
    const std::string tree = installed(package.write(directory_));
    EXPECT_EQ(tree, "100644 /a 3\n100644 /b 3\n020666 /null\n");
}

// The digests of the whole are right, and yet the files are not what the header says.
TEST_F(CraftedPackageTest, LiesInOnePlaceOnly) {
    CraftedPackage package = crafted();
    package.pack(packedFile(kData + "/text", "lies\n", 0640));
    const std::string path = package.write(directory_);
    EXPECT_EQ(checked(path).find("BAD"), std::string::npos);
    EXPECT_NE(unpacked(path), "");
    if (canInstall()) {
        const TemporaryDirectory root;
        const Installation result = install(path, root);
        EXPECT_NE(result.status, 0);
        EXPECT_NE(result.output.find("Digest mismatch"), std::string::npos) << result.output;
    }
}

TEST_F(CraftedPackageTest, WrongDigestsAreSeenByRpm) {
    struct Case {
        const char* name;
        CraftedPackage package;
    };
    const Case cases[] = {
        {"Payload SHA256 digest: BAD",
         crafted().alterPayloadLate([](std::string* payload) { payload->back() ^= 1; })},
        {"Header SHA256 digest: BAD",
         crafted().setSignature(RPMSIGTAG_SHA256, rpmText(std::string(64, '0')))},
        {"Header SHA1 digest: BAD",
         crafted().setSignature(RPMSIGTAG_SHA1, rpmText(std::string(40, '0')))},
        {"MD5 digest: BAD", crafted().setSignature(RPMSIGTAG_MD5, rpmBinary(std::string(16, '0')))},
    };
    for (const Case& row : cases) {
        const std::string output = checked(row.package.write(directory_));
        EXPECT_NE(output.find(row.name), std::string::npos) << output;
    }
}

TEST_F(CraftedPackageTest, TagsMayBeOfEveryTypeAndMissing) {
    CraftedPackage package = crafted();
    package.set(RPMTAG_VENDOR, rpmText("pelzo")).set(RPMTAG_LONGSIZE, rpmInt64({1ULL << 40U}));
    package.set(9999, rpmBinary("bytes")).remove(RPMTAG_LICENSE);
    const std::string path = package.write(directory_);
    EXPECT_EQ(checked(path).find("BAD"), std::string::npos);
    EXPECT_EQ(queried(path, "%{VENDOR} %{LONGSIZE} %{LICENSE}"), "pelzo 1099511627776 (none)");
}

TEST_F(CraftedPackageTest, ATagOfTheWrongTypeIsSeenByRpm) {
    const std::string output =
        checked(crafted().set(RPMTAG_VENDOR, rpmInt32({7})).write(directory_));
    EXPECT_NE(output.find("BAD, tag 1011 type 4"), std::string::npos) << output;
}
