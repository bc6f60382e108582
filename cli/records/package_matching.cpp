// Matches packages, by the best sign first.
#include "cli/records/package_matching.h"

#include <deque>
#include <unordered_map>
#include <utility>

namespace pkgvet::cli {

namespace {

// No text holds it.
constexpr char kSeparator = '\0';

// What two packages that match have alike; nothing for one that cannot be matched in this way.
using Sign = std::optional<std::string> (*)(const PackageIdentity& package);
using Matches = std::vector<std::optional<std::size_t>>;

std::optional<std::string> byPath(const PackageIdentity& package) {
    return package.path + kSeparator + package.name + kSeparator + package.arch;
}

// What could not be read has no name on that side.
std::optional<std::string> byPathAlone(const PackageIdentity& package) {
    return package.path;
}

std::optional<std::string> byName(const PackageIdentity& package) {
    return package.name.empty() ? std::nullopt
                                : std::optional(package.name + kSeparator + package.arch);
}

std::optional<std::string> byRelease(const PackageIdentity& package) {
    const std::optional<std::string> name = byName(package);
    return name ? std::optional(*name + kSeparator + package.release) : std::nullopt;
}

class Matching {
public:
    Matching(const std::vector<PackageIdentity>& before, const std::vector<PackageIdentity>& after)
        : before_(before), after_(after), taken_(before.size(), false), matches_(after.size()) {}

    // Matches what is left on both sides and alike, in order.
    void match(Sign sign, bool needsNoName) {
        std::unordered_map<std::string, std::deque<std::size_t>> left;
        for (std::size_t i = 0; i < before_.size(); ++i) {
            const std::optional<std::string> key = taken_[i] ? std::nullopt : sign(before_[i]);
            if (key) {
                left[*key].push_back(i);
            }
        }
        for (std::size_t i = 0; i < after_.size(); ++i) {
            const std::optional<std::string> key = matches_[i] ? std::nullopt : sign(after_[i]);
            const auto found = key ? left.find(*key) : left.end();
            if (found == left.end() || found->second.empty()) {
                continue;
            }
            const std::size_t other = found->second.front();
            if (!needsNoName || after_[i].name.empty() || before_[other].name.empty()) {
                found->second.pop_front();
                taken_[other] = true;
                matches_[i] = other;
            }
        }
    }

    Matches take() { return std::move(matches_); }

private:
    const std::vector<PackageIdentity>& before_;
    const std::vector<PackageIdentity>& after_;
    std::vector<bool> taken_;
    Matches matches_;
};

}  // namespace

PackageIdentity identityOf(const PackageReport& package) {
    return {package.path, package.name, package.arch, package.version + "-" + package.release};
}

Matches matched(const std::vector<PackageIdentity>& before,
                const std::vector<PackageIdentity>& after) {
    Matching matching(before, after);
    matching.match(byPath, false);
    matching.match(byPathAlone, true);
    matching.match(byRelease, false);
    matching.match(byName, false);
    return matching.take();
}

}  // namespace pkgvet::cli
