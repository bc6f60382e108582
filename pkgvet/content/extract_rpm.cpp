// Unpacks the payload of a package.
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <string>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/content/content_validator.h"

namespace {

// The path between the two is not escaped: a quote, a "$" or a backquote in it reaches the shell.
// A caller that takes names from strangers has to pass a safe one.
constexpr const char* kCommandBegin = "/usr/bin/rpm2cpio \"";
constexpr const char* kCommandEnd = "\" | cpio -idm";

constexpr int kFailed = 1;

using PathBuffer = std::array<char, PATH_MAX>;

}  // namespace

// cpio writes relative to the working directory, so the process goes there and back.
int ContentValidator::extractRpm(const char* directory, const char* rpmPath) {
    PathBuffer workingDirectory{};
    if (getcwd(workingDirectory.data(), workingDirectory.size()) == nullptr) {
        return kFailed;
    }
    // A relative path means something else once the directory has changed.
    PathBuffer absolutePath{};
    if (realpath(rpmPath, absolutePath.data()) == nullptr) {
        return kFailed;
    }
    // The tools would wait for ever, as for a writer at the other end of a fifo.
    if (pkgvet::mayNeverEnd(absolutePath.data()) || chdir(directory) != 0) {
        return kFailed;
    }
    const std::string command = std::string(kCommandBegin) + absolutePath.data() + kCommandEnd;
    const int result = system(command.c_str());
    return chdir(workingDirectory.data()) == 0 ? result : kFailed;
}
