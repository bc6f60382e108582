// A report whose packages can be read in any order.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/records/report_reader.h"

namespace pkgvet::cli {

// Reads a report through once, so that whatever is wrong with it is known before anything is made
// of it. Of each package only the place stays in memory.
class StoredReport {
public:
    // Takes each package of the first reading.
    using Visitor = std::function<void(const PackageReport& package)>;

    // Throws std::runtime_error with a line that says what is wrong and where. A report that is cut
    // short is fine as far as it goes.
    explicit StoredReport(const std::string& path, const Visitor& visit = nullptr);

    const std::string& path() const { return reader_.path(); }
    bool isCutShort() const { return reader_.isCutShort(); }
    // Of a report that is not cut short; throws otherwise.
    const RunReport& run() const { return reader_.run(); }

    std::size_t size() const { return places_.size(); }
    PackageReport package(std::size_t index) const { return reader_.at(places_.at(index)); }

private:
    ReportReader reader_;
    std::vector<RecordPlace> places_;
};

}  // namespace pkgvet::cli
