// Whose processes judges are, as the machine sees them.
#pragma once

#include <sys/types.h>

namespace pkgvet::cli {

// The caller, unless that is the machine's superuser and judges have namespaces: there they are
// nobody's, and have the powers that they need inside.
uid_t judgeUser(bool hasNamespaces);

// Becomes that user, for good. Throws std::system_error.
void becomeJudgeUser(bool hasNamespaces);

}  // namespace pkgvet::cli
