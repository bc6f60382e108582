// Puts settings together. The command line comes before the project file, key by key.
#include "cli/command/settings.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string_view>
#include <system_error>

#include "cli/base/escape.h"
#include "cli/command/project_file.h"
#include "pkgvet/rules/configuration.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kCommandLine = "command line";
constexpr const char* kDefault = "default";
constexpr const char* kNone = "none";
constexpr const char* kOn = "on";
constexpr const char* kShown = "show-settings";  // goes without saying
constexpr std::string_view kLongPrefix = "--";
constexpr const char* kOwnRules = "the tree that comes with pkgvet";

// Merges a project file into options and notes where everything comes from.
class Merge {
public:
    Merge(const ProjectFile& project, Settings* settings)
        : project_(project), settings_(settings), options_(settings->options) {}

    void run() {
        leaveBaselineThatIsWritten();
        take("profile", project_.profiles, &options_.judging.profiles);
        take("rules", project_.rules, &options_.judging.rules);
        take("waivers", project_.waivers, &options_.policy.waivers);
        take("baseline", project_.baseline, &options_.policy.baseline);
        takeFailOn();
    }

private:
    template <typename Value>
    void take(const std::string& key, const Value& fromProject, Value* value) {
        const bool isGiven = !value->empty();
        const bool isInProject = !fromProject.empty();
        if (!isGiven && isInProject) {
            *value = fromProject;
        }
        note(key, *value, isGiven, isInProject);
    }

    void takeFailOn() {
        std::optional<Severity>& failOn = options_.policy.failOn;
        const bool isGiven = failOn.has_value();
        failOn = isGiven ? failOn : project_.failOn;
        const std::string word = failOn ? std::string(wordOf(kFailOnWords, *failOn)) : "";
        note("fail-on", word, isGiven, project_.failOn.has_value());
    }

    // Whoever writes the baseline of the project does not go by the former one, if there is any.
    void leaveBaselineThatIsWritten() {
        std::error_code error;
        const std::string& written = options_.policy.writeBaseline;
        if (!written.empty() && fs::weakly_canonical(written, error) ==
                                    fs::weakly_canonical(project_.baseline, error)) {
            project_.baseline.clear();
        }
    }

    std::string originOf(const std::string& key, bool isGiven, bool isInProject) const {
        if (isGiven) {
            return kCommandLine;
        }
        if (!isInProject) {
            return kDefault;
        }
        const Position& position = project_.positions.at(key);
        return settings_->projectFile + ":" + std::to_string(position.line) + ":" +
               std::to_string(position.column);
    }

    void note(const std::string& key, const std::string& value, bool isGiven, bool isInProject) {
        const char* const fallback = key == "rules" ? kOwnRules : kNone;
        settings_->all.push_back(
            {key, value.empty() ? fallback : value, originOf(key, isGiven, isInProject)});
    }

    void note(const std::string& key, const std::vector<std::string>& values, bool isGiven,
              bool isInProject) {
        for (const std::string& value : values) {
            note(key, value, isGiven, isInProject);
        }
        if (values.empty()) {
            note(key, std::string(), isGiven, isInProject);
        }
    }

    void note(const std::string& key, const std::vector<Profiles>& profiles, bool isGiven,
              bool isInProject) {
        std::vector<std::string> names;
        names.reserve(profiles.size());
        for (const Profiles profile : profiles) {
            names.push_back(Configuration::getProfileName(profile));
        }
        note(key, names, isGiven, isInProject);
    }

    ProjectFile project_;
    Settings* settings_;
    CheckOptions& options_;
};

ProjectFile projectOf(Settings* settings, std::vector<Fault>* faults) {
    std::error_code error;
    const fs::path directory = fs::current_path(error);
    // Without a working directory there is no project.
    const FoundProjectFile found = error ? FoundProjectFile() : findProjectFile(directory);
    if (!found.refusal.empty()) {
        settings->remark = found.path + " is not used: " + found.refusal;
        return {};
    }
    settings->projectFile = found.path;
    return found.path.empty() ? ProjectFile() : readProjectFile(found.path, faults);
}

// The tree is left empty, for whoever finds the one that comes with the program.
void addDefaultProfile(Settings* settings) {
    std::vector<Profiles>& profiles = settings->options.judging.profiles;
    if (profiles.empty()) {
        profiles = {Profiles::Regular};
        settings->all.front().value = Configuration::getProfileName(Profiles::Regular);
    }
}

std::string projectLine(const Settings& settings) {
    if (settings.options.settings.isolated) {
        return "ignored (--isolated)";
    }
    if (!settings.remark.empty()) {
        return printable(settings.remark);
    }
    return settings.projectFile.empty() ? kNone : printable(settings.projectFile);
}

std::string nameOf(const GivenOption& option) {
    return option.name.substr(kLongPrefix.size());
}

bool isAmong(const std::vector<Setting>& settings, const std::string& name) {
    return std::any_of(settings.begin(), settings.end(),
                       [&name](const Setting& setting) { return setting.name == name; });
}

// What the command line says beside the settings that a project file can make, and what holds as it
// says nothing.
std::vector<Setting> otherSettings(const Settings& settings) {
    std::vector<Setting> others;
    for (const GivenOption& given : settings.options.given) {
        const std::string name = nameOf(given);
        const auto isSame = [&name](const Setting& setting) { return setting.name == name; };
        if (isAmong(settings.all, name) || name == kShown) {
            continue;
        }
        if (!given.addsUp) {
            std::erase_if(others, isSame);
        }
        others.push_back({name, given.argument.empty() ? kOn : given.argument, kCommandLine});
    }
    for (const GivenOption& option : settings.options.defaults) {
        if (!isAmong(settings.all, nameOf(option)) && !isAmong(others, nameOf(option))) {
            others.push_back({nameOf(option), option.argument, kDefault});
        }
    }
    return others;
}

void write(const std::vector<Setting>& settings, std::ostream& stream) {
    for (const Setting& setting : settings) {
        stream << setting.name << ": " << printable(setting.value) << " ("
               << printable(setting.origin) << ")\n";
    }
}

}  // namespace

std::vector<Option> settingsOptions(SettingsOptions* options) {
    return {
        flagOption({"--isolated"}, &options->isolated, "Leave project files (.pkgvet.json) unread"),
        flagOption({"--show-settings"}, &options->show,
                   "Print what is in force and where it comes from, and judge nothing"),
    };
}

Settings settingsFor(const CheckOptions& given, std::vector<Fault>* faults) {
    Settings settings;
    settings.options = given;
    const ProjectFile project =
        given.settings.isolated ? ProjectFile() : projectOf(&settings, faults);
    if (!faults->empty()) {
        return settings;
    }
    Merge(project, &settings).run();
    addDefaultProfile(&settings);
    return settings;
}

void writeSettings(const Settings& settings, std::ostream& stream) {
    stream << "project file: " << projectLine(settings) << '\n';
    write(settings.all, stream);
    write(otherSettings(settings), stream);
}

}  // namespace pkgvet::cli
