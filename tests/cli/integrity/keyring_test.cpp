// The keys that a user trusts.
#include "cli/integrity/keyring.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "tests/support/package/signing_key.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

class KeyringTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const SigningKey key("rsa2048");
        armored_ = new std::string(key.publicKey(true));
        binary_ = new std::string(key.publicKey(false));
        secret_ = new std::string(key.secretKey());
    }
    static void TearDownTestSuite() {
        delete armored_;
        delete binary_;
        delete secret_;
    }

    // What is wrong with the keyring, a line each.
    std::vector<std::string> faults() {
        std::vector<Fault> found;
        keyring_ = readKeyring(directory_.path(), &found);
        std::vector<std::string> lines;
        for (const Fault& fault : found) {
            lines.push_back(std::filesystem::path(fault.file).filename().string() + " " +
                            fault.cause);
        }
        return lines;
    }

    static inline std::string* armored_ = nullptr;
    static inline std::string* binary_ = nullptr;
    static inline std::string* secret_ = nullptr;
    TemporaryDirectory directory_;
    Keyring keyring_;
};

TEST_F(KeyringTest, KeysMayHaveArmourOrNot) {
    directory_.write("a.asc", *armored_);
    directory_.write("b.gpg", *binary_);
    EXPECT_THAT(faults(), IsEmpty());
    EXPECT_THAT(keyring_.keys, ElementsAre(*binary_, *binary_));
}

TEST_F(KeyringTest, WhatIsNotOnePublicKeyIsAFault) {
    directory_.write("a", "");
    directory_.write("b", "text");
    directory_.write("c", "\xff\xff\xff");
    directory_.write("d", armored_->substr(0, armored_->size() / 2));
    directory_.write("e", binary_->substr(0, binary_->size() / 2));
    directory_.write("f", *binary_ + *binary_);
    directory_.write("g", *secret_);
    std::filesystem::create_directory(directory_ / "h");
    std::filesystem::create_symlink("nowhere", directory_ / "i");
    EXPECT_THAT(
        faults(),
        ElementsAre("a is not a public key", "b is not a public key", "c is not a public key",
                    "d is not a public key", "e is not a public key", "f holds more than one key",
                    "g is not a public key", "h cannot be read, or is larger than 4 MiB",
                    "i cannot be read, or is larger than 4 MiB"));
    EXPECT_THAT(keyring_.keys, IsEmpty());
}

TEST_F(KeyringTest, NoneMayBeLarge) {
    directory_.write("a", *binary_ + std::string(std::size_t{5} << 20, 'x'));
    EXPECT_THAT(faults(), ElementsAre("a cannot be read, or is larger than 4 MiB"));
}

TEST_F(KeyringTest, ADirectoryWithoutKeysIsAFault) {
    EXPECT_EQ(faults().size(), 1U);
    std::vector<Fault> found;
    readKeyring(directory_ / "missing", &found);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].cause, "No such file or directory");
}

TEST_F(KeyringTest, DigestFollowsTheKeysAndNotTheirFiles) {
    EXPECT_EQ(digestOf(Keyring()), "");
    Keyring two;
    two.keys = {"a", "bc"};
    Keyring turned;
    turned.keys = {"bc", "a", "bc"};
    Keyring other;
    other.keys = {"ab", "c"};
    EXPECT_EQ(digestOf(two).size(), 64U);
    EXPECT_EQ(digestOf(two), digestOf(turned));
    EXPECT_NE(digestOf(two), digestOf(other));
}

}  // namespace
