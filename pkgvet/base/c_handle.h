// The owner of what a C library hands out.
#pragma once

#include <memory>

namespace pkgvet {

template <auto Free>
struct Release {
    template <class Handle>
    void operator()(Handle* handle) const {
        Free(handle);
    }
};

// Owns a handle from its first touch and releases it with Free on every way out. A null handle is
// never released. Each kind of handle has an alias beside its use:
//
//   using KeyFileHandle = CHandle<GKeyFile, g_key_file_unref>;
template <class Handle, auto Free>
using CHandle = std::unique_ptr<Handle, Release<Free>>;

}  // namespace pkgvet
