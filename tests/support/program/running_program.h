// The program pkgvet while it runs.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/program.h"

// Runs the built program as runPkgvet() does, beside the test, in a process group of its own. It is
// killed with the object.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string>& arguments,
                            const std::vector<std::string>& environment = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram(RunningProgram&&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    RunningProgram& operator=(RunningProgram&&) = delete;
    ~RunningProgram();

    void signal(int number) const;
    void signalGroup(int number) const;
    // Kills it and all processes that it has started, before any of them notices.
    void kill() const;
    // Waits for its end; status as that of runPkgvet().
    ProgramResult wait();

private:
    TemporaryDirectory directory_;
    pid_t process_ = -1;
};

// Whether the process is there and alive, not just unburied.
bool isAlive(pid_t process);

// Waits until condition holds, for a minute at most. Returns whether it does.
bool waitUntil(const std::function<bool()>& condition);
