// Temporary directories that somebody else knows of.
#pragma once

namespace pkgvet::cli {

// From now on each temporary directory that this process makes is announced on descriptor, as a
// message of the worker's, before it is there. So whoever listens can remove it, however this
// process ends.
//
// The program has a mkdtemp of its own for this: the library calls it in place of the C library's.
void announceDirectories(int descriptor);

}  // namespace pkgvet::cli
