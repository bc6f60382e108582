// The rules on what a package installs.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "pkgvet/export.h"

struct FTW;

class Configuration;
class DesktopEntry;
class ElfReader;
class RpmMeta;
struct ContentValidatorPrivate;

// Judges the files of a package. The constructor unpacks the payload into a directory of its own
// below "/tmp", validateContent runs every rule over that tree and over the file lists of an
// RpmMeta, and the destructor removes the tree. Findings go out through Logger as they arise; the
// verdict and one fact per accessor remain.
//
// Unpacking changes the working directory of the process for its length, so nothing else in the
// process may use relative paths, and no second object be constructed, while a constructor runs.
// One object belongs to one thread, through the const overload of validateContent as well.
//
// Nothing that a rule has found is ever forgotten: a second run on the same object repeats all
// lines and can only stay failed. Rules may also be called one by one, but they pass results on to
// each other, and only validateContent knows their order. Standard exceptions leave a rule and
// validateContent uncaught: std::regex_error from a pattern that does not compile or a text that
// exhausts an engine, std::filesystem::filesystem_error, std::out_of_range, std::logic_error from a
// JSON list that holds something other than text. The object can be destroyed all the same.
//
// A path on disk is the extraction directory followed by a path of the package; root and tempDir
// below are that directory, without a trailing "/".
//
// There is no move constructor, which would leave an object without its record: rvalues are copied.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions)
class PKGVET_EXPORT ContentValidator {
public:
    // Unpacks the package at rpmPath, a path on disk, which reaches the shell between double quotes
    // and otherwise unescaped. Reports no failure: see extracted.
    explicit ContentValidator(const std::string& rpmPath);
    // The same: the first two arguments are not looked at, and no rule runs.
    ContentValidator(const Configuration& config, const RpmMeta& meta, const std::string& rpmPath);
    // Copies the record, and with it the name of the extraction directory, not the tree: whichever
    // object is destroyed first removes it, and the other sees no files from then on. What
    // rememberFiles looked up is shared.
    ContentValidator(const ContentValidator& other);
    ContentValidator& operator=(const ContentValidator&) = delete;
    // Exchanges the two records, and with them the directories.
    ContentValidator& operator=(ContentValidator&& other) noexcept;
    ~ContentValidator();

    // Whether the payload was unpacked. If not, validateContent runs all the same, but judges the
    // files of the machine that it runs on under the paths of the package.
    bool extracted() const;

    // Says that nothing changes the unpacked files from here on, and that meta is what they are
    // judged with; for another one nothing is remembered. Whatever does not depend on a
    // configuration is then looked up once for this object and for all copies that are made of it
    // later, however often validateContent runs. Such objects belong to one thread together. No
    // line and no verdict becomes another.
    //
    // Who has read files of the payload already may spare the rules from reading them again: known
    // says whether the text of the file that status describes holds the home directory of the
    // platform's default user, as the rules on paths in files see it, and nothing where that is not
    // known. It is called for files that can be reached now, while this call lasts.
    using KnownText = std::function<std::optional<bool>(const struct stat& status)>;
    void rememberFiles(const RpmMeta& meta, const KnownText& known = nullptr);

    // Runs every rule and gives the verdict: with validation enabled, no rule was violated; with it
    // disabled, no file has a setuid, setgid or sticky bit.
    bool validateContent(const Configuration& config, const RpmMeta& meta);
    // The same, with the same effects.
    bool validateContent(const Configuration& config, const RpmMeta& meta) const;

    // Unpacks rpmPath into directory, both paths on disk. 0 on success, otherwise 1 or what the
    // shell answered.
    int extractRpm(const char* directory, const char* rpmPath);
    // A callback for nftw that removes what it is given: a directory by rmdir, else by unlink.
    // Nothing here calls it.
    static int removeDir(const char* path, const struct stat* st, int typeFlag, struct FTW* ftw);

    // Whether the package needs a main binary that has not been seen. Means something once
    // checkExcludedPaths has run.
    bool binRequired() const;
    // Whether path, on disk, leads to a regular file that its owner may execute.
    bool isExecutable(const std::string& path) const;
    bool endsWith(const std::string& text, const std::string& suffix) const;
    // Whether path ends in a suffix that version control and editors leave behind.
    bool isBlacklistedExtension(const std::string& path) const;
    // Whether the file has no DT_RPATH.
    bool isRpathEmpty(const ElfReader& reader) const;

