// Names of packages that may be handed to a shell.
#include "cli/judge/safe_path.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace {

using pkgvet::cli::isShellSafe;
using pkgvet::cli::SafePath;

TEST(SafePath, OnlyHarmlessBytesAreSafe) {
    const std::string safe = "abcXYZ019/._+-~%=@,:";
    EXPECT_TRUE(isShellSafe(safe));
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool expected =
            (byte < 128 && std::isalnum(byte) != 0) || safe.find(c) != std::string::npos;
        EXPECT_EQ(isShellSafe(std::string(1, c)), expected) << byte;
    }
}

TEST(SafePath, SafeNameIsHandedOnAsItIs) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("package.rpm", "content");
    EXPECT_EQ(SafePath(file).path(), file);
}

TEST(SafePath, UnsafeNameBecomesACopyThatGoesWithTheObject) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a \"b$.rpm", "content");
    std::string copy;
    {
        const SafePath safe(file);
        copy = safe.path();
        EXPECT_TRUE(isShellSafe(copy));
        EXPECT_EQ(readFile(copy), "content");
    }
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(copy).parent_path()));
    EXPECT_EQ(readFile(file), "content");
}

TEST(SafePath, NameThatCannotBeCopiedThrows) {
    EXPECT_THROW(SafePath("/no such file"), std::system_error);
}

}  // namespace
