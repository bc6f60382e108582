// What the process that judges one package does.
#pragma once

#include "cli/worker/channel.h"
#include "cli/worker/template_main.h"
#include "cli/worker/world.h"

namespace pkgvet::cli {

// The descriptors of one judge.
struct JudgeDescriptors {
    Descriptor package;
    Descriptor answer;
    Descriptor errors;
};

// Enters the world of plan, judges, answers and ends the process, which forkSibling made. A world
// that cannot be made as planned is the cause in the answer. The payload goes into memory, or into
// the working directory.
[[noreturn]] void runJudge(const WorldPlan& plan, const SystemCallFilter& filter,
                           const JudgeFunction& judge, JudgeDescriptors descriptors,
                           const Directories& directories, bool inWorkingDirectory);

}  // namespace pkgvet::cli
