// Real packages, built with rpmbuild.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/temporary_directory.h"

// Describes a package and builds it. Unless told otherwise it is a noarch package 1.0-1 without
// automatic dependencies, and its files belong to root:root.
class PackageBuilder {
public:
    explicit PackageBuilder(std::string name);

    // A line of the preamble, such as "Vendor: pelzo" or "Requires: foo >= 1.2".
    PackageBuilder& tag(const std::string& line);
    // Lines between %install and %files, such as "%post\ntrue" or "%post -p /bin/true".
    PackageBuilder& script(const std::string& lines);
    // The architecture of this machine in place of noarch.
    PackageBuilder& native();

    // What the package installs; path with its leading "/". Parents of a file belong to the
    // package only when they are added as directories.
    PackageBuilder& file(const std::string& path, const std::string& content,
                         const std::string& mode = "0644", const std::string& user = "root",
                         const std::string& group = "root");
    // A copy of the file at source, on disk.
    PackageBuilder& copy(const std::string& path, const std::string& source,
                         const std::string& mode = "0755");
    PackageBuilder& link(const std::string& path, const std::string& target);
    PackageBuilder& directory(const std::string& path, const std::string& mode = "0755",
                              const std::string& user = "root", const std::string& group = "root");
    // A line of %files for what the lines of script() install, such as "%config /etc/app".
    PackageBuilder& listing(const std::string& line);
    // A path that stands in the header alone.
    PackageBuilder& ghost(const std::string& path);

    // Builds below directory and returns the path of the package there. std::runtime_error with
    // rpmbuild's output when it fails.
    std::string build(const TemporaryDirectory& directory) const;

private:
    struct Entry {
        enum class Kind { File, Copy, Link, Directory, Ghost } kind;
        std::string path;
        std::string content;  // or the target, or the source
        std::string attributes;
    };

    void stage(const std::string& root) const;
    std::string recipe(const std::string& root) const;

    std::string name_;
    std::string arch_ = "BuildArch: noarch\n";
    std::string tags_;
    std::string scripts_;
    std::string listing_;
    std::vector<Entry> entries_;
};

// The header of the package, once it is built.
RpmMeta metaOf(const PackageBuilder& package);

// Runs a program and waits for it; what it wrote to either stream goes to output unless null.
// Returns the exit status, or 128 and the number of the signal that ended it.
int runProgram(const std::vector<std::string>& command, std::string* output = nullptr);
