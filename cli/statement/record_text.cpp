// Writes and reads records.
#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "cli/base/json_place.h"
#include "cli/base/strict_json.h"
#include "cli/statement/record.h"
#include "cli/statement/record_format.h"
#include "cli/statement/stored_record.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

// A record of all rules has some 20 KiB.
constexpr std::uintmax_t kLargestRecord = std::uintmax_t{1} << 20U;
constexpr std::size_t kDigestSize = 64;

OrderedJson toJson(const RecordedInput& input) {
    OrderedJson json = {{kNameKey, input.name}};
    if (!input.uri.empty()) {
        json[kUriKey] = input.uri;
    }
    json[kDigestKey] = {{kSha256Key, input.digest}};
    if (!input.annotations.empty()) {
        json[kAnnotationsKey] = input.annotations;
    }
    return json;
}

// Reads a record that anyone may have written.
class RecordReader {
public:
    RecordReader(const std::string& path, std::vector<Fault>* faults) : reader_(path, faults) {}

    Record read() {
        const Json root = reader_.load();
        Record record;
        if (root.is_null()) {
            return record;
        }
        reader_.refuseUnknown(root, "", {kTypeKey, kSubjectKey, kPredicateTypeKey, kPredicateKey});
        expect(root, kTypeKey, kStatementType);
        expect(root, kPredicateTypeKey, kPredicateType);
        readSubject(root, &record);
        const auto predicate = root.find(kPredicateKey);
        if (predicate == root.end() || !predicate->is_object()) {
            reader_.report(kPredicateKey, predicate == root.end() ? kMissing : kNotAnObject);
            return record;
        }
        readPredicate(*predicate, &record);
        return record;
    }

private:
    void expect(const Json& object, const char* key, const std::string& value) const {
        const std::string text = reader_.text(object, "", key);
        if (!text.empty() && text != value) {
            reader_.report(key, "is not " + value);
        }
    }

    void readSubject(const Json& root, Record* record) const {
        const auto subjects = reader_.objects(root, "", kSubjectKey);
        if (subjects.size() != 1) {
            reader_.report(kSubjectKey, "is not one package");
            return;
        }
        const auto& [place, subject] = subjects.front();
        reader_.refuseUnknown(subject, place, {kNameKey, kDigestKey});
        record->package = reader_.text(subject, place, kNameKey);
        record->sha256 = digestIn(subject, place);
    }

    std::string digestIn(const Json& object, const std::string& place) const {
        const auto digest = object.find(kDigestKey);
        const std::string at = member(place, kDigestKey);
        if (digest == object.end() || !digest->is_object()) {
            reader_.report(at, digest == object.end() ? kMissing : kNotAnObject);
            return std::string();
        }
        reader_.refuseUnknown(*digest, at, {kSha256Key});
        const std::string text = reader_.text(*digest, at, kSha256Key);
        if (text.size() != kDigestSize ||
            text.find_first_not_of("0123456789abcdef") != std::string::npos) {
            reader_.report(member(at, kSha256Key), "is not a digest in hexadecimal");
        }
        return text;
    }

    void readPredicate(const Json& predicate, Record* record) const {
        reader_.refuseUnknown(
            predicate, kPredicateKey,
            {kResultKey, kConfigurationKey, kPassedTestsKey, kWarnedTestsKey, kFailedTestsKey});
        record->result = reader_.text(predicate, kPredicateKey, kResultKey);
        if (record->result != kPassedResult && record->result != kWarnedResult &&
            record->result != kFailedResult) {
            reader_.report(member(kPredicateKey, kResultKey), "is not a result");
        }
        for (const auto& [place, input] :
             reader_.objects(predicate, kPredicateKey, kConfigurationKey)) {
            record->configuration.push_back(inputAt(input, place));
        }
        record->passedTests = testsIn(predicate, kPassedTestsKey);
        record->warnedTests = testsIn(predicate, kWarnedTestsKey);
        record->failedTests = testsIn(predicate, kFailedTestsKey);
    }

    RecordedInput inputAt(const Json& object, const std::string& place) const {
        reader_.refuseUnknown(object, place, {kNameKey, kUriKey, kDigestKey, kAnnotationsKey});
        RecordedInput input;
        input.name = reader_.text(object, place, kNameKey);
        if (object.contains(kUriKey)) {
            input.uri = reader_.text(object, place, kUriKey);
        }
        input.digest = digestIn(object, place);
        if (const auto annotations = object.find(kAnnotationsKey); annotations != object.end()) {
            readAnnotations(*annotations, member(place, kAnnotationsKey), &input);
        }
        return input;
    }

    void readAnnotations(const Json& annotations, const std::string& place,
                         RecordedInput* input) const {
        if (!annotations.is_object()) {
            reader_.report(place, kNotAnObject);
            return;
        }
        for (const auto& item : annotations.items()) {
            input->annotations[item.key()] = reader_.text(annotations, place, item.key().c_str());
        }
    }

    std::vector<std::string> testsIn(const Json& predicate, const char* key) const {
        std::vector<std::string> tests;
        const std::string place = member(kPredicateKey, key);
        const auto array = predicate.find(key);
        if (array == predicate.end() || !array->is_array()) {
            reader_.report(place, array == predicate.end() ? kMissing : kNotAnArray);
            return tests;
        }
        for (std::size_t i = 0; i < array->size(); ++i) {
            if ((*array)[i].is_string()) {
                tests.push_back((*array)[i].get<std::string>());
            } else {
                reader_.report(element(place, i), kNotAString);
            }
        }
        return tests;
    }

    JsonReader reader_;
};

}  // namespace

std::string formatRecord(const Record& record) {
    OrderedJson configuration = OrderedJson::array();
    for (const RecordedInput& input : record.configuration) {
        configuration.push_back(toJson(input));
    }
    const OrderedJson subject = {{kNameKey, record.package},
                                 {kDigestKey, {{kSha256Key, record.sha256}}}};
    const OrderedJson statement = {{kTypeKey, kStatementType},
                                   {kSubjectKey, OrderedJson::array({subject})},
                                   {kPredicateTypeKey, kPredicateType},
                                   {kPredicateKey,
                                    {{kResultKey, record.result},
                                     {kConfigurationKey, std::move(configuration)},
                                     {kPassedTestsKey, record.passedTests},
                                     {kWarnedTestsKey, record.warnedTests},
                                     {kFailedTestsKey, record.failedTests}}}};
    return statement.dump(-1, ' ', true) + "\n";
}

std::string_view recordBeginning() {
    static const std::string beginning =
        "{\"" + std::string(kTypeKey) + "\":\"" + kStatementType + "\",";
    return beginning;
}

Record readRecord(const std::string& path, std::vector<Fault>* faults) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error) &&
        std::filesystem::file_size(path, error) > kLargestRecord) {
        faults->push_back({path, "", "is larger than any record"});
        return {};
    }
    if (!error && std::filesystem::exists(path, error) &&
        !std::filesystem::is_regular_file(path, error)) {
        faults->push_back({path, "", "is not a regular file"});
        return {};
    }
    return RecordReader(path, faults).read();
}

std::string profileIn(const Record& record) {
    for (const RecordedInput& input : record.configuration) {
        const auto profile = input.annotations.find(kProfileAnnotation);
        if (input.name == kRulesInput && profile != input.annotations.end()) {
            return profile->second;
        }
    }
    return std::string();
}

}  // namespace pkgvet::cli
