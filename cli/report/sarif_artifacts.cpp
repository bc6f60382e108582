// Lists what a SARIF document is about.
#include <glib.h>

#include "cli/base/escape.h"
#include "cli/report/sarif_parts.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

const std::string kFileScheme = "file://";
// What stands for itself in a URI beside letters and digits.
constexpr std::string_view kUriPlain = "-._~/";

bool isPlainInUri(char c) {
    return g_ascii_isalnum(c) != FALSE || kUriPlain.find(c) != std::string_view::npos;
}

// path as a URI reference, which holds any byte.
std::string uriOf(const std::string& path) {
    const std::string escaped = percentEncoded(path, isPlainInUri);
    return path.starts_with('/') ? kFileScheme + escaped : escaped;
}

// SARIF knows results but not verdicts, so these go among the properties of the artifact.
Json verdictsJson(const PackageReport& package) {
    Json verdicts = Json::array();
    for (const Judgement& judgement : package.judgements) {
        verdicts.push_back({{"profile", judgement.profile},
                            {"meta_accepted", judgement.metaAccepted},
                            {"content_accepted", judgement.contentAccepted},
                            {"accepted", judgement.accepted()},
                            {"intact", judgement.intact},
                            {"passes", judgement.passes}});
    }
    return verdicts;
}

Json packageJson(const PackageReport& package, const ReportStyle& style) {
    Json artifact = {{"location", {{"uri", uriOf(package.path)}}}};
    if (!package.sha256.empty()) {
        artifact["hashes"] = {{"sha-256", package.sha256}};
    }
    artifact["properties"] = {{"name", package.name},
                              {"version", package.version},
                              {"release", package.release},
                              {"arch", package.arch},
                              {"validation_enabled", package.validationEnabled},
                              {"complete", package.complete()},
                              {"passes", package.passes()},
                              {"verdicts", verdictsJson(package)}};
    if (style.timings && package.seconds) {
        artifact["properties"]["seconds"] = *package.seconds;
    }
    return artifact;
}

}  // namespace

SarifArtifacts::SarifArtifacts(const RunReport& run, const ReportStyle& style) {
    for (const PackageReport& package : run.packages) {
        if (packages_.emplace(package.path, list_.size()).second) {
            list_.push_back(packageJson(package, style));
        }
    }
}

Json SarifArtifacts::location(const PackageReport& package) const {
    return {{"uri", uriOf(package.path)}, {"index", packages_.at(package.path)}};
}

// The URI of an artifact in another one is its path there, from the root of that.
Json SarifArtifacts::location(const PackageReport& package, const std::string& path) {
    const std::size_t parent = packages_.at(package.path);
    const std::string uri = percentEncoded(path, isPlainInUri);
    const auto [file, isNew] = files_.emplace(std::pair(parent, path), list_.size());
    if (isNew) {
        list_.push_back({{"location", {{"uri", uri}}}, {"parentIndex", parent}});
    }
    return {{"uri", uri}, {"index", file->second}};
}

}  // namespace pkgvet::cli
