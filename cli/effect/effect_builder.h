// Makes an effect out of packages, one after the other.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "cli/effect/effect.h"

namespace pkgvet::cli {

enum class Change { Appears, Vanishes };

// Names what in the rules makes the finding appear or vanish under profile; empty where nothing can
// be named.
using CauseFinder =
    std::function<std::string(const Finding& finding, const std::string& profile, Change change)>;

// Keeps no package, and of the findings their counts and the first places alone. Belongs to one
// thread.
class EffectBuilder {
public:
    explicit EffectBuilder(CauseFinder findCause = nullptr);

    // One package as it was judged on the old side and on the new one. Only profiles that both
    // sides have are compared. Of a package that one side could not judge nothing is known but
    // that, so that no finding of it appears or vanishes.
    void compare(const PackageReport& before, const PackageReport& after);
    // A package that only the new side has, and one that only the old side had. Whether that could
    // be judged no longer matters.
    void add(const PackageReport& after);
    void remove(const PackageReport& before);

    // The effect of all of them. Called last.
    Effect take();

private:
    using Rules = std::map<std::string, RuleChange>;
    class Package;

    void compareVerdicts(const PackageReport& before, const PackageReport& after);
    void compareFindings(const PackageReport& before, const PackageReport& after);

    CauseFinder findCause_;
    Effect effect_;
    Rules appeared_;
    Rules vanished_;
};

}  // namespace pkgvet::cli
