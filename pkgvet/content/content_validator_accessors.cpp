// What ContentValidator tells of its record.
#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"

bool ContentValidator::desktop() const {
    return d_ptr->desktopFacts.desktop;
}

bool ContentValidator::desktopName() const {
    return d_ptr->desktopFacts.desktopName;
}

bool ContentValidator::desktopIcon() const {
    return d_ptr->desktopFacts.desktopIcon;
}

bool ContentValidator::desktopExec() const {
    return d_ptr->desktopFacts.desktopExec;
}

bool ContentValidator::qmlOnly() const {
    return d_ptr->desktopFacts.qmlOnly;
}

bool ContentValidator::desktopType() const {
    return d_ptr->desktopFacts.desktopType;
}

bool ContentValidator::ostrandQt5Application() const {
    return d_ptr->desktopFacts.ostrandQt5Application;
}

bool ContentValidator::knownApplicationType() const {
    return d_ptr->desktopFacts.knownApplicationType;
}

bool ContentValidator::ostrandImport() const {
    return d_ptr->qmlFacts.ostrandImport;
}

bool ContentValidator::rpathExists() const {
    return d_ptr->binaryFacts.rpathExists;
}

bool ContentValidator::rpathStatus() const {
    return d_ptr->binaryFacts.rpathStatus;
}

bool ContentValidator::mainSymbol() const {
    return d_ptr->binaryFacts.mainSymbol;
}

bool ContentValidator::mainExport() const {
    return d_ptr->binaryFacts.mainExport;
}

bool ContentValidator::booster() const {
    return d_ptr->binaryFacts.booster;
}

bool ContentValidator::arch() const {
    return false;
}

bool ContentValidator::launcherDesktop() const {
    return d_ptr->binaryFacts.launcherDesktop;
}

bool ContentValidator::launcherSpec() const {
    return d_ptr->binaryFacts.launcherSpec;
}

bool ContentValidator::debugDir() const {
    return d_ptr->fileFacts.debugDir;
}

bool ContentValidator::unwantedBinExists() const {
    return d_ptr->fileFacts.unwantedBinExists;
}

bool ContentValidator::mainBinExec() const {
    return d_ptr->binaryFacts.mainBinExec;
}

bool ContentValidator::pinfoldSection() const {
    return d_ptr->desktopFacts.pinfoldSection;
}

bool ContentValidator::multiplePinfoldSection() const {
    return d_ptr->desktopFacts.multiplePinfoldSection;
}

bool ContentValidator::illegalCharacters() const {
    return d_ptr->desktopFacts.illegalCharacters;
}

bool ContentValidator::correctOrgNameAppNamePair() const {
    return d_ptr->desktopFacts.correctOrgNameAppNamePair;
}

bool ContentValidator::correctOrgName() const {
    return d_ptr->desktopFacts.correctOrgName;
}

bool ContentValidator::wrongLeadingOrgName() const {
    return d_ptr->desktopFacts.wrongLeadingOrgName;
}

bool ContentValidator::orgDomainName() const {
    return d_ptr->desktopFacts.orgDomainName;
}

bool ContentValidator::disallowedOrgName() const {
    return false;
}

bool ContentValidator::correctDbus() const {
    return d_ptr->desktopFacts.correctDbus;
}

bool ContentValidator::correctSystemService() const {
    return d_ptr->desktopFacts.correctSystemService;
}

bool ContentValidator::dbusError() const {
    return d_ptr->desktopFacts.dbusError;
}

bool ContentValidator::dbusWarning() const {
    return d_ptr->desktopFacts.dbusWarning;
}

bool ContentValidator::isSandboxed() const {
    return d_ptr->desktopFacts.isSandboxed;
}

bool ContentValidator::correctSealwatchd() const {
    return d_ptr->fileFacts.correctSealwatchd;
}
