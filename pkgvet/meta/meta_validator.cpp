// How a MetaValidator is made, the order of its rules, and its verdict.
#include "pkgvet/meta/meta_validator.h"

#include "pkgvet/meta/header_rules.h"
#include "pkgvet/meta/meta_validator_private.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/rules/configuration.h"

MetaValidator::MetaValidator() : d_ptr(std::make_unique<MetaValidatorPrivate>()) {}

MetaValidator::MetaValidator(const Configuration& /*config*/, const RpmMeta& /*rpm*/)
    : MetaValidator() {}

MetaValidator::MetaValidator(const MetaValidator& other)
    : d_ptr(std::make_unique<MetaValidatorPrivate>(*other.d_ptr)) {}

MetaValidator& MetaValidator::operator=(MetaValidator&& other) noexcept {
    d_ptr.swap(other.d_ptr);
    return *this;
}

MetaValidator::~MetaValidator() = default;

bool MetaValidator::domainNotation() const {
    return d_ptr->facts.domainNotation;
}

bool MetaValidator::mandatoryProvide() const {
    return d_ptr->facts.mandatoryProvide;
}

bool MetaValidator::mandatoryConflict() const {
    return d_ptr->facts.mandatoryConflict;
}

bool MetaValidator::scripts() const {
    return d_ptr->facts.scripts;
}

// Findings go out in the order of the rules, which is part of what users see. No rule reads what
// another one found.
bool MetaValidator::validateMeta(const Configuration& config, const RpmMeta& rpm) {
    checkDomainNotation(rpm);
    checkScripts(rpm);
    checkMandatoryProvide(config, rpm);
    checkMandatoryConflict(config, rpm);
    checkProvides(config, rpm);
    checkConflicts(config, rpm);
    checkObsoletes(rpm);
    checkVendor(rpm);
    checkRequires(config, rpm);
    return d_ptr->findings.isAccepted(config.validationEnabled());
}

bool MetaValidator::validateMeta(const Configuration& /*config*/) const {
    return false;
}

void MetaValidator::checkDomainNotation(const RpmMeta& rpm) {
    pkgvet::checkDomainNotation(rpm.name(), &d_ptr->facts, &d_ptr->findings);
}

void MetaValidator::checkScripts(const RpmMeta& rpm) {
    pkgvet::checkScripts(rpm.scriptsFlag(), &d_ptr->facts, &d_ptr->findings);
}

void MetaValidator::checkMandatoryProvide(const Configuration& config, const RpmMeta& rpm) {
    pkgvet::checkMandatoryProvide(config.provides(), rpm.provides(), &d_ptr->facts,
                                  &d_ptr->findings);
}

// The mandatory conflict is the mandatory provide: it has no configuration of its own.
void MetaValidator::checkMandatoryConflict(const Configuration& config, const RpmMeta& rpm) {
    pkgvet::checkMandatoryConflict(config.provides(), rpm.conflicts(), &d_ptr->facts,
                                   &d_ptr->findings);
}

void MetaValidator::checkProvides(const Configuration& config, const RpmMeta& rpm) {
    pkgvet::checkProvides(rpm.name(), rpm.provides(), config, &d_ptr->findings);
}

void MetaValidator::checkConflicts(const Configuration& config, const RpmMeta& rpm) {
    pkgvet::checkConflicts(config.provides(), rpm.conflicts(), &d_ptr->findings);
}

void MetaValidator::checkObsoletes(const RpmMeta& rpm) {
    pkgvet::checkObsoletes(rpm.obsoletes(), &d_ptr->findings);
}

void MetaValidator::checkVendor(const RpmMeta& rpm) {
    pkgvet::checkVendor(rpm.vendor(), &d_ptr->findings);
}

void MetaValidator::checkRequires(const Configuration& config, const RpmMeta& rpm) {
    pkgvet::checkRequires(rpm.requireNames(), config, &d_ptr->findings);
}

bool MetaValidator::vectorContains(const std::vector<std::string>& patterns,
                                   const std::string& text) {
    return pkgvet::vectorContains(patterns, text);
}
