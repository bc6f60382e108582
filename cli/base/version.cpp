// Asks libraries for their versions.
#include "cli/base/version.h"

#include <glib.h>
#include <json-glib/json-glib.h>
#include <libxml/parser.h>
#include <png.h>
#include <rpm/rpmlib.h>

#include <cstdlib>

namespace pkgvet::cli {

namespace {

std::string dotted(unsigned major, unsigned minor, unsigned micro) {
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(micro);
}

// libxml2 tells its version as one number, 20914 for 2.9.14, with words behind it in some builds.
std::string xmlVersion() {
    const auto number = static_cast<unsigned>(std::strtoul(xmlParserVersion, nullptr, 10));
    return dotted(number / 10000, number / 100 % 100, number % 100);
}

}  // namespace

std::string programVersion() {
    return PKGVET_VERSION;
}

std::string programHomepage() {
    return PKGVET_HOMEPAGE;
}

std::string versionText() {
    // json-glib alone does not tell what is loaded.
    return "pkgvet " + programVersion() + "\nlibrpm " + RPMVERSION + "\nGLib " +
           dotted(glib_major_version, glib_minor_version, glib_micro_version) +
           "\njson-glib " JSON_VERSION_S "\nlibpng " + png_get_libpng_ver(nullptr) + "\nlibxml2 " +
           xmlVersion();
}

}  // namespace pkgvet::cli
