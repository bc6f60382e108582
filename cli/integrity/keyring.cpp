// Reads public keys.
#include "cli/integrity/keyring.h"

#include <rpm/rpmcrypto.h>
#include <rpm/rpmkeyring.h>
#include <rpm/rpmpgp.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <system_error>

#include "cli/base/checksum.h"
#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/regular_file.h"

namespace pkgvet::cli {

namespace {

using KeyHandle = CHandle<rpmPubkey_s, rpmPubkeyFree>;

// The largest keys with all their signatures have some hundred KiB.
constexpr std::size_t kMostBytes = std::size_t{4} << 20;

constexpr const char* kNotReadable = "cannot be read, or is larger than 4 MiB";
constexpr const char* kNotAKey = "is not a public key";
constexpr const char* kSeveralKeys = "holds more than one key";
constexpr const char* kNoKeys = "holds no keys";

// The bit that each byte has which can begin a key without armour.
constexpr unsigned char kPacketBit = 0x80;

// Nothing when text is not a key in ASCII armour.
std::optional<std::string> withoutArmor(const std::string& text) {
    std::uint8_t* bytes = nullptr;
    std::size_t size = 0;
    const pgpArmor armor = pgpParsePkts(text.c_str(), &bytes, &size);
    const std::unique_ptr<void, decltype(&free)> owner(bytes, &free);
    if (armor != PGPARMOR_PUBKEY) {
        return std::nullopt;
    }
    return std::string(reinterpret_cast<const char*>(bytes), size);
}

bool hasArmor(const std::string& bytes) {
    return bytes.empty() || (static_cast<unsigned char>(bytes.front()) & kPacketBit) == 0;
}

// What is wrong with a key without armour, or null.
const char* faultOf(const std::string& bytes) {
    const auto* const packets = reinterpret_cast<const std::uint8_t*>(bytes.data());
    std::size_t size = 0;
    if (pgpPubKeyCertLen(packets, bytes.size(), &size) != 0) {
        return kNotAKey;
    }
    if (size != bytes.size()) {
        return kSeveralKeys;
    }
    return KeyHandle(rpmPubkeyNew(packets, bytes.size())) ? nullptr : kNotAKey;
}

void readKey(const std::string& path, Keyring* keyring, std::vector<Fault>* faults) {
    std::optional<std::string> bytes = readRegularFile(path, kMostBytes);
    if (!bytes) {
        faults->push_back({path, "", kNotReadable});
        return;
    }
    if (hasArmor(*bytes)) {
        bytes = withoutArmor(*bytes);
    }
    if (const char* const fault = bytes ? faultOf(*bytes) : kNotAKey) {
        faults->push_back({path, "", fault});
        return;
    }
    keyring->keys.push_back(std::move(*bytes));
}

}  // namespace

Keyring readKeyring(const std::string& directory, std::vector<Fault>* faults) {
    Keyring keyring;
    std::vector<std::string> paths;
    try {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            paths.push_back(entry.path());
        }
    } catch (const std::system_error& error) {
        faults->push_back({directory, "", error.code().message()});
        return keyring;
    }
    if (paths.empty()) {
        faults->push_back({directory, "", kNoKeys});
    }
    std::sort(paths.begin(), paths.end());
    rpmInitCrypto();
    for (const std::string& path : paths) {
        readKey(path, &keyring, faults);
    }
    return keyring;
}

std::string digestOf(const Keyring& keyring) {
    if (keyring.keys.empty()) {
        return std::string();
    }
    Checksum sum;
    for (const std::string& key : std::set<std::string>(keyring.keys.begin(), keyring.keys.end())) {
        // With the sizes, no two sets of keys make the same bytes.
        sum.add(std::to_string(key.size()) + ":");
        sum.add(key);
    }
    return sum.finish();
}

}  // namespace pkgvet::cli
