// The texts of the findings on a package's desktop file.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet {

inline constexpr Message kDesktopFileMissing = {"[desktop] Desktop file is missing"};
inline constexpr Message kDesktopFileMissingIsTolerated = {
    "Desktop file is missing, no validation for pinfold section"};

inline constexpr Message kGroupDisallowed = {"[desktop] '", kSubject, "' group is disallowed"};

// The subject is the field, behind its value and its group or ahead of its group.
inline constexpr Message kValueInvalid = {
    "[desktop] invalid value '", kDetail, "' in '", kDetail, "/", kSubject, "' field"};
inline constexpr Message kColorInvalid = {
    "[desktop] invalid value '",
    kDetail,
    "' in '",
    kDetail,
    "/",
    kSubject,
    "' field. \nThe expected value is a color in hex format (#RRGGBB)."};
inline constexpr Message kFieldNameInvalid = {"[desktop] invalid field name '", kSubject, "' in '",
                                              kDetail, "' group"};

inline constexpr Message kIsQmlOnly = {"[desktop] Application is a QML-only app"};
inline constexpr Message kQmlOnlyTypeWrong = {
    "[desktop] X-Dorrit-Application-Type must be ostrand-qt5 for lumbra-qml apps"};
inline constexpr Message kTypeNotRecommended = {
    "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 (not a Ostrand app?)"};
inline constexpr Message kTypeNotDeclared = {
    "[desktop] X-Dorrit-Application-Type not declared (use ostrand-qt5 for QML apps)"};

inline constexpr Message kNameMissing = {"[desktop] Missing valid Name declaration inside"};
inline constexpr Message kNameIllegal = {"[desktop] Name contains illegal characters"};
// Behind it comes the name of the package.
inline constexpr Message kIconMissing = {
    "[desktop] Missing valid Icon declaration inside, must be Icon=", kDetail};
inline constexpr Message kExecMissing = {"[desktop] Missing valid Exec declaration inside"};
inline constexpr Message kTypeMissing = {"[desktop] Missing valid Type declaration inside"};

// While the sandbox section is read.
inline constexpr Message kMultipleSections = {
    "[pinfold] Multiple pinfold sections are not allowed, please use only \"X-Application\""};
inline constexpr Message kSectionMissing = {
    "[pinfold] X-Application section should be specified in desktop file"};
inline constexpr Message kSectionDeprecated = {
    "[pinfold] \"X-Pinfold\" section will be deprecated in future versions, please use "
    "\"X-Application\" instead"};
// It names "X-Pinfold" whatever the section is called.
inline constexpr Message kSandboxKeyNotAllowed = {"[", kSubject, "] X-Pinfold key is not allowed"};
// It says "prefix" wherever in the name the part stands.
inline constexpr Message kReservedPart = {"[pinfold] ApplicationName contains reserved prefix ",
                                          kDetail};
inline constexpr Message kPermissionNotAllowed = {"[", kSubject, "] Permission is not allowed"};

// A remark and not a finding: it goes straight to standard error, without a label. Behind the words
// comes the system's reason why a path was not resolved.
inline constexpr const char* kDBusPathErrorWords = "ExecDBus error: ";
inline constexpr Message kDBusPathError = {kDBusPathErrorWords, kDetail};

// Once the sandbox section is read.
inline constexpr Message kSectionDisallowed = {
    "[pinfold] Pinfold section is not allowed (use X-Application instead)"};
inline constexpr Message kApplicationNameIllegal = {
    "[pinfold] ApplicationName contains illegal characters"};
inline constexpr Message kNamePairWrong = {
    "[pinfold] OrganizationName and ApplicationName pair should form a package name (e.g. for "
    "package \"com.example.app\" ApplicationName must be \"app\" and OrganizationName must be "
    "\"com.example\")."};
inline constexpr Message kOrganizationNameIllegal = {
    "[pinfold] OrganizationName contains illegal characters"};
inline constexpr Message kOrganizationNameLeadingDigit = {
    "[pinfold] OrganizationName may not start with a number"};
inline constexpr Message kOrganizationNameNoDomain = {
    "[pinfold] OrganizationName should follow reverse domain notation (at least up to second-level "
    "domain), e.g.: \"org.example\"."};
inline constexpr Message kDBusWrong = {
    "[pinfold] ExecDBus is incorrect, template rules are equal to Exec section"};
inline constexpr Message kSystemServiceWrong = {
    "[pinfold] ExecSystemService is incorrect, template rules are equal to ExecStart section"};
inline constexpr Message kSystemServiceIncomplete = {
    "[pinfold] If application use system service, desktop file should include ExecSystemService, "
    "ExecSystemServiceUser and ExecSystemServiceGroup keys"};
inline constexpr Message kSystemServiceAccountWrong = {
    "[pinfold] System service user should be \"lumbra-mdm\", system service group should be "
    "\"privileged\""};
inline constexpr Message kHyphenBreaksServices = {
    "[pinfold] Application name contains illegal \"-\" symbol. It will cause ExecDBus and/or "
    "ExecSystemService failure in future"};
inline constexpr Message kHyphenNotRecommended = {
    "[pinfold] ExecDBus and/or ExecSystemService will not work, remove \"-\" from Application "
    "name"};

inline constexpr Message kIntentInvalid = {"Invalid intent specification: ", kSubject};
inline constexpr Message kIntentNameMissing = {"Missing intent name: ", kSubject};
inline constexpr Message kIntentNotStandard = {"Non standard intent name: ", kSubject};
inline constexpr Message kIntentFlagUnknown = {"Unknown intent flag: ", kSubject};

inline constexpr Message kTaskKeyDisallowed = {"[desktop] Key '", kSubject,
                                               "' disallowed for background tasks"};
inline constexpr Message kTaskInvalid = {"Invalid background task specification: ", kSubject};
inline constexpr Message kTaskTypeUnsupported = {"Unsupported background task type: ", kSubject};
inline constexpr Message kExecutableNameInvalid = {"Invalid characters in executable name: ",
                                                   kSubject};
inline constexpr Message kExecutableWrong = {"Executable missing or in wrong path: ", kSubject};
inline constexpr Message kTaskPermissionNotAllowed = {"Permission not allowed for tasks: ",
                                                      kSubject};
inline constexpr Message kTaskPermissionImplicit = {
    "BaseTask permission is implicit, please remove it"};
inline constexpr Message kTaskPermissionNotInApplication = {
    "Task permission needs to be in application too: ", kSubject};
inline constexpr Message kConditionInvalid = {"Invalid condition specification: ", kSubject};
inline constexpr Message kConditionUnknown = {"Unknown task condition: ", kSubject};
// The detail is the condition, the subject its subtype.
inline constexpr Message kSubtypeUnknown = {"Unknown ", kDetail, " condition subtype: ", kSubject};

}  // namespace pkgvet
