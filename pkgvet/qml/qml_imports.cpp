// The rule on what the package's QML files import.
#include <algorithm>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/qml/line_reader.h"
#include "pkgvet/qml/qml_messages.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kTextPattern;
using pkgvet::PatternList;

constexpr std::string_view kQmlPattern = R"(.*\.qml$)";

// Imports in the first column only, one blank behind the word; and "1.05" is a "1.0" as well.
constexpr std::string_view kOstrandPattern = R"(^import Lumbra\.Ostrand 1\.0)";
constexpr std::string_view kXmlListModelPattern = R"(^import QtQuick\.XmlListModel)";

// A quoted text goes on to the last quote of the line. An import without a version is none, and of
// two on one line only the first is seen. The group at the end may be absent, so it rules out
// nothing.
constexpr std::string_view kImportPattern =
    R"(^[\s;]*import\s+(\".+\"|\S+\s+\d+(?:\.\d+)*)(?:as\s.+|\/\/.*)?)";
constexpr int kImportText = 1;

// The first word alone: a quoted text with a blank inside is no quoted import.
constexpr std::string_view kQuotedPattern = R"(^\".*\"$)";

// Every pattern on a line demands this word, and looking for it is cheap.
constexpr std::string_view kImportWord = "import";

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kParentDirectory = "../";
constexpr const char* kQmlDirectory = "/qml/";

Regex textPattern(std::string_view text) {
    return Regex(text, kTextPattern.compile, kTextPattern.match);
}

std::string_view firstWord(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    return text.substr(0, text.find_first_of(kWhiteSpace));
}

// One run over the imports of a package. Import texts are kept in byte order, each once.
class ImportCheck {
public:
    ImportCheck(ContentValidatorPrivate& record, const Configuration& configuration,
                const RpmMeta& rpm)
        : record_(record), configuration_(configuration), rpm_(rpm) {}

    void read(const std::vector<std::string>& qmlFiles);
    void resolveQuotedImports();
    void filter();
    void judge();

private:
    void noteOstrandImport();
    void reportNotAllowed(const std::string& imp);

    ContentValidatorPrivate& record_;
    const Configuration& configuration_;
    const RpmMeta& rpm_;

    std::set<std::string> imports_;
    std::vector<std::string> packagedImports_;
    std::vector<std::string> suspects_;
};

void ImportCheck::read(const std::vector<std::string>& qmlFiles) {
    const Regex ostrandPattern = textPattern(kOstrandPattern);
    const Regex xmlListModelPattern = textPattern(kXmlListModelPattern);
    const Regex importPattern = textPattern(kImportPattern);
    std::string line;
    for (const std::string& file : qmlFiles) {
        pkgvet::LineReader reader(file);
        while (reader.next(&line)) {
            if (line.find(kImportWord) == std::string::npos) {
                continue;
            }
            if (ostrandPattern.match(line)) {
                noteOstrandImport();
            } else if (xmlListModelPattern.match(line)) {
                record_.qmlFacts.xmlListModelImport = true;
            } else if (const std::optional<MatchInfo> match = importPattern.match(line)) {
                imports_.insert(match->fetch(kImportText).value());
            }
        }
    }
}

// Neither this import nor that of the XML list model reaches the lists.
void ImportCheck::noteOstrandImport() {
    record_.qmlFacts.ostrandImport = true;
    if (!record_.desktopFacts.ostrandQt5Application) {
        Logger::log(LogLevel::Warning, {pkgvet::kShouldBeOstrandQt5});
    }
}

// Relative to the package's QML directory, whichever file holds the import. One step up is undone,
// a second one stays in the text and leads nowhere.
void ImportCheck::resolveQuotedImports() {
    const Regex quotedPattern = textPattern(kQuotedPattern);
    const std::string base = configuration_.shareDir() + rpm_.name() + kQmlDirectory;
    const std::unordered_set<std::string> paths(rpm_.paths().begin(), rpm_.paths().end());
    for (const std::string& imp : imports_) {
        const std::string_view word = firstWord(imp);
        if (!quotedPattern.match(word)) {
            continue;
        }
        std::string_view rel = word.substr(1, word.size() - 2);
        if (rel.starts_with('/')) {
            reportNotAllowed(imp);
            continue;
        }
        if (rel.starts_with(kParentDirectory)) {
            rel.remove_prefix(kParentDirectory.size());
        }
        if (paths.count(base + std::string(rel)) != 0) {
            packagedImports_.push_back(imp);
        }
    }
}

// The packaged imports serve as patterns, quotes and all, so that one with an opening parenthesis
// does not match itself or is a bad pattern.
void ImportCheck::filter() {
    PatternList packaged(packagedImports_);
    PatternList allowed(configuration_.allowedQmlimports());
    std::copy_if(
        imports_.begin(), imports_.end(), std::back_inserter(suspects_),
        [&](const std::string& imp) { return !packaged.matches(imp) && !allowed.matches(imp); });
}

// An import on no list at all passes without a word, unlike a library.
void ImportCheck::judge() {
    PatternList unstable(configuration_.unstableQmlimports());
    PatternList deprecated(configuration_.deprecatedQmlimports());
    PatternList disallowed(configuration_.disallowedPatterns());
    for (const std::string& imp : suspects_) {
        if (unstable.matches(imp) || deprecated.matches(imp)) {
            Logger::log(LogLevel::Warning, {"[", imp, pkgvet::kImportUnstable});
        } else if (disallowed.matches(imp)) {
            reportNotAllowed(imp);
        }
    }
}

void ImportCheck::reportNotAllowed(const std::string& imp) {
    record_.failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {"[", imp, pkgvet::kImportNotAllowed});
}

// By the name in the package alone; a directory of such a name has no lines.
std::vector<std::string> qmlFilesOf(const RpmMeta& rpm, const std::string& root) {
    const Regex qmlPattern = textPattern(kQmlPattern);
    std::vector<std::string> qmlFiles;
    for (const std::string& path : rpm.paths()) {
        if (qmlPattern.match(path)) {
            qmlFiles.push_back(root + path);
        }
    }
    return qmlFiles;
}

}  // namespace

// Text is not understood: an import in a comment of several lines counts.
void ContentValidator::checkQmlImports(const Configuration& configuration, const RpmMeta& rpm,
                                       const std::string& root) {
    const std::vector<std::string> qmlFiles = qmlFilesOf(rpm, root);
    if (qmlFiles.empty()) {
        return;
    }
    ImportCheck check(*d_ptr, configuration, rpm);
    check.read(qmlFiles);
    check.resolveQuotedImports();
    check.filter();
    check.judge();
}
