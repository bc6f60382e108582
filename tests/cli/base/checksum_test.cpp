// Checksums of files.
#include "cli/base/checksum.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/temporary_directory.h"

namespace {

using pkgvet::cli::sha256Of;

TEST(Sha256, KnownSums) {
    struct Case {
        const char* name;
        std::string content;
        std::string sum;
    };
    const Case cases[] = {
        {"nothing", "", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"text", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"more than a piece", std::string(1000000, 'a'),
         "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(sha256Of(directory.write("file", test.content)), test.sum);
    }
}

TEST(Sha256, FileThatCannotBeReadHasNone) {
    const TemporaryDirectory directory;
    EXPECT_EQ(sha256Of(directory / "missing"), "");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(sha256Of(directory.path()), "");
    EXPECT_EQ(errno, EISDIR);
}

}  // namespace
