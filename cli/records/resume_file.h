// What earlier runs have judged, and what this one adds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "cli/model/model.h"
#include "cli/records/report_reader.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// A report in JSON Lines that grows as packages are judged, so that a run that is killed at any
// moment loses only what was in work. Its lines stand in whatever order packages were done; the
// report of the whole run takes its place in the end.
class ResumeFile {
public:
    // Makes the file when there is none. What does not end with a whole line is dropped. Throws
    // std::runtime_error for what is not such a report, and while another run adds to it.
    explicit ResumeFile(const std::string& path);

    // What an earlier run found out about the package at path, when the file is still the same and
    // it was judged by the same. Nothing excuses its findings: that is for the policy of this run
    // to say. A package that could not be judged is judged again.
    std::optional<PackageReport> find(const std::string& path, const std::string& judgedBy) const;

    // Adds a line, with its line feed.
    void add(std::string_view line);

private:
    void lock();
    void read();
    void readLines();
    bool hasLineBehind(std::uint64_t offset) const;
    void cutBehind(std::uint64_t size);

    std::string path_;
    Descriptor file_;
    std::optional<ReportReader> reader_;
    // By hashes of what they are looked for by, which take less memory than that itself.
    std::unordered_set<std::size_t> paths_;
    std::unordered_map<std::size_t, RecordPlace> places_;
};

}  // namespace pkgvet::cli
