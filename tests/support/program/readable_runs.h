// Runs as the program makes them, which can be read back.
#pragma once

#include <vector>

#include "tests/support/program/sample_runs.h"

// The sample runs with ids of the catalogue, codes of causes and the profiles that they were judged
// under.
std::vector<SampleRun> readableRuns();

// A run with each member of the model set to something of its own.
pkgvet::cli::RunReport fullRun();
