// Writes records, to a stream or a file each.
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "cli/base/escape.h"
#include "cli/base/output_file.h"
#include "cli/report/formats.h"
#include "cli/report/record_files.h"
#include "cli/statement/record.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kNotARecord = "there is a file that is not a record";

[[noreturn]] void fail(const std::string& path, const std::string& cause) {
    throw std::runtime_error("cannot write " + printable(path) + ": " + cause);
}

// Records replace records and nothing else, so that no name that a package has costs a file.
bool canBeReplaced(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) {
        return !fs::is_symlink(fs::symlink_status(path, error));
    }
    std::string beginning(recordBeginning().size(), '\0');
    std::ifstream file;
    if (fs::is_regular_file(status)) {
        file.open(path, std::ios::binary);
    }
    return file && file.read(beginning.data(), static_cast<std::streamsize>(beginning.size())) &&
           beginning == recordBeginning();
}

}  // namespace

void finishInToto(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    forEachRecord(run,
                  [&stream](const NamedRecord& named) { stream << formatRecord(named.record); });
}

void makeRecordDirectory(const std::string& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) {
        fail(directory, error.message());
    }
    if (!fs::is_directory(directory, error)) {
        fail(directory, "it is not a directory");
    }
    // Fails where no file can be made; without a commit nothing remains.
    const OutputFile trial(directory + "/record");
}

void writeRecords(const RunReport& run, const std::string& directory) {
    forEachRecord(run, [&directory](const NamedRecord& named) {
        const std::string path = fs::path(directory) / named.file;
        if (!canBeReplaced(path)) {
            fail(path, kNotARecord);
        }
        OutputFile file(path);
        file.write(formatRecord(named.record));
        file.commit();
    });
}

}  // namespace pkgvet::cli
