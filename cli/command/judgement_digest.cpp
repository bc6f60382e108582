// Sums up what judgements depend on.
#include "cli/command/judgement_digest.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/base/checksum.h"
#include "cli/base/version.h"
#include "cli/command/pool_options.h"
#include "pkgvet/platform/param_file_validator.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

// Stands in none of the texts, so that two of them never run into one another.
constexpr std::string_view kSeparator("\0", 1);

class Sum {
public:
    void add(std::string_view text) {
        sum_.add(text);
        sum_.add(kSeparator);
    }

    void add(std::uint64_t number) { add(std::to_string(number)); }

    // The files in it, in an order that does not depend on the file system.
    void addDirectory(const fs::path& directory) {
        std::error_code error;
        std::vector<std::string> paths;
        for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
             entry.increment(error)) {
            paths.push_back(entry->path());
        }
        std::sort(paths.begin(), paths.end());
        for (const std::string& path : paths) {
            add(checksumOfFile(path));
        }
        add(std::string_view());
    }

    std::string finish() { return sum_.finish(); }

private:
    Checksum sum_;
};

}  // namespace

std::string judgementDigest(const CheckOptions& options, const std::string& rules,
                            const RunReport& run) {
    const Provenance& provenance = run.provenance;
    Sum sum;
    sum.add(versionText());
    sum.add(run.sandbox);
    for (const ProfileRules& profile : provenance.profiles) {
        sum.add(profile.name);
        sum.add(profile.digest);
    }
    sum.add(provenance.validation);
    sum.add(isValidationEnabled(options.judging, rules) ? "on" : "off");
    sum.add(provenance.integrity ? "integrity" : "");
    sum.add(provenance.keyring);
    sum.addDirectory(ParamFileValidator::standardSchemasDirectory());
    const AllowedMost& limits = provenance.limits;
    sum.add(std::to_string(limits.seconds));
    for (const std::uint64_t limit : {std::uint64_t{limits.processorSeconds}, limits.unpackedBytes,
                                      std::uint64_t{limits.files}, limits.memory, limits.report}) {
        sum.add(limit);
    }
    return sum.finish();
}

}  // namespace pkgvet::cli
