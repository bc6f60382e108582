// Builds two packages and copies them.
#include "tests/support/program/corpus.h"

#include <filesystem>

#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

constexpr const char* kWaivers = R"({"waivers": [
  {"rule": "dependency-not-allowed", "subject": ".*", "package": ".*", "reason": "agreed <\"&'>"},
  {"rule": "icon-missing", "subject": ".*", "package": "org\\.example\\.nobody", "reason": "x"}
]})";

}  // namespace

Corpus::Corpus() {
    rules_ = RuleTree().write(directory_);
    waivers_ = directory_.write("waivers.json", kWaivers);
    std::filesystem::create_directory(packages());
    PackageBuilder builder("org.example.plain");
    builder.file("/usr/share/org.example.plain/x", "x");
    const std::string plain = builder.build(directory_);
    const std::string scripted =
        builder.tag("Requires: stranger").script("%post\ntrue").build(directory_);
    add(scripted, "d.rpm");
    for (const char* name : {"b.rpm", "c.rpm", "a.rpm", "h<&\"'\xff\n\u202e::error::x.rpm"}) {
        add(plain, name);
    }
    paths_.push_back(directory_ / "missing.rpm");
    paths_.push_back(directory_.write("packages/e.rpm", "This is not a package"));
    add(plain, "g.rpm");
    add(scripted, "f.rpm");
}

void Corpus::add(const std::string& package, const std::string& name) {
    paths_.push_back(std::filesystem::path(packages()) / name);
    std::filesystem::copy_file(package, paths_.back());
}

std::vector<std::string> Corpus::command(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command = {"check",   "--rules",   rules_,   "--validation",
                                        "on",      "--waivers", waivers_, "--profile",
                                        "regular", "--profile", "mdm"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

ProgramResult Corpus::check(const std::vector<std::string>& arguments) const {
    return runPkgvet(command(arguments));
}

std::vector<std::string> allFormats() {
    return {"text",  "concise", "json",   "jsonl",    "sarif",
            "junit", "github",  "gitlab", "markdown", "html"};
}
