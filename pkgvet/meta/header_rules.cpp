// The rules on a package's name, scripts and vendor.
#include "pkgvet/meta/header_rules.h"

#include <string_view>

#include "pkgvet/meta/header_facts.h"
#include "pkgvet/meta/header_messages.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// Not anchored: some stretch of the name with three components is enough.
constexpr std::string_view kDomainNotation = R"([^.]+\.[^.]+(\.[^.]+)+)";

constexpr std::string_view kToleratedVendor = "pelzo";

}  // namespace

void checkDomainNotation(const std::string& packageName, HeaderFacts* facts, Findings* findings) {
    if (isPatternFound(kDomainNotation, packageName, kRulePattern)) {
        return;
    }
    facts->domainNotation = false;
    findings->violation(kNotDomainNotation);
}

// Scripts run with all rights and outside the sandbox, so that they reject a package even where
// validation is switched off.
void checkScripts(bool hasScripts, HeaderFacts* facts, Findings* findings) {
    if (!hasScripts) {
        return;
    }
    facts->scripts = true;
    findings->grave(LogLevel::Critical, kScriptsNotAllowed);
}

void checkVendor(const std::string& vendor, Findings* findings) {
    if (vendor.empty()) {
        return;
    }
    if (vendor == kToleratedVendor) {
        findings->warning(kVendorNotRecommended, {vendor});
    } else {
        findings->violation(kVendorNotAllowed, {vendor});
    }
}

}  // namespace pkgvet
