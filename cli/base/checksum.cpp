// Sums up bytes.
#include "cli/base/checksum.h"

#include <rpm/rpmcrypto.h>
#include <rpm/rpmpgp.h>
#include <stdlib.h>

#include <memory>
#include <utility>

namespace pkgvet::cli {

namespace {

constexpr int kAsText = 1;

}  // namespace

Checksum::Checksum() : Checksum(RPM_HASH_SHA256) {}

Checksum::Checksum(int algorithm) : context_(rpmDigestInit(algorithm, RPMDIGEST_NONE)) {}

Checksum::~Checksum() {
    if (context_ != nullptr) {
        rpmDigestFinal(context_, nullptr, nullptr, kAsText);
    }
}

void Checksum::add(std::string_view bytes) {
    rpmDigestUpdate(context_, bytes.data(), bytes.size());
}

std::string Checksum::finish() {
    void* text = nullptr;
    std::size_t size = 0;
    if (rpmDigestFinal(std::exchange(context_, nullptr), &text, &size, kAsText) != 0) {
        return std::string();
    }
    const std::unique_ptr<void, decltype(&free)> owner(text, &free);
    return static_cast<const char*>(text);
}

}  // namespace pkgvet::cli
