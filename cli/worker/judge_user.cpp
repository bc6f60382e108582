// Gives up root.
#include "cli/worker/judge_user.h"

#include <grp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace pkgvet::cli {

namespace {

constexpr uid_t kNobody = 65534;

constexpr std::array kMaps = {"/proc/self/uid_map", "/proc/self/gid_map"};

// Whether the map of ids knows nobody. That of a namespace which an ordinary user made does not;
// its superuser is that user outside, and gives up no more by becoming another.
bool knowsNobody(const char* map) {
    std::ifstream stream(map);
    unsigned long inner = 0;
    unsigned long outer = 0;
    unsigned long count = 0;
    while (stream >> inner >> outer >> count) {
        if (inner <= kNobody && kNobody - inner < count) {
            return true;
        }
    }
    return false;
}

}  // namespace

uid_t judgeUser(bool isCaged) {
    const bool gives =
        isCaged && geteuid() == 0 && std::all_of(kMaps.begin(), kMaps.end(), knowsNobody);
    return gives ? kNobody : geteuid();
}

void becomeJudgeUser(bool isCaged) {
    const uid_t user = judgeUser(isCaged);
    if (user == geteuid()) {
        return;
    }
    if (setgroups(0, nullptr) != 0 || setresgid(user, user, user) != 0 ||
        setresuid(user, user, user) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot give up root");
    }
}

}  // namespace pkgvet::cli
