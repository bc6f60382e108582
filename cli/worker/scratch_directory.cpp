// Makes and removes scratch directories.
#include "cli/worker/scratch_directory.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "cli/worker/judge_user.h"

namespace pkgvet::cli {

ScratchDirectory::ScratchDirectory(const std::string& parent, const Sandbox& sandbox) {
    if (parent.empty()) {
        return;
    }
    ClaimedDirectory made = makeClaimed(parent + kDirectoryTemplate, std::string());
    const uid_t user = judgeUser(sandbox.isAny());
    if (!made.path.empty() && (user == geteuid() || chown(made.path.c_str(), user, user) == 0)) {
        descriptor_ = Descriptor(open(made.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    if (!descriptor_.isOpen()) {
        discard(made);
        throw std::system_error(errno, std::generic_category(),
                                "cannot make " + parent + kDirectoryTemplate);
    }
    path_ = std::move(made.path);
    claim_ = std::move(made.claim);
}

ScratchDirectory::ScratchDirectory(ScratchDirectory&& other) noexcept
    : path_(std::exchange(other.path_, std::string())),
      descriptor_(std::move(other.descriptor_)),
      claim_(std::move(other.claim_)) {}

ScratchDirectory& ScratchDirectory::operator=(ScratchDirectory&& other) noexcept {
    std::swap(path_, other.path_);
    descriptor_ = std::move(other.descriptor_);
    std::swap(claim_, other.claim_);
    return *this;
}

ScratchDirectory::~ScratchDirectory() {
    removeClaimed(path_, std::string());
}

}  // namespace pkgvet::cli
