// The rules as members of ContentValidator.
#include "pkgvet/base/file_modes.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/qml/qml_rules.h"

namespace {

// A caller of a single rule may have changed files since the last.
std::vector<mode_t> modesOf(const RpmMeta& rpm, const std::string& root,
                            const ContentValidatorPrivate& record) {
    return record.facts ? record.facts->modes : pkgvet::readModes(root, rpm.paths());
}

}  // namespace

bool ContentValidator::binRequired() const {
    return pkgvet::isBinaryRequired(d_ptr->desktopFacts.qmlOnly, d_ptr->fileFacts);
}

bool ContentValidator::isExecutable(const std::string& path) const {
    return pkgvet::isExecutable(path);
}

bool ContentValidator::isBlacklistedExtension(const std::string& path) const {
    return pkgvet::isBlacklistedExtension(path);
}

bool ContentValidator::isRpathEmpty(const ElfReader& reader) const {
    return pkgvet::isRpathEmpty(reader);
}

void ContentValidator::checkDesktop(const Configuration& configuration, const RpmMeta& meta,
                                    const std::string& desktopPath) {
    pkgvet::checkDesktop(meta.paths(), desktopPath, configuration, &d_ptr->desktopFacts,
                         &d_ptr->findings);
}

void ContentValidator::processDesktopFile(const RpmMeta& meta, const DesktopEntry& entry) {
    pkgvet::processDesktopFile(meta.name(), entry, &d_ptr->desktopFacts, &d_ptr->findings);
}

void ContentValidator::processPinfold(const Configuration& configuration, const RpmMeta& meta,
                                      const DesktopEntry& entry, const std::string& tempDir) {
    pkgvet::processPinfold(meta.name(), entry, configuration, tempDir, &d_ptr->desktopFacts,
                           &d_ptr->findings);
}

void ContentValidator::processBackgroundTasks(const RpmMeta& meta, const DesktopEntry& entry) {
    pkgvet::processBackgroundTasks(meta.name(), entry, d_ptr->desktopFacts, &d_ptr->findings);
}

void ContentValidator::validateDesktopEntryFieldStringValues(
    const std::string& group, const std::string& field,
    const std::unordered_set<std::string>& values, const DesktopEntry& entry) {
    pkgvet::validateDesktopEntryFieldStringValues(group, field, values, entry, &d_ptr->findings);
}

void ContentValidator::validateDesktopEntryGroupStringFields(
    const std::string& group,
    const std::vector<std::pair<std::unordered_set<std::string>, std::unordered_set<std::string>>>&
        rows,
    const DesktopEntry& entry) {
    pkgvet::validateDesktopEntryGroupStringFields(group, rows, entry, &d_ptr->findings);
}

void ContentValidator::validateDesktopEntryFieldColorValue(const std::string& group,
                                                           const std::string& field,
                                                           const DesktopEntry& entry) {
    pkgvet::validateDesktopEntryFieldColorValue(group, field, entry, &d_ptr->findings);
}

void ContentValidator::validateDesktopEntryGroupColorFields(
    const std::string& group, const std::unordered_set<std::string>& fields,
    const DesktopEntry& entry) {
    pkgvet::validateDesktopEntryGroupColorFields(group, fields, entry, &d_ptr->findings);
}

void ContentValidator::checkQmlImports(const Configuration& configuration, const RpmMeta& rpm,
                                       const std::string& root) {
    PayloadFacts own;
    PayloadFacts& facts = d_ptr->facts ? *d_ptr->facts : own;
    pkgvet::checkQmlImports(rpm.name(), rpm.paths(), d_ptr->desktopFacts.ostrandQt5Application,
                            configuration, root, &d_ptr->qmlFacts, &d_ptr->findings,
                            &facts.qmlImports);
}

