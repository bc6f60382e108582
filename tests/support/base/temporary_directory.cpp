#include "tests/support/base/temporary_directory.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// Packages under test hold directories that their owner may not write to.
void makeRemovable(const fs::path& root) {
    std::error_code error;
    fs::permissions(root, fs::perms::owner_all, fs::perm_options::add, error);
    for (const auto& entry : fs::directory_iterator(root, error)) {
        if (entry.is_directory(error) && !entry.is_symlink(error)) {
            makeRemovable(entry.path());
        }
    }
}

// A directory that TMPDIR names and that is not there is as good as none, and rpmbuild cannot work
// below a path with a blank.
fs::path placeOfTemporaries() {
    std::error_code error;
    const fs::path place = fs::temp_directory_path(error);
    const bool isUsable = !error && place.string().find(' ') == std::string::npos;
    return isUsable ? place : fs::path("/tmp");
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
    std::string name = placeOfTemporaries() / "pkgvet-test-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot make " + name);
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    makeRemovable(path_);
    std::error_code error;
    fs::remove_all(path_, error);
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view content) const {
    const fs::path file = path_ / name;
    fs::create_directories(file.parent_path());
    writeFile(file, content);
    return file;
}

std::string readFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + path.string());
    }
}
