// Hashes a finding.
#include "cli/model/fingerprint.h"

#include <glib.h>

#include <memory>

namespace pkgvet::cli {

namespace {

constexpr std::size_t kSize = 32;
constexpr char kSeparator = '\0';

}  // namespace

std::string fingerprintOf(const std::string& packageName, const Finding& finding) {
    const std::string identity = finding.rule + kSeparator + packageName + kSeparator +
                                 finding.subject.value_or(std::string());
    const std::unique_ptr<char, decltype(&g_free)> hash(
        g_compute_checksum_for_data(
            G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(identity.data()), identity.size()),
        &g_free);
    return std::string(hash.get(), kSize);
}

}  // namespace pkgvet::cli
