#include "tests/support/package/package_builder.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "pkgvet/base/descriptor.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kPreamble = R"(
%global debug_package %{nil}
%global __os_install_post %{nil}
%global _build_id_links none
%global _binaries_in_noarch_packages_terminate_build 0
Version: 1.0
Release: 1
Summary: A package under test
License: MIT
AutoReqProv: no
)";

std::string attributes(const std::string& mode, const std::string& user, const std::string& group) {
    return "%attr(" + mode + "," + user + "," + group + ") ";
}

}  // namespace

PackageBuilder::PackageBuilder(std::string name) : name_(std::move(name)) {}

PackageBuilder& PackageBuilder::tag(const std::string& line) {
    tags_ += line + "\n";
    return *this;
}

PackageBuilder& PackageBuilder::script(const std::string& lines) {
    scripts_ += lines + "\n";
    return *this;
}

PackageBuilder& PackageBuilder::native() {
    arch_.clear();
    return *this;
}

PackageBuilder& PackageBuilder::file(const std::string& path, const std::string& content,
                                     const std::string& mode, const std::string& user,
                                     const std::string& group) {
    entries_.push_back({Entry::Kind::File, path, content, attributes(mode, user, group)});
    return *this;
}

PackageBuilder& PackageBuilder::copy(const std::string& path, const std::string& source,
                                     const std::string& mode) {
    entries_.push_back({Entry::Kind::Copy, path, source, attributes(mode, "root", "root")});
    return *this;
}

PackageBuilder& PackageBuilder::link(const std::string& path, const std::string& target) {
    entries_.push_back({Entry::Kind::Link, path, target, attributes("-", "root", "root")});
    return *this;
}

PackageBuilder& PackageBuilder::directory(const std::string& path, const std::string& mode,
                                          const std::string& user, const std::string& group) {
    entries_.push_back(
        {Entry::Kind::Directory, path, std::string(), "%dir " + attributes(mode, user, group)});
    return *this;
}

PackageBuilder& PackageBuilder::listing(const std::string& line) {
    listing_ += line + "\n";
    return *this;
}

PackageBuilder& PackageBuilder::ghost(const std::string& path) {
    entries_.push_back(
        {Entry::Kind::Ghost, path, std::string(), "%ghost " + attributes("0644", "root", "root")});
    return *this;
}

void PackageBuilder::stage(const std::string& root) const {
    for (const Entry& entry : entries_) {
        const fs::path target = root + entry.path;
        fs::create_directories(target.parent_path());
        switch (entry.kind) {
            case Entry::Kind::File:
                writeFile(target, entry.content);
                break;
            case Entry::Kind::Copy:
                fs::copy_file(entry.content, target);
                break;
            case Entry::Kind::Link:
                fs::create_symlink(entry.content, target);
                break;
            case Entry::Kind::Directory:
                fs::create_directories(target);
                break;
            case Entry::Kind::Ghost:
                writeFile(target, std::string());
                break;
        }
    }
}

std::string PackageBuilder::recipe(const std::string& root) const {
    std::string text = "Name: " + name_ + "\n" + kPreamble + arch_ + tags_ +
                       "%description\nA package under test\n%install\nmkdir -p %{buildroot}\n"
                       "cp -a '" +
                       root + "/.' %{buildroot}/\nchmod -R u=rwX,go=rX %{buildroot}\n" + scripts_ +
                       "%files\n";
    for (const Entry& entry : entries_) {
        text += entry.attributes + "\"" + entry.path + "\"\n";
    }
    return text + listing_;
}

std::string PackageBuilder::build(const TemporaryDirectory& directory) const {
    static int count = 0;
    const fs::path top = directory.path() / ("build-" + std::to_string(count++));
    const std::string root = top / "root";
    fs::create_directories(root);
    stage(root);
    const std::string recipeFile = top / "package.spec";
    writeFile(recipeFile, recipe(root));
    std::string log;
    const int status =
        runProgram({"rpmbuild", "-bb", "--quiet", "--define", "_topdir " + top.string(), "--define",
                    "_dbpath " + (top / "db").string(), "--define",
                    "_rpmdir " + (top / "out").string(), "--define", "_binary_payload w1.gzdio",
                    "--define", "_build_name_fmt package.rpm", recipeFile},
                   &log);
    if (status != 0) {
        throw std::runtime_error("rpmbuild failed:\n" + log);
    }
    return top / "out" / "package.rpm";
}

RpmMeta metaOf(const PackageBuilder& package) {
    const TemporaryDirectory directory;
    return RpmMeta(package.build(directory).c_str());
}

int runProgram(const std::vector<std::string>& command, std::string* output) {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make a pipe");
    }
    const pkgvet::Descriptor reading(ends[0]);
    pkgvet::Descriptor writing(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, writing.get(), STDERR_FILENO);
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    writing.reset();
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = read(reading.get(), buffer.data(), buffer.size())) > 0;) {
        if (output != nullptr) {
            output->append(buffer.data(), static_cast<std::size_t>(size));
        }
    }
    if (failure != 0) {
        throw std::runtime_error("cannot run " + command[0]);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
