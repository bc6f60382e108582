// The rules on a package's header: its name, its scripts, its vendor and its dependencies.
#pragma once

#include <string>
#include <vector>

class Configuration;

namespace pkgvet {

class Findings;
struct HeaderFacts;

// The name of the package must be in reverse domain notation.
void checkDomainNotation(const std::string& packageName, HeaderFacts* facts, Findings* findings);

// There must be no scripts. This finding rejects a package in any case.
void checkScripts(bool hasScripts, HeaderFacts* facts, Findings* findings);

// No vendor should be set.
void checkVendor(const std::string& vendor, Findings* findings);

// The lists of dependencies below are names as the package's header gives them. Findings follow
// their order. A pattern of the rule set that does not compile throws std::regex_error.

// One of provides must hold mandatoryName somewhere; an empty mandatoryName demands nothing.
void checkMandatoryProvide(const std::string& mandatoryName,
                           const std::vector<std::string>& provides, HeaderFacts* facts,
                           Findings* findings);
// The same of conflicts.
void checkMandatoryConflict(const std::string& mandatoryName,
                            const std::vector<std::string>& conflicts, HeaderFacts* facts,
                            Findings* findings);

// Each of provides must hold the package's name or the mandatory name, or be an application
// capability or a handler that is not reserved.
void checkProvides(const std::string& packageName, const std::vector<std::string>& provides,
                   const Configuration& configuration, Findings* findings);

// Each of conflicts must hold mandatoryName somewhere, so that an empty one permits none.
void checkConflicts(const std::string& mandatoryName, const std::vector<std::string>& conflicts,
                    Findings* findings);

// There must not be any.
void checkObsoletes(const std::vector<std::string>& obsoletes, Findings* findings);

// Each of requireNames must be listed by the rule set, among its requirements or its libraries.
void checkRequires(const std::vector<std::string>& requireNames, const Configuration& configuration,
                   Findings* findings);

// Whether one of patterns matches the whole of dependency, once "(64bit)" and a "()" in front of it
// are taken off the end. Patterns are tried in order up to the first hit.
bool vectorContains(const std::vector<std::string>& patterns, const std::string& dependency);

}  // namespace pkgvet
