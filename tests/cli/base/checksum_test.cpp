// Checksums.
#include "cli/base/checksum.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::cli::Sha256;

TEST(Sha256, KnownSums) {
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
        Sha256 checksum;
        checksum.add(test.content);
        EXPECT_EQ(checksum.finish(), test.sum);
    }
}

TEST(Sha256, PiecesMakeNoDifference) {
    Sha256 whole;
    whole.add("abcdef");
    Sha256 pieces;
    for (const char* piece : {"a", "", "bcd", "ef"}) {
        pieces.add(piece);
    }
    EXPECT_EQ(pieces.finish(), whole.finish());
}

TEST(Sha256, OneThatIsNotFinishedIsReleased) {
    Sha256 checksum;
    checksum.add("abc");
}

}  // namespace
