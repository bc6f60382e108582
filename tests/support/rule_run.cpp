#include "tests/support/rule_run.h"

#include <stdexcept>

#include "tests/support/captured_log.h"
#include "tests/support/rule_tree.h"

namespace {

constexpr const char* kNoPackage = "/nonexistent.rpm";

// librpm says on standard error that there is no such file.
RpmMeta emptyMeta() {
    const CapturedDescriptor descriptor;
    return RpmMeta(kNoPackage);
}

// An empty package draws no line once a main binary has been seen, and this is how to show one.
bool isAccepted(ContentValidator& validator, bool validationEnabled) {
    static const RpmMeta binaryOnly =
        metaOf(PackageBuilder("org.example.app").ghost("/usr/bin/org.example.app"));
    static const RpmMeta nothing = emptyMeta();
    const CapturedLog log;
    const Configuration configuration = load(RuleTree());
    configuration.setValidationEnabled(validationEnabled);
    validator.checkExcludedPaths(configuration, binaryOnly, std::string());
    return validator.validateContent(configuration, nothing);
}

}  // namespace

RpmMeta metaOf(const PackageBuilder& builder) {
    const TemporaryDirectory directory;
    return RpmMeta(builder.build(directory).c_str());
}

UnpackedPackage::UnpackedPackage(const PackageBuilder& builder)
    : file_(builder.build(directory_)), meta_(file_.c_str()) {
    LoneValidator validator;
    const CapturedDescriptor descriptor;
    if (validator->extractRpm(tree_.path().c_str(), file_.c_str()) != 0) {
        throw std::runtime_error("cannot unpack " + file_);
    }
}

LoneValidator::LoneValidator() : validator_(std::string(kNoPackage)) {}

RuleRun runRule(ContentValidator& validator, const std::function<void()>& rule) {
    RuleRun run;
    {
        const CapturedLog log;
        rule();
        run.lines = log.lines();
    }
    run.verdict = isAccepted(validator, true)    ? Verdict::Accepted
                  : isAccepted(validator, false) ? Verdict::Rejected
                                                 : Verdict::RejectedAnywhere;
    return run;
}
