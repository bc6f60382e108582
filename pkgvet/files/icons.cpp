// The rule on the application's icon in each size.
#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/files/png_size.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

// The "/" between directory and size comes from the rule set or not at all.
std::string iconPathFor(int size, const std::string& iconDir, const std::string& packageName) {
    const std::string text = std::to_string(size);
    return iconDir + text + "x" + text + "/apps/" + packageName + ".png";
}

bool isIconOfSize(const std::string& file, int size) {
    const StreamHandle stream = openRegularStream(file);
    return stream && pngHasSize(stream.get(), static_cast<std::uint32_t>(size));
}

}  // namespace

// The package's own paths serve as patterns, so that an icon counts as missing where the name holds
// a "+". A rule set that requires no icons still has them looked at: a path that does not compile
// as a pattern throws all the same.
void checkIcons(const std::string& packageName, const std::vector<std::string>& paths,
                const Configuration& configuration, const std::string& tempDir,
                Findings* findings) {
    PatternList packagePaths(paths);
    std::vector<std::string> missingIcons;
    for (const int size : configuration.iconSizes()) {
        const std::string iconPath = iconPathFor(size, configuration.iconDir(), packageName);
        if (!packagePaths.matches(iconPath) || !isIconOfSize(tempDir + iconPath, size)) {
            missingIcons.push_back(iconPath);
        }
    }
    if (!configuration.iconRequirement()) {
        return;
    }
    for (const std::string& iconPath : missingIcons) {
        findings->violation(kIconNotFound, {iconPath});
    }
}

}  // namespace pkgvet
