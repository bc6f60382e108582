#include "tests/support/package/signing_key.h"

#include <filesystem>
#include <stdexcept>

#include "tests/support/package/package_builder.h"

namespace {

constexpr const char* kName = "Test <test@example.org>";

}  // namespace

SigningKey::SigningKey(const std::string& algorithm) {
    std::filesystem::permissions(home_.path(), std::filesystem::perms::owner_all);
    output("--passphrase '' --quick-generate-key '" + std::string(kName) + "' " + algorithm +
           " sign never");
}

// The agent would stay until it notices that its home is gone.
SigningKey::~SigningKey() {
    runProgram({"gpgconf", "--homedir", home_.path(), "--kill", "all"});
}

std::string SigningKey::publicKey(bool hasArmor) const {
    return output(hasArmor ? "--armor --export" : "--export");
}

std::string SigningKey::secretKey() const {
    return output("--passphrase '' --pinentry-mode loopback --export-secret-keys");
}

void SigningKey::sign(const std::string& path) const {
    std::string said;
    if (runProgram({"rpmsign", "--define", "_gpg_name " + std::string(kName), "--define",
                    "_gpg_path " + home_.path().string(), "--define", "__gpg /usr/bin/gpg",
                    "--addsign", path},
                   &said) != 0) {
        throw std::runtime_error(said);
    }
}

// What gpg writes is a key, which may hold any bytes, and goes to a file.
std::string SigningKey::output(const std::string& arguments) const {
    const std::string file = home_ / "output";
    std::string said;
    const std::string command = "gpg --batch --quiet --homedir '" + home_.path().string() + "' " +
                                arguments + " >'" + file + "'";
    if (runProgram({"sh", "-c", command}, &said) != 0) {
        throw std::runtime_error(said);
    }
    return readFile(file);
}
