// Names of packages that may be handed to a shell.
#pragma once

#include <string>

namespace pkgvet::cli {

// Whether path holds nothing but letters, digits and punctuation that means nothing to a shell.
bool isShellSafe(const std::string& path);

// A path on disk by which a package can be handed to the library, which hands it on to a shell
// between double quotes. For a name that is safe it is that name. Otherwise it is a copy in a
// directory of its own, a clone or a hard link where the file system allows, that is removed with
// the object.
class SafePath {
public:
    // resolved is absolute and free of links. Throws std::system_error when no copy can be made.
    explicit SafePath(const std::string& resolved);
    SafePath(const SafePath&) = delete;
    SafePath(SafePath&&) = delete;
    SafePath& operator=(const SafePath&) = delete;
    SafePath& operator=(SafePath&&) = delete;
    ~SafePath();

    const std::string& path() const { return path_; }

private:
    std::string directory_;  // empty when the name was safe
    std::string path_;
};

}  // namespace pkgvet::cli
