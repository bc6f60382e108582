// The rule on where a package may install its files.
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "pkgvet/elf/executable_format.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/files/sealwatchd.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

constexpr std::string_view kBinDirectory = "/usr/bin";
constexpr std::string_view kBinDirectoryWithSlash = "/usr/bin/";

constexpr const char* kSealwatchdDirectory = "/etc/sealwatchd/config.d/";
constexpr const char* kSealwatchdSuffix = ".json";

// What version control and editors leave behind.
constexpr std::array<std::string_view, 7> kBlacklistedExtensions = {
    ".git", ".svn", ".hg", ".bzr", ".cvs", ".DS_Store", ".swp"};

// Where a package may install, and where it may not. All but commonOrgPattern hit wherever their
// text stands in a path and whatever follows it, so that "/usr/share/appendix" belongs to a package
// "app". They are not anchored, since that would reject packages that are accepted.
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
    PathWalk(const std::string& packageName, const std::vector<std::string>& paths,
             const Application& application, const Configuration& configuration,
             const std::string& tempDir, FileFacts* facts, Findings* findings)
        : packageName_(packageName),
          paths_(paths),
          isQmlOnly_(application.isQmlOnly),
          tempDir_(tempDir),
          facts_(*facts),
          findings_(*findings),
          mainBinary_(configuration.binDir() + packageName),
          places_(Regex::escape(packageName), Regex::escape(application.organizationName),
                  Regex::escape(application.applicationName),
                  Regex::escape(configuration.libexecDir())),
          listedPaths_(configuration.pathsList()) {}

    void judge(const std::string& path);

private:
    bool isOwnPlace(const std::string& path) const;
    bool isSharedPlace(const std::string& path, bool listed) const;
    void judgeElsewhere(const std::string& path, bool listed);
    void noteMainBinary();
    void checkSealwatchd();
    void noteBinDirectory();
    void checkLibexecFile(const std::string& path);
    void noteDebugFile();

    const std::string& packageName_;
    const std::vector<std::string>& paths_;
    const bool isQmlOnly_;
    const std::string& tempDir_;
    FileFacts& facts_;
    Findings& findings_;
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
    } else if (isBlacklistedExtension(path)) {
        findings_.violation(kForbiddenExtension, {path});
    } else if (path == kBinDirectory || path == kBinDirectoryWithSlash) {
        noteBinDirectory();
    } else if (!places_.libexecEntryPattern.match(path)) {
        judgeElsewhere(path, listed);
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

// libexecEntryPattern matches every path that libexecContentPattern matches, and judge() stops at
// it. The content pattern is reached in one case only: where both the directory and the package's
// name are empty, so that the entry pattern is empty and matches nothing. If the entry pattern were
// anchored, the content pattern would judge files that are accepted now.
void PathWalk::judgeElsewhere(const std::string& path, bool listed) {
    if (places_.libexecContentPattern.match(path)) {
        checkLibexecFile(path);
        return;
    }
    if (places_.debugPattern.match(path)) {
        noteDebugFile();
    }
    if (!listed) {
        findings_.violation(kLocationNotAllowed, {path});
    }
}

void PathWalk::noteMainBinary() {
    facts_.unwantedBinExists = true;
    if (isQmlOnly_) {
        findings_.violation(kMainBinaryMustNotExist);
    }
}

// The file is named for the package and not for the path that led here: a path that only contains
// the expected text leads to the same file, whose findings are then reported once more.
void PathWalk::checkSealwatchd() {
    if (!sealwatchd_) {
        sealwatchd_ = checkSealwatchdFile(
            tempDir_ + kSealwatchdDirectory + packageName_ + kSealwatchdSuffix, paths_);
    }
    if (*sealwatchd_ == SealwatchdResult::Valid) {
        return;
    }
    facts_.correctSealwatchd = false;
    findings_.violation(*sealwatchd_ == SealwatchdResult::InvalidJson ? kSealwatchdInvalidJson
                                                                      : kSealwatchdMismatch);
}

void PathWalk::noteBinDirectory() {
    facts_.binDirOwned = true;
    findings_.violation(kBinDirectoryOwned);
}

void PathWalk::checkLibexecFile(const std::string& path) {
    const std::string file = tempDir_ + path;
    struct stat status {};
    const bool isDirectory = stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    if (!isDirectory && !hasGoodFormat(file)) {
        findings_.violation(kBadExecutableFormat, {path});
    }
}

void PathWalk::noteDebugFile() {
    facts_.debugDir = true;
    findings_.violation(kDebugFiles);
}

}  // namespace

bool isBlacklistedExtension(const std::string& path) {
    return std::any_of(kBlacklistedExtensions.begin(), kBlacklistedExtensions.end(),
                       [&](std::string_view extension) { return path.ends_with(extension); });
}

bool isBinaryRequired(bool isQmlOnly, const FileFacts& facts) {
    return !isQmlOnly && !facts.unwantedBinExists;
}

void checkExcludedPaths(const std::string& packageName, const std::vector<std::string>& paths,
                        const Application& application, const Configuration& configuration,
                        const std::string& tempDir, FileFacts* facts, Findings* findings) {
    PathWalk walk(packageName, paths, application, configuration, tempDir, facts, findings);
    for (const std::string& path : paths) {
        walk.judge(path);
    }
    if (isBinaryRequired(application.isQmlOnly, *facts)) {
        findings->violation(kMainBinaryMustExist);
    }
}

}  // namespace pkgvet
