// Finds the rule tree that comes with the program.
#include "cli/rules/default_rules.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>
#include <vector>

#include "pkgvet/rules/rule_tree_format.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Unlike the name that the program was called by, this leads through links to where it lies.
constexpr const char* kOwnProgram = "/proc/self/exe";
constexpr const char* kConfigurationFile = "pkgvet.json";

std::string configurationFile() {
    const fs::path program = fs::read_symlink(kOwnProgram);
    const fs::path directory = program.parent_path() / PKGVET_RULES_FROM_PROGRAM;
    return (directory / kConfigurationFile).lexically_normal();
}

// The names of files in the configuration file; std::exception where it is not as it should be.
std::vector<Json*> fileNamesIn(Json* root) {
    std::vector<Json*> names = {&root->at(kDirsKey).at(kDisallowedComponentsKey)};
    for (Json& profile : root->at(kProfilesKey)) {
        for (const ListFile& list : kListFiles) {
            names.push_back(&profile.at(list.pathKey));
        }
    }
    return names;
}

// The directory that all names begin with. Empty unless it can only be that of a tree like this in
// another place: a tree that somebody set up by hand is left alone.
std::string formerDirectory(const std::vector<Json*>& names, const fs::path& present) {
    const fs::path directory = fs::path(names.front()->get<std::string>()).parent_path();
    std::error_code error;
    if (!directory.native().ends_with("/" PKGVET_RULES_SUBDIR) ||
        fs::equivalent(directory, present, error)) {
        return std::string();
    }
    const std::string beginning = directory / "";
    const bool isCommon = std::all_of(names.begin(), names.end(), [&](const Json* name) {
        return name->get<std::string>().starts_with(beginning);
    });
    return isCommon ? beginning : std::string();
}

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The beginning of a JSON string that begins with text.
std::string opened(const std::string& text) {
    std::string string = Json(text).dump();
    string.pop_back();
    return string;
}

// The content of the file at path with names of files beside it; empty where it has them already.
std::string relocated(const std::string& path) {
    std::string content = contentOf(path);
    Json root = Json::parse(content);
    const fs::path directory = fs::path(path).parent_path();
    const std::vector<Json*> names = fileNamesIn(&root);
    const std::string former = formerDirectory(names, directory);
    if (former.empty()) {
        return std::string();
    }
    // In the text, so that faults have their places in the file itself.
    const std::string before = opened(former);
    const std::string after = opened(directory / "");
    for (std::size_t at = content.find(before); at != std::string::npos;
         at = content.find(before, at + after.size())) {
        content.replace(at, before.size(), after);
    }
    return content;
}

Descriptor fileInMemory(const std::string& content) {
    Descriptor file(memfd_create(kConfigurationFile, MFD_CLOEXEC));
    const auto size = static_cast<ssize_t>(content.size());
    return write(file.get(), content.data(), content.size()) == size ? std::move(file)
                                                                     : Descriptor();
}

}  // namespace

// What is wrong with the file itself, its reader says better.
DefaultRules::DefaultRules() : file_(configurationFile()), path_(file_) {
    std::string content;
    try {
        content = relocated(path_);
    } catch (const std::exception&) {
        return;
    }
    copy_ = content.empty() ? Descriptor() : fileInMemory(content);
    if (copy_.isOpen()) {
        path_ = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(copy_.get());
    }
}

void DefaultRules::nameFile(std::vector<Fault>* faults) const {
    for (Fault& fault : *faults) {
        if (fault.file == path_) {
            fault.file = file_;
        }
    }
}

}  // namespace pkgvet::cli
