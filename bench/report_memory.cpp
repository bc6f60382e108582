// The report side of `pkgvet check` alone: packages that nobody judged go through the reports one
// after the other, as those of a run do. Tells time, size and the most memory on standard error.
//
// usage: report-memory FORMAT PACKAGES FINDINGS [K/N] > REPORT
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "cli/records/shard_input.h"
#include "cli/report/report_options.h"
#include "cli/report/reports.h"

namespace {

using namespace pkgvet::cli;
using Clock = std::chrono::steady_clock;

// Rules and messages that are met most often, of usual length.
constexpr std::array<const char*, 3> kRules = {"library-not-allowed", "path-not-allowed",
                                               "provide-not-allowed"};

Finding findingOf(std::size_t package, std::size_t number) {
    Finding finding;
    finding.rule = kRules[number % kRules.size()];
    finding.severity = number % 4 == 0 ? Severity::Warning : Severity::Error;
    finding.subject = "/usr/share/org.example.package" + std::to_string(package) + "/lib/libfile" +
                      std::to_string(number) + ".so.1";
    finding.message = "[" + *finding.subject + "] Installation not allowed in this location";
    return finding;
}

PackageReport packageOf(std::size_t index, std::size_t findings) {
    PackageReport package;
    package.name = "org.example.package" + std::to_string(index);
    package.path = "/srv/repository/noarch/" + package.name + "-1.0.0-12.noarch.rpm";
    package.version = "1.0.0";
    package.release = "12";
    package.arch = "noarch";
    package.sha256 = package.judgedBy = std::string(64, 'a');
    Judgement judgement;
    judgement.profile = "regular";
    for (std::size_t i = 0; i < findings; ++i) {
        judgement.findings.push_back(findingOf(index, i));
    }
    package.judgements.push_back(std::move(judgement));
    return package;
}

// In KiB.
std::string mostMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            status >> word;
            return word;
        }
    }
    return "0";
}

Format formatNamed(const std::string& name) {
    ReportOptions options;
    for (const Option& option : reportOptions(&options)) {
        if (option.names.back() == "--format" && !option.set(name).empty()) {
            std::cerr << "unknown format " << name << '\n';
            std::exit(2);
        }
    }
    return *options.format;
}

void write(Format format, std::size_t packages, std::size_t findings, const ShardNumber& shard) {
    RunReport run;
    run.provenance.profiles = {{"regular", std::string(64, 'b')}};
    run.provenance.validation = "auto";
    if (shard.second > 1) {
        run.shard = Shard{shard.first, shard.second, packages, std::string(64, 'c')};
    }
    Reports reports(format, {}, std::cout, {});
    for (std::size_t i = shard.first - 1; i < packages; i += shard.second) {
        PackageReport package = packageOf(i, findings);
        package.position = run.shard ? i + 1 : 0;
        reports.add(package);
        run.dropped.add(package);
    }
    reports.finish(run);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: report-memory FORMAT PACKAGES FINDINGS [K/N] > REPORT\n";
        return 2;
    }
    const Clock::time_point start = Clock::now();
    write(formatNamed(argv[1]), std::stoul(argv[2]), std::stoul(argv[3]),
          argc > 4 ? parseShard(argv[4]).value_or(ShardNumber(1, 1)) : ShardNumber(1, 1));
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::cerr << seconds << ' ' << mostMemory() << '\n';
}
