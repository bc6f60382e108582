// The owner of a file descriptor.
#include "pkgvet/base/descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <utility>

namespace {

using pkgvet::Descriptor;

Descriptor openNull() {
    return Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool isOpenInProcess(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

TEST(Descriptor, HoldsNothingAtFirst) {
    const Descriptor none;
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(none.get(), -1);
}

TEST(Descriptor, ClosesWhatItHoldsWithItself) {
    int value = -1;
    {
        const Descriptor file = openNull();
        value = file.get();
        EXPECT_TRUE(file.isOpen());
        EXPECT_TRUE(isOpenInProcess(value));
    }
    EXPECT_FALSE(isOpenInProcess(value));
}

TEST(Descriptor, ResetCloses) {
    Descriptor file = openNull();
    const int value = file.get();
    file.reset();
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(isOpenInProcess(value));
}

TEST(Descriptor, ReleaseGivesItUpOpen) {
    Descriptor file = openNull();
    const Descriptor owner(file.release());
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(isOpenInProcess(owner.get()));
}

TEST(Descriptor, MovesLeaveOneOwner) {
    Descriptor source = openNull();
    const int value = source.get();
    Descriptor target(std::move(source));
    EXPECT_FALSE(source.isOpen());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target.get(), value);
    Descriptor former = openNull();
    const int formerValue = former.get();
    former = std::move(target);
    EXPECT_EQ(former.get(), value);
    target.reset();
    EXPECT_FALSE(isOpenInProcess(formerValue));
    EXPECT_TRUE(isOpenInProcess(value));
}

}  // namespace
