// A directory on disk to unpack a package in.
#pragma once

#include <string>

#include "cli/worker/claim.h"
#include "cli/worker/sandbox.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Made for one judge and removed with the object, whatever is in it.
class ScratchDirectory {
public:
    // A new directory in parent, for the user whom judges in sandbox are; none where parent is
    // empty. Throws std::system_error when it cannot be made.
    ScratchDirectory(const std::string& parent, const Sandbox& sandbox);
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory(ScratchDirectory&& other) noexcept;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(ScratchDirectory&& other) noexcept;
    ~ScratchDirectory();

    // -1 when there is none.
    int descriptor() const { return descriptor_.get(); }

private:
    std::string path_;
    Descriptor descriptor_;
    Claim claim_;
};

}  // namespace pkgvet::cli
