// System calls that nothing has a use for while a package is judged.
#pragma once

#include <linux/filter.h>

#include <vector>

namespace pkgvet::cli {

// Refuses what reaches deep into the kernel: mounting, tracing, new namespaces, sockets, kernel
// keys, BPF, io_uring and the like. It is compiled once, as that takes longer than to apply it.
class SystemCallFilter {
public:
    // Throws std::system_error.
    SystemCallFilter();

    // For this process and all that it starts, for good. Throws std::system_error.
    void apply() const;

private:
    std::vector<sock_filter> program_;
};

}  // namespace pkgvet::cli
