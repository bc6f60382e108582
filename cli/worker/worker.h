// The process that judges one package.
#pragma once

#include "cli/worker/judging_options.h"

namespace pkgvet::cli {

// The descriptor on which a worker finds the pipe for its answer.
inline constexpr int kAnswerDescriptor = 3;

// Judges a package and tells the process that started this one, which is the program itself.
// Returns the exit status, which is 0 once the report has been sent, whatever is in it.
int work(const WorkerOptions& options);

}  // namespace pkgvet::cli
