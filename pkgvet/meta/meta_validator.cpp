// The order of the rules on a header, its verdict, and the rules that need no list.
#include "pkgvet/meta/meta_validator.h"

#include <string_view>
#include <utility>

#include "pkgvet/meta/meta_messages.h"
#include "pkgvet/meta/meta_validator_private.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

constexpr std::string_view kToleratedVendor = "pelzo";

}  // namespace

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
    return d_ptr->domainNotation;
}

bool MetaValidator::mandatoryProvide() const {
    return d_ptr->mandatoryProvide;
}

bool MetaValidator::mandatoryConflict() const {
    return d_ptr->mandatoryConflict;
}

bool MetaValidator::scripts() const {
    return d_ptr->scripts;
}

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
    return pkgvet::isAccepted(d_ptr->failures, config.validationEnabled());
}

bool MetaValidator::validateMeta(const Configuration& /*config*/) const {
    return false;
}

void MetaValidator::checkScripts(const RpmMeta& rpm) {
    if (!rpm.scriptsFlag()) {
        return;
    }
    d_ptr->failures |= pkgvet::kGraveFinding;
    d_ptr->scripts = true;
    Logger::log(LogLevel::Critical, {pkgvet::kScriptsNotAllowed});
}

void MetaValidator::checkObsoletes(const RpmMeta& rpm) {
    for (const std::string& name : rpm.obsoletes()) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error,
                    {"[", name, pkgvet::kObsoletesInfix, name, pkgvet::kNotAllowedInRpm});
    }
}

void MetaValidator::checkVendor(const RpmMeta& rpm) {
    const std::string& vendor = rpm.vendor();
    if (vendor.empty()) {
        return;
    }
    if (vendor == kToleratedVendor) {
        Logger::log(LogLevel::Warning,
                    {pkgvet::kVendorIsSet, vendor, pkgvet::kVendorNotRecommended});
        return;
    }
    d_ptr->failures |= pkgvet::kViolation;
    Logger::log(LogLevel::Error, {pkgvet::kVendorIsSet, vendor, pkgvet::kVendorNotAllowed});
}
