// Linked to what is built to count coverage. A process that ends by _exit() writes no counters, and
// all that judge a package end like that. This writes them first where there is a place for them.
// The world of a package does not have one, so that what runs in a sandbox alone is not counted.
#include <sys/syscall.h>
#include <unistd.h>

extern "C" void __gcov_dump();

// NOLINTNEXTLINE(bugprone-reserved-identifier): takes the place of the one in the C library
extern "C" void _exit(int status) {
    if (access(PKGVET_COUNTERS, W_OK) == 0) {
        __gcov_dump();
    }
    syscall(SYS_exit_group, status);
    __builtin_unreachable();
}
