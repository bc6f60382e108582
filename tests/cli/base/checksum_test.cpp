// Checksums.
#include "cli/base/checksum.h"

#include <gtest/gtest.h>
#include <rpm/rpmpgp.h>

namespace {

using pkgvet::cli::Checksum;

TEST(Checksum, KnownSums) {
    struct Case {
        const char* name;
        std::string content;
        std::string sum;
    };
    const Case cases[] = {
        {"nothing", "", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"text", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"much", std::string(1000000, 'a'),
         "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        Checksum checksum;
        checksum.add(test.content);
        EXPECT_EQ(checksum.finish(), test.sum);
    }
}

TEST(Checksum, PiecesMakeNoDifference) {
    Checksum whole;
    whole.add("abcdef");
    Checksum pieces;
    for (const char* piece : {"a", "", "bcd", "ef"}) {
        pieces.add(piece);
    }
    EXPECT_EQ(pieces.finish(), whole.finish());
}

TEST(Checksum, OtherAlgorithmsHaveTheirNumbers) {
    Checksum md5(PGPHASHALGO_MD5);
    EXPECT_EQ(md5.finish(), "d41d8cd98f00b204e9800998ecf8427e");
    Checksum unknown(99);
    unknown.add("x");
    EXPECT_EQ(unknown.finish(), "");
}

TEST(Checksum, OneThatIsNotFinishedIsReleased) {
    Checksum checksum;
    checksum.add("abc");
}

}  // namespace
