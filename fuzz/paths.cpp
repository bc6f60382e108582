// The list of a package's files, a line each, through the rules on files as such. The first line is
// what a link leads to, which is the first file; the others are not there.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <regex>

#include "fuzz/fuzz_target.h"
#include "pkgvet/files/file_rules.h"
#include "tests/support/rules/rule_tree.h"

namespace {

constexpr std::size_t kMostPaths = 16;
constexpr std::size_t kMostBytes = 256;

RuleTree rules() {
    RuleTree tree;
    tree.iconSizes = {86, 108};
    tree.regular().requireIcons = true;
    tree.regular().paths = {"/usr/lib/3rdparty/.*", "/etc/.*"};
    return tree;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    static const Configuration configuration = load(rules());
    static const TemporaryDirectory directory;
    std::vector<std::string> paths = linesOf(input.substr(0, kMostBytes));
    paths.resize(std::clamp<std::size_t>(paths.size(), 1, kMostPaths));
    std::vector<mode_t> modes;
    for (std::string& path : paths) {
        path = path.substr(0, path.find('\0'));
        modes.push_back(modes.empty()           ? 0
                        : modes.size() % 5 == 0 ? S_IFDIR | 0775
                                                : S_IFREG | 0755);
    }
    unlink((directory / "link").c_str());
    if (symlink(paths[0].c_str(), (directory / "link").c_str()) == 0) {
        paths[0] = "/link";
    }
    const std::vector<std::string> names(paths.size(), "root");
    const Application application{false, "org.example", "App"};
    const std::string root = directory.path();
    FileFacts facts;
    Findings findings;
    // A path serves as a pattern and may not be one.
    tolerate<std::regex_error>([&] { checkIcons("app", paths, configuration, root, &findings); });
    checkExcludedPaths("app", paths, application, configuration, root, &facts, &findings);
    tolerate<std::regex_error>([&] {
        processPermissions("app", paths, modes, names, names, configuration, root, &findings);
    });
    for (const std::string& path : paths) {
        isBlacklistedExtension(path);
    }
}
