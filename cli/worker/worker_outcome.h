// What came of a worker.
#pragma once

#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/worker/worker_process.h"

namespace pkgvet::cli {

// Why a worker was ended before it came to its end by itself.
enum class StopReason { None, Timeout, Interruption };

// The report of a worker that ended as end says, judged under profiles; the path is the caller's to
// fill in. A worker that is not heard out, crashes or answers nonsense makes a package that could
// not be judged. Removes the directories that the worker left behind, and replaces their names in
// what it said, as they differ from run to run.
PackageReport concludeWorker(const WorkerEnd& end, StopReason reason,
                             const std::vector<std::string>& profiles);

}  // namespace pkgvet::cli
