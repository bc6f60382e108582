// Finds out whether reports of shards belong together, and puts their packages in order.
#include "cli/records/shard_merge.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "cli/base/escape.h"
#include "cli/records/run_difference.h"

namespace pkgvet::cli {

namespace {

bool hasSameInput(const Shard& one, const Shard& other) {
    return one.of == other.of && one.packages == other.packages && one.input == other.input;
}

// How many packages the shard should have.
std::size_t shareOf(const Shard& shard) {
    return shard.packages < shard.number ? 0 : (shard.packages - shard.number) / shard.of + 1;
}

std::string nameOf(const Shard& shard) {
    return "shard " + std::to_string(shard.number) + " of " + std::to_string(shard.of);
}

}  // namespace

ShardMerge::ShardMerge(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        read(path);
    }
    if (parts_.empty()) {
        faults_.emplace_back("there is not one whole report of a shard");
        return;
    }
    keepFittingParts();
    noteMissing();
    if (faults_.empty()) {
        placePackages();
    }
}

RunReport ShardMerge::run() const {
    RunReport run = parts_.front().report->run();
    run.shard.reset();
    // What no shard made use of was not used at all; all else is said by each of them.
    const auto isEverywhere = [this](const std::string& notice) {
        return std::all_of(parts_.begin(), parts_.end(), [&](const Part& part) {
            const std::vector<std::string>& all = part.report->run().notices;
            return std::find(all.begin(), all.end(), notice) != all.end();
        });
    };
    run.notices.erase(std::remove_if(run.notices.begin(), run.notices.end(),
                                     [&](const std::string& one) { return !isEverywhere(one); }),
                      run.notices.end());
    return run;
}

void ShardMerge::forEach(const std::function<void(PackageReport package)>& receive) const {
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const Place& place = places_[i];
        PackageReport package = place.report->package(place.index);
        if (package.position != i + 1) {
            throw std::runtime_error(printable(place.report->path()) +
                                     ": has been replaced meanwhile");
        }
        package.position = 0;
        receive(std::move(package));
    }
}

// A report that cannot be read is one shard that has to be run again, and does not hinder the
// others.
void ShardMerge::read(const std::string& path) {
    Part part;
    try {
        part.report = std::make_unique<StoredReport>(path, [&part](const PackageReport& package) {
            part.positions.push_back(package.position);
        });
    } catch (const std::runtime_error& error) {
        faults_.emplace_back(error.what());
        return;
    }
    if (part.report->isCutShort()) {
        faults_.push_back(printable(path) + ": is cut short");
        return;
    }
    if (!part.report->run().shard) {
        throw std::runtime_error(printable(path) + ": is not the report of a shard");
    }
    parts_.push_back(std::move(part));
}

void ShardMerge::complain(const Part& part, const std::string& cause) {
    faults_.push_back(printable(part.report->path()) + ": " + nameOf(*part.report->run().shard) +
                      " " + cause);
}

// Of parts that do not belong together, the fewest should have to be run again.
const ShardMerge::Part& ShardMerge::mostCommon() const {
    std::vector<std::ptrdiff_t> likeness;
    for (const Part& model : parts_) {
        likeness.push_back(std::count_if(parts_.begin(), parts_.end(), [&](const Part& part) {
            const RunReport& run = part.report->run();
            return hasSameInput(*model.report->run().shard, *run.shard) &&
                   differenceOf(model.report->run(), run).empty();
        }));
    }
    const auto most = std::max_element(likeness.begin(), likeness.end());
    return parts_[static_cast<std::size_t>(most - likeness.begin())];
}

void ShardMerge::keepFittingParts() {
    const Part& model = mostCommon();
    std::vector<bool> fits;
    for (const Part& part : parts_) {
        fits.push_back(isWhole(part, model));
    }
    std::vector<Part> fitting;
    std::set<unsigned> seen;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        if (fits[i] && seen.insert(parts_[i].report->run().shard->number).second) {
            fitting.push_back(std::move(parts_[i]));
        } else if (fits[i]) {
            complain(parts_[i], "is there twice");
        }
    }
    if (!fitting.empty()) {
        parts_ = std::move(fitting);
    }
}

bool ShardMerge::isWhole(const Part& part, const Part& model) {
    const RunReport& run = part.report->run();
    const std::string difference = differenceOf(model.report->run(), run);
    if (!hasSameInput(*model.report->run().shard, *run.shard)) {
        complain(part, "is one of another input");
    } else if (!difference.empty()) {
        complain(part, "was judged " + difference);
    } else if (run.partial) {
        complain(part, "is partial: its run was interrupted");
    } else if (part.positions.size() != shareOf(*run.shard)) {
        complain(part, "does not hold all of its packages");
    } else {
        return true;
    }
    return false;
}

void ShardMerge::noteMissing() {
    std::set<unsigned> there;
    const Shard& shard = *mostCommon().report->run().shard;
    for (const Part& part : parts_) {
        if (part.positions.size() == shareOf(*part.report->run().shard) &&
            !part.report->run().partial) {
            there.insert(part.report->run().shard->number);
        }
    }
    for (unsigned number = 1; number <= shard.of; ++number) {
        if (there.count(number) == 0) {
            missing_.push_back(number);
            faults_.push_back(nameOf({number, shard.of, 0, {}}) + " has to be run again");
        }
    }
}

// Positions say where in the input, as it was given, the packages of the sorted input stood.
void ShardMerge::placePackages() {
    places_.resize(parts_.front().report->run().shard->packages);
    for (const Part& part : parts_) {
        for (std::size_t i = 0; i < part.positions.size(); ++i) {
            const std::size_t position = part.positions[i];
            if (position == 0 || position > places_.size() ||
                places_[position - 1].report != nullptr) {
                complain(part, "holds packages in places of the input that are not theirs");
                return;
            }
            places_[position - 1] = {part.report.get(), i};
        }
    }
}

}  // namespace pkgvet::cli
