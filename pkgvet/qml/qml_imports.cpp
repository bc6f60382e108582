// The rule on what the package's QML files import.
#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/pattern/package_patterns.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/qml/line_reader.h"
#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/qml/qml_messages.h"
#include "pkgvet/qml/qml_rules.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

constexpr std::string_view kQmlPattern = R"(.*\.qml$)";

// Imports in the first column only, one blank behind the word; and "1.05" is a "1.0" as well.
constexpr std::string_view kOstrandPattern = R"(^import Lumbra\.Ostrand 1\.0)";
constexpr std::string_view kXmlListModelPattern = R"(^import QtQuick\.XmlListModel)";

// A quoted text goes on to the last quote of the line. An import without a version does not match,
// and of two imports on one line only the first is seen. The group at the end may be absent, so
// that it rules out nothing.
constexpr std::string_view kImportPattern =
    R"(^[\s;]*import\s+(\".+\"|\S+\s+\d+(?:\.\d+)*)(?:as\s.+|\/\/.*)?)";
constexpr int kImportText = 1;

// Tried on the first word alone: a quoted text with a blank inside is treated like a module.
constexpr std::string_view kQuotedPattern = R"(^\".*\"$)";

// Every pattern on a line demands this word, and looking for it is cheap.
constexpr std::string_view kImportWord = "import";

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kParentDirectory = "../";
constexpr const char* kQmlDirectory = "/qml/";

using Imports = std::set<std::string>;

std::string_view firstWord(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    return text.substr(0, text.find_first_of(kWhiteSpace));
}

// The name in the package alone makes a QML file. A directory of such a name has no lines.
std::vector<std::string> qmlFilesOf(const std::vector<std::string>& paths,
                                    const std::string& root) {
    const Regex qmlPattern = textPattern(kQmlPattern);
    std::vector<std::string> qmlFiles;
    for (const std::string& path : paths) {
        if (qmlPattern.match(path)) {
            qmlFiles.push_back(root + path);
        }
    }
    return qmlFiles;
}

// The patterns on lines, compiled once for all files.
struct LinePatterns {
    Regex ostrand = textPattern(kOstrandPattern);
    Regex xmlListModel = textPattern(kXmlListModelPattern);
    Regex anyImport = textPattern(kImportPattern);
};

// Reads the QML files of one package, each once, whatever the number of its paths.
class ImportReader {
public:
    // How many imports of the toolkit the file has, which are neither among the texts nor judged by
    // the lists. Nor are those of the XML list model.
    std::size_t read(const std::string& path, QmlFacts* facts) {
        OpenFile file = openRegularFile(path);
        if (!file.descriptor.isOpen()) {
            return 0;
        }
        const auto [count, isNew] = ostrandImports_.try_emplace(file.identity, 0);
        if (isNew) {
            LineReader lines(std::move(file));
            while (lines.next(&line_)) {
                count->second += readLine(facts) ? 1 : 0;
            }
        }
        imports_.ostrandImports += count->second;
        return count->second;
    }

    QmlImports takeImports() { return std::move(imports_); }

private:
    // Whether line_ imports the toolkit.
    bool readLine(QmlFacts* facts) {
        if (line_.find(kImportWord) == std::string::npos) {
            return false;
        }
        if (patterns_.ostrand.match(line_)) {
            imports_.facts.ostrandImport = facts->ostrandImport = true;
            return true;
        }
        if (patterns_.xmlListModel.match(line_)) {
            imports_.facts.xmlListModelImport = facts->xmlListModelImport = true;
            return false;
        }
        const std::optional<MatchInfo> match = patterns_.anyImport.match(line_);
        if (std::optional<std::string> text = match ? match->fetch(kImportText) : std::nullopt) {
            imports_.texts.insert(*std::move(text));
        }
        return false;
    }

    const LinePatterns patterns_ = {};
    QmlImports imports_;
    std::map<FileIdentity, std::size_t> ostrandImports_;
    std::string line_;
};

void reportOstrandImports(std::size_t count, bool isOstrandQt5Application, Findings* findings) {
    for (std::size_t i = 0; i < count && !isOstrandQt5Application; ++i) {
        findings->warning(kShouldBeOstrandQt5);
    }
}

