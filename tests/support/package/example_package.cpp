#include "tests/support/package/example_package.h"

#include <stdexcept>

#include "tests/support/base/source_tree.h"
#include "tests/support/package/package_builder.h"

std::string buildExample(const std::string& name, const std::string& directory) {
    const std::string sources = sourceFile("examples/" + name);
    const std::string recipe =
        name == "good" ? "/org.example.pilot.spec" : "/example.badpilot.spec";
    std::string log;
    const int status =
        runProgram({"rpmbuild", "-bb", "--quiet", "--define", "_topdir " + directory, "--define",
                    "_dbpath " + directory + "/db", "--define", "_sourcedir " + sources, "--define",
                    "_build_name_fmt package.rpm", sources + recipe},
                   &log);
    if (status != 0) {
        throw std::runtime_error(log);
    }
    return directory + "/RPMS/package.rpm";
}
