// Replaces what is not UTF-8.
#include "pkgvet/base/utf8.h"

#include <glib.h>

#include "pkgvet/base/glib_handles.h"

namespace pkgvet {

std::string validUtf8(std::string_view text) {
    const auto size = static_cast<gssize>(text.size());
    if (text.empty() || g_utf8_validate(text.data(), size, nullptr)) {
        return std::string(text);
    }
    return GStringHandle(g_utf8_make_valid(text.data(), size)).get();
}

}  // namespace pkgvet
