// Looks whether the output has arrived.
#include "cli/base/exit_status.h"

#include <iostream>

#include "cli/base/terminal.h"

namespace pkgvet::cli {

int statusAfterOutput(int status) {
    if (std::cout.flush()) {
        return status;
    }
    complain("cannot write to standard output");
    return kNotJudged;
}

}  // namespace pkgvet::cli
