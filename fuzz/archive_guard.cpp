// The guard in front of cpio against cpio itself: what the guard takes for a regular archive is
// unpacked, and the tree must be the one that its entries describe.
#include "cli/guard/archive_guard.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet;
using namespace pkgvet::cli;
using pkgvet::fuzz::expect;

constexpr std::size_t kMostBytes = 16 << 10;
const GuardOrders kOrders{1 << 20, 64};

// A file that cpio is to make: what kind it is, and how large.
struct Made {
    mode_t kind;
    std::uint64_t size;

    bool operator==(const Made&) const = default;
};
using Tree = std::map<std::string, Made>;

struct Outcome {
    GuardNote note;
    std::string passed;

    bool operator==(const Outcome&) const = default;
};

Outcome guarded(std::string_view archive, std::size_t pieceSize) {
    ArchiveGuard guard(kOrders);
    Outcome outcome;
    while (!archive.empty()) {
        guard.take(archive.substr(0, pieceSize), &outcome.passed);
        archive.remove_prefix(std::min(pieceSize, archive.size()));
    }
    outcome.note = guard.finish();
    return outcome;
}

// Whether an entry has names beside this one, of which the last brings the data.
bool isHardLink(const EntryFields& fields) {
    return S_ISREG(fields.mode) && fields.links > 1;
}

// What the entries describe, read without any check. Sizes of hard links are left open.
Tree describedTree(std::string_view archive) {
    Tree tree;
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
        const bool hasSize = !S_ISDIR(status.st_mode) && status.st_nlink == 1;
        tree[entry.path().lexically_relative(root)] = {
            status.st_mode & S_IFMT, hasSize ? static_cast<std::uint64_t>(status.st_size) : 0};
    }
    return tree;
}

// Runs cpio as the library does, and not as the superuser. Its exit status says nothing: owners
// cannot be set, for example. A plain fork would copy the tables of a process that a sanitizer has
// made very large.
void unpack(const std::string& archive, const std::string& root) {
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
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    const Outcome whole = guarded(input, input.size() + 1);
    expect(guarded(input, 1) == whole, "pieces make no difference");
    expect(guarded(input, 7) == whole, "larger pieces make no difference either");
    expect(input.starts_with(whole.passed), "what passes is what came");
    if (whole.note.end != GuardEnd::Whole || input.size() > kMostBytes) {
        return;
    }
    const TemporaryDirectory directory;
    const std::string archive = directory.write("archive", whole.passed);
    const std::string root = directory / "root";
    std::filesystem::create_directory(root);
    std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(root, std::filesystem::perms(0777));
    unpack(archive, root);
    const Tree described = describedTree(whole.passed);
    for (const auto& [path, made] : foundTree(root)) {
        const auto found = described.find(path);
        expect(found != described.end(), "cpio makes nothing that is not described");
        expect(found->second.kind == made.kind, "what it makes is of the kind described");
        expect(found->second.size == made.size || found->second.size == 0 || made.size == 0,
               "and of the size described");
    }
    expect(std::distance(std::filesystem::directory_iterator(directory.path()), {}) == 2,
           "nothing lies beside the tree");
}
