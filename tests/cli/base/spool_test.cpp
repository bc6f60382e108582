// Text that waits on disk.
#include "cli/base/spool.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using pkgvet::cli::Spool;

std::string contentOf(const Spool& spool) {
    std::string content;
    spool.read([&content](std::string_view piece) { content += piece; });
    return content;
}

TEST(Spool, GivesBackWhatItWasGiven) {
    Spool spool;
    EXPECT_EQ(contentOf(spool), "");
    std::string all;
    for (int i = 0; i < 3; ++i) {
        const std::string piece(100'001, static_cast<char>('a' + i));
        spool.write(piece);
        all += piece;
        EXPECT_TRUE(contentOf(spool) == all);
    }
    EXPECT_TRUE(contentOf(spool) == all);
}

}  // namespace
