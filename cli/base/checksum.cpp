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

Sha256::Sha256() : context_(rpmDigestInit(RPM_HASH_SHA256, RPMDIGEST_NONE)) {}

Sha256::~Sha256() {
    if (context_ != nullptr) {
        rpmDigestFinal(context_, nullptr, nullptr, kAsText);
    }
}

void Sha256::add(std::string_view bytes) {
    rpmDigestUpdate(context_, bytes.data(), bytes.size());
}

std::string Sha256::finish() {
    void* text = nullptr;
    std::size_t size = 0;
    if (rpmDigestFinal(std::exchange(context_, nullptr), &text, &size, kAsText) != 0) {
        return std::string();
    }
    const std::unique_ptr<void, decltype(&free)> owner(text, &free);
    return static_cast<const char*>(text);
}

}  // namespace pkgvet::cli
