// Lists what a SARIF document is about.
#include <glib.h>

#include <sstream>

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

void SpooledList::add(const Json& element) {
    std::ostringstream text;
    list_.add(element, &text);
    spool_.write(text.view());
}

void SpooledList::write(std::ostream* stream) const {
    spool_.read([stream](std::string_view piece) { *stream << piece; });
}

void SarifPackages::add(const PackageReport& package, const ReportStyle& style) {
    if (places_.emplace(package.path, places_.size()).second) {
        list_.add(packageJson(package, style));
    }
}

Json SarifPackages::location(const PackageReport& package) const {
    return {{"uri", uriOf(package.path)}, {"index", index(package)}};
}

// The URI of an artifact in another one is its path there, from the root of that.
Json SarifFiles::location(const PackageReport& package, const std::string& path) {
    const std::size_t parent = packages_.index(package);
    const std::string uri = percentEncoded(path, isPlainInUri);
    const std::size_t next = packages_.size() + places_.size();
    const auto [place, isNew] = places_.emplace(std::pair(parent, path), next);
    if (isNew) {
        list_.add({{"location", {{"uri", uri}}}, {"parentIndex", parent}});
    }
    return {{"uri", uri}, {"index", place->second}};
}

void SarifFiles::write(std::ostream* stream) const {
    packages_.list().write(stream);
    list_.write(stream);
    list_.list().finish(stream);
}

}  // namespace pkgvet::cli
