// The rule on the application's icon in each size.
#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/png_size.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

// The "/" between directory and size comes from the rule set or not at all.
std::string iconPathFor(int size, const Configuration& configuration, const RpmMeta& rpm) {
    const std::string text = std::to_string(size);
    return configuration.iconDir() + text + "x" + text + "/apps/" + rpm.name() + ".png";
}

bool isIconOfSize(const std::string& file, int size) {
    const pkgvet::StreamHandle stream = pkgvet::openRegularStream(file);
    return stream && pkgvet::pngHasSize(stream.get(), static_cast<std::uint32_t>(size));
}

}  // namespace

// The package's own paths serve as patterns, so that an icon counts as missing where the name holds
// a "+". A rule set that asks for no icons still has them looked at, for the exceptions' sake.
void ContentValidator::checkIcons(const Configuration& configuration, const RpmMeta& rpm,
                                  const std::string& tempDir) {
    pkgvet::PatternList packagePaths(rpm.paths());
    std::vector<std::string> missingIcons;
    for (const int size : configuration.iconSizes()) {
        const std::string iconPath = iconPathFor(size, configuration, rpm);
        if (!packagePaths.matches(iconPath) || !isIconOfSize(tempDir + iconPath, size)) {
            missingIcons.push_back(iconPath);
        }
    }
    if (!configuration.iconRequirement()) {
        return;
    }
    for (const std::string& iconPath : missingIcons) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {"[", iconPath, pkgvet::kIconNotFound});
    }
}
