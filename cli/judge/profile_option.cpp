// Finds profiles by their names.
#include "cli/judge/profile_option.h"

#include <algorithm>

#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kName = "--profile";
constexpr const char* kAll = "all";

std::vector<std::string> namesOf(const std::vector<Profiles>& profiles) {
    std::vector<std::string> names;
    names.reserve(profiles.size());
    for (const Profiles profile : profiles) {
        names.push_back(Configuration::getProfileName(profile));
    }
    return names;
}

// take receives what a word stands for.
Option optionFor(const std::vector<std::string>& words, const std::string& description,
                 const std::function<void(const std::vector<Profiles>&)>& take) {
    const auto set = [words, take](const std::string& word) {
        if (std::find(words.begin(), words.end(), word) == words.end()) {
            return notAmong(word, words);
        }
        take(profilesNamed(word));
        return std::string();
    };
    return wordOption(kName, words, set, description);
}

}  // namespace

std::vector<Profiles> allProfiles() {
    return {Profiles::Regular,   Profiles::Extended, Profiles::Mdm,
            Profiles::Antivirus, Profiles::Auth,     Profiles::Market};
}

std::vector<Profiles> profilesNamed(const std::string& name) {
    if (name == kAll) {
        return allProfiles();
    }
    for (const Profiles profile : allProfiles()) {
        if (Configuration::getProfileName(profile) == name) {
            return {profile};
        }
    }
    return {};
}

std::vector<std::string> profileWords() {
    std::vector<std::string> words = namesOf(allProfiles());
    words.emplace_back(kAll);
    return words;
}

void addProfiles(const std::vector<Profiles>& more, std::vector<Profiles>* profiles) {
    for (const Profiles profile : more) {
        if (std::find(profiles->begin(), profiles->end(), profile) == profiles->end()) {
            profiles->push_back(profile);
        }
    }
}

Option profileOption(std::vector<Profiles>* profiles, const std::string& description) {
    return optionFor(namesOf(allProfiles()), description,
                     [profiles](const std::vector<Profiles>& named) { *profiles = named; });
}

Option profilesOption(std::vector<Profiles>* profiles, const std::string& description) {
    const auto add = [profiles](const std::vector<Profiles>& named) {
        addProfiles(named, profiles);
    };
    Option option = optionFor(profileWords(), description, add);
    option.mayRepeat = true;
    return option;
}

}  // namespace pkgvet::cli
