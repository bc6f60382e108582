// What came of a judge.
#pragma once

#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/worker/judge_process.h"

namespace pkgvet::cli {

// Why a judge was ended before it came to its end by itself.
enum class Stop { None, Timeout, Interruption };

// The report of a judge that ended as end says, made under profiles; the path is the caller's to
// fill in. A judge that is not heard out, crashes or answers nonsense makes a package that could
// not be judged. The names of directories, which differ from run to run, are replaced in what it
// said.
PackageReport concludeJudge(const JudgeEnd& end, Stop stop,
                            const std::vector<std::string>& directories,
                            const std::vector<std::string>& profiles);

}  // namespace pkgvet::cli
