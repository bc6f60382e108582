// Finds and reads project files.
#include "cli/command/project_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/base/json_place.h"
#include "cli/base/nearest.h"
#include "cli/base/strict_json.h"
#include "cli/judge/profile_option.h"
#include "cli/policy/policy_options.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kName = ".pkgvet.json";

constexpr const char* kProfile = "profile";
constexpr const char* kRules = "rules";
constexpr const char* kWaivers = "waivers";
constexpr const char* kBaseline = "baseline";
constexpr const char* kFailOn = "fail-on";

// Why a file or a directory of this status is not the user's own; empty when it is.
std::string strangerIn(const struct stat& status) {
    if (status.st_uid != geteuid()) {
        return "belongs to another user";
    }
    return (status.st_mode & S_IWOTH) != 0 ? "can be written to by every user" : "";
}

std::string refusalOf(const fs::path& file) {
    struct stat directory {};
    struct stat status {};
    if (stat(file.parent_path().c_str(), &directory) != 0 || stat(file.c_str(), &status) != 0) {
        return std::strerror(errno);
    }
    const std::string ofDirectory = strangerIn(directory);
    if (!ofDirectory.empty()) {
        return "its directory " + ofDirectory;
    }
    const std::string ofFile = strangerIn(status);
    if (!ofFile.empty()) {
        return "it " + ofFile;
    }
    // A pipe would be waited for.
    return S_ISREG(status.st_mode) ? "" : "it is not a regular file";
}

// False for what may be there and cannot be looked at too.
bool isMissing(const fs::path& file) {
    struct stat status {};
    return lstat(file.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool isOnOneFileSystem(const fs::path& one, const fs::path& other) {
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev;
}

class ProjectFileReader {
public:
    ProjectFileReader(const std::string& path, std::vector<Fault>* faults)
        : directory_(fs::path(path).parent_path()), reader_(path, faults) {}

    ProjectFile read() {
        root_ = reader_.load();
        ProjectFile project;
        if (root_.is_null()) {
            return project;
        }
        reader_.refuseUnknown(root_, std::string(),
                              {kProfile, kRules, kWaivers, kBaseline, kFailOn});
        for (const auto& [place, name] : textsOf(kProfile)) {
            addProfiles(profilesAt(place, name), &project.profiles);
        }
        project.rules = pathAt(kRules);
        for (const auto& [place, path] : textsOf(kWaivers)) {
            project.waivers.push_back(resolved(path));
        }
        project.baseline = pathAt(kBaseline);
        project.failOn = failOn();
        for (const auto& item : root_.items()) {
            project.positions[item.key()] = reader_.positions().nearest(item.key());
        }
        return project;
    }

private:
    using Texts = std::vector<std::pair<std::string, std::string>>;  // with their places

    std::string resolved(const std::string& path) const {
        return (directory_ / path).lexically_normal();
    }

    // Nothing for what is not a text, which is reported.
    void addText(const Json& value, const std::string& place, Texts* texts) const {
        if (!value.is_string()) {
            reader_.report(place, kNotAString);
        } else if (value.get<std::string>().empty()) {
            reader_.report(place, "says nothing");
        } else {
            texts->emplace_back(place, value.get<std::string>());
        }
    }

    // One text or a list of them.
    Texts textsOf(const char* key) const {
        Texts texts;
        const auto found = root_.find(key);
        if (found == root_.end()) {
            return texts;
        }
        if (!found->is_array()) {
            addText(*found, key, &texts);
            return texts;
        }
        for (std::size_t i = 0; i < found->size(); ++i) {
            addText((*found)[i], element(key, i), &texts);
        }
        return texts;
    }

    std::string textAt(const char* key) const {
        Texts texts;
        if (const auto found = root_.find(key); found != root_.end()) {
            addText(*found, key, &texts);
        }
        return texts.empty() ? std::string() : texts.front().second;
    }

    std::string pathAt(const char* key) const {
        const std::string path = textAt(key);
        return path.empty() ? path : resolved(path);
    }

    std::vector<Profiles> profilesAt(const std::string& place, const std::string& name) const {
        std::vector<Profiles> named = profilesNamed(name);
        if (named.empty()) {
            reader_.report(place, "is not a profile" + suggestion(name, profileWords()));
        }
        return named;
    }

    std::optional<Severity> failOn() const {
        const std::string word = textAt(kFailOn);
        const std::optional<Severity> severity = valueOf(kFailOnWords, word);
        if (!word.empty() && !severity) {
            reader_.report(kFailOn, "is neither error nor warning");
        }
        return severity;
    }

    fs::path directory_;
    JsonReader reader_;
    Json root_;
};

}  // namespace

FoundProjectFile findProjectFile(const std::string& directory) {
    for (fs::path place = directory;; place = place.parent_path()) {
        const fs::path file = place / kName;
        if (!isMissing(file)) {
            return {file, refusalOf(file)};
        }
        const fs::path above = place.parent_path();
        if (above == place || !isOnOneFileSystem(place, above)) {
            return {};
        }
    }
}

ProjectFile readProjectFile(const std::string& path, std::vector<Fault>* faults) {
    return ProjectFileReader(path, faults).read();
}

}  // namespace pkgvet::cli
