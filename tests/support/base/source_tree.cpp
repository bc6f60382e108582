#include "tests/support/base/source_tree.h"

std::string sourceFile(const std::string& path) {
    return PKGVET_SOURCE_DIR + ("/" + path);
}
