// Waiting for child processes.
#pragma once

#include <sys/types.h>
#include <sys/wait.h>

#include <cerrno>

namespace pkgvet::cli {

// Its status, as of waitpid.
inline int waitForEnd(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace pkgvet::cli
