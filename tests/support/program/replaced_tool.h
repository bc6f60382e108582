// The tool that reads a package, replaced for one run of the program.
#pragma once

#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"

// A shell script in the place of /usr/bin/rpm2cpio, seen by nobody but the program that is run with
// words() as its environment. The script finds the real tool as "$REAL", and a directory that it
// can write notes to as "$NOTES" where the program judges without a sandbox.
class ReplacedRpm2cpio {
public:
    explicit ReplacedRpm2cpio(const std::string& script);

    // Whether this machine lets the test replace it. Tests are skipped where it does not.
    static bool isPossible();

    std::vector<std::string> words() const;
    // The content of a note that the script left, empty as long as there is none.
    std::string note(const std::string& name) const;

private:
    TemporaryDirectory directory_;
};
