// Holds the judgements of packages against one another.
#include "cli/effect/effect_builder.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

namespace pkgvet::cli {

namespace {

constexpr std::size_t kMostPlaces = 5;

// What makes two findings of a package the same one: neither severity nor words, which change from
// version to version. The flag tells an empty subject from none.
using FindingKey = std::tuple<std::string_view, bool, std::string_view>;

FindingKey keyOf(const Finding& finding) {
    return {finding.rule, finding.subject.has_value(),
            finding.subject ? std::string_view(*finding.subject) : std::string_view()};
}

// How many more findings of one kind the new side has under a profile.
struct Difference {
    const Finding* finding = nullptr;
    long count = 0;
};

using Differences = std::map<FindingKey, Difference>;

void count(const Judgement& judgement, long step, Differences* differences) {
    for (const Finding& finding : judgement.findings) {
        if (finding.standing == Standing::Counts) {
            Difference& difference = (*differences)[keyOf(finding)];
            difference.finding = &finding;
            difference.count += step;
        }
    }
}

const Judgement* judgementUnder(const std::string& profile, const PackageReport& package) {
    const auto found =
        std::find_if(package.judgements.begin(), package.judgements.end(),
                     [&](const Judgement& judgement) { return judgement.profile == profile; });
    return found == package.judgements.end() ? nullptr : &*found;
}

Verdict verdictOf(const PackageReport& package, const Judgement* judgement) {
    if (!package.judged() || judgement == nullptr) {
        return Verdict::NotJudged;
    }
    return judgement->passes ? Verdict::Accepted : Verdict::Rejected;
}

std::vector<RuleChange> sorted(std::map<std::string, RuleChange> rules) {
    std::vector<RuleChange> all;
    for (auto& rule : rules) {
        all.push_back(std::move(rule.second));
    }
    std::stable_sort(all.begin(), all.end(), [](const RuleChange& one, const RuleChange& other) {
        return one.findings > other.findings;
    });
    return all;
}

}  // namespace

// What one package adds to the rules whose findings appear, or to those whose findings vanish.
class EffectBuilder::Package {
public:
    Package(std::string path, Rules* rules) : path_(std::move(path)), rules_(rules) {}

    // The same finding under several profiles is one. What some profile has several times stays as
    // many findings.
    void add(const Finding& finding, std::size_t number, const std::string& cause) {
        std::size_t& counted = counted_[keyOf(finding)];
        const std::size_t more = number > counted ? number - counted : 0;
        counted += more;
        if (more == 0) {
            return;
        }
        RuleChange& rule = (*rules_)[finding.rule];
        rule.rule = finding.rule;
        rule.worst = std::max(rule.worst, finding.severity);
        rule.findings += more;
        if (rulesSeen_.insert(finding.rule).second) {
            ++rule.packages;
            addPlace(finding, &rule);
        }
        if (!cause.empty()) {
            rule.causes[cause] += more;
        }
    }

private:
    void addPlace(const Finding& finding, RuleChange* rule) const {
        if (rule->first.size() < kMostPlaces) {
            rule->first.push_back({path_, finding.subject});
        }
    }

    std::string path_;
    Rules* rules_;
    std::map<FindingKey, std::size_t> counted_;
    std::set<std::string> rulesSeen_;
};

EffectBuilder::EffectBuilder(CauseFinder findCause) : findCause_(std::move(findCause)) {}

void EffectBuilder::compare(const PackageReport& before, const PackageReport& after) {
    ++effect_.compared;
    compareVerdicts(before, after);
    if (before.judged() && after.judged()) {
        compareFindings(before, after);
    } else {
        effect_.notJudged.push_back({after.path, before.cause, after.cause});
    }
}

void EffectBuilder::add(const PackageReport& after) {
    effect_.added.push_back(after.path);
    if (!after.judged()) {
        effect_.notJudged.push_back({after.path, {}, after.cause});
    }
}

void EffectBuilder::remove(const PackageReport& before) {
    effect_.removed.push_back(before.path);
}

Effect EffectBuilder::take() {
    effect_.appeared = sorted(std::move(appeared_));
    effect_.vanished = sorted(std::move(vanished_));
    return std::move(effect_);
}

// A package that one side could not judge has its profiles on the other side alone.
void EffectBuilder::compareVerdicts(const PackageReport& before, const PackageReport& after) {
    const PackageReport& named = before.judged() ? before : after;
    for (const Judgement& judgement : named.judgements) {
        const Judgement* const was = judgementUnder(judgement.profile, before);
        const Judgement* const is = judgementUnder(judgement.profile, after);
        const bool isComparable = (was != nullptr || !before.judged()) &&  //
                                  (is != nullptr || !after.judged());
        const Verdict from = verdictOf(before, was);
        const Verdict to = verdictOf(after, is);
        if (isComparable && from != to) {
            effect_.turned.push_back({after.path, after.judged() ? after.name : before.name,
                                      judgement.profile, from, to});
        }
    }
}

void EffectBuilder::compareFindings(const PackageReport& before, const PackageReport& after) {
    Package appearing(after.path, &appeared_);
    Package vanishing(after.path, &vanished_);
    for (const Judgement& judgement : after.judgements) {
        const Judgement* const former = judgementUnder(judgement.profile, before);
        if (former == nullptr) {
            continue;
        }
        Differences differences;
        count(*former, -1, &differences);
        count(judgement, 1, &differences);
        for (const auto& [key, difference] : differences) {
            if (difference.count == 0) {
                continue;
            }
            const Change change = difference.count > 0 ? Change::Appears : Change::Vanishes;
            Package& package = change == Change::Appears ? appearing : vanishing;
            package.add(*difference.finding, static_cast<std::size_t>(std::labs(difference.count)),
                        findCause_ ? findCause_(*difference.finding, judgement.profile, change)
                                   : std::string());
        }
    }
}

}  // namespace pkgvet::cli
