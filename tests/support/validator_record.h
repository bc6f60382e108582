// What a rule finds before it and leaves behind it.
#pragma once

#include <memory>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/package_builder.h"

// The record of a validator, so that a rule can be tested without the rules that it builds on and
// in what no accessor tells. The pointer to it is the only member of the class.
inline ContentValidatorPrivate& recordOf(ContentValidator& validator) {
    static_assert(sizeof(ContentValidator) == sizeof(std::unique_ptr<ContentValidatorPrivate>));
    return **reinterpret_cast<std::unique_ptr<ContentValidatorPrivate>*>(&validator);
}

// A validator that has unpacked nothing, for rules that are told where the files are.
inline ContentValidator validatorOfNothing() {
    return ContentValidator(std::string());
}

// The header of the package, once it is built.
inline RpmMeta metaOf(const PackageBuilder& package) {
    const TemporaryDirectory directory;
    return RpmMeta(package.build(directory).c_str());
}
