// The reports of shards as that of the whole run.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/records/stored_report.h"

namespace pkgvet::cli {

// Puts the reports of shards together, whatever their order. Of the packages only their places are
// in memory.
class ShardMerge {
public:
    // Reads the reports through. Throws std::runtime_error where one of them is whole and not that
    // of a shard: it was not meant.
    explicit ShardMerge(const std::vector<std::string>& paths);

    // What is wrong with the shards in lines for a person; empty when they make a whole run.
    const std::vector<std::string>& faults() const { return faults_; }
    // The shards that have to be run again, in ascending order.
    const std::vector<unsigned>& missing() const { return missing_; }

    // The run without its packages, as one run over the whole input would tell it, and these
    // packages in the order of that input. Only without faults.
    RunReport run() const;
    void forEach(const std::function<void(PackageReport package)>& receive) const;

private:
    // One report that could be read to its end.
    struct Part {
        std::unique_ptr<StoredReport> report;
        std::vector<std::size_t> positions;  // of its packages
    };

    // Where a package stands.
    struct Place {
        const StoredReport* report = nullptr;
        std::size_t index = 0;
    };

    void read(const std::string& path);
    void readWhole(const std::string& path);
    void complain(const Part& part, const std::string& cause);
    void keepFittingParts();
    bool isWhole(const Part& part, const Part& model);
    void noteMissing();
    void placePackages();
    const Part& mostCommon() const;

    std::vector<Part> parts_;
    std::vector<std::string> faults_;
    std::vector<unsigned> missing_;
    std::vector<Place> places_;  // by the position of the package, less one
};

}  // namespace pkgvet::cli
