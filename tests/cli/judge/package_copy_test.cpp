// Copies of packages and their checksums.
#include "cli/judge/package_copy.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "cli/base/checksum.h"
#include "pkgvet/base/descriptor.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::Descriptor;
using pkgvet::cli::NotJudged;
using pkgvet::cli::PackageCopy;

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string sumOf(const std::string& content) {
    pkgvet::cli::Checksum sum;
    sum.add(content);
    return sum.finish();
}

Descriptor opened(const std::string& path) {
    return Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

// What it says of a copy that cannot be made.
std::string complaint(const Descriptor& package, const std::string& path) {
    std::string sum;
    try {
        PackageCopy(package.get(), path, &sum);
    } catch (const NotJudged& end) {
        return end.cause.text;
    }
    return std::string();
}

class PackageCopyTest : public testing::Test {
protected:
    TemporaryDirectory directory_;
    const std::string copy_ = directory_ / "copy";
};

TEST_F(PackageCopyTest, HoldsTheSameAndIsSummedUp) {
    struct Case {
        const char* name;
        std::string content;
    };
    const Case cases[] = {{"nothing", ""},
                          {"little", "abc"},
                          {"more than is read at once", std::string(3'000'001, 'x')}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Descriptor package = opened(directory_.write("package", test.content));
        std::string sum;
        PackageCopy copy(package.get(), copy_, &sum);
        copy.finish();
        EXPECT_EQ(sum, sumOf(test.content));
        EXPECT_EQ(contentOf(copy_), test.content);
        unlink(copy_.c_str());
    }
}

TEST_F(PackageCopyTest, SumIsThereAtTheEndEvenIfNobodyWaited) {
    const Descriptor package = opened(directory_.write("package", "abc"));
    std::string sum;
    { const PackageCopy copy(package.get(), copy_, &sum); }
    EXPECT_EQ(sum, sumOf("abc"));
}

TEST_F(PackageCopyTest, IsSummedUpWhereNoThreadIsToBeHad) {
    const Descriptor package = opened(directory_.write("package", "abc"));
    const std::string expected = sumOf("abc");
    EXPECT_TRUE(holdsInChild([&] {
        // Room for what is read at once, but not for the stack of a thread.
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlim_t most = pages * static_cast<std::size_t>(getpagesize()) + (rlim_t{2} << 20);
        const struct rlimit little { most, most };
        std::string sum;
        setrlimit(RLIMIT_AS, &little);
        PackageCopy copy(package.get(), copy_, &sum);
        copy.finish();
        return sum == expected;
    }));
}

TEST_F(PackageCopyTest, OneThatIsCutShortIsNone) {
    const Descriptor package = opened(directory_.write("package", "abc"));
    EXPECT_TRUE(holdsInChild([&] {
        const struct rlimit little { 2, 2 };
        signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &little);
        return complaint(package, copy_) == "cannot copy the package: File too large";
    }));
}

// What the kernel cannot copy by itself.
TEST_F(PackageCopyTest, ReadsWhatIsNoFileOnDisk) {
    std::string sum;
    PackageCopy copy(opened("/proc/version").get(), copy_, &sum);
    copy.finish();
    EXPECT_EQ(contentOf(copy_), contentOf("/proc/version"));
    EXPECT_EQ(sum, sumOf(contentOf("/proc/version")));
}

TEST_F(PackageCopyTest, FailuresNameTheirReason) {
    EXPECT_EQ(complaint(opened(directory_.path()), copy_), "Is a directory");
    const Descriptor package = opened(directory_.write("package", "abc"));
    EXPECT_EQ(complaint(package, directory_ / "missing/copy"),
              "cannot copy the package: No such file or directory");
    // A file that is there already may be somebody's.
    EXPECT_EQ(complaint(package, directory_.write("taken", "x")),
              "cannot copy the package: File exists");
    EXPECT_EQ(contentOf(directory_ / "taken"), "x");
}

}  // namespace
