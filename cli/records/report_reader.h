// Reports of earlier runs.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/records/record_scanner.h"
#include "cli/records/run_record.h"

namespace pkgvet::cli {

// Where a package stands in a report.
struct RecordPlace {
    std::uint64_t offset = 0;
    std::size_t size = 0;
    Position position;
};

// Reads one report in JSON or JSON Lines, whichever it is, a package at a time: of a report of any
// size, one package is in memory. What comes back is what was written, so that every format made of
// it is the one that the run itself would have made.
//
// A report is a stranger's file, and every member of it is looked at. All operations throw
// std::runtime_error with a line that says where what is wrong.
class ReportReader {
public:
    explicit ReportReader(const std::string& path);

    // The next package, in the order of the report; nothing behind the last one.
    std::optional<PackageReport> next();
    // Where the package that came last stands.
    const RecordPlace& place() const { return place_; }
    // A package once more.
    PackageReport at(const RecordPlace& place) const;

    // All of these are known once there are no more packages.

    // Whether the file ends before the report does, as that of a run that was killed.
    bool isCutShort() const { return !record_; }
    // How many bytes of a report in JSON Lines hold packages that are whole, with their line feeds.
    std::uint64_t sizeOfLines() const { return sizeOfLines_; }
    // False for one in JSON with packages in it.
    bool isInLines() const { return !hasRecords_; }
    // The run without its packages. Throws when the report is cut short.
    const RunReport& run() const;

    const std::string& path() const { return path_; }

private:
    nlohmann::json parsed(const std::string& text, const RecordPlace& place) const;
    PackageReport packageOf(const std::string& text, const RecordPlace& place) const;
    PackageReport take(const RecordPiece& piece);
    std::optional<PackageReport> endObject();
    void endFile();
    void addMember(RecordPiece piece);
    void readHead();
    const RecordPiece& member(const char* key) const;
    [[noreturn]] void fail(const Position& position, const std::string& cause) const;

    std::string path_;
    RecordScanner scanner_;
    RecordPlace place_;
    std::map<std::string, RecordPiece> members_;  // of the object that is being read
    std::optional<RunRecord> record_;
    PackageTally tally_;                           // of the packages so far
    std::set<std::vector<std::string>> profiles_;  // of the packages so far
    std::uint64_t sizeOfLines_ = 0;
    bool hasRecords_ = false;  // the object has packages in it
};

}  // namespace pkgvet::cli
