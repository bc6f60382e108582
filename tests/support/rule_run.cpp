#include "tests/support/rule_run.h"

#include <stdexcept>

#include "tests/support/captured_log.h"
#include "tests/support/validator_record.h"

UnpackedPackage::UnpackedPackage(const PackageBuilder& builder)
    : file_(builder.build(directory_)), meta_(file_.c_str()) {
    ContentValidator validator{std::string()};
    const CapturedDescriptor descriptor;
    if (validator.extractRpm(tree_.path().c_str(), file_.c_str()) != 0) {
        throw std::runtime_error("cannot unpack " + file_);
    }
}

RuleRun runRule(const std::function<void(pkgvet::Findings*)>& rule) {
    const CapturedLog log;
    pkgvet::Findings findings;
    rule(&findings);
    return {log.lines(), findings.failures()};
}

RuleRun runRule(ContentValidator& validator, const std::function<void()>& rule) {
    const CapturedLog log;
    rule();
    const ContentValidatorPrivate& record = recordOf(validator);
    return {log.lines(), record.failures | record.findings.failures()};
}
