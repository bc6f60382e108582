// Notes where packages stand.
#include "cli/records/stored_report.h"

namespace pkgvet::cli {

StoredReport::StoredReport(const std::string& path, const Visitor& visit) : reader_(path) {
    while (const std::optional<PackageReport> package = reader_.next()) {
        places_.push_back(reader_.place());
        if (visit) {
            visit(*package);
        }
    }
}

}  // namespace pkgvet::cli
