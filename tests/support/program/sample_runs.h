// Runs as plain data, one for each way in which a run can end.
#pragma once

#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/report/formats.h"

struct SampleRun {
    const char* name;
    pkgvet::cli::RunReport run;
};

pkgvet::cli::Finding finding(const std::string& rule, pkgvet::cli::Severity severity,
                             const std::string& message);
// One whose message is "[subject] text".
pkgvet::cli::Finding findingAbout(const std::string& subject, const std::string& rule,
                                  pkgvet::cli::Severity severity, const std::string& text);

// A judgement by the profile "regular". It accepts and passes unless a finding is an error.
pkgvet::cli::Judgement judgement(std::vector<pkgvet::cli::Finding> findings,
                                 const std::string& profile = "regular");

// The package "org.example.app" 1.0-1, in "app.rpm".
pkgvet::cli::PackageReport package(std::vector<pkgvet::cli::Judgement> judgements);
pkgvet::cli::PackageReport unreadable(const std::string& path, const std::string& cause);

pkgvet::cli::RunReport runOf(std::vector<pkgvet::cli::PackageReport> packages);

// Nothing to do, accepted, rejected, not judged, incomplete, partial, waived, several profiles,
// hostile bytes.
std::vector<SampleRun> sampleRuns();

// A byte sequence that no format could hold as it is.
std::string hostileBytes();

// The whole report.
std::string reportOf(pkgvet::cli::Format format, const pkgvet::cli::RunReport& run,
                     const pkgvet::cli::ReportStyle& style = {});
