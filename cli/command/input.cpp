// Walks to the packages that the user names.
#include "cli/command/input.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kStandardInput = "-";
constexpr const char* kExtension = ".rpm";
// No file has such a name. Libraries would take it as far as the NUL and open another file.
constexpr const char* kNulInName = "a NUL in its name";

// Walks through what one path leads to.
class Walk {
public:
    explicit Walk(std::vector<Input>* inputs) : inputs_(inputs) {}

    void visit(const fs::path& path) {
        if (path.native().find('\0') != std::string::npos) {
            add(path, kNulInName);
        } else if (isDirectory(path)) {
            visitDirectory(path);
        } else {
            add(path);
        }
    }

private:
    static bool isDirectory(const fs::path& path) {
        std::error_code error;
        return fs::is_directory(path, error);
    }

    void add(const fs::path& path, const std::string& cause = std::string()) {
        inputs_->push_back({path.native(), cause});
    }

    // Links give one directory many names, and can lead back up.
    bool isNew(const fs::path& directory) {
        struct stat status {};
        return stat(directory.c_str(), &status) == 0 &&
               visited_.emplace(status.st_dev, status.st_ino).second;
    }

    void visitDirectory(const fs::path& directory) {
        if (!isNew(directory)) {
            return;
        }
        std::error_code error;
        std::vector<fs::path> entries;
        for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
             entry.increment(error)) {
            entries.push_back(entry->path());
        }
        if (error) {
            add(directory, std::strerror(error.value()));
            return;
        }
        // The order of a directory differs from machine to machine.
        std::sort(entries.begin(), entries.end(), [](const fs::path& one, const fs::path& other) {
            return one.native() < other.native();
        });
        std::for_each(entries.begin(), entries.end(),
                      [this](const fs::path& entry) { visitEntry(entry); });
    }

    void visitEntry(const fs::path& entry) {
        if (isDirectory(entry)) {
            visitDirectory(entry);
        } else if (entry.native().ends_with(kExtension)) {
            add(entry);
        }
    }

    std::vector<Input>* inputs_;
    std::set<std::pair<dev_t, ino_t>> visited_;
};

void collect(const std::string& path, std::vector<Input>* inputs) {
    Walk(inputs).visit(path);
}

void readList(std::istream& stream, char end, std::vector<Input>* inputs) {
    for (std::string path; std::getline(stream, path, end);) {
        // An empty line is not a path, but an empty argument is one that cannot be found.
        if (!path.empty()) {
            collect(path, inputs);
        }
    }
}

void readList(const std::string& list, char end, std::vector<Input>* inputs) {
    if (list == kStandardInput) {
        readList(std::cin, end, inputs);
        return;
    }
    std::ifstream stream(list);
    // A directory opens like a file, and then has no content.
    if (!stream || fs::is_directory(list)) {
        throw std::runtime_error("cannot read " + list);
    }
    readList(stream, end, inputs);
}

}  // namespace

std::vector<Option> inputOptions(InputOptions* options) {
    return {
        filesOption("--files-from", &options->filesFrom,
                    "Read more paths from FILE, one a line; - is standard input"),
        flagOption({"-0", "--null"}, &options->nulSeparated,
                   "Paths in the lists end with a NUL in place of a line feed"),
    };
}

Operand inputOperand(InputOptions* options) {
    return {.name = "PATH",
            .description = "Packages to judge; of a directory every *.rpm below it",
            .takesFiles = true,
            .set = appendTo(&options->paths)};
}

std::string missingInput(const InputOptions& options) {
    const bool isMissing = options.paths.empty() && options.filesFrom.empty();
    return isMissing ? "PATH or --files-from" : "";
}

std::vector<Input> collectInput(const InputOptions& options) {
    std::vector<Input> inputs;
    for (const std::string& path : options.paths) {
        collect(path, &inputs);
    }
    for (const std::string& list : options.filesFrom) {
        readList(list, options.nulSeparated ? '\0' : '\n', &inputs);
    }
    return inputs;
}

}  // namespace pkgvet::cli
