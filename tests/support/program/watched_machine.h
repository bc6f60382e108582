// Every file that the program makes, changes or removes on the machine, seen by a test.
#pragma once

#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"

// A copy-on-write view of the machine's directories, for one run of the program with words() in
// front of its environment. What other processes do meanwhile is not in it. Left out are /proc,
// /sys and /dev but for /dev/shm, and places that hold mounts. In /tmp there the program leaves
// alone what killed runs have left.
class WatchedMachine {
public:
    WatchedMachine();

    // Whether this machine gives such a view. Tests are skipped where it does not.
    static bool isPossible();

    std::vector<std::string> words() const;
    // The paths that the run changed, in alphabetical order.
    std::vector<std::string> changes() const;

private:
    TemporaryDirectory directory_;
};
