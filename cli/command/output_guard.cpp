// Recognises files by what they are and not by their names.
#include "cli/command/output_guard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

namespace {

using Identity = std::pair<dev_t, ino_t>;
using Identities = std::set<Identity>;

// What every package in RPM format begins with.
constexpr std::array<unsigned char, 4> kMagic = {0xed, 0xab, 0xee, 0xdb};

constexpr const char* kIsAnInput = "it is also read";
constexpr const char* kIsAnOutput = "another output goes there as well";
constexpr const char* kIsStandardOutput = "standard output goes there";
constexpr const char* kIsAPackage = "there is a package";

[[noreturn]] void refuse(const std::string& path, const char* cause) {
    throw std::runtime_error("cannot write " + path + ": " + cause);
}

// A device, /dev/null above all, is not replaced.
bool canLose(const struct stat& status) {
    return !S_ISCHR(status.st_mode) && !S_ISBLK(status.st_mode);
}

Identity identityOf(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

// Of the regular files alone: what is read from a pipe cannot be lost.
Identities identitiesOf(const std::vector<std::string>& paths) {
    Identities identities;
    for (const std::string& path : paths) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            identities.insert(identityOf(status));
        }
    }
    return identities;
}

bool isPackage(const std::string& path, const struct stat& status) {
    // A pipe would be waited for.
    if (!S_ISREG(status.st_mode)) {
        return false;
    }
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::array<unsigned char, kMagic.size()> beginning{};
    return read(file.get(), beginning.data(), beginning.size()) ==
               static_cast<ssize_t>(beginning.size()) &&
           beginning == kMagic;
}

// Of a file that does not exist yet there is nothing but its place.
std::string placeOf(const std::string& path) {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::weakly_canonical(path, error);
    return error ? path : place.string();
}

class Guard {
public:
    explicit Guard(const std::vector<std::string>& inputs) : inputs_(identitiesOf(inputs)) {
        struct stat status {};
        if (fstat(STDOUT_FILENO, &status) != 0 || !canLose(status)) {
            return;
        }
        if (inputs_.count(identityOf(status)) != 0) {
            throw std::runtime_error("standard output goes to a file that is also read");
        }
        standardOutput_.insert(identityOf(status));
    }

    void add(const std::string& path) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0) {
            addExisting(path, status);
        } else if (!places_.insert(placeOf(path)).second) {
            refuse(path, kIsAnOutput);
        }
    }

private:
    void addExisting(const std::string& path, const struct stat& status) {
        if (inputs_.count(identityOf(status)) != 0) {
            refuse(path, kIsAnInput);
        }
        if (standardOutput_.count(identityOf(status)) != 0) {
            refuse(path, kIsStandardOutput);
        }
        if (canLose(status) && !outputs_.insert(identityOf(status)).second) {
            refuse(path, kIsAnOutput);
        }
        if (isPackage(path, status)) {
            refuse(path, kIsAPackage);
        }
    }

    Identities inputs_;
    Identities standardOutput_;
    Identities outputs_;
    std::set<std::string> places_;
};

}  // namespace

void refuseLossOfFiles(const std::vector<std::string>& outputs,
                       const std::vector<std::string>& inputs) {
    Guard guard(inputs);
    for (const std::string& path : outputs) {
        guard.add(path);
    }
}

}  // namespace pkgvet::cli
