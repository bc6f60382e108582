// The program that the word "cpio" leads to where packages are judged. It passes an archive on to
// the real cpio as long as it is regular, and notes for the judge what became of it. It is linked
// statically and touches little memory, as it is started for every package.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

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
#include "cli/guard/cpio_process.h"
#include "cli/guard/guard_note.h"
#include "pkgvet/base/descriptor.h"

namespace {

using namespace pkgvet::cli;
using pkgvet::Descriptor;

constexpr int kFailed = 1;
constexpr std::string_view kName = "pkgvet's guard in front of cpio: ";

constexpr std::size_t kPieceSize = std::size_t{64} << 10;
// The kernel grants each user 64 MiB for all pipes, which is enough for some fifty judges at once.
// Beyond that it makes new ones small, which costs time and nothing else.
constexpr int kPipeSize = 1 << 20;
// Below it, reading and writing is as fast as moving pages from pipe to pipe.
constexpr std::uint64_t kLeastSplice = std::uint64_t{8} << 10;
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

// Moves data from standard input to cpio without a look. Less than nothing when that does not work
// between these files, or at all.
ssize_t splicePiece(int to, std::uint64_t size) {
    ssize_t count = -1;
    do {
        count = splice(STDIN_FILENO, nullptr, to, nullptr, size, SPLICE_F_MOVE);
    } while (count < 0 && errno == EINTR);
    return count;
}

// Until the archive ends, or the guard or cpio takes no more of it.
GuardNote passOn(ArchiveGuard* guard, const CpioProcess& cpio) {
    static char piece[kPieceSize];
    std::string passed;
    bool canSplice = true;
    bool isTaken = true;
    std::size_t next = sizeof piece;
    while (!guard->isStopped() && (isTaken || guard->isBehindTrailer())) {
        if (canSplice && guard->dataAhead() >= kLeastSplice) {
            const ssize_t size = splicePiece(cpio.input(), guard->dataAhead());
            canSplice = size >= 0;
            if (size > 0) {
                guard->skipData(static_cast<std::uint64_t>(size));
                next = kEntrySize;
                continue;
            }
        }
        const std::size_t size = readPiece(STDIN_FILENO, piece, std::exchange(next, sizeof piece));
        if (size == 0) {
            break;
        }
        passed.clear();
        guard->take({piece, size}, &passed);
        isTaken = isTaken && cpio.pass(passed);
    }
    return guard->finish();
}

// So that rpm2cpio seldom waits for cpio, or cpio for it. Where no more is to be had, the pipe
// stays as it is.
void widenInput() {
    fcntl(STDIN_FILENO, F_SETPIPE_SZ, kPipeSize);
}

GuardNote passOnWithinMemory(GuardOrders orders, const CpioProcess& cpio) {
    try {
        ArchiveGuard guard(std::move(orders));
        return passOn(&guard, cpio);
    } catch (const std::bad_alloc&) {
        return {.end = GuardEnd::OutOfMemory};
    }
}

// The status of cpio, but never success unless all of the archive was regular.
int run(char* const* arguments) {
    signal(SIGPIPE, SIG_IGN);
    widenInput();
    GuardOrders orders = readOrders();
    const NoteFile file(placeIn(kGuardNoteVariable));
    CpioProcess cpio(arguments);
    const GuardNote note = passOnWithinMemory(std::move(orders), cpio);
    file.write(note);
    const int status = cpio.finish();
    return note.end == GuardEnd::Whole ? status : kFailed;
}

}  // namespace

int main(int /*count*/, char** arguments) {
    try {
        return run(arguments);
    } catch (const std::exception& error) {
        const std::string text = std::string(kName) + error.what() + "\n";
        static_cast<void>(write(STDERR_FILENO, text.data(), text.size()));
        return kFailed;
    }
}
