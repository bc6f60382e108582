// Reads what reports say of their run.
#include "cli/records/run_record.h"

#include <array>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr std::uint64_t kMost32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t kMost64 = std::numeric_limits<std::uint64_t>::max();

constexpr std::array<std::string_view, 1> kTools = {"pkgvet"};
constexpr std::array<std::string_view, 4> kValidations = {"auto", "on", "off", ""};
constexpr std::array<std::string_view, 5> kSandboxes = {"namespaces+landlock", "namespaces",
                                                        "landlock", "none", ""};
constexpr std::array<std::string_view, 2> kFailOns = {"error", "warning"};

std::string wordIn(const Fields& fields, const char* name,
                   std::span<const std::string_view> words) {
    return std::string(words[fields.word(name, words)]);
}

AllowedMost readLimits(const Fields& fields) {
    AllowedMost limits;
    limits.seconds = fields.seconds("timeout");
    limits.processorSeconds = static_cast<unsigned>(fields.number("cpu_time", 0, kMost32));
    limits.unpackedBytes = fields.number("max_unpacked", 0, kMost64);
    limits.files = static_cast<unsigned>(fields.number("max_files", 0, kMost32));
    limits.memory = fields.number("memory", 0, kMost64);
    limits.report = fields.number("max_report", 0, kMost64);
    return limits;
}

std::vector<ProfileRules> readProfiles(const Fields& fields) {
    std::vector<ProfileRules> profiles;
    for (const Fields& profile : fields.objects("profiles")) {
        profiles.push_back({profile.text("name"), profile.digest("rules_digest")});
    }
    return profiles;
}

std::vector<std::string> readDigests(const Fields& fields, const char* name) {
    std::vector<std::string> digests;
    for (const Json& digest : fields.array(name)) {
        const bool isOne = digest.is_string() && isDigest(digest.get<std::string>());
        fields.require(isOne || digest.is_null(), name, "does not hold digests alone");
        digests.push_back(isOne ? digest.get<std::string>() : std::string());
    }
    return digests;
}

Provenance readProvenance(const Fields& fields) {
    Provenance provenance;
    provenance.profiles = readProfiles(fields);
    provenance.validation = wordIn(fields, "validation", kValidations);
    provenance.integrity = fields.flag("integrity");
    // Reports of earlier versions do not have it.
    if (fields.has("keyring")) {
        provenance.keyring = fields.digest("keyring");
    }
    if (fields.bytesOrNone("fail_on")) {
        provenance.failOn = wordIn(fields, "fail_on", kFailOns);
    }
    provenance.waivers = readDigests(fields, "waivers");
    provenance.baseline = fields.digest("baseline");
    provenance.limits = readLimits(fields.object("limits"));
    return provenance;
}

PackageTally readTally(const Fields& fields) {
    PackageTally tally;
    tally.accepted = fields.number("accepted", 0, kMost32);
    tally.rejected = fields.number("rejected", 0, kMost32);
    tally.notJudged = fields.number("not_judged", 0, kMost32);
    fields.require(fields.number("packages", 0, kMost64) == tally.packages(), "packages",
                   "is not the sum of the others");
    return tally;
}

std::vector<std::string> readNotices(const Fields& fields) {
    constexpr const char* kNotices = "notices";
    constexpr const char* kEscaped = "notices_escaped";
    std::vector<std::string> notices;
    for (const Json& notice : fields.array(kNotices)) {
        fields.require(notice.is_string(), kNotices, "does not hold texts alone");
        notices.push_back(notice.get<std::string>());
    }
    if (!fields.has(kEscaped)) {
        return notices;
    }
    const Json& escaped = fields.array(kEscaped);
    fields.require(escaped.size() == notices.size(), kEscaped, "is not as long as the notices");
    for (std::size_t i = 0; i < notices.size(); ++i) {
        if (escaped[i].is_null()) {
            continue;
        }
        const auto exact =
            escaped[i].is_string() ? bytesUnescaped(escaped[i].get<std::string>()) : std::nullopt;
        fields.require(exact.has_value(), kEscaped, "does not hold escaped texts alone");
        notices[i] = *exact;
    }
    return notices;
}

Shard readShard(const Fields& fields) {
    Shard shard;
    shard.of = static_cast<unsigned>(fields.number("of", 1, kMostShards));
    shard.number = static_cast<unsigned>(fields.number("number", 1, shard.of));
    shard.packages = fields.number("packages", 0, kMost32);
    shard.input = fields.digest("input");
    return shard;
}

}  // namespace

RunRecord readRun(const Fields& fields) {
    RunRecord record;
    RunReport& run = record.run;
    const Fields tool = fields.object("tool");
    static_cast<void>(tool.word("name", kTools));
    run.provenance = readProvenance(fields.object("provenance"));
    run.provenance.version = tool.text("version");
    run.sandbox = wordIn(fields, "sandbox", kSandboxes);
    run.partial = !fields.flag("complete");
    if (fields.has("shard")) {
        run.shard = readShard(fields.object("shard"));
    }
    record.tally = readTally(fields.object("summary"));
    run.notices = readNotices(fields);
    return record;
}

}  // namespace pkgvet::cli
