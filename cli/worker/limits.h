// What the judging of one package may take.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pkgvet::cli {

// Each is met with "not judged" and a cause that names the option.
struct Limits {
    double seconds = 120;                                  // --timeout
    unsigned processorSeconds = 60;                        // --cpu-time, of each process
    std::uint64_t unpackedBytes = std::uint64_t{4} << 30;  // --max-unpacked
    unsigned files = 200'000;                              // --max-files
    std::uint64_t memory = std::uint64_t{2} << 30;         // --memory, of each process
    std::uint64_t report = std::uint64_t{64} << 20;        // --max-report
};

inline constexpr const char* kOutOfProcessorTime =
    "it took more processor time than --cpu-time allows";

// The exit status of a judge that ran out of processor time.
inline constexpr int kOutOfTimeStatus = 110;
// And of one that had no memory left for its answer.
inline constexpr int kOutOfMemoryStatus = 111;
// And, less the number of the signal, of one that ended by a signal that its namespaces shield it
// from.
inline constexpr int kSignalStatus = 128;

// Applies to this process and to all that it starts: those of the limits that the kernel keeps, no
// core files, few descriptors and processes. No file may become larger than fileSize. The
// latter only where ids are its own, as all processes of the same user count otherwise. Throws
// std::system_error.
void applyLimits(const Limits& limits, std::uint64_t fileSize, bool hasOwnIds);

}  // namespace pkgvet::cli
