#include "tests/support/program/watched_machine.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/support/package/package_builder.h"

namespace fs = std::filesystem;

namespace {

// Overlays each place by a view whose changes land in a file system in memory, runs the command and
// lists them. The arguments are a directory of the test's own, the file for the list, and the
// command. Where anybody may move directories, the program removes none that a killed run left: a
// test beside this one may have left some, and their removal is not what this one looks for.
constexpr const char* kWatch = R"sh(
store=$1
exec 9>"$2"
shift 2
here=$PWD
mounts=$(cut -d ' ' -f 5 /proc/self/mountinfo)
mount -t tmpfs none "$store" && cd "$store" || exit 125
number=0
for place in /* /dev/shm; do
    case $place in /proc | /sys | /dev) continue ;; esac
    [ -d "$place" ] && ! [ -L "$place" ] || continue
    case "$mounts" in *"
$place/"*) continue ;; esac
    number=$((number + 1))
    mkdir -p $number/upper $number/work
    # The view is no stricter than what it shows.
    chmod --reference="$place" $number/upper
    mount -t overlay overlay \
        -o "lowerdir=$place,upperdir=$number/upper,workdir=$number/work" \
        "$place" || exit 125
    echo "$place" >$number/place
    [ "$place" != /tmp ] || chmod 777 /tmp
done
(cd "$here" && exec "$@" 9>&-)
status=$?
for view in *; do
    find $view/upper -mindepth 1 -printf "$(cat $view/place)/%P\\n" >&9
done
exit $status
)sh";

}  // namespace

WatchedMachine::WatchedMachine() {
    fs::create_directory(directory_ / "store");
}

bool WatchedMachine::isPossible() {
    const WatchedMachine machine;
    std::vector<std::string> words = machine.words();
    // In a view of an ordinary user's, whatever belongs to others is out of reach.
    words.insert(words.end(),
                 {"sh", "-c", "name=$(mktemp -d /tmp/pkgvet-test-XXXXXX) && rmdir \"$name\""});
    return runProgram(words) == 0;
}

std::vector<std::string> WatchedMachine::words() const {
    return {"unshare",          "--mount", "sh", "-c", kWatch, "sh", directory_ / "store",
            directory_ / "list"};
}

std::vector<std::string> WatchedMachine::changes() const {
    std::istringstream stream(readFile(directory_ / "list"));
    std::vector<std::string> paths;
    for (std::string line; std::getline(stream, line);) {
        paths.push_back(line);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}
