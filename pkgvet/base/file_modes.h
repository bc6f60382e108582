// What kind of files a package holds.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace pkgvet {

// The type and the permissions of the file at root and each of paths, links followed, 0 where
// stat() fails. Asked for once, since several rules need them and a package may have many files.
std::vector<mode_t> readModes(const std::string& root, const std::vector<std::string>& paths);

// The same; visit is called with what stat() says of each, all of it 0 where that fails.
std::vector<mode_t> readModes(const std::string& root, const std::vector<std::string>& paths,
                              const std::function<void(const struct stat&)>& visit);

}  // namespace pkgvet
