// The rules on a package's header.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pkgvet/export.h"

class Configuration;
class RpmMeta;
struct MetaValidatorPrivate;

// Judges name, scripts, dependencies and vendor of a package. Findings go out through Logger as
// they arise; what remains is the verdict and four facts.
//
// An object is meant for one run: nothing that a rule has found is ever forgotten, so that a second
// run on the same object can only stay failed. Rules may also be called one by one, with the same
// lasting effect. One object belongs to one thread.
//
// A pattern of a rule list that does not compile leaves the rule as std::regex_error.
//
// There is no move constructor, which would leave an object without its record: rvalues are copied.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions)
class PKGVET_EXPORT MetaValidator {
public:
    MetaValidator();
    // The same: both arguments are ignored, and no rule runs.
    MetaValidator(const Configuration& config, const RpmMeta& rpm);
    MetaValidator(const MetaValidator& other);
    MetaValidator& operator=(const MetaValidator&) = delete;
    // Exchanges the two records.
    MetaValidator& operator=(MetaValidator&& other) noexcept;
    ~MetaValidator();

    // The name is in reverse domain notation; the name that the profile demands is provided; it is
    // conflicted with. All true until a rule finds otherwise.
    bool domainNotation() const;
    bool mandatoryProvide() const;
    bool mandatoryConflict() const;
    // The package has scripts. False until the rule on scripts has found some.
    bool scripts() const;

    // Runs all nine rules in their fixed order and gives the verdict: with validation enabled, no
    // rule was violated; with it disabled, there are no scripts.
    bool validateMeta(const Configuration& config, const RpmMeta& rpm);
    // Runs nothing, always false.
    bool validateMeta(const Configuration& config) const;

    void checkDomainNotation(const RpmMeta& rpm);
    void checkScripts(const RpmMeta& rpm);
    void checkMandatoryProvide(const Configuration& config, const RpmMeta& rpm);
    void checkMandatoryConflict(const Configuration& config, const RpmMeta& rpm);
    void checkProvides(const Configuration& config, const RpmMeta& rpm);
    void checkConflicts(const Configuration& config, const RpmMeta& rpm);
    void checkObsoletes(const RpmMeta& rpm);
    void checkVendor(const RpmMeta& rpm);
    void checkRequires(const Configuration& config, const RpmMeta& rpm);

    // Whether one of patterns matches the whole of text, a dependency name, once "(64bit)" and a
    // "()" in front of it are taken off the end. False for an empty list.
    bool vectorContains(const std::vector<std::string>& patterns, const std::string& text);

private:
    std::unique_ptr<MetaValidatorPrivate> d_ptr;
};
