// A directory that is gone with the object that made it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory(TemporaryDirectory&&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory&&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }
    // The path of name in the directory.
    std::string operator/(std::string_view name) const { return path_ / name; }

    // Writes content to name, with the directories that it needs, and returns the file's path.
    std::string write(std::string_view name, std::string_view content) const;

private:
    std::filesystem::path path_;
};

// The whole content of the file at path; std::runtime_error when it cannot be read.
std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, std::string_view content);
