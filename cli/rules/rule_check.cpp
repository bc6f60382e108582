// Collects the faults of a rule tree.
#include "cli/rules/rule_check.h"

#include <set>
#include <string_view>
#include <utility>

#include "cli/base/nearest.h"
#include "cli/rules/fault_locator.h"
#include "cli/rules/rule_tree_walk.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kUnknownTier = "is not the name of a tier, so its list is dropped";
constexpr const char* kUnknownParent = "cannot be a parent, so nothing is inherited";
constexpr const char* kUnknownKey = "is not a known key, so what it holds is dropped";
constexpr const char* kWrongEscape = "is not an escape of JSON, and its backslash is dropped";
constexpr const char* kDoubledKey = "stands twice, and the first one is dropped";

void checkPattern(const RuleElement& element, std::vector<Fault>* faults) {
    if (const auto cause = WholePattern(element.text).fault()) {
        faults->push_back({element.file, element.key, kNotARegularExpression + *cause});
    }
}

// Walks trees once, for all that there is to say of them.
class RuleChecker {
public:
    RuleFaults check(const std::vector<std::string>& paths, const std::vector<Profiles>& profiles) {
        for (const std::string& path : paths) {
            walkRuleTree(path, profiles, visitor());
        }
        findDoubledKeys();
        findWrongEscapes();
        // Profiles that share a parent share its faults, and trees those of their files.
        faults_.unusable = eachOnce(faults_.unusable);
        faults_.dropped = eachOnce(faults_.dropped);
        for (Fault& fault : faults_.unusable) {
            locator_.locateValue(&fault);
        }
        return std::move(faults_);
    }

private:
    RuleTreeVisitor visitor() {
        RuleTreeVisitor visitor;
        visitor.onFault = [this](const Fault& fault) { faults_.unusable.push_back(fault); };
        visitor.onFile = [this](const std::string& file) { files_.insert(file); };
        visitor.onElement = [this](const RuleElement& element, const std::string&, bool isPattern) {
            if (isPattern) {
                checkPattern(element, &faults_.unusable);
            }
        };
        visitor.onUnknownTier = [this](const RuleElement& name) {
            drop(name, kUnknownTier + suggestion(name.text, tierNames()));
        };
        visitor.onUnknownParent = [this](const RuleElement& name) {
            drop(name, kUnknownParent + suggestion(name.text, parentNames()));
        };
        visitor.onUnknownKey = [this](const RuleElement& key,
                                      const std::vector<std::string>& known) {
            Fault fault{key.file, key.key, kUnknownKey + suggestion(key.text, known)};
            locator_.locateKey(&fault);
            faults_.dropped.push_back(std::move(fault));
        };
        // Profiles and trees share files, and compiling patterns takes time.
        visitor.entersListFile = [this](const std::string& file, std::string_view contentKey) {
            return entered_.emplace(file, contentKey).second;
        };
        return visitor;
    }

    void drop(const RuleElement& name, const std::string& consequence) {
        Fault fault{name.file, name.key, consequence};
        locator_.locateValue(&fault);
        faults_.dropped.push_back(std::move(fault));
    }

    // json-glib takes the last of them and does not say so.
    void findDoubledKeys() {
        for (const std::string& file : files_) {
            for (const DoubledKey& doubled : locator_.positionsIn(file).doubledKeys()) {
                faults_.dropped.push_back({file, doubled.place, kDoubledKey, doubled.position});
            }
        }
    }

    // json-glib drops the backslash, so that "lib\.so" becomes a pattern for "libXso" as well.
    void findWrongEscapes() {
        for (const std::string& file : files_) {
            for (const WrongEscape& wrong : locator_.positionsIn(file).wrongEscapes()) {
                faults_.dropped.push_back(
                    {file, wrong.place, kWrongEscape, wrong.position, wrong.text});
            }
        }
    }

    RuleFaults faults_;
    FaultLocator locator_;
    std::set<std::string> files_;
    // Files and what they are to hold.
    std::set<std::pair<std::string, std::string>> entered_;
};

}  // namespace

RuleFaults checkRuleTree(const std::string& path, const std::vector<Profiles>& profiles) {
    return checkRuleTrees({path}, profiles);
}

RuleFaults checkRuleTrees(const std::vector<std::string>& paths,
                          const std::vector<Profiles>& profiles) {
    return RuleChecker().check(paths, profiles);
}

}  // namespace pkgvet::cli
