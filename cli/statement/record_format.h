// The form of a record: the names and values of in-toto's Statement and of its predicate.
#pragma once

namespace pkgvet::cli {

inline constexpr const char* kTypeKey = "_type";
inline constexpr const char* kStatementType = "https://in-toto.io/Statement/v1";
inline constexpr const char* kSubjectKey = "subject";
inline constexpr const char* kPredicateTypeKey = "predicateType";
inline constexpr const char* kPredicateType = "https://in-toto.io/attestation/test-result/v0.1";
inline constexpr const char* kPredicateKey = "predicate";

inline constexpr const char* kResultKey = "result";
inline constexpr const char* kConfigurationKey = "configuration";
inline constexpr const char* kPassedTestsKey = "passedTests";
inline constexpr const char* kWarnedTestsKey = "warnedTests";
inline constexpr const char* kFailedTestsKey = "failedTests";

inline constexpr const char* kNameKey = "name";
inline constexpr const char* kUriKey = "uri";
inline constexpr const char* kDigestKey = "digest";
inline constexpr const char* kSha256Key = "sha256";
inline constexpr const char* kAnnotationsKey = "annotations";

}  // namespace pkgvet::cli