    // The rules on the desktop file. desktopPath is a path of the package.
    void checkDesktop(const Configuration& configuration, const RpmMeta& meta,
                      const std::string& desktopPath);
    void processDesktopFile(const RpmMeta& meta, const DesktopEntry& entry);
    void processPinfold(const Configuration& configuration, const RpmMeta& meta,
                        const DesktopEntry& entry, const std::string& tempDir);
    void processBackgroundTasks(const RpmMeta& meta, const DesktopEntry& entry);

    // Each element of the list in group/field must be one of values.
    void validateDesktopEntryFieldStringValues(const std::string& group, const std::string& field,
                                               const std::unordered_set<std::string>& values,
                                               const DesktopEntry& entry);
    // Each key of group must stand in the first set of a row, its value in the second.
    void validateDesktopEntryGroupStringFields(
        const std::string& group,
        const std::vector<
            std::pair<std::unordered_set<std::string>, std::unordered_set<std::string>>>& rows,
        const DesktopEntry& entry);
    // The value of group/field must be a colour such as "#A1B2C3" or "#FFF".
    void validateDesktopEntryFieldColorValue(const std::string& group, const std::string& field,
                                             const DesktopEntry& entry);
    // Each key of group must be one of fields, and a colour.
    void validateDesktopEntryGroupColorFields(const std::string& group,
                                              const std::unordered_set<std::string>& fields,
                                              const DesktopEntry& entry);

    // The rules on QML files and on binaries. path is the main binary on disk.
    void checkQmlImports(const Configuration& configuration, const RpmMeta& rpm,
                         const std::string& root);
    void checkExecutables(const Configuration& configuration, const RpmMeta& rpm,
                          const std::string& root);
    void checkLibraries(const Configuration& configuration, const RpmMeta& rpm,
                        const std::string& path);
    void checkRpath(const RpmMeta& rpm, const std::string& path);
    void processLiblumbraapp(const RpmMeta& rpm);
    void processElfTabs(const std::string& path);

    // The rules on files as such.
    void checkIcons(const Configuration& configuration, const RpmMeta& rpm,
                    const std::string& tempDir);
    void checkArch(const RpmMeta& meta);
    void checkSandboxing(const RpmMeta& rpm, const std::string& tempDir);
    void checkExcludedPaths(const Configuration& configuration, const RpmMeta& rpm,
                            const std::string& tempDir);
    void checkEmptyDirectories(const RpmMeta& rpm);
    void checkConfigurationParameterFile(const RpmMeta& rpm);
    void processPermissions(const Configuration& configuration, const RpmMeta& rpm,
                            const std::string& tempDir);

    // What the rules found; each false until a rule finds otherwise, apart from those whose names
    // begin with "correct", which are true.
    bool desktop() const;
    bool desktopName() const;
    bool desktopIcon() const;
    bool desktopExec() const;
    bool qmlOnly() const;
    bool desktopType() const;
    bool ostrandQt5Application() const;
    bool knownApplicationType() const;
    bool ostrandImport() const;
    bool rpathExists() const;
    bool rpathStatus() const;
    bool mainSymbol() const;
    bool mainExport() const;
    bool booster() const;
    bool arch() const;  // always false
    bool launcherDesktop() const;
    bool launcherSpec() const;
    bool debugDir() const;
    bool unwantedBinExists() const;
    bool mainBinExec() const;
    bool pinfoldSection() const;
    bool multiplePinfoldSection() const;
    bool illegalCharacters() const;
    bool correctOrgNameAppNamePair() const;
    bool correctOrgName() const;
    bool wrongLeadingOrgName() const;
    bool orgDomainName() const;
    bool disallowedOrgName() const;  // always false
    bool correctDbus() const;
    bool correctSystemService() const;
    bool dbusError() const;
    bool dbusWarning() const;
    bool isSandboxed() const;
    bool correctSealwatchd() const;

private:
    std::unique_ptr<ContentValidatorPrivate> d_ptr;
};
