// Walks to the packages that the user names.
#include "cli/command/input.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "pkgvet/base/descriptor.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kStandardInput = "-";
constexpr const char* kStandardInputName = "standard input";
constexpr std::string_view kExtension = ".rpm";
// No file has such a name. Libraries would take it as far as the NUL and open another file.
constexpr const char* kNulInName = "a NUL in its name";
constexpr std::size_t kPieceSize = 65536;

// Windows and some file systems of other systems spell it in capitals.
bool hasExtension(std::string_view name) {
    return name.size() >= kExtension.size() &&
           g_ascii_strncasecmp(name.data() + name.size() - kExtension.size(), kExtension.data(),
                               kExtension.size()) == 0;
}

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

    // What may not be looked at may be a directory with packages.
    static bool isClosed(const fs::path& path) {
        std::error_code error;
        static_cast<void>(fs::status(path, error));
        return error == std::errc::permission_denied;
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
        } else if (hasExtension(entry.native())) {
            add(entry);
        } else if (isClosed(entry)) {
            add(entry, std::strerror(EACCES));
        }
    }

    std::vector<Input>* inputs_;
    std::set<std::pair<dev_t, ino_t>> visited_;
};

void collectPath(const std::string& path, CollectedInput* collected) {
    const std::size_t before = collected->packages.size();
    Walk(&collected->packages).visit(path);
    if (collected->packages.size() == before) {
        collected->empty.push_back(path + " holds no " + std::string("*").append(kExtension));
    }
}

std::string nameOf(const std::string& list) {
    return list == kStandardInput ? kStandardInputName : list;
}

[[noreturn]] void refuseList(const std::string& list) {
    throw std::runtime_error("cannot read " + nameOf(list) + ": " + std::strerror(errno));
}

// All of the list. Streams would take an error in reading for its end.
std::string contentOf(const std::string& list) {
    const Descriptor file(list == kStandardInput
                              ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                              : open(list.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen()) {
        refuseList(list);
    }
    std::string content;
    std::array<char, kPieceSize> piece{};
    while (true) {
        const ssize_t size = read(file.get(), piece.data(), piece.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            refuseList(list);
        }
        if (size == 0) {
            return content;
        }
        content.append(piece.data(), static_cast<std::size_t>(size));
    }
}

void readList(const std::string& list, bool nulSeparated, CollectedInput* collected) {
    std::istringstream lines(contentOf(list));
    bool isEmpty = true;
    for (std::string path; std::getline(lines, path, nulSeparated ? '\0' : '\n');) {
        // Lists that come from other systems end their lines with CR LF.
        if (!nulSeparated && path.ends_with('\r')) {
            path.pop_back();
        }
        // An empty line is not a path, but an empty argument is one that cannot be found.
        if (!path.empty()) {
            collectPath(path, collected);
            isEmpty = false;
        }
    }
    if (isEmpty) {
        collected->empty.push_back(nameOf(list) + " names no packages");
    }
}

Option shardOption(std::optional<ShardNumber>* shard) {
    Option option;
    option.names = {"--shard"};
    option.description = "Judge every Nth of the sorted packages from the Kth; see pkgvet merge";
    option.argument = "K/N";
    option.set = [shard](const std::string& text) {
        *shard = parseShard(text);
        return *shard ? std::string()
                      : text + " is not of the form K/N with K from 1 to N, which is at most " +
                            std::to_string(kMostShards);
    };
    return option;
}

Option resumeOption(std::string* path) {
    Option option = fileOption(
        "--resume", path,
        "Go on with this report in JSON Lines, and have all of the run's in it in the end");
    option.argument = "REPORT";
    return option;
}

}  // namespace

std::vector<Option> inputOptions(InputOptions* options) {
    return {
        filesOption("--files-from", &options->filesFrom,
                    "Read more paths from FILE, one a line; - is standard input"),
        flagOption({"-0", "--null"}, &options->nulSeparated,
                   "Paths in the lists end with a NUL in place of a line feed"),
        flagOption({"--allow-empty"}, &options->allowEmpty,
                   "Exit status 0 when there is no package to judge"),
        shardOption(&options->shard),
        resumeOption(&options->resume),
    };
}

Operand inputOperand(InputOptions* options) {
    return {.name = "PATH",
            .description = "Packages to judge; of a directory every *.rpm below it",
            .takesFiles = true,
            .set = appendTo(&options->paths)};
}

std::string missingInput(const InputOptions& options) {
    const bool isMissing =
        options.paths.empty() && options.filesFrom.empty() && !options.allowEmpty;
    return isMissing ? "PATH or --files-from" : "";
}

CollectedInput collectInput(const InputOptions& options) {
    CollectedInput collected;
    for (const std::string& path : options.paths) {
        collectPath(path, &collected);
    }
    for (const std::string& list : options.filesFrom) {
        readList(list, options.nulSeparated, &collected);
    }
    std::size_t position = 0;
    for (Input& input : collected.packages) {
        input.position = ++position;
    }
    return collected;
}

}  // namespace pkgvet::cli
