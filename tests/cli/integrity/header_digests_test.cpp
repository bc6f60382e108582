// What binds files to the header.
#include <gmock/gmock.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <sys/stat.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

HeaderFiles filesWith(int algorithm) {
    HeaderFiles list;
    list.digestAlgorithm = algorithm;
    list.files = {headerFile("/a")};
    list.files[0].digest = "abc";
    return list;
}

std::vector<std::string> linesOfDigests(const HeaderFiles& list, bool isPayloadBound) {
    IntegrityFindings findings;
    checkFileDigests(list, isPayloadBound, &findings);
    return linesOf(findings.take());
}

TEST(HeaderDigests, StrongOnesBindFiles) {
    for (const int algorithm : {PGPHASHALGO_SHA256, PGPHASHALGO_SHA384, PGPHASHALGO_SHA512}) {
        EXPECT_THAT(linesOfDigests(filesWith(algorithm), false), IsEmpty());
    }
}

TEST(HeaderDigests, WeakOnesAreAFindingUnlessThePayloadIsBound) {
    struct Case {
        int algorithm;
        const char* line;
    };
    const std::string begin = "file-digests-weak: Files are bound by a digest that is too weak: ";
    for (const Case& test : {Case{PGPHASHALGO_MD5, "MD5"}, Case{PGPHASHALGO_SHA1, "SHA1"},
                             Case{PGPHASHALGO_SHA224, "SHA224"}, Case{99, "Unknown hash algorithm"},
                             Case{1 << 20, "Unknown hash algorithm"}}) {
        EXPECT_THAT(linesOfDigests(filesWith(test.algorithm), false),
                    ElementsAre(begin + test.line));
        EXPECT_THAT(linesOfDigests(filesWith(test.algorithm), true), IsEmpty());
    }
}

TEST(HeaderDigests, EachFileThatIsInstalledHasOne) {
    HeaderFiles list = filesWith(PGPHASHALGO_SHA256);
    list.files.push_back(headerFile("/b"));
    list.files.push_back(headerFile("/c", S_IFDIR | 0755));
    list.files.push_back(headerFile("/d", S_IFLNK | 0777));
    list.files.push_back(headerFile("/e"));
    list.files.back().flags = RPMFILE_GHOST;
    EXPECT_THAT(linesOfDigests(list, true),
                ElementsAre("file-digest-missing: [/b] Header has no digest of this file"));
}

}  // namespace
