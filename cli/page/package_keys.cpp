// Tells the packages of a run apart.
#include "cli/page/package_keys.h"

#include <glib.h>

#include <memory>

namespace pkgvet::cli {

namespace {

std::string hashOf(const std::string& text) {
    const std::unique_ptr<char, decltype(&g_free)> hash(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(text.data()),
                                    text.size()),
        &g_free);
    return hash.get();
}

}  // namespace

std::string PackageKeys::of(const PackageReport& package) {
    if (!package.sha256.empty() && taken_.insert(package.sha256).second) {
        return package.sha256;
    }
    std::string key = "path-" + hashOf(package.path);
    // One path may be judged twice.
    for (int again = 2; !taken_.insert(key).second; ++again) {
        key = "path-" + hashOf(package.path) + "-" + std::to_string(again);
    }
    return key;
}

}  // namespace pkgvet::cli
