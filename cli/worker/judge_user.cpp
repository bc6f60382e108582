// Gives up root.
#include "cli/worker/judge_user.h"

#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace pkgvet::cli {

namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

uid_t judgeUser(bool hasNamespaces) {
    return hasNamespaces && geteuid() == 0 ? kNobody : geteuid();
}

void becomeJudgeUser(bool hasNamespaces) {
    const uid_t user = judgeUser(hasNamespaces);
    if (user == geteuid()) {
        return;
    }
    if (setgroups(0, nullptr) != 0 || setresgid(user, user, user) != 0 ||
        setresuid(user, user, user) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot give up root");
    }
    // Otherwise the process could not write the maps of its own ids.
    prctl(PR_SET_DUMPABLE, 1);
}

}  // namespace pkgvet::cli
