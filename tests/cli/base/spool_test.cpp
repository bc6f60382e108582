// Text that waits in memory, and on disk.
#include "cli/base/spool.h"

#include <gtest/gtest.h>
#include <unistd.h>

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

TEST(Spool, TakesMoreThanItKeepsInMemory) {
    Spool spool;
    std::string all;
    for (int i = 0; i < 5; ++i) {
        const std::string piece(2'000'003, static_cast<char>('a' + i));
        spool.write(piece);
        all += piece;
        EXPECT_TRUE(contentOf(spool) == all);
    }
}

TEST(Spool, GivesBackPartsOfIt) {
    for (const std::size_t size : {std::size_t{1'000}, std::size_t{5'000'000}}) {
        SCOPED_TRACE(size);
        Spool spool;
        spool.write(std::string(size, 'a'));
        spool.write("bcd");
        EXPECT_EQ(spool.size(), size + 3);
        EXPECT_EQ(spool.part(size - 1, 3), "abc");
        EXPECT_EQ(spool.part(size + 3, 0), "");
        EXPECT_TRUE(spool.part(0, size) == std::string(size, 'a'));
    }
}

TEST(Spool, GivesItsFileAway) {
    for (const std::size_t size : {std::size_t{3}, std::size_t{9'000'000}}) {
        SCOPED_TRACE(size);
        Spool spool;
        spool.write(std::string(size, 'a'));
        const pkgvet::Descriptor file = spool.takeFile();
        EXPECT_EQ(lseek(file.get(), 0, SEEK_CUR), 0);
        EXPECT_EQ(lseek(file.get(), 0, SEEK_END), static_cast<off_t>(size));
    }
}

}  // namespace
