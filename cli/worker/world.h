// The world in which one package is judged.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "cli/guard/guard_note.h"
#include "cli/model/model.h"
#include "cli/worker/guard_program.h"
#include "cli/worker/limits.h"
#include "cli/worker/namespaces.h"
#include "cli/worker/sandbox.h"
#include "cli/worker/system_call_filter.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// The variable that says where librpm's configuration is.
inline constexpr const char* kConfigurationVariable = "RPM_CONFIGDIR";

// What is the same for all worlds of a run.
struct WorldPlan {
    Sandbox sandbox;
    Limits limits;
    // Whose processes judges are outside. With namespaces never the superuser's.
    uid_t owner = 0;
    gid_t group = 0;
    // What the rules read beside the package, such as the schemas of managed configuration.
    std::vector<std::string> readable;
    GuardProgram guard;
};

// Directories made for one package where there are no namespaces to hide its own: the one in which
// its payload is unpacked, and the one for its copy.
struct Directories {
    std::string tree;
    std::string copy;
};

// Belongs to the process that judges one package, and is left only by its end.
class World {
public:
    // filter outlives the world.
    World(const WorldPlan& plan, const SystemCallFilter& filter) : plan_(plan), filter_(filter) {}

    // Makes the world that the plan says, or throws std::system_error: there is never less of it.
    // packageSize bytes beside what is unpacked find room in it. Directories are used where there
    // are no namespaces; where there are, the payload goes into memory, or into the working
    // directory.
    void enter(const Directories& directories, bool inWorkingDirectory, std::uint64_t packageSize);

    // Where the copy of the package goes; a name that is safe in a shell.
    const std::string& copyPath() const { return copyPath_; }

    // Has the word cpio lead to the guard, and gives it its orders. The cause when it cannot be
    // run.
    Cause placeGuard(const SetIdModes& setIdModes) const;
    // What it noted, nothing when it did not run.
    std::optional<GuardNote> guardNote() const;

    // Where the payload is unpacked, as the judge sees it.
    const std::string& tree() const { return tree_; }

    // Once the payload is unpacked: from now on it is all that can be read. With namespaces it is
    // also all that can be seen, under the path that it had.
    void closeAround();

    // The limit that unpacking met, without a code when it met none.
    Cause limitMet() const;

private:
    void arrangeGuard(const std::string& place);
    void placeConfiguration() const;
    void closeFiles(const Directories& directories) const;

    const WorldPlan& plan_;
    const SystemCallFilter& filter_;
    std::string copyPath_;
    std::string tree_;  // where the payload goes
    bool isInMemory_ = false;
    std::string guardDirectory_;
    Descriptor root_;
};

}  // namespace pkgvet::cli
