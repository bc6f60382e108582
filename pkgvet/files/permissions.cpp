// The rule on modes and owners of files, and on where links lead that lead nowhere.
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kRulePattern;
using pkgvet::PatternList;

constexpr std::string_view kRoot = "root";
// The rule set under which files may be writable for everybody.
constexpr std::string_view kLenientRuleSet = "auth";

// Bits to test for, no types to compare with: the first two stand in the types of regular files,
// devices and sockets as well, the last in those of links and sockets. Where a name can be read as
// what it is but not followed, it is in practice a link.
constexpr mode_t kLinkBits = S_IFLNK;
constexpr mode_t kFileBit = S_IFREG;

constexpr mode_t kSpecialBits = S_ISUID | S_ISGID | S_ISVTX;
constexpr mode_t kOthersWrite = S_IWGRP | S_IWOTH;

// Where files may be executable. A search like the rules on places: "/usr/bin/app2" is fine for a
// package "app". The directories of the rule set play no part.
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
class AttributeWalk {
public:
    AttributeWalk(ContentValidatorPrivate& record, const Configuration& configuration,
                  const RpmMeta& rpm, const std::string& tempDir)
        : record_(record),
          rpm_(rpm),
          tempDir_(tempDir),
          isLenient_(configuration.name() == kLenientRuleSet),
          executablePattern_(executablePatternText(Regex::escape(rpm.name())), kRulePattern.compile,
                             kRulePattern.match) {}

    void judge(std::size_t index);

private:
    void judgeUnreadable(const std::string& path);
    void judgeLink(const std::string& path);
    void judgeSpecialBits(const std::string& path, mode_t mode);
    void judgeExecutable(const std::string& path, mode_t mode);
    void judgeWritable(const std::string& path, mode_t mode);
    void judgeOwners(const std::string& path, std::size_t index);
    bool isPackagePath(const std::string& target);
    void report(const std::string& path, std::string_view finding, std::string_view detail = {});

    ContentValidatorPrivate& record_;
    const RpmMeta& rpm_;
    const std::string& tempDir_;
    const bool isLenient_;
    const Regex executablePattern_;
    std::optional<PatternList> packagePaths_;  // made for the first link that needs it
};

// A link that leads somewhere, in the tree or on this machine, is judged by what it leads to.
void AttributeWalk::judge(std::size_t index) {
    const std::string& path = rpm_.paths()[index];
    struct stat status {};
    if (stat((tempDir_ + path).c_str(), &status) != 0) {
        judgeUnreadable(path);
        return;
    }
    if ((status.st_mode & kFileBit) != 0) {
        judgeSpecialBits(path, status.st_mode);
        judgeExecutable(path, status.st_mode);
    }
    judgeWritable(path, status.st_mode);
    judgeOwners(path, index);
}

void AttributeWalk::judgeUnreadable(const std::string& path) {
    struct stat status {};
    if (lstat((tempDir_ + path).c_str(), &status) == 0 && (status.st_mode & kLinkBits) != 0) {
        judgeLink(path);
    } else {
        report(path, pkgvet::kAttributesNotRead);
    }
}

// No list of "exclusive paths" exists: a link that leads nowhere may lead into the package only.
// The target stays as it is written, ".." and all, so that it has to be a path of the package
// letter by letter.
void AttributeWalk::judgeLink(const std::string& path) {
    Logger::log(LogLevel::Info, {"[", path, pkgvet::kBewareOfLinks});
    std::filesystem::path target = std::filesystem::read_symlink(tempDir_ + path);
    if (!target.has_root_directory()) {
        target = std::filesystem::path(path).parent_path() / target;
    }
    if (!isPackagePath(target.string())) {
        report(path, pkgvet::kLinkTargetNotAllowed, target.string());
    }
}

// At the level of an ordinary finding, but it rejects the package in any case.
void AttributeWalk::judgeSpecialBits(const std::string& path, mode_t mode) {
    if ((mode & kSpecialBits) != 0) {
        record_.failures |= pkgvet::kGraveFinding;
        Logger::log(LogLevel::Error, {"[", path, pkgvet::kSpecialBitSet});
    }
}

void AttributeWalk::judgeExecutable(const std::string& path, mode_t mode) {
    if ((mode & S_IXUSR) != 0 && !executablePattern_.match(path)) {
        report(path, pkgvet::kMustNotBeExecutable);
    }
}

void AttributeWalk::judgeWritable(const std::string& path, mode_t mode) {
    if ((mode & kOthersWrite) == 0) {
        return;
    }
    const std::string_view kind = S_ISDIR(mode) ? pkgvet::kKindDirectory : pkgvet::kKindFile;
    if (isLenient_) {
        Logger::log(LogLevel::Warning, {"[", path, pkgvet::kWritable, kind});
    } else {
        report(path, pkgvet::kWritable, kind);
    }
}

void AttributeWalk::judgeOwners(const std::string& path, std::size_t index) {
    if (rpm_.users().at(index) != kRoot) {
        report(path, pkgvet::kUserShouldBeRoot);
    }
    if (rpm_.groups().at(index) != kRoot) {
        report(path, pkgvet::kGroupShouldBeRoot);
    }
}

// The paths serve as patterns, operators and all: a "+" in one keeps it from matching itself.
bool AttributeWalk::isPackagePath(const std::string& target) {
    if (!packagePaths_) {
        packagePaths_.emplace(rpm_.paths());
    }
    return packagePaths_->matches(target);
}

void AttributeWalk::report(const std::string& path, std::string_view finding,
                           std::string_view detail) {
    record_.failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {"[", path, finding, detail});
}

}  // namespace

void ContentValidator::processPermissions(const Configuration& configuration, const RpmMeta& rpm,
                                          const std::string& tempDir) {
    AttributeWalk walk(*d_ptr, configuration, rpm, tempDir);
    for (std::size_t i = 0; i < rpm.paths().size(); ++i) {
        walk.judge(i);
    }
}
