// Owners of what GLib hands out.
#pragma once

#include <glib.h>

#include "pkgvet/base/c_handle.h"

namespace pkgvet {

using GErrorHandle = CHandle<GError, g_error_free>;
using GStringHandle = CHandle<char, g_free>;
using GStringListHandle = CHandle<char*, g_strfreev>;
using KeyFileHandle = CHandle<GKeyFile, g_key_file_unref>;
using MatchInfoHandle = CHandle<GMatchInfo, g_match_info_unref>;
using RegexHandle = CHandle<GRegex, g_regex_unref>;

}  // namespace pkgvet
