// Whose processes judges are, as the machine sees them.
#pragma once

#include <sys/types.h>

namespace pkgvet::cli {

// The caller, unless that is the machine's superuser and judges are shut off in one way or another:
// then they are nobody's. With namespaces they have the powers that they need inside; under
// Landlock alone, which does not keep a superuser from changing the modes of the machine's files,
// none.
uid_t judgeUser(bool isCaged);

// Becomes that user, for good. Throws std::system_error.
void becomeJudgeUser(bool isCaged);

}  // namespace pkgvet::cli
