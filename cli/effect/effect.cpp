// Names verdicts and says what an effect comes to.
#include "cli/effect/effect.h"

#include <array>

#include "cli/base/exit_status.h"

namespace pkgvet::cli {

namespace {

// Indexed by Verdict.
constexpr std::array<std::string_view, 3> kVerdictNames = {"accepted", "rejected", "not judged"};

}  // namespace

std::string_view verdictName(Verdict verdict) {
    return kVerdictNames[static_cast<std::size_t>(verdict)];
}

int statusOf(const Effect& effect) {
    if (!effect.notJudged.empty()) {
        return kNotJudged;
    }
    return effect.turned.empty() ? kAccepted : kRejected;
}

}  // namespace pkgvet::cli
