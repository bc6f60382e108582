// A process in namespaces of its own, and its view of the file systems.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Puts the calling process, which has one thread and is owner, into a new network namespace, in
// which there is nothing, and into a new user namespace, which it belongs to. What the process
// forks stays in the first, and without power over it. Throws std::system_error.
void enterSharedNamespaces(uid_t owner, gid_t group);

// The same with those that a child of the caller entered and is still in. False when that is not
// possible.
bool joinSharedNamespaces(pid_t process);

// As fork(), but the child is a sibling of the caller: whoever started the caller waits for it.
// With isolated, it is the first process in new user, mount, PID, IPC and UTS namespaces, so that
// everything it starts ends with it. The caller must have one thread.
pid_t forkSibling(bool isolated);

// The same as a child of the caller.
pid_t forkIsolated();

// How much there is room for on the file system that holds the package and its files.
struct Room {
    std::uint64_t bytes = 0;
    std::uint64_t files = 0;
};

// Where things are once the world of a judge is made.
struct WorldPaths {
    std::string copy;  // where the copy of the package goes
    Descriptor root;   // becomes the root directory once the payload is unpacked
};

// Furnishes the namespaces of the calling process, which forkSibling or forkIsolated made as owner:
// an ordinary id inside that is owner outside, all file systems read-only and without devices and
// set-id programs, a private file system on /tmp with room, and a /proc of its own where the kernel
// allows. That file system lies in memory, or is the working directory. The
// directories of readable will be seen in the new root as well.
// Throws std::system_error, which names the step that failed.
WorldPaths furnishNamespaces(uid_t owner, gid_t group, const Room& room, bool inWorkingDirectory,
                             const std::vector<std::string>& readable);

// Mounts an empty file system in memory on place, below the private /tmp, from which programs of
// size bytes in all can be run. Throws std::system_error.
void mountForPrograms(const char* place, std::size_t size);

// Leaves of all capabilities in these namespaces those by which a superuser may read and change
// what a package unpacks to, whatever permissions its files have, and hands them on to what this
// process starts. Changing the root directory remains for this process.
void limitCapabilities();

// Makes root, of WorldPaths, the root directory: it holds the private /tmp and what was to be
// readable, and nothing else.
void enterRoot(const Descriptor& root);

}  // namespace pkgvet::cli
