// What ContentValidator tells of its record.
#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"

bool ContentValidator::desktop() const {
    return d_ptr->desktop;
}

bool ContentValidator::desktopName() const {
    return d_ptr->desktopName;
}

bool ContentValidator::desktopIcon() const {
    return d_ptr->desktopIcon;
}

bool ContentValidator::desktopExec() const {
    return d_ptr->desktopExec;
}

bool ContentValidator::qmlOnly() const {
    return d_ptr->qmlOnly;
}

bool ContentValidator::desktopType() const {
    return d_ptr->desktopType;
}

bool ContentValidator::ostrandQt5Application() const {
    return d_ptr->ostrandQt5Application;
}

bool ContentValidator::knownApplicationType() const {
    return d_ptr->knownApplicationType;
}

bool ContentValidator::ostrandImport() const {
    return d_ptr->ostrandImport;
}

bool ContentValidator::rpathExists() const {
    return d_ptr->rpathExists;
}

bool ContentValidator::rpathStatus() const {
    return d_ptr->rpathStatus;
}

bool ContentValidator::mainSymbol() const {
    return d_ptr->mainSymbol;
}

bool ContentValidator::mainExport() const {
    return d_ptr->mainExport;
}

bool ContentValidator::booster() const {
    return d_ptr->booster;
}

bool ContentValidator::arch() const {
    return d_ptr->arch;
}

bool ContentValidator::launcherDesktop() const {
    return d_ptr->launcherDesktop;
}

bool ContentValidator::launcherSpec() const {
    return d_ptr->launcherSpec;
}

bool ContentValidator::debugDir() const {
    return d_ptr->debugDir;
}

bool ContentValidator::unwantedBinExists() const {
    return d_ptr->unwantedBinExists;
}

bool ContentValidator::mainBinExec() const {
    return d_ptr->mainBinExec;
}

bool ContentValidator::pinfoldSection() const {
    return d_ptr->pinfoldSection;
}

bool ContentValidator::multiplePinfoldSection() const {
    return d_ptr->multiplePinfoldSection;
}

bool ContentValidator::illegalCharacters() const {
    return d_ptr->illegalCharacters;
}

bool ContentValidator::correctOrgNameAppNamePair() const {
    return d_ptr->correctOrgNameAppNamePair;
}

bool ContentValidator::correctOrgName() const {
    return d_ptr->correctOrgName;
}

bool ContentValidator::wrongLeadingOrgName() const {
    return d_ptr->wrongLeadingOrgName;
}

bool ContentValidator::orgDomainName() const {
    return d_ptr->orgDomainName;
}

bool ContentValidator::disallowedOrgName() const {
    return d_ptr->disallowedOrgName;
}

bool ContentValidator::correctDbus() const {
    return d_ptr->correctDbus;
}

bool ContentValidator::correctSystemService() const {
    return d_ptr->correctSystemService;
}

bool ContentValidator::dbusError() const {
    return d_ptr->dbusError;
}

bool ContentValidator::dbusWarning() const {
    return d_ptr->dbusWarning;
}

bool ContentValidator::isSandboxed() const {
    return d_ptr->isSandboxed;
}

bool ContentValidator::correctSealwatchd() const {
    return d_ptr->correctSealwatchd;
}
