// Packages that say one thing and do another, as hostile ones.
#include "tests/support/hostile/hostile_packages.h"
#include "tests/support/hostile/lies.h"

std::vector<HostilePackage> packagesThatLie() {
    std::vector<HostilePackage> packages;
    for (const Lie& lie : allLies()) {
        // What cpio cannot unpack is not judged.
        const bool isJudged = !lie.findings.empty();
        packages.push_back(
            {lie.name, [tell = lie.tell](CraftedPackage* package, const Target&) { tell(package); },
             isJudged ? Outcome::Rejected : Outcome::NotJudged,
             isJudged ? lie.findings.front() : std::string()});
    }
    return packages;
}
