#include "tests/support/base/child_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <iostream>
#include <stdexcept>

namespace {

constexpr unsigned kNobody = 65534;

bool answer(const std::function<bool()>& action) {
    try {
        return action();
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return false;
    }
}

}  // namespace

bool holdsInChild(const std::function<bool()>& action) {
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        _exit(answer(action) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool holdsForOrdinaryUser(const std::function<bool()>& action) {
    return holdsInChild([&action] {
        // The other user may be forbidden to enter the directory that the tests run in.
        if (geteuid() == 0 && (chdir("/") != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
            throw std::runtime_error("cannot become an ordinary user");
        }
        return action();
    });
}
