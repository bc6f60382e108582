// Finds profiles by their names.
#include "cli/judge/profile_option.h"

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

Option optionFor(const std::vector<std::string>& words, std::vector<Profiles>* profiles,
                 const std::string& description) {
    const auto set = [words, profiles](const std::string& word) {
        if (std::find(words.begin(), words.end(), word) == words.end()) {
            return notAmong(word, words);
        }
        *profiles = profilesNamed(word);
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

Option profileOption(std::vector<Profiles>* profiles, const std::string& description) {
    return optionFor(namesOf(allProfiles()), profiles, description);
}

Option profilesOption(std::vector<Profiles>* profiles, const std::string& description) {
    std::vector<std::string> words = namesOf(allProfiles());
    words.emplace_back(kAll);
    return optionFor(words, profiles, description);
}

}  // namespace pkgvet::cli
