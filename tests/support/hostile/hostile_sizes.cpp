// Packages that are as large as they claim to be.
#include <rpm/rpmtag.h>

#include "tests/support/hostile/hostile_packages.h"
#include "tests/support/package/accepted_package.h"

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;
constexpr std::size_t kMembers = 1024;
constexpr std::size_t kManyFiles = 1'000'000;
constexpr std::size_t kFilesOfABlock = 1000;

// gzip takes streams behind one another for one, so that a part is compressed once and repeated.
std::string compressedPart(const std::string& part) {
    return compressed(part, "gzip");
}

std::string entryThatClaims(const std::string& name, std::size_t size) {
    CpioEntry entry;
    entry.name = name;
    entry.dataSize = static_cast<std::uint32_t>(size);
    return cpioEntry(entry);
}

void replacePayload(CraftedPackage* package, const std::string& payload) {
    package->alterPayload([payload](std::string* bytes) { *bytes = payload; });
}

void packOneBomb(CraftedPackage* package, const Target& /*target*/) {
    const std::string zeros = compressedPart(std::string(kMebibyte, '\0'));
    std::string payload =
        compressedPart(package->entries() + entryThatClaims("./bomb", kMembers * kMebibyte));
    for (std::size_t i = 0; i < kMembers; ++i) {
        payload += zeros;
    }
    replacePayload(package, payload + compressedPart(cpioTrailer()));
}

// Each file by itself is harmless.
void packManyBombs(CraftedPackage* package, const Target& /*target*/) {
    constexpr std::size_t kBombs = 64;
    constexpr std::size_t kMembersOfABomb = kMembers / kBombs;
    const std::string zeros = compressedPart(std::string(kMebibyte, '\0'));
    std::string payload = compressedPart(package->entries());
    for (std::size_t i = 0; i < kBombs; ++i) {
        payload += compressedPart(
            entryThatClaims("./bomb" + std::to_string(i), kMembersOfABomb * kMebibyte));
        for (std::size_t member = 0; member < kMembersOfABomb; ++member) {
            payload += zeros;
        }
    }
    replacePayload(package, payload + compressedPart(cpioTrailer()));
}

// Blocks of files in directories that differ in four digits, written over one another.
void packManyFiles(CraftedPackage* package, const Target& /*target*/) {
    const std::string digits = "0000";
    std::string block;
    for (std::size_t i = 0; i < kFilesOfABlock; ++i) {
        block += cpioEntry({.name = "./many" + digits + "-" + std::to_string(i)});
    }
    const std::size_t size = block.size();
    std::string all = package->entries();
    all.reserve(all.size() + kManyFiles / kFilesOfABlock * size);
    for (std::size_t i = 0; i < kManyFiles / kFilesOfABlock; ++i) {
        const std::string number = std::to_string(1000 + i);
        for (std::size_t at = block.find("./many"); at != std::string::npos;
             at = block.find("./many", at + 1)) {
            block.replace(at + 6, number.size(), number);
        }
        all += block;
    }
    replacePayload(package, compressedPart(all + cpioTrailer()));
}

// Only the entries of rpm's own for large files have no size of 32 bits.
void packHoles(CraftedPackage* package, const Target& /*target*/) {
    constexpr std::uint64_t kSize = std::uint64_t{100} << 30U;
    package->file(packedFile(kAcceptedData + "/holes", ""));
    package->set(RPMTAG_LONGFILESIZES, rpmInt64({0, 0, 0, kSize, 0, 0, 0}));
    package->set(RPMTAG_LONGSIZE, rpmInt64({kSize}));
    package->archive(package->largeFileEntries() + cpioTrailer());
}

const std::vector<HostilePackage> kSizes = {
    {"is a bomb of a gibibyte in a megabyte", packOneBomb, Outcome::NotJudged, "--max-unpacked"},
    {"is a bomb in many pieces", packManyBombs, Outcome::NotJudged, "--max-unpacked"},
    {"has a million empty files", packManyFiles, Outcome::NotJudged, "--max-files"},
    {"has a file of a hundred gibibytes of holes", packHoles, Outcome::NotJudged, "did not unpack"},
};

}  // namespace

std::vector<HostilePackage> packagesOfRealSizes() {
    return kSizes;
}
