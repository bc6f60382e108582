// The rule on paths that hold a permitted place without beginning with it.
#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/place_rules.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kIcons = "/usr/share/icons/hicolor/";
constexpr const char* kCommonData = "/usr/share/common/";

// What the library looks for anywhere in a path. It knows more of the directory of common data;
// what it asks for there begins with this.
std::vector<std::string> placesOf(const PlaceRules& rules) {
    const std::string& name = rules.packageName;
    std::vector<std::string> places = {"/usr/share/" + name,
                                       kIcons,
                                       "/usr/share/applications/" + name + ".desktop",
                                       "/usr/lib/3rdparty/" + name + "/",
                                       kCommonData,
                                       "/etc/sealwatchd/config.d/" + name + ".json"};
    if (rules.libexecDirectory.starts_with('/')) {
        places.push_back(rules.libexecDirectory + name);
    }
    return places;
}

// A pattern that gives up on a path does not list it.
bool isListed(const std::string& path, PatternList* listedPaths) {
    try {
        return listedPaths->matches(path);
    } catch (const std::regex_error&) {
        return false;
    }
}

bool beginsWithOne(const std::string& path, const std::vector<std::string>& places) {
    return std::any_of(places.begin(), places.end(),
                       [&path](const std::string& place) { return path.starts_with(place); });
}

// A place that is in the path, null when there is none.
const std::string* placeIn(const std::string& path, const std::vector<std::string>& places) {
    const auto found = std::find_if(
        places.begin(), places.end(),
        [&path](const std::string& place) { return path.find(place) != std::string::npos; });
    return found == places.end() ? nullptr : &*found;
}

}  // namespace

void checkPlaces(const HeaderFiles& list, const PlaceRules& rules, IntegrityFindings* findings) {
    const std::vector<std::string> places = placesOf(rules);
    PatternList listedPaths(rules.listedPaths);
    for (const HeaderFile& file : list.files) {
        if (beginsWithOne(file.path, places)) {
            continue;
        }
        const std::string* const place = placeIn(file.path, places);
        if (place != nullptr && !isListed(file.path, &listedPaths)) {
            findings->add(kPlaceInside, {file.path, *place});
        }
    }
}

}  // namespace pkgvet::cli
