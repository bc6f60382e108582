// The files that a run writes, held against those that it reads.
#pragma once

#include <string>
#include <vector>

namespace pkgvet::cli {

// Throws std::runtime_error, which names the file, when one of outputs is one of inputs, whatever
// name or link leads to it, is another of outputs, is what standard output goes to, or is a package
// already. The same goes for standard output and inputs. Nothing is opened for writing. Terminals
// and devices take any number of outputs.
void refuseLossOfFiles(const std::vector<std::string>& outputs,
                       const std::vector<std::string>& inputs);

}  // namespace pkgvet::cli
