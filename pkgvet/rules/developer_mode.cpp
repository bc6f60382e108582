// Reads the developer mode key file.
#include "pkgvet/rules/developer_mode.h"

#include <glib.h>

#include "pkgvet/base/glib_handles.h"

namespace pkgvet {

namespace {

constexpr const char* kGroup = "developermode";
constexpr const char* kKey = "validationEnabled";

}  // namespace

bool readValidationEnabled(const std::string& path) {
    const KeyFileHandle keyFile(g_key_file_new());
    if (!g_key_file_load_from_file(keyFile.get(), path.c_str(), G_KEY_FILE_NONE, nullptr) ||
        !g_key_file_has_key(keyFile.get(), kGroup, kKey, nullptr)) {
        return true;
    }
    return g_key_file_get_boolean(keyFile.get(), kGroup, kKey, nullptr) != FALSE;
}

}  // namespace pkgvet
