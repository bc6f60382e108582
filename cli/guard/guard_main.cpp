// The program that the word "cpio" leads to where packages are judged. It unpacks an archive as
// long as that is regular, and notes for the judge what became of it. It is linked statically and
// touches little memory, as it is started for every package.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/guard/archive_guard.h"
#include "cli/guard/guard_note.h"
#include "cli/guard/tree_writer.h"
#include "pkgvet/base/descriptor.h"

namespace {

using namespace pkgvet::cli;
using pkgvet::Descriptor;

constexpr int kFailed = 1;
constexpr std::string_view kName = "pkgvet's guard in the place of cpio: ";
constexpr std::string_view kCannotWrite = "cannot write ";

// What it is called with, and what may stand beside that.
constexpr std::string_view kArguments = "-idm";
constexpr std::string_view kQuiet = "--quiet";

constexpr std::size_t kPieceSize = std::size_t{64} << 10;
// The kernel grants each user 64 MiB for all pipes, which is enough for some fifty judges at once.
// Beyond that it makes new ones small, which costs time and nothing else.
constexpr int kPipeSize = 1 << 20;
// Below it, reading and writing is as fast as having the kernel move data from the pipe to a file.
constexpr std::uint64_t kLeastMove = std::uint64_t{8} << 10;
// Behind a large file another one is likely, whose data is not to be read along with its entry.
constexpr std::size_t kEntrySize = 256;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

const char* placeIn(const char* variable) {
    const char* const path = getenv(variable);
    if (path == nullptr) {
        errno = EINVAL;
        fail(variable);
    }
    return path;
}

// The number of bytes read, 0 at the end. What cannot be read ends there as well, and is then cut
// short.
std::size_t readPiece(int file, char* piece, std::size_t size) {
    ssize_t count = -1;
    do {
        count = read(file, piece, size);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

std::string readWhole(const char* path) {
    const Descriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!file.isOpen()) {
        fail(path);
    }
    std::string text;
    std::size_t size = 0;
    do {
        text.resize(size + kPieceSize);
        size += readPiece(file.get(), text.data() + size, kPieceSize);
    } while (size == text.size());
    text.resize(size);
    return text;
}

GuardOrders readOrders() {
    std::optional<GuardOrders> orders = parseOrders(readWhole(placeIn(kGuardOrdersVariable)));
    if (!orders) {
        errno = EINVAL;
        fail(kGuardOrdersVariable);
    }
    return *orders;
}

// The file that the judge reads. It takes up its room before anything is unpacked.
class NoteFile {
public:
    explicit NoteFile(const char* path)
        : file_(open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600)) {
        if (!file_.isOpen()) {
            fail(path);
        }
        write({});
    }

    void write(const GuardNote& note) const {
        const std::string text = formatNote(note);
        if (pwrite(file_.get(), text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
            fail("cannot note what became of the archive");
        }
    }

private:
    Descriptor file_;
};

// Until the archive ends, or the guard takes no more of it.
GuardNote unpack(GuardOrders orders, TreeWriter* writer) {
    static char piece[kPieceSize];
    ArchiveGuard guard(std::move(orders),
                       {.begin = [writer](const RegularEntry& entry) { writer->begin(entry); },
                        .data = [writer](std::string_view data) { writer->write(data); }});
    bool canMove = true;
    std::size_t next = sizeof piece;
    while (!guard.isStopped()) {
        if (canMove && guard.dataAhead() >= kLeastMove) {
            const std::optional<std::uint64_t> size =
                writer->moveFrom(STDIN_FILENO, guard.dataAhead());
            canMove = size.has_value();
            if (size.value_or(0) > 0) {
                guard.skipData(*size);
                next = kEntrySize;
                continue;
            }
        }
        const std::size_t size = readPiece(STDIN_FILENO, piece, std::exchange(next, sizeof piece));
        if (size == 0) {
            break;
        }
        guard.take({piece, size});
    }
    writer->finish();
    return guard.finish();
}

// So that rpm2cpio and this process seldom wait for each other. Where no more is to be had, the
// pipe stays as it is.
void widenInput() {
    fcntl(STDIN_FILENO, F_SETPIPE_SZ, kPipeSize);
}

GuardNote unpackWithinMemory(GuardOrders orders, TreeWriter* writer) {
    try {
        return unpack(std::move(orders), writer);
    } catch (const std::bad_alloc&) {
        return {.end = GuardEnd::OutOfMemory};
    }
}

// A line, of which names in an archive make no more.
void say(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, '?');
    text += '\n';
    static_cast<void>(write(STDERR_FILENO, text.data(), text.size()));
}

// It can do nothing else that cpio can.
void checkArguments(char* const* arguments) {
    bool isAsked = false;
    for (++arguments; *arguments != nullptr; ++arguments) {
        isAsked = isAsked || *arguments == kArguments;
        if (*arguments != kArguments && *arguments != kQuiet) {
            errno = EINVAL;
            fail(*arguments);
        }
    }
    if (!isAsked) {
        errno = EINVAL;
        fail("arguments");
    }
}

// Success means that all of the archive was regular and is written.
int run(char* const* arguments) {
    checkArguments(arguments);
    widenInput();
    GuardOrders orders = readOrders();
    const NoteFile file(placeIn(kGuardNoteVariable));
    TreeWriter writer;
    const GuardNote note = unpackWithinMemory(std::move(orders), &writer);
    file.write(note);
    if (!writer.failure().empty()) {
        say(std::string(kCannotWrite) + writer.failure());
    }
    return note.end == GuardEnd::Whole && writer.failure().empty() ? 0 : kFailed;
}

}  // namespace

int main(int /*count*/, char** arguments) {
    try {
        return run(arguments);
    } catch (const std::exception& error) {
        say(std::string(kName) + error.what());
        return kFailed;
    }
}
