// The contents of files that are read while the payload is still being unpacked.
#pragma once

#include <sys/stat.h>

#include <future>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/integrity/file_content.h"
#include "cli/integrity/header_files.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Reads files in the order of the header, which is that of most payloads, as soon as nothing has
// changed them for a while. Whether anything did so later is seen when they are asked for: a
// content counts only as long as the file system tells the same time of the last change. What was
// not read is left to whoever reads the tree once it is unpacked.
//
// One thread reads and another one stops it. Nothing is asked for before the first one has ended.
class EarlyContents {
public:
    // Reads the files below root until all are read or stop() is called. What is reached through
    // links is not read.
    void read(const HeaderFiles& list, const std::string& root);
    void stop();

    // The content of the file with this number in the header, of which status was read after
    // unpacking; null when it was not read or has changed since.
    const FileContent* find(std::size_t index, const struct stat& status) const;

    // The same for the file that status describes, whatever its path: whether its text holds the
    // home directory of the platform's default user.
    std::optional<bool> holdsHardcodedPath(const struct stat& status) const;

private:
    enum class Step { Done, Wait, Skip };

    struct Reading {
        bool isDone = false;
        struct stat status = {};  // ahead of reading
        FileContent content = {};
        bool holdsHardcodedPath = false;
    };

    Step look(const Descriptor& root, const std::string& path, ContentReader* reader,
              Reading* reading) const;
    bool readWhole(const Descriptor& file, ContentReader* reader, Reading* reading) const;
    bool isStopped() const;

    std::vector<Reading> readings_;  // of the files in the order of the header, as far as it got
    std::unordered_map<ino_t, std::size_t> indexes_;  // of readings that are done
    std::promise<void> stop_;
    std::future<void> stopped_ = stop_.get_future();
    bool isStopAsked_ = false;  // of the thread that stops
};

}  // namespace pkgvet::cli
