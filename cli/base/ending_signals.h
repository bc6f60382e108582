// The signals that ask the program to end.
#pragma once

#include <signal.h>

#include <array>

namespace pkgvet::cli {

inline constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

}  // namespace pkgvet::cli
