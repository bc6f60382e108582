// Tells and replaces what is not UTF-8.
#include "pkgvet/base/utf8.h"

#include <glib.h>

#include "pkgvet/base/glib_handles.h"

namespace pkgvet {

bool isUtf8(std::string_view text) {
    return text.empty() || g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE;
}

std::string validUtf8(std::string_view text) {
    if (isUtf8(text)) {
        return std::string(text);
    }
    return GStringHandle(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))).get();
}

}  // namespace pkgvet
