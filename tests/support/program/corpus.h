// A few packages of every kind, and a rule tree to judge them by.
#pragma once

#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/program.h"

// The packages lie in a directory of their own: some with findings, some with scripts as well,
// which nothing excuses, one with a hostile name, one that is not a package. Some findings are
// waived.
class Corpus {
public:
    Corpus();

    const TemporaryDirectory& directory() const { return directory_; }
    std::string packages() const { return directory_ / "packages"; }
    // Not in the order of the names, and one of them is missing.
    const std::vector<std::string>& paths() const { return paths_; }

    // `pkgvet check` under the tree and its waivers, under two profiles.
    std::vector<std::string> command(const std::vector<std::string>& arguments) const;
    ProgramResult check(const std::vector<std::string>& arguments) const;

private:
    void add(const std::string& package, const std::string& name);

    TemporaryDirectory directory_;
    std::string rules_;
    std::string waivers_;
    std::vector<std::string> paths_;
};

// Every format by its word. Each can be on standard output.
std::vector<std::string> allFormats();
