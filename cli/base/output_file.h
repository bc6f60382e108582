// A file that is there whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Gathers content beside a path and renames it into place, so that a reader of the path sees the
// former file or the whole new one. A link is followed to the file behind it, and what is not
// a regular file, such as a pipe or a terminal, is written to as it stands. A file that was there
// keeps its mode. Without commit() nothing remains. All of it throws std::runtime_error with a line
// that names the path.
class OutputFile {
public:
    // Opens at once: a run of hours must not end with a path that cannot be written.
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(const OutputFile&) = delete;
    OutputFile& operator=(OutputFile&&) = delete;
    ~OutputFile();

    void write(std::string_view content);
    void commit();

private:
    void openBeside();
    void nameFile();
    void keepMode();
    void discard();

    std::string path_;       // as the user named it
    std::string target_;     // behind links
    std::string temporary_;  // empty where the target itself is written, or as long as it has none
    bool isNameless_ = false;
    Descriptor descriptor_;
};

}  // namespace pkgvet::cli
