// The rule on where a package may install its files.
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/sealwatchd.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kRulePattern;
using pkgvet::PatternList;
using pkgvet::SealwatchdResult;

constexpr std::string_view kBinDirectory = "/usr/bin";
constexpr std::string_view kBinDirectoryWithSlash = "/usr/bin/";

constexpr const char* kSealwatchdDirectory = "/etc/sealwatchd/config.d/";
constexpr const char* kSealwatchdSuffix = ".json";

// What version control and editors leave behind.
const std::array<std::string, 7>& blacklistedExtensions() {
    static const std::array<std::string, 7> extensions = {".git", ".svn",      ".hg", ".bzr",
                                                          ".cvs", ".DS_Store", ".swp"};
    return extensions;
}

Regex rulePattern(const std::string& text) {
    return Regex(text, kRulePattern.compile, kRulePattern.match);
}

// Where a package may install, and where it may not. All but commonOrgPattern hit wherever their
// text stands in a path and whatever follows it, so that "/usr/share/appendix" belongs to a package
// "app". Anchoring them would reject packages that are accepted.
struct Places {
    Places(const std::string& name, const std::string& org, const std::string& app,
           const std::string& libexec)
        : ownDataPattern(rulePattern("/usr/share/" + name + ".*")),
          iconPattern(rulePattern("/usr/share/icons/hicolor/.*")),
          desktopFilePattern(rulePattern("/usr/share/applications/" + name + R"(\.desktop)")),
          thirdPartyLibPattern(rulePattern("/usr/lib/3rdparty/" + name + "/.*")),
          commonAppPattern(rulePattern("/usr/share/common/" + org + "/" + app + "(?:/.*|)")),
          commonOrgPattern(
              rulePattern("^/usr/share/common/" + org + "(/(?!" + app + "(/)?$).+)?(/)?$")),
          sealwatchdConfigPattern(
              rulePattern(R"(/etc/sealwatchd/config\.d/)" + name + R"(\.json)")),
          libexecEntryPattern(rulePattern(libexec + name)),
          libexecContentPattern(rulePattern(libexec + name + "/.*")),
          debugPattern(rulePattern("/usr/lib/debug.*|/usr/src/debug.*")) {}

    Regex ownDataPattern;
    Regex iconPattern;
    Regex desktopFilePattern;
    Regex thirdPartyLibPattern;
    Regex commonAppPattern;
    Regex commonOrgPattern;
    Regex sealwatchdConfigPattern;
    Regex libexecEntryPattern;
    Regex libexecContentPattern;
    Regex debugPattern;
};

// One walk over the paths of a package.
class PathWalk {
public:
    PathWalk(const ContentValidator& validator, ContentValidatorPrivate& record,
             const Configuration& configuration, const RpmMeta& rpm, const std::string& tempDir)
        : validator_(validator),
          record_(record),
          rpm_(rpm),
          tempDir_(tempDir),
          mainBinary_(configuration.binDir() + rpm.name()),
          places_(Regex::escape(rpm.name()), Regex::escape(record.desktopFacts.organizationName),
                  Regex::escape(record.desktopFacts.applicationName),
                  Regex::escape(configuration.libexecDir())),
          listedPaths_(configuration.pathsList()) {}

    void judge(const std::string& path);

private:
    bool isOwnPlace(const std::string& path) const;
    bool isSharedPlace(const std::string& path, bool listed) const;
    void noteMainBinary();
    void checkSealwatchd();
    void noteBinDirectory();
    void checkLibexecFile(const std::string& path);
    void noteDebugFile();
    void report(std::string_view finding);
    void report(const std::string& path, std::string_view finding);

    const ContentValidator& validator_;
    ContentValidatorPrivate& record_;
    const RpmMeta& rpm_;
    const std::string& tempDir_;
    const std::string mainBinary_;
    const Places places_;
    PatternList listedPaths_;
    std::optional<SealwatchdResult> sealwatchd_;
};

