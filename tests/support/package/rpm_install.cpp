#include "tests/support/package/rpm_install.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <set>

#include "tests/support/package/crafted_package.h"
#include "tests/support/package/package_builder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kDatabase = "/rpm-database";
// rpm waits for ever for what it was told to make a fifo.
constexpr const char* kTimeout = "200";

std::string lineOf(const fs::path& path, const std::string& name) {
    struct stat status {};
    lstat(path.c_str(), &status);
    std::array<char, 8> mode{};
    std::snprintf(mode.data(), mode.size(), "%06o", status.st_mode);
    std::string line = std::string(mode.data()) + " " + name;
    if (S_ISLNK(status.st_mode)) {
        line += " -> " + fs::read_symlink(path).string();
    } else if (S_ISREG(status.st_mode)) {
        line += " " + std::to_string(status.st_size);
    }
    return line + "\n";
}

}  // namespace

bool canInstall() {
    static const bool can = [] {
        const TemporaryDirectory directory;
        const TemporaryDirectory root;
        CraftedPackage package("org.example.trial");
        package.file(packedFile("/trial", "x"));
        return geteuid() == 0 && install(package.write(directory), root).status == 0;
    }();
    return can;
}

Installation install(const std::string& package, const TemporaryDirectory& root) {
    Installation result{0, std::string()};
    result.status = runProgram({"timeout", "--signal", "KILL", kTimeout, "rpm", "-i", "--root",
                                root.path(), "--dbpath", kDatabase, "--nodeps", "--noscripts",
                                "--notriggers", "--nosignature", "--nocontexts", package},
                               &result.output);
    return result;
}

std::string treeBelow(const fs::path& root) {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().string().substr(root.string().size());
        if (!name.starts_with(kDatabase)) {
            names.insert(name);
        }
    }
    std::string lines;
    for (const std::string& name : names) {
        lines += lineOf(root.string() + name, name);
    }
    return lines;
}
