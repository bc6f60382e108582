// The copy that everything said of a package is said of.
#pragma once

#include <future>
#include <string>

#include "cli/model/model.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// What ends the judgement of a package, for the one place that reports it.
struct NotJudged {
    Cause cause;
};

// Copies a package and sums the copy up. A thread takes the sum, as reading all of a large package
// takes long and the tools that unpack it leave a processor idle meanwhile.
class PackageCopy {
public:
    // Copies what the descriptor package is open on, to its end, to a new file at path. The sum, in
    // hexadecimal, goes to checksum, which outlives this object. Throws NotJudged.
    PackageCopy(int package, const std::string& path, std::string* checksum);
    PackageCopy(const PackageCopy&) = delete;
    PackageCopy(PackageCopy&&) = delete;
    PackageCopy& operator=(const PackageCopy&) = delete;
    PackageCopy& operator=(PackageCopy&&) = delete;
    // Waits for the sum as well, for the sake of reports on packages that come to nothing.
    ~PackageCopy();

    // Waits for the sum; no thread is left then. Throws NotJudged when the copy cannot be read.
    void finish();

private:
    Descriptor copy_;
    std::string* checksum_;
    std::future<std::string> sum_;
};

}  // namespace pkgvet::cli
