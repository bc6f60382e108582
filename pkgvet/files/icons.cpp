// The rule on the application's icon in each size.
#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/files/png_size.h"
#include "pkgvet/pattern/package_patterns.h"
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
    const std::vector<int>& sizes = configuration.iconSizes();
    std::vector<std::string> iconPaths;
    for (const int size : sizes) {
        iconPaths.push_back(iconPathFor(size, configuration.iconDir(), packageName));
    }
    const std::vector<PatternAnswer> listed = matchPackagePatterns(paths, iconPaths);
    std::vector<std::string> missingIcons;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (!listed[i].get() || !isIconOfSize(tempDir + iconPaths[i], sizes[i])) {
            missingIcons.push_back(iconPaths[i]);
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
