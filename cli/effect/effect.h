// What a change does to packages: two judgements of the same packages, held against one another.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

enum class Verdict { Accepted, Rejected, NotJudged };

// "accepted", "rejected", "not judged".
std::string_view verdictName(Verdict verdict);

// A package whose verdict under a profile is another than it was.
struct TurnedVerdict {
    std::string path;
    std::string name;
    std::string profile;
    Verdict before = Verdict::NotJudged;
    Verdict after = Verdict::NotJudged;
};

// The findings of one rule that appear, or those that vanish. Only findings that count do, and each
// is counted once whatever the number of profiles.
struct RuleChange {
    // Where the first of them are, one in each package.
    struct Place {
        std::string path;
        std::optional<std::string> subject;
    };

    std::string rule;
    Severity worst = Severity::Info;
    std::size_t findings = 0;
    std::size_t packages = 0;
    std::vector<Place> first;
    // What in the rules makes how many of them appear or vanish, as far as it can be named.
    std::map<std::string, std::size_t> causes;
};

// A package that a side could not judge.
struct UnjudgedPackage {
    std::string path;
    std::string before;  // why the old side did not; empty where it did, or does not have it
    std::string after;
};

// What was compared on a side: the rules of a tree, or the report of a run.
struct EffectSide {
    std::string path;     // of the tree's configuration file, or of the report
    std::string version;  // of the program that judged
    std::vector<ProfileRules> profiles;
    bool partial = false;  // the run was interrupted
};

struct Effect {
    EffectSide before;
    EffectSide after;
    std::size_t compared = 0;           // packages on both sides
    bool partial = false;               // not all packages that were to be judged were
    std::vector<TurnedVerdict> turned;  // in the order of the packages
    std::vector<RuleChange> appeared;   // the rule with most findings first
    std::vector<RuleChange> vanished;
    std::vector<UnjudgedPackage> notJudged;
    std::vector<std::string> added;  // paths of packages that are on the new side alone
    std::vector<std::string> removed;
};

// The exit status: kNotJudged where a package could not be judged, kRejected where a verdict turns,
// else kAccepted.
int statusOf(const Effect& effect);

}  // namespace pkgvet::cli
