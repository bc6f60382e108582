// Keys that packages are signed with.
#pragma once

#include <string>

#include "tests/support/base/temporary_directory.h"

// A key of GnuPG in a directory of its own, which goes with the object.
class SigningKey {
public:
    // algorithm as gpg --quick-generate-key takes it, such as "rsa2048" or "ed25519".
    explicit SigningKey(const std::string& algorithm = "ed25519");
    SigningKey(const SigningKey&) = delete;
    SigningKey(SigningKey&&) = delete;
    SigningKey& operator=(const SigningKey&) = delete;
    SigningKey& operator=(SigningKey&&) = delete;
    ~SigningKey();

    // The public key, with ASCII armour or without.
    std::string publicKey(bool hasArmor) const;
    std::string secretKey() const;

    // Signs the package at path, in place.
    void sign(const std::string& path) const;

private:
    std::string output(const std::string& arguments) const;

    TemporaryDirectory home_;
};
