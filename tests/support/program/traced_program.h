// The program with each of its system calls in the hands of a test.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/program/program.h"

// A system call that is about to be made.
struct SystemCall {
    // "0" is the program, "0.1" the first process or thread that it starts, "0.1.2" the second one
    // of that. The same in each run, whatever numbers the kernel gives.
    std::string process;
    pid_t id;
    std::uint64_t number;
    std::uint64_t arguments[6];

    // The text that an argument points to, empty when it does not point to any.
    std::string text(std::size_t argument) const;
};

// What becomes of a system call.
struct Answer {
    enum class Kind { Proceed, Fail, KillProcess };
    Kind kind = Kind::Proceed;
    int error = 0;  // what it fails with
};

using SystemCallObserver = std::function<Answer(const SystemCall&)>;

struct TracedRun {
    ProgramResult result;
    // System calls that failed and processes that were killed on request. A test of a fault that
    // finds none has tested nothing.
    std::size_t faults = 0;
    // Processes that were still there a while after the program's end.
    std::size_t left = 0;
};

// Whether this machine lets a process trace another.
bool canTrace();

// Runs the built program as runPkgvet() does, but without a shell around it. observe is asked
// before each system call of the program and of each process that it starts; no other goes on
// meanwhile unless it was already on its way.
TracedRun runTraced(const std::vector<std::string>& arguments, const SystemCallObserver& observe,
                    const std::vector<std::string>& environment = {});
