// Judges that do what a test asks of them, in worlds of their own.
#pragma once

#include <functional>
#include <string>

#include "cli/model/model.h"
#include "cli/worker/outcome.h"
#include "cli/worker/template_process.h"

// What a judge in sandbox looks at. Its answer is the name of the package in the report.
pkgvet::cli::PackageReport runJudge(
    const pkgvet::cli::JudgeFunction& judge,
    pkgvet::cli::SandboxMode sandbox = pkgvet::cli::SandboxMode::Auto,
    const pkgvet::cli::Limits& limits = {});

// The same for a judge that options prepare.
pkgvet::cli::PackageReport runJudge(const pkgvet::cli::TemplateOptions& options);

// The same for a judge that only looks around.
std::string observed(const std::function<std::string()>& look,
                     pkgvet::cli::SandboxMode sandbox = pkgvet::cli::SandboxMode::Auto);

// A report that is accepted under one profile and whose package is called name.
pkgvet::cli::PackageReport acceptedReport(const std::string& name);

// What this machine gives to judges.
const pkgvet::cli::Sandbox& availableSandbox();
