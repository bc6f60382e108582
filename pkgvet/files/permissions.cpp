// The rule on modes and owners of files, and on where links lead that lead nowhere.
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/pattern/package_patterns.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

constexpr std::string_view kRoot = "root";
// The rule set under which files that anybody may write to are only warned of.
constexpr std::string_view kLenientRuleSet = "auth";

// These are bits to test for and not types to compare with: the first two are set for anything but
// directories and fifos, the last one also for links and sockets. What lstat can read and stat
// cannot is in practice a link, so that the first test is right all the same.
constexpr mode_t kLinkBits = S_IFLNK;
constexpr mode_t kFileBit = S_IFREG;

constexpr mode_t kSpecialBits = S_ISUID | S_ISGID | S_ISVTX;
constexpr mode_t kOthersWrite = S_IWGRP | S_IWOTH;

// Where files may be executable. It hits wherever its text stands in a path, so that
// "/usr/bin/app2" is fine for a package "app". The directories of the rule set are not looked at.
std::string executablePatternText(const std::string& name) {
    return "/usr/bin/" + name + "|/usr/share/" + name +
           R"(/.*\.so.*)"
           "|/usr/lib/3rdparty/" +
           name +
           R"(/.*\.so.*)"
           "|/usr/libexec/" +
           name +
           "/.*"
           R"(|/usr/lib(|64)/qt5/qml/.*\.so.*)"
           R"(|/usr/lib(|64)/connman/plugins-vpn/.*\.so.*)"
           "|/opt/extension/p11-kit-modules/" +
           name +
           R"(/.*\.so.*)"
           "|/opt/extension/qca-plugins/" +
           name + R"(/.*\.so.*)";
}

// One walk over the files of a package.
class ModeWalk {
public:
    ModeWalk(const std::string& packageName, const std::vector<std::string>& paths,
             const std::vector<mode_t>& modes, const std::string& ruleSetName,
             const std::string& tempDir, Findings* findings)
        : paths_(paths),
          modes_(modes),
          tempDir_(tempDir),
          isLenient_(ruleSetName == kLenientRuleSet),
          executablePattern_(rulePattern(executablePatternText(Regex::escape(packageName)))),
          findings_(*findings) {}

    // mode as of readModes(). False for what cannot be read, whose owners are not judged either.
    bool judge(const std::string& path, mode_t mode);

private:
    void judgeUnreadable(const std::string& path);
    void judgeLink(const std::string& path);
    std::string targetOf(const std::string& path) const;
    bool isLink(const std::string& path) const;
    void judgeSpecialBits(const std::string& path, mode_t mode);
    void judgeExecutable(const std::string& path, mode_t mode);
    void judgeWritable(const std::string& path, mode_t mode);
    bool isPackagePath(const std::string& target);
    void judgeTargets();

    const std::vector<std::string>& paths_;
    const std::vector<mode_t>& modes_;
    const std::string& tempDir_;
    const bool isLenient_;
    const Regex executablePattern_;
    Findings& findings_;
    // Of all links that lead nowhere, by their targets; made for the first of them.
    std::optional<std::unordered_map<std::string, PatternAnswer>> targets_;
};

// A link that leads somewhere, in the tree or on this machine, is judged by what it leads to.
bool ModeWalk::judge(const std::string& path, mode_t mode) {
    if (mode == 0) {
        judgeUnreadable(path);
        return false;
    }
    if ((mode & kFileBit) != 0) {
        judgeSpecialBits(path, mode);
        judgeExecutable(path, mode);
    }
    judgeWritable(path, mode);
    return true;
}

void ModeWalk::judgeUnreadable(const std::string& path) {
    if (isLink(path)) {
        judgeLink(path);
    } else {
        findings_.violation(kAttributesNotRead, {path});
    }
}

// Of a path that cannot be read.
bool ModeWalk::isLink(const std::string& path) const {
    struct stat status {};
    return lstat((tempDir_ + path).c_str(), &status) == 0 && (status.st_mode & kLinkBits) != 0;
}

// The "exclusive paths" of the message do not exist: a link that leads nowhere may lead into the
// package only.
void ModeWalk::judgeLink(const std::string& path) {
    findings_.info(kBewareOfLinks, {path});
    const std::string target = targetOf(path);
    if (!isPackagePath(target)) {
        findings_.violation(kLinkTargetNotAllowed, {path, target});
    }
}

// As it is written, ".." and all.
std::string ModeWalk::targetOf(const std::string& path) const {
    const std::filesystem::path target = std::filesystem::read_symlink(tempDir_ + path);
    return target.has_root_directory()
               ? target.native()
               : (std::filesystem::path(path).parent_path() / target).native();
}

// It rejects the package in any case, though its line has the level of an ordinary finding.
void ModeWalk::judgeSpecialBits(const std::string& path, mode_t mode) {
    if ((mode & kSpecialBits) != 0) {
        findings_.grave(LogLevel::Error, kSpecialBitSet, {path});
    }
}

void ModeWalk::judgeExecutable(const std::string& path, mode_t mode) {
    if ((mode & S_IXUSR) != 0 && !executablePattern_.match(path)) {
        findings_.violation(kMustNotBeExecutable, {path});
    }
}

void ModeWalk::judgeWritable(const std::string& path, mode_t mode) {
    if ((mode & kOthersWrite) == 0) {
        return;
    }
    const std::string_view kind = S_ISDIR(mode) ? kKindDirectory : kKindFile;
    if (isLenient_) {
        findings_.warning(kWritable, {path, kind});
    } else {
        findings_.violation(kWritable, {path, kind});
    }
}

bool ModeWalk::isPackagePath(const std::string& target) {
    if (!targets_) {
        judgeTargets();
    }
    return targets_->at(target).get();
}

// The paths serve as patterns, operators and all: a "+" in one keeps it from matching itself.
void ModeWalk::judgeTargets() {
    std::vector<std::string> targets;
    for (std::size_t i = 0; i < paths_.size(); ++i) {
        if (modes_[i] == 0 && isLink(paths_[i])) {
            targets.push_back(targetOf(paths_[i]));
        }
    }
    std::vector<PatternAnswer> answers = matchPackagePatterns(paths_, targets);
    targets_.emplace();
    for (std::size_t i = 0; i < targets.size(); ++i) {
        targets_->emplace(std::move(targets[i]), std::move(answers[i]));
    }
}

}  // namespace

void processPermissions(const std::string& packageName, const std::vector<std::string>& paths,
                        const std::vector<mode_t>& modes, const std::vector<std::string>& users,
                        const std::vector<std::string>& groups, const Configuration& configuration,
                        const std::string& tempDir, Findings* findings) {
    ModeWalk walk(packageName, paths, modes, configuration.name(), tempDir, findings);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (!walk.judge(paths[i], modes[i])) {
            continue;
        }
        if (users.at(i) != kRoot) {
            findings->violation(kUserShouldBeRoot, {paths[i]});
        }
        if (groups.at(i) != kRoot) {
            findings->violation(kGroupShouldBeRoot, {paths[i]});
        }
    }
}

}  // namespace pkgvet
