// Reads reports, and holds their parts against one another.
#include "cli/records/report_reader.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "cli/base/fault.h"
#include "cli/records/package_record.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kPackages = "packages";
constexpr const char* kPackage = "package";
constexpr const char* kSchemaVersion = "schema_version";
constexpr const char* kReadableVersion = "1";
constexpr const char* kDoubled = "stands there twice";

// Where something is in the file that is at inner in a value that begins at outer.
Position absolute(const Position& outer, const Position& inner) {
    if (inner.line == 0) {
        return outer;
    }
    return {outer.line + inner.line - 1,
            inner.line == 1 ? outer.column + inner.column - 1 : inner.column};
}

// What the parser says, without the name of its own exception, and where.
std::pair<Position, std::string> partsOf(const Json::exception& error) {
    const std::string message = error.what();
    const std::size_t begin = message.find("parse error at");
    Position position;
    int size = 0;
    if (begin == std::string::npos ||
        std::sscanf(message.c_str() + begin, "parse error at line %zu, column %zu: %n",
                    &position.line, &position.column, &size) != 2) {
        return {{}, message};
    }
    return {position, "is not JSON: " + message.substr(begin + static_cast<std::size_t>(size))};
}

// Whether an object in text has a key more than once, of which a parser takes the last.
class DoubledKeys {
public:
    bool operator()(Json::parse_event_t event, const Json& value) {
        if (event == Json::parse_event_t::object_start) {
            keys_.push_back(0);
        } else if (event == Json::parse_event_t::key) {
            ++keys_.back();
        } else if (event == Json::parse_event_t::object_end) {
            found_ = found_ || value.size() != keys_.back();
            keys_.pop_back();
        }
        return true;
    }

    bool found() const { return found_; }

private:
    std::vector<std::size_t> keys_;  // of the objects around the present place
    bool found_ = false;
};

std::vector<std::string> profilesOf(const PackageReport& package) {
    std::vector<std::string> names;
    for (const Judgement& judgement : package.judgements) {
        names.push_back(judgement.profile);
    }
    return names;
}

bool isEqual(const PackageTally& one, const PackageTally& other) {
    return one.accepted == other.accepted && one.rejected == other.rejected &&
           one.notJudged == other.notJudged;
}

}  // namespace

ReportReader::ReportReader(const std::string& path) : path_(path), scanner_(path, kPackages) {}

std::optional<PackageReport> ReportReader::next() {
    while (true) {
        RecordPiece piece = scanner_.next();
        switch (piece.kind) {
            case RecordPiece::Kind::Member:
                addMember(std::move(piece));
                break;
            case RecordPiece::Kind::Element:
                hasRecords_ = true;
                return take(piece);
            case RecordPiece::Kind::ObjectEnd:
                if (std::optional<PackageReport> package = endObject()) {
                    return package;
                }
                break;
            case RecordPiece::Kind::Torn:
                return std::nullopt;
            case RecordPiece::Kind::End:
                endFile();
                return std::nullopt;
        }
    }
}

PackageReport ReportReader::at(const RecordPlace& place) const {
    return packageOf(scanner_.textAt(place.offset, place.size), place);
}

const RunReport& ReportReader::run() const {
    if (!record_) {
        fail({}, "is cut short");
    }
    return record_->run;
}

// A key that stands there twice in one of the values is found here, and one of the object itself
// where its members are gathered.
Json ReportReader::parsed(const std::string& text, const RecordPlace& place) const {
    DoubledKeys doubled;
    Json json;
    try {
        json = Json::parse(text, [&](int /*depth*/, Json::parse_event_t event, Json& value) {
            return doubled(event, value);
        });
    } catch (const Json::exception& error) {
        const auto [position, cause] = partsOf(error);
        fail(absolute(place.position, position), cause);
    }
    if (doubled.found()) {
        const JsonPositions positions(text);
        const DoubledKey& first = positions.doubledKeys().front();
        throw std::runtime_error(
            describe({path_, first.place, kDoubled, absolute(place.position, first.position)}));
    }
    return json;
}

PackageReport ReportReader::packageOf(const std::string& text, const RecordPlace& place) const {
    const Json json = parsed(text, place);
    try {
        return readPackage(Fields(json, std::string()));
    } catch (const FieldFault& fault) {
        const JsonPositions positions(text);
        const JsonSpot* spot = positions.find(fault.place);
        throw std::runtime_error(describe({path_, fault.place, fault.cause,
                                           absolute(place.position, positions.nearest(fault.place)),
                                           spot == nullptr ? std::string() : spot->text}));
    }
}

PackageReport ReportReader::take(const RecordPiece& piece) {
    place_ = {piece.offset, piece.text.size(), piece.position};
    PackageReport package = packageOf(piece.text, place_);
    tally_.add(package);
    if (package.judged()) {
        profiles_.insert(profilesOf(package));
    }
    return package;
}

void ReportReader::addMember(RecordPiece piece) {
    const std::string key = piece.key;
    const Position position = piece.position;
    if (!members_.emplace(key, std::move(piece)).second) {
        throw std::runtime_error(describe({path_, key, kDoubled, position}));
    }
}

// A line with a package, or all that is said of the run.
std::optional<PackageReport> ReportReader::endObject() {
    if (member(kSchemaVersion).text != kReadableVersion) {
        fail(member(kSchemaVersion).position,
             "the schema version is not that of a report that this version can read");
    }
    if (record_) {
        fail(member(kSchemaVersion).position, "there is more behind the end of the report");
    }
    std::optional<PackageReport> package;
    if (members_.count(kPackage) != 0 && !hasRecords_) {
        package = take(member(kPackage));
        sizeOfLines_ = scanner_.wholeSize();
    } else {
        readHead();
    }
    members_.clear();
    return package;
}

// The members of the run as one value, in the places where they stand in the file.
void ReportReader::readHead() {
    const auto packages = members_.find(kPackages);
    if (packages != members_.end()) {
        throw std::runtime_error(
            describe({path_, kPackages, kNotAnArray, packages->second.position}));
    }
    Json head = Json::object();
    for (const auto& [key, piece] : members_) {
        head[key] = parsed(piece.text, {piece.offset, piece.text.size(), piece.position});
    }
    try {
        record_ = readRun(Fields(head, std::string()));
    } catch (const FieldFault& fault) {
        const std::string key = fault.place.substr(0, fault.place.find_first_of(".["));
        const auto found = members_.find(key);
        throw std::runtime_error(
            describe({path_, fault.place, fault.cause,
                      found == members_.end() ? Position() : found->second.position}));
    }
}

void ReportReader::endFile() {
    if (!record_) {
        return;
    }
    if (!isEqual(record_->tally, tally_)) {
        fail({}, "the summary does not count the packages that the report holds");
    }
    std::vector<std::string> profiles;
    for (const ProfileRules& profile : record_->run.provenance.profiles) {
        profiles.push_back(profile.name);
    }
    if (profiles_.size() > 1 || (profiles_.size() == 1 && *profiles_.begin() != profiles)) {
        fail({}, "packages are not judged under the profiles of the run");
    }
}

const RecordPiece& ReportReader::member(const char* key) const {
    const auto found = members_.find(key);
    if (found == members_.end()) {
        throw std::runtime_error(describe({path_, key, kMissing}));
    }
    return found->second;
}

void ReportReader::fail(const Position& position, const std::string& cause) const {
    throw std::runtime_error(describe({path_, std::string(), cause, position}));
}

}  // namespace pkgvet::cli