// The first step that takes a path decides on it, so the order is part of the rule.
void PathWalk::judge(const std::string& path) {
    if (path == mainBinary_) {
        noteMainBinary();
        return;
    }
    if (isOwnPlace(path)) {
        return;
    }
    const bool listed = listedPaths_.matches(path);
    if (isSharedPlace(path, listed)) {
        return;
    }
    if (places_.sealwatchdConfigPattern.match(path)) {
        checkSealwatchd();
    } else if (validator_.isBlacklistedExtension(path)) {
        report(path, pkgvet::kForbiddenExtension);
    } else if (path == kBinDirectory || path == kBinDirectoryWithSlash) {
        noteBinDirectory();
    } else if (places_.libexecEntryPattern.match(path)) {
        return;
    } else if (places_.libexecContentPattern.match(path)) {
        // Never reached, as the pattern above hits each such path first. It would have to be
        // anchored for that, and files that are accepted would then be judged.
        checkLibexecFile(path);
    } else {
        if (places_.debugPattern.match(path)) {
            noteDebugFile();
        }
        if (!listed) {
            report(path, pkgvet::kLocationNotAllowed);
        }
    }
}

bool PathWalk::isOwnPlace(const std::string& path) const {
    return places_.ownDataPattern.match(path) || places_.iconPattern.match(path) ||
           places_.desktopFilePattern.match(path);
}

bool PathWalk::isSharedPlace(const std::string& path, bool listed) const {
    return (listed && places_.thirdPartyLibPattern.match(path)) ||
           places_.commonAppPattern.match(path) || places_.commonOrgPattern.match(path);
}

void PathWalk::noteMainBinary() {
    record_.fileFacts.unwantedBinExists = true;
    if (record_.desktopFacts.qmlOnly) {
        report(pkgvet::kMainBinaryMustNotExist);
    }
}

// The file is named for the package and not for the path that led here: a path that only contains
// the expected text leads to the same file, and draws its findings once more.
void PathWalk::checkSealwatchd() {
    if (!sealwatchd_) {
        sealwatchd_ = pkgvet::checkSealwatchdFile(
            tempDir_ + kSealwatchdDirectory + rpm_.name() + kSealwatchdSuffix, rpm_.paths());
    }
    if (*sealwatchd_ == SealwatchdResult::Valid) {
        return;
    }
    record_.fileFacts.correctSealwatchd = false;
    report(*sealwatchd_ == SealwatchdResult::InvalidJson ? pkgvet::kSealwatchdInvalidJson
                                                         : pkgvet::kSealwatchdMismatch);
}

void PathWalk::noteBinDirectory() {
    record_.fileFacts.binDirOwned = true;
    report(pkgvet::kBinDirectoryOwned);
}

void PathWalk::checkLibexecFile(const std::string& path) {
    const std::string file = tempDir_ + path;
    struct stat status {};
    const bool isDirectory = stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    const ElfReader reader(file.c_str());
    const bool isGood =
        (reader.elfClass() == ElfClass::Elf32 || reader.elfClass() == ElfClass::Elf64) &&
        reader.encoding() == ElfEncoding::LittleEndian;
    if (!isDirectory && !isGood) {
        report(path, pkgvet::kBadExecutableFormat);
    }
}

void PathWalk::noteDebugFile() {
    record_.fileFacts.debugDir = true;
    report(pkgvet::kDebugFiles);
}

void PathWalk::report(std::string_view finding) {
    record_.failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {finding});
}

void PathWalk::report(const std::string& path, std::string_view finding) {
    record_.failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {"[", path, finding});
}

}  // namespace

bool ContentValidator::isBlacklistedExtension(const std::string& path) const {
    const auto& extensions = blacklistedExtensions();
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](const std::string& extension) { return endsWith(path, extension); });
}

void ContentValidator::checkExcludedPaths(const Configuration& configuration, const RpmMeta& rpm,
                                          const std::string& tempDir) {
    PathWalk walk(*this, *d_ptr, configuration, rpm, tempDir);
    for (const std::string& path : rpm.paths()) {
        walk.judge(path);
    }
    if (binRequired()) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {pkgvet::kMainBinaryMustExist});
    }
}