// Text is not understood: an import in a comment of several lines counts.
QmlImports readImports(const std::vector<std::string>& qmlFiles, bool isOstrandQt5Application,
                       QmlFacts* facts, Findings* findings) {
    ImportReader reader;
    for (const std::string& file : qmlFiles) {
        reportOstrandImports(reader.read(file, facts), isOstrandQt5Application, findings);
    }
    return reader.takeImports();
}

// What is known already is told in the same lines: they are all alike.
void takeKnown(const QmlImports& imports, bool isOstrandQt5Application, QmlFacts* facts,
               Findings* findings) {
    facts->ostrandImport |= imports.facts.ostrandImport;
    facts->xmlListModelImport |= imports.facts.xmlListModelImport;
    reportOstrandImports(imports.ostrandImports, isOstrandQt5Application, findings);
}

// The quoted imports that lead to a file of the package. They are resolved in base, the package's
// QML directory, whichever file holds them. One step up is undone, a second one stays in the text
// and leads nowhere. An absolute path is reported here, and once more where the lists forbid it.
std::vector<std::string> packagedAmong(const Imports& imports, const std::string& base,
                                       const std::vector<std::string>& paths, Findings* findings) {
    const Regex quotedPattern = textPattern(kQuotedPattern);
    const std::unordered_set<std::string> known(paths.begin(), paths.end());
    std::vector<std::string> packaged;
    for (const std::string& text : imports) {
        const std::string_view word = firstWord(text);
        if (!quotedPattern.match(word)) {
            continue;
        }
        std::string_view relative = word.substr(1, word.size() - 2);
        if (relative.starts_with('/')) {
            findings->violation(kImportNotAllowed, {text});
            continue;
        }
        if (relative.starts_with(kParentDirectory)) {
            relative.remove_prefix(kParentDirectory.size());
        }
        if (known.count(base + std::string(relative)) != 0) {
            packaged.push_back(text);
        }
    }
    return packaged;
}

// The imports that are neither packaged nor allowed. The packaged ones serve as patterns, quotes
// and all, so that one with an opening parenthesis does not match itself or is a bad pattern.
std::vector<std::string> suspectsAmong(const Imports& imports,
                                       const std::vector<std::string>& packagedImports,
                                       const Configuration& configuration) {
    const std::vector<std::string> texts(imports.begin(), imports.end());
    const std::vector<PatternAnswer> packaged = matchPackagePatterns(packagedImports, texts);
    PatternList allowed(configuration.allowedQmlimports());
    std::vector<std::string> suspects;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!packaged[i].get() && !allowed.matches(texts[i])) {
            suspects.push_back(texts[i]);
        }
    }
    return suspects;
}

// Unlike a library, an import that is on none of the lists passes without a line.
void judge(const std::vector<std::string>& suspects, const Configuration& configuration,
           Findings* findings) {
    PatternList unstable(configuration.unstableQmlimports());
    PatternList deprecated(configuration.deprecatedQmlimports());
    PatternList disallowed(configuration.disallowedPatterns());
    for (const std::string& text : suspects) {
        if (unstable.matches(text) || deprecated.matches(text)) {
            findings->warning(kImportUnstable, {text});
        } else if (disallowed.matches(text)) {
            findings->violation(kImportNotAllowed, {text});
        }
    }
}

}  // namespace

void checkQmlImports(const std::string& packageName, const std::vector<std::string>& paths,
                     bool isOstrandQt5Application, const Configuration& configuration,
                     const std::string& root, QmlFacts* facts, Findings* findings,
                     std::optional<QmlImports>* known) {
    const std::vector<std::string> qmlFiles = qmlFilesOf(paths, root);
    if (qmlFiles.empty()) {
        return;
    }
    std::optional<QmlImports> own;
    std::optional<QmlImports>& read = known == nullptr ? own : *known;
    if (read) {
        takeKnown(*read, isOstrandQt5Application, facts, findings);
    } else {
        read = readImports(qmlFiles, isOstrandQt5Application, facts, findings);
    }
    const Imports& imports = read->texts;
    const std::string base = configuration.shareDir() + packageName + kQmlDirectory;
    const std::vector<std::string> packaged = packagedAmong(imports, base, paths, findings);
    judge(suspectsAmong(imports, packaged, configuration), configuration, findings);
}

}  // namespace pkgvet
