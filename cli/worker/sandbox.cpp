// Names sandboxes.
#include "cli/worker/sandbox.h"

namespace pkgvet::cli {

std::string Sandbox::name() const {
    if (isWhole()) {
        return "namespaces+landlock";
    }
    return namespaces ? "namespaces" : landlock ? "landlock" : "none";
}

}  // namespace pkgvet::cli
