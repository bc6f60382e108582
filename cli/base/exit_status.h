// How the program ends.
#pragma once

namespace pkgvet::cli {

inline constexpr int kAccepted = 0;    // every package was accepted
inline constexpr int kRejected = 1;    // at least one was rejected
inline constexpr int kUsageError = 2;  // or a rule tree that cannot be used
inline constexpr int kNotJudged = 3;   // at least one package could not be judged; outranks 1

// The exit status of a command whose own result is status. When its output did not reach standard
// output, as on a full disk, that is kNotJudged, and a complaint goes to standard error.
int statusAfterOutput(int status);

}  // namespace pkgvet::cli
