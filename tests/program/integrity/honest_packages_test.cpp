// Packages that rpmbuild makes are what they seem, however odd.
#include <gtest/gtest.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>

#include <filesystem>
#include <functional>

#include "cli/catalogue/catalogue.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/program/judge_run.h"
#include "tests/support/program/judged_package.h"

namespace {

namespace fs = std::filesystem;

const std::string kName = "org.example.honest";
const std::string kData = "/usr/share/" + kName;
const std::string kRoot = "%{buildroot}" + kData;

std::vector<std::string> integrityIds() {
    std::vector<std::string> ids;
    for (const pkgvet::cli::Chapter& chapter : pkgvet::cli::chapters()) {
        for (const pkgvet::cli::Entry& entry : chapter.entries) {
            if (chapter.title == "Package integrity") {
                ids.emplace_back(entry.id);
            }
        }
    }
    return ids;
}

void expectIntact(const std::vector<std::string>& paths,
                  const std::vector<std::string>& options = {}) {
    const std::vector<JudgedPackage> packages = judgePackages(RuleTree(), paths, options);
    EXPECT_GE(packages.size(), paths.size());
    for (const JudgedPackage& package : packages) {
        EXPECT_TRUE(package.complete) << package.path << ": " << package.cause;
        EXPECT_TRUE(package.intact) << package.path << ": " << package.messages;
        for (const std::string& id : integrityIds()) {
            EXPECT_EQ(package.messages.find(id + ": "), std::string::npos) << package.messages;
        }
    }
}

PackageBuilder plain() {
    PackageBuilder package(kName);
    package.directory(kData).file(kData + "/text", "text\n").file(kData + "/empty", "");
    package.file(kData + "/program", "#!/bin/sh\n", "0755").link(kData + "/link", "text");
    package.directory(kData + "/directory", "0750");
    return package;
}

PackageBuilder links() {
    PackageBuilder package = plain();
    package.link(kData + "/absolute", "/etc/passwd").link(kData + "/dangling", "nowhere at all");
    package.link(kData + "/up", "../../bin");
    package.link(kData + "/odd", "a//b/./../c").link(kData + "/linked-directory", "directory");
    package.link(kData + "/long", std::string(200, 'x'));
    return package;
}

PackageBuilder hardLinks() {
    PackageBuilder package = plain();
    package.script("for i in 1 2 3; do ln " + kRoot + "/text " + kRoot + "/text$i; done\nln " +
                   kRoot + "/empty " + kRoot + "/empty2\nmkdir " + kRoot + "/other\nln " + kRoot +
                   "/text " + kRoot + "/other/text\nln -P " + kRoot + "/link " + kRoot + "/link2");
    package.listing(kData + "/text?").listing(kData + "/empty2").listing(kData + "/other");
    return package.listing(kData + "/link2");
}

// Where only some of a file's names are packed.
PackageBuilder someHardLinks() {
    PackageBuilder package = plain();
    package.script("ln " + kRoot + "/text " + kRoot + "/unpacked\nln " + kRoot + "/program " +
                   kRoot + "/program2\n%define _unpackaged_files_terminate_build 0");
    return package.listing("%attr(0755, root, root) " + kData + "/program2");
}

PackageBuilder sparse() {
    PackageBuilder package = plain();
    package.script("truncate -s 20M " + kRoot + "/holes\nprintf x >>" + kRoot + "/holes");
    return package.listing(kData + "/holes");
}

PackageBuilder flags() {
    PackageBuilder package = plain();
    package.script("for i in a b c d e f g h i j; do echo $i >" + kRoot + "/$i; done");
    package.script("mkdir " + kRoot + "/cache\necho license >LICENSE\necho read >README");
    package.listing("%config " + kData + "/a").listing("%config(noreplace) " + kData + "/b");
    package.listing("%config(missingok) " + kData + "/c").listing("%doc " + kData + "/d");
    package.listing("%license " + kData + "/e").listing("%readme " + kData + "/f");
    package.listing("%lang(de) " + kData + "/g").listing("%verify(not md5 size) " + kData + "/h");
    package.listing("%ghost " + kData + "/i").listing("%ghost %config " + kData + "/j");
    package.listing("%ghost %dir " + kData + "/cache").listing("%license LICENSE");
    return package.listing("%doc README")
        .listing("%artifact " + kData + "/j2")
        .script("echo x >" + kRoot + "/j2");
}

PackageBuilder modes() {
    PackageBuilder package = plain();
    for (const char* mode : {"0000", "0111", "0222", "0400", "0070", "0777"}) {
        package.file(kData + "/" + mode, mode, mode);
    }
    return package.directory(kData + "/listless", "0311").directory(kData + "/readable", "0700");
}

PackageBuilder names() {
    PackageBuilder package = plain();
    for (const char* name : {"with blank", "-dash", "quote'", "$(dollar)", "back`quote", "hash#",
                             "semi;colon", "ümläut", "\xe6\x97\xa5\xe6\x9c\xac", ".hidden",
                             "..twice", "dots...", "tilde~", "a=b,c:d", "TRAILER!!!", "plus+"}) {
        package.file(kData + "/" + name, name);
    }
    package.file(kData + "/" + std::string(255, 'n'), "long");
    std::string deep = kData;
    for (int i = 0; i < 100; ++i) {
        deep += "/deep";
    }
    return package.file(deep + "/file", "deep");
}

// Sorted by whole paths these are not sorted by directories.
PackageBuilder order() {
    PackageBuilder package = plain();
    for (const char* path : {"/a", "/a.b", "/a-b/x", "/a/b"}) {
        package.directory(kData + "/order" + path);
    }
    package.file(kData + "/order/a/b/c", "c").file(kData + "/order/a.b/c", "c");
    return package.file(kData + "/order/a0", "0");
}

PackageBuilder described() {
    PackageBuilder package = plain();
    for (const char* line : {"Epoch: 7",
                             "Vendor: pelzo",
                             "URL: https://example.org",
                             "Packager: me",
                             "Group: None",
                             "Distribution: d",
                             "BugURL: https://example.org/bugs",
                             "VCS: git",
                             "DistTag: x",
                             "ModularityLabel: m",
                             "Requires(post): a",
                             "Requires: (b or c)",
                             "Recommends: d",
                             "Suggests: e",
                             "Supplements: f",
                             "Enhances: g",
                             "Provides: h = 1",
                             "Obsoletes: i < 2",
                             "Conflicts: j",
                             "OrderWithRequires: k",
                             "Summary(de): Ein Paket"}) {
        package.tag(line);
    }
    return package.script("%changelog\n* Sun Nov 01 2026 A <a@example.org> - 1.0-1\n- First.");
}

PackageBuilder native(const TemporaryDirectory& directory) {
    PackageBuilder package = plain();
    package.tag("AutoReqProv: yes").native();
    return package.copy("/usr/bin/" + kName,
                        compileElf(directory, kName, "int main() { return 0; }", {}));
}

PackageBuilder without(const char* what) {
    PackageBuilder package(kName);
    if (what == std::string("files")) {
        return package;
    }
    return what == std::string("content") ? package.directory(kData) : package.ghost(kData);
}

class HonestPackages : public testing::Test {
protected:
    TemporaryDirectory directory_;
};

TEST_F(HonestPackages, OfEveryKindOfFile) {
    expectIntact({plain().build(directory_), links().build(directory_),
                  hardLinks().build(directory_), someHardLinks().build(directory_),
                  sparse().build(directory_), flags().build(directory_), names().build(directory_),
                  order().build(directory_)});
}

TEST_F(HonestPackages, OfEveryMode) {
    if (!availableSandbox().namespaces) {
        GTEST_SKIP() << "without namespaces a judge cannot look into every directory";
    }
    expectIntact({modes().build(directory_)});
}

TEST_F(HonestPackages, OfEveryKindOfHeader) {
    expectIntact({described().build(directory_), native(directory_).build(directory_),
                  without("files").build(directory_), without("content").build(directory_),
                  without("all but ghosts").build(directory_)});
}

TEST_F(HonestPackages, InEveryCompression) {
    std::vector<std::string> paths;
    for (const char* payload : {"w.ufdio", "w1.gzdio", "w9.gzdio", "w6.xzdio", "w2T2.xzdio",
                                "w3.zstdio", "w19T2.zstdio", "w9.bzdio", "w6.lzdio"}) {
        paths.push_back(
            plain().tag(std::string("%global _binary_payload ") + payload).build(directory_));
    }
    expectIntact(paths);
}

TEST_F(HonestPackages, WithEveryStrongDigest) {
    std::vector<std::string> paths;
    for (const char* algorithm : {"8", "9", "10"}) {
        paths.push_back(hardLinks()
                            .tag(std::string("%global _binary_filedigest_algorithm ") + algorithm)
                            .build(directory_));
    }
    expectIntact(paths);
}

TEST_F(HonestPackages, OfOneRecipeWithSubPackages) {
    PackageBuilder package = plain();
    package.tag("%define _build_name_fmt %%{NAME}.rpm");
    package.tag("%package extra\nSummary: More\n%description extra\nMore");
    package.script("echo extra >" + kRoot + "/extra\nln " + kRoot + "/text " + kRoot + "/text2");
    package.listing("%files extra").listing(kData + "/extra").listing(kData + "/text2");
    const fs::path unused = package.build(directory_);
    EXPECT_TRUE(fs::exists(unused.parent_path() / (kName + "-extra.rpm")));
    expectIntact({unused.parent_path()});
}

// As versions of rpm made them that put no "./" ahead of names.
TEST_F(HonestPackages, WithOldNamesInThePayload) {
    CraftedPackage package(kName);
    std::string archive;
    for (const PackedFile& file : {packedDirectory(kData), packedFile(kData + "/text", "text\n"),
                                   packedLink(kData + "/link", "text")}) {
        package.file(file);
        CpioEntry entry = cpioEntryOf(file);
        entry.name.erase(0, 2);
        archive += cpioEntry(entry);
    }
    expectIntact({package.archive(archive + cpioTrailer()).write(directory_)});
}

TEST_F(HonestPackages, MadeByHand) {
    CraftedPackage links = acceptedPackage();
    links.file({.path = kAcceptedData + "/a", .data = "one", .inode = 9});
    links.file({.path = kAcceptedData + "/b", .data = "one", .inode = 9});
    expectIntact({acceptedPackage().write(directory_), links.write(directory_)});
}

TEST_F(HonestPackages, WithAFileOfThreeGigabytes) {
    constexpr unsigned long long kNeeded = 8ULL << 30U;
    struct sysinfo memory {};
    sysinfo(&memory);
    struct statvfs disk {};
    statvfs(directory_.path().c_str(), &disk);
    if (1ULL * (memory.freeram + memory.bufferram) * memory.mem_unit < kNeeded ||
        1ULL * disk.f_bavail * disk.f_frsize < kNeeded) {
        GTEST_SKIP() << "there is not enough memory or disk space";
    }
    PackageBuilder package = plain();
    package.tag("%global _binary_payload w1.zstdio");
    package.script("truncate -s 3G " + kRoot + "/holes").listing(kData + "/holes");
    // On a machine that has much else to do.
    expectIntact({package.build(directory_)},
                 {"--max-unpacked", "4G", "--timeout", "1000", "--cpu-time", "1000"});
}

}  // namespace
