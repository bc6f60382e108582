// The packages of a run, to be looked at more than once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "cli/base/spool.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// Keeps packages with every byte of what is known of them: few in memory and many on disk, so that
// a run of any size takes a few bytes for each. Throws std::runtime_error when there is no room.
class KeptPackages {
public:
    void add(const PackageReport& package);

    std::size_t size() const { return ends_.size(); }
    // index is less than size().
    PackageReport at(std::size_t index) const;

private:
    Spool spool_;
    std::vector<std::uint64_t> ends_;  // of the packages in spool_
};

// The packages of run that are there, be they in memory or kept.
std::size_t packageCount(const RunReport& run);
PackageReport packageAt(const RunReport& run, std::size_t index);
void forEachPackage(const RunReport& run,
                    const std::function<void(const PackageReport& package)>& visit);

}  // namespace pkgvet::cli
