// JUnit XML as packages come.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/spool.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// How many cases there are, of those of suites together, and what became of them.
struct JunitCounts {
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;

    // Those of as many suites like these.
    void add(const JunitCounts& suite, std::size_t times = 1);
};

// A suite for each package and profile, with a case for the verdict and one for each finding.
// Suites wait on disk for the totals, which stand ahead of them, and for their names, which tell
// packages of one name apart: the last package may decide both. Of each package its name is in
// memory.
class JunitReport {
public:
    explicit JunitReport(const ReportStyle& style) : style_(style) {}

    void add(const PackageReport& package);
    // Hands the report on, piece by piece.
    void finish(const RunReport& run, const std::function<void(std::string_view piece)>& receive);

private:
    // What a suite is named for. One without a profile stands for one under each of the run.
    struct Name {
        std::string package;
        std::string arch;
        std::optional<std::string> profile;
    };

    void addSuite(const PackageReport& package, const Judgement& judgement,
                  const std::optional<std::string>& profile, JunitCounts* counts);
    std::vector<std::string> namesOf(const Name& name, const RunReport& run) const;

    ReportStyle style_;
    Spool spool_;
    std::vector<Name> names_;                      // of the suites
    std::map<std::string, std::size_t> packages_;  // how many have the name
    JunitCounts counts_;
    JunitCounts unjudged_;  // of suites that stand for one under each profile
};

}  // namespace pkgvet::cli