void ContentValidator::checkExecutables(const Configuration& configuration, const RpmMeta& rpm,
                                        const std::string& root) {
    PayloadFacts own;
    PayloadFacts& facts = d_ptr->facts ? *d_ptr->facts : own;
    const std::vector<mode_t> modes = modesOf(rpm, root, *d_ptr);
    pkgvet::checkExecutables(
        {rpm.name(), rpm.arch(), rpm.paths(), modes, root, d_ptr->desktopFacts.qmlOnly},
        configuration, &d_ptr->binaryFacts, &d_ptr->findings, &facts.goodFormats);
}

void ContentValidator::checkLibraries(const Configuration& configuration, const RpmMeta& rpm,
                                      const std::string& path) {
    pkgvet::checkLibraries(rpm.name(), rpm.paths(), path, configuration, &d_ptr->binaryFacts,
                           &d_ptr->findings);
}

void ContentValidator::checkRpath(const RpmMeta& rpm, const std::string& path) {
    pkgvet::checkRpath(rpm.name(), path, d_ptr->desktopFacts.qmlOnly, &d_ptr->binaryFacts,
                       &d_ptr->findings);
}

void ContentValidator::processLiblumbraapp(const RpmMeta& rpm) {
    pkgvet::processLiblumbraapp(rpm.requireNames(), d_ptr->desktopFacts.qmlOnly,
                                &d_ptr->binaryFacts, &d_ptr->findings);
}

void ContentValidator::processElfTabs(const std::string& path) {
    pkgvet::processElfTabs(path, d_ptr->fileFacts.unwantedBinExists, d_ptr->qmlFacts.ostrandImport,
                           &d_ptr->binaryFacts, &d_ptr->findings);
}

void ContentValidator::checkIcons(const Configuration& configuration, const RpmMeta& rpm,
                                  const std::string& tempDir) {
    pkgvet::checkIcons(rpm.name(), rpm.paths(), configuration, tempDir, &d_ptr->findings);
}

void ContentValidator::checkArch(const RpmMeta& meta) {
    pkgvet::checkArch(meta.arch(), d_ptr->desktopFacts.qmlOnly, d_ptr->binaryFacts,
                      &d_ptr->findings);
}

void ContentValidator::checkSandboxing(const RpmMeta& rpm, const std::string& tempDir) {
    PayloadFacts own;
    PayloadFacts& facts = d_ptr->facts ? *d_ptr->facts : own;
    if (!facts.hardcodedPaths) {
        facts.hardcodedPaths = pkgvet::findHardcodedPaths(
            rpm.paths(), modesOf(rpm, tempDir, *d_ptr), tempDir, facts.knownTexts);
    }
    pkgvet::checkSandboxing(*facts.hardcodedPaths, &d_ptr->findings);
}

void ContentValidator::checkExcludedPaths(const Configuration& configuration, const RpmMeta& rpm,
                                          const std::string& tempDir) {
    const pkgvet::DesktopFacts& desktop = d_ptr->desktopFacts;
    pkgvet::checkExcludedPaths(rpm.name(), rpm.paths(),
                               {desktop.qmlOnly, desktop.organizationName, desktop.applicationName},
                               configuration, tempDir, &d_ptr->fileFacts, &d_ptr->findings);
}

void ContentValidator::checkEmptyDirectories(const RpmMeta& rpm) {
    const std::string& tempDir = d_ptr->tempDir;
    pkgvet::checkEmptyDirectories(rpm.paths(), modesOf(rpm, tempDir, *d_ptr), tempDir,
                                  &d_ptr->findings);
}

void ContentValidator::checkConfigurationParameterFile(const RpmMeta& rpm) {
    pkgvet::checkConfigurationParameterFile(rpm.name(), d_ptr->tempDir, &d_ptr->findings);
}

void ContentValidator::processPermissions(const Configuration& configuration, const RpmMeta& rpm,
                                          const std::string& tempDir) {
    pkgvet::processPermissions(rpm.name(), rpm.paths(), modesOf(rpm, tempDir, *d_ptr), rpm.users(),
                               rpm.groups(), configuration, tempDir, &d_ptr->findings);
}
