// What the guard finds regular, written to the file system.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/guard/archive_guard.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Writes entries below the working directory, as "cpio -idm" does: directories that are missing are
// made, modes and times are those of the entries, and so are owners where the superuser writes.
// Unlike cpio it gets into directories that forbid it to their owner, since these are closed last.
//
// Relies on the guard for what an entry may be, its name among it. No link is followed all the
// same, and nothing replaced. Once something cannot be written, nothing more is.
class TreeWriter {
public:
    // Makes what the entry describes. The data of a file come next.
    void begin(const RegularEntry& entry);
    void write(std::string_view data);
    // Has the kernel move up to size bytes of data from a pipe, which is faster for many. Their
    // number, or nothing where that does not work: reading and writing does, or says why not.
    std::optional<std::uint64_t> moveFrom(int pipe, std::uint64_t size);
    // Makes what had to wait for the last entry.
    void finish();

    // What could not be written and why; empty as long as all could.
    const std::string& failure() const { return failure_; }

private:
    // Names of one file, of which the last brings the data.
    struct HardLinks {
        std::vector<std::string> names;
        EntryFields fields;  // of the last one
    };
    struct ClosedDirectory {
        std::string path;
        EntryFields fields;
    };

    void attempt(const std::function<void()>& step);
    void make(const RegularEntry& entry);
    int parentOf(const std::string& name);
    void makeDirectory(const RegularEntry& entry);
    void makeLink(const RegularEntry& entry);
    Descriptor createFile(const std::string& name);
    void beginFile(const RegularEntry& entry);
    void advance(std::uint64_t size);
    void endFile();
    void linkNames(const HardLinks& links);
    void makeEmptyFiles();

    std::string failure_;
    // The directory of the last entry, and what stands ahead of the last component of its name.
    Descriptor parent_;
    std::string wayToParent_;
    // The file whose data come next.
    Descriptor file_;
    std::string name_;
    EntryFields fields_;
    std::uint64_t dataLeft_ = 0;
    std::map<FileId, HardLinks> hardLinks_;
    // Their mode keeps their owner out, so that they get it in the end.
    std::vector<ClosedDirectory> closed_;
};

}  // namespace pkgvet::cli
