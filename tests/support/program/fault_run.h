// Runs of the program in which something goes wrong at a chosen point.
#pragma once

#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/sandboxes.h"
#include "tests/support/program/traced_program.h"

// The processes of a run by their names in SystemCall, and how many system calls they make.
struct Cast {
    std::string judge;
    std::string maker;  // the template, of which the judge is a copy
    std::size_t callsOfJudge = 0;
    std::size_t callsOfMaker = 0;
};

// One accepted package, judged time and again.
class FaultRun {
public:
    explicit FaultRun(const SandboxCase& sandbox);

    // A run without faults.
    const ProgramResult& undisturbed() const { return undisturbed_; }
    const Cast& cast() const { return cast_; }
    const std::string& package() const { return arguments_.back(); }

    // The same with faults. std::runtime_error when the run is over and none was made.
    TracedRun run(const SystemCallObserver& observe);
    // The same with somebody who looks on, and may change what the program works on.
    TracedRun watch(const SystemCallObserver& observe);
    // Directories that the last run made in /tmp and that are still there.
    std::vector<std::string> directoriesLeft() const;

private:
    TemporaryDirectory directory_;
    std::vector<std::string> arguments_;
    std::vector<std::string> environment_;
    std::vector<std::string> made_;
    ProgramResult undisturbed_;
    Cast cast_;
};

// The path of the directory that the call makes; empty for all other calls.
std::string nameOfDirectory(const SystemCall& call);

// Those of the paths that lead to something.
std::vector<std::string> stillThere(const std::vector<std::string>& paths);
