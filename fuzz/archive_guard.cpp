// The guard against cpio: what the guard takes for a regular archive is unpacked by both, and the
// two trees must be alike, and be what the entries describe.
#include "cli/guard/archive_guard.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <vector>

#include "cli/guard/tree_writer.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet;
using namespace pkgvet::cli;
using pkgvet::fuzz::expect;

constexpr std::size_t kMostBytes = 16 << 10;
const GuardOrders kOrders{1 << 20, 64};

constexpr uid_t kNobody = 65534;

// A file that the entries describe: what kind it is, and how large.
struct Described {
    mode_t kind;
    std::uint64_t size;
};

// A file that was made. Sizes and times of directories are the file system's own affair.
struct Made {
    mode_t mode;
    nlink_t links;
    std::uint64_t size;
    time_t time;

    bool operator==(const Made&) const = default;
};
using Tree = std::map<std::string, Made>;

// What the guard gave, in one text.
struct Outcome {
    GuardNote note;
    std::string given;

    bool operator==(const Outcome&) const = default;
};

GuardNote guarded(std::string_view archive, std::size_t pieceSize, const EntryReceiver& receiver) {
    ArchiveGuard guard(kOrders, receiver);
    while (!archive.empty()) {
        guard.take(archive.substr(0, pieceSize));
        archive.remove_prefix(std::min(pieceSize, archive.size()));
    }
    return guard.finish();
}

Outcome guarded(std::string_view archive, std::size_t pieceSize) {
    Outcome outcome;
    const EntryReceiver receiver = {
        .begin =
            [&outcome](const RegularEntry& entry) {
                outcome.given += entry.name;
                outcome.given += entry.target;
                outcome.given += std::to_string(entry.fields.mode);
            },
        .data = [&outcome](std::string_view data) { outcome.given += data; }};
    outcome.note = guarded(archive, pieceSize, receiver);
    return outcome;
}

// Whether an entry has names beside this one, of which the last brings the data.
bool isHardLink(const EntryFields& fields) {
    return S_ISREG(fields.mode) && fields.links > 1;
}

// What the entries describe, read without any check. Sizes of hard links are left open.
std::map<std::string, Described> describedTree(std::string_view archive) {
    std::map<std::string, Described> tree;
    while (true) {
        const EntryFields fields = readFields(archive.substr(0, kFieldsEnd)).value();
        std::string name(archive.substr(kFieldsEnd, fields.nameSize - 1));
        if (name == "TRAILER!!!") {
            return tree;
        }
        name = name.starts_with("./") ? name.substr(2) : name;
        if (!name.empty() && name != ".") {
            const bool hasSize = !S_ISDIR(fields.mode) && !isHardLink(fields);
            tree[name] = {fields.mode & S_IFMT, hasSize ? fields.dataSize : 0};
        }
        for (std::size_t at = 0; (at = name.find('/', at)) != std::string::npos; ++at) {
            tree[name.substr(0, at)] = {S_IFDIR, 0};
        }
        std::size_t size = kFieldsEnd + fields.nameSize;
        size += paddingOf(size) + fields.dataSize;
        archive.remove_prefix(size + paddingOf(size));
    }
}

Tree foundTree(const std::string& root) {
    namespace fs = std::filesystem;
    Tree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        struct stat status {};
        expect(lstat(entry.path().c_str(), &status) == 0, "what is there can be looked at");
        Made made{status.st_mode, 0, 0, 0};
        if (!S_ISDIR(status.st_mode)) {
            made.links = status.st_nlink;
            made.size = static_cast<std::uint64_t>(status.st_size);
            // cpio gives links no time.
            made.time = S_ISLNK(status.st_mode) ? 0 : status.st_mtime;
        }
        tree[entry.path().lexically_relative(root)] = made;
    }
    return tree;
}

// Runs cpio as the library does, and not as the superuser. Whether it succeeded: it does not get
// into directories that forbid it, for example. A plain fork would copy the tables of a process
// that a sanitizer has made very large.
bool unpackByCpio(const std::string& archive, const std::string& root) {
    std::vector<std::string> words = {"cpio", "-idm", "--quiet"};
    if (getuid() == 0) {
        words.insert(words.begin(),
                     {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    }
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, archive.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addchdir_np(&actions, root.c_str());
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    expect(error == 0, "cpio can be run");
    int status = 0;
    waitpid(process, &status, 0);
    return status == 0;
}

// Not as the superuser either. Whether all could be written.
bool unpackByWriter(std::string_view archive, const std::string& root) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(root);
    const bool isSuperuser = geteuid() == 0;
    expect(!isSuperuser || (setegid(kNobody) == 0 && seteuid(kNobody) == 0),
           "rights can be given up");
    TreeWriter writer;
    guarded(archive, archive.size(),
            {.begin = [&writer](const RegularEntry& entry) { writer.begin(entry); },
             .data = [&writer](std::string_view data) { writer.write(data); }});
    writer.finish();
    expect(!isSuperuser || (seteuid(0) == 0 && setegid(0) == 0), "and taken back");
    std::filesystem::current_path(before);
    return writer.failure().empty();
}

void expectAsDescribed(const Tree& tree, const std::map<std::string, Described>& described) {
    for (const auto& [path, made] : tree) {
        const auto found = described.find(path);
        expect(found != described.end(), "nothing is made that is not described");
        expect(found->second.kind == (made.mode & S_IFMT), "what is made is of the kind described");
        expect(found->second.size == made.size || found->second.size == 0 || made.size == 0,
               "and of the size described");
    }
}

std::string makeRoot(const TemporaryDirectory& directory, const char* name) {
    std::string root = directory / name;
    std::filesystem::create_directory(root);
    std::filesystem::permissions(root, std::filesystem::perms(0777));
    return root;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    const Outcome whole = guarded(input, input.size() + 1);
    expect(guarded(input, 1) == whole, "pieces make no difference");
    expect(guarded(input, 7) == whole, "larger pieces make no difference either");
    if (whole.note.end != GuardEnd::Whole || input.size() > kMostBytes) {
        return;
    }
    const TemporaryDirectory directory;
    std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));
    const std::string archive = directory.write("archive", std::string(input));
    const std::string byCpio = makeRoot(directory, "by-cpio");
    const std::string byWriter = makeRoot(directory, "by-writer");
    const bool cpioSucceeds = unpackByCpio(archive, byCpio);
    const bool writerSucceeds = unpackByWriter(input, byWriter);
    const auto described = describedTree(input);
    const Tree madeByCpio = foundTree(byCpio);
    const Tree madeByWriter = foundTree(byWriter);
    expectAsDescribed(madeByCpio, described);
    expectAsDescribed(madeByWriter, described);
    if (cpioSucceeds) {
        expect(writerSucceeds, "what cpio writes can be written");
        expect(madeByCpio == madeByWriter, "and is written as by cpio");
    }
    expect(std::distance(std::filesystem::directory_iterator(directory.path()), {}) == 3,
           "nothing lies beside the trees");
}
