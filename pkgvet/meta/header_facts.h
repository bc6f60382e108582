// What the rules on a package's header find out.
#pragma once

namespace pkgvet {

// Each fact is written by one rule and read by its accessor of MetaValidator alone. The first three
// are cleared by a rule that was violated, so they start true; the last one is set.
struct HeaderFacts {
    bool domainNotation = true;     // written by checkDomainNotation
    bool mandatoryProvide = true;   // written by checkMandatoryProvide
    bool mandatoryConflict = true;  // written by checkMandatoryConflict
    bool scripts = false;           // written by checkScripts
};

}  // namespace pkgvet
