#include "tests/support/program/replaced_tool.h"

#include <unistd.h>

#include <filesystem>

#include "tests/support/package/package_builder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kRpm2cpio = "/usr/bin/rpm2cpio";
// A program that nobody needs here, in whose place the real one stands meanwhile.
constexpr const char* kRealPlace = "/usr/bin/factor";

constexpr const char* kReplace =
    R"(mount --bind "$1" "$2" && mount --bind "$0" "$1" && shift 2 && exec "$@")";

// A mount namespace, in which a superuser, real or of a user namespace, mounts what he likes.
std::vector<std::string> namespaceCommand() {
    if (geteuid() == 0) {
        return {"unshare", "--mount"};
    }
    return {"unshare", "--mount", "--map-root-user"};
}

}  // namespace

ReplacedRpm2cpio::ReplacedRpm2cpio(const std::string& script) {
    const std::string notes = directory_ / "notes";
    fs::create_directory(notes);
    fs::permissions(notes, fs::perms::all);
    fs::permissions(directory_.path(),
                    fs::perms::owner_all | fs::perms::others_exec | fs::perms::others_read);
    const std::string begin = "#!/bin/sh\nPATH=/usr/bin:/bin\nREAL=" + std::string(kRealPlace) +
                              "\nNOTES=" + notes + "\n";
    fs::permissions(directory_.write("rpm2cpio", begin + script + "\n"),
                    fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
}

bool ReplacedRpm2cpio::isPossible() {
    std::vector<std::string> command = namespaceCommand();
    const std::string tool = fs::canonical(kRpm2cpio);
    command.insert(command.end(), {"mount", "--bind", tool, tool});
    return runProgram(command) == 0;
}

std::vector<std::string> ReplacedRpm2cpio::words() const {
    std::vector<std::string> words = namespaceCommand();
    words.insert(words.end(), {"sh", "-c", kReplace, directory_ / "rpm2cpio",
                               fs::canonical(kRpm2cpio).string(), kRealPlace});
    return words;
}

std::string ReplacedRpm2cpio::note(const std::string& name) const {
    const std::string file = directory_ / ("notes/" + name);
    return fs::exists(file) ? readFile(file) : std::string();
}
