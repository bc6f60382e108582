// The texts of the findings on a package's desktop file.
#pragma once

#include <string_view>

namespace pkgvet {

inline constexpr std::string_view kDesktopFileMissing = "[desktop] Desktop file is missing";
inline constexpr std::string_view kDesktopFileMissingIsTolerated =
    "Desktop file is missing, no validation for pinfold section";

// In front of a group and behind it.
inline constexpr std::string_view kGroupBegin = "[desktop] '";
inline constexpr std::string_view kGroupDisallowed = "' group is disallowed";

// A value or field, then its group, in the first case followed by "/" and the field.
inline constexpr std::string_view kInvalidValue = "[desktop] invalid value '";
inline constexpr std::string_view kInvalidFieldName = "[desktop] invalid field name '";
inline constexpr std::string_view kInGroup = "' in '";
inline constexpr std::string_view kFieldEnd = "' field";
inline constexpr std::string_view kGroupEnd = "' group";
inline constexpr std::string_view kColorExpected =
    "' field. \nThe expected value is a color in hex format (#RRGGBB).";

inline constexpr std::string_view kIsQmlOnly = "[desktop] Application is a QML-only app";
inline constexpr std::string_view kQmlOnlyTypeWrong =
    "[desktop] X-Dorrit-Application-Type must be ostrand-qt5 for lumbra-qml apps";
inline constexpr std::string_view kTypeNotRecommended =
    "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 (not a Ostrand app?)";
inline constexpr std::string_view kTypeNotDeclared =
    "[desktop] X-Dorrit-Application-Type not declared (use ostrand-qt5 for QML apps)";

inline constexpr std::string_view kNameMissing = "[desktop] Missing valid Name declaration inside";
inline constexpr std::string_view kNameIllegal = "[desktop] Name contains illegal characters";
inline constexpr std::string_view kIconMissing =
    "[desktop] Missing valid Icon declaration inside, must be Icon=";
inline constexpr std::string_view kExecMissing = "[desktop] Missing valid Exec declaration inside";
inline constexpr std::string_view kTypeMissing = "[desktop] Missing valid Type declaration inside";

// While the sandbox section is read.
inline constexpr std::string_view kMultipleSections =
    "[pinfold] Multiple pinfold sections are not allowed, please use only \"X-Application\"";
inline constexpr std::string_view kSectionMissing =
    "[pinfold] X-Application section should be specified in desktop file";
inline constexpr std::string_view kSectionDeprecated =
    "[pinfold] \"X-Pinfold\" section will be deprecated in future versions, please use "
    "\"X-Application\" instead";
inline constexpr std::string_view kSandboxKeyNotAllowed = "] X-Pinfold key is not allowed";
inline constexpr std::string_view kReservedPart =
    "[pinfold] ApplicationName contains reserved prefix ";
inline constexpr std::string_view kPermissionNotAllowed = "] Permission is not allowed";

// Not a finding: goes in front of the system's words for why a path did not resolve.
inline constexpr std::string_view kDBusPathError = "ExecDBus error: ";

// Once the sandbox section is read.
inline constexpr std::string_view kSectionDisallowed =
    "[pinfold] Pinfold section is not allowed (use X-Application instead)";
inline constexpr std::string_view kApplicationNameIllegal =
    "[pinfold] ApplicationName contains illegal characters";
inline constexpr std::string_view kNamePairWrong =
    "[pinfold] OrganizationName and ApplicationName pair should form a package name (e.g. for "
    "package \"com.example.app\" ApplicationName must be \"app\" and OrganizationName must be "
    "\"com.example\").";
inline constexpr std::string_view kOrganizationNameIllegal =
    "[pinfold] OrganizationName contains illegal characters";
inline constexpr std::string_view kOrganizationNameLeadingDigit =
    "[pinfold] OrganizationName may not start with a number";
inline constexpr std::string_view kOrganizationNameNoDomain =
    "[pinfold] OrganizationName should follow reverse domain notation (at least up to second-level "
    "domain), e.g.: \"org.example\".";
inline constexpr std::string_view kDBusWrong =
    "[pinfold] ExecDBus is incorrect, template rules are equal to Exec section";
inline constexpr std::string_view kSystemServiceWrong =
    "[pinfold] ExecSystemService is incorrect, template rules are equal to ExecStart section";
inline constexpr std::string_view kSystemServiceIncomplete =
    "[pinfold] If application use system service, desktop file should include ExecSystemService, "
    "ExecSystemServiceUser and ExecSystemServiceGroup keys";
inline constexpr std::string_view kSystemServiceAccountWrong =
    "[pinfold] System service user should be \"lumbra-mdm\", system service group should be "
    "\"privileged\"";
inline constexpr std::string_view kHyphenBreaksServices =
    "[pinfold] Application name contains illegal \"-\" symbol. It will cause ExecDBus and/or "
    "ExecSystemService failure in future";
inline constexpr std::string_view kHyphenNotRecommended =
    "[pinfold] ExecDBus and/or ExecSystemService will not work, remove \"-\" from Application name";

inline constexpr std::string_view kIntentInvalid = "Invalid intent specification: ";
inline constexpr std::string_view kIntentNameMissing = "Missing intent name: ";
inline constexpr std::string_view kIntentNotStandard = "Non standard intent name: ";
inline constexpr std::string_view kIntentFlagUnknown = "Unknown intent flag: ";

// In front of a key of a background task and behind it.
inline constexpr std::string_view kTaskKeyBegin = "[desktop] Key '";
inline constexpr std::string_view kTaskKeyDisallowed = "' disallowed for background tasks";

inline constexpr std::string_view kTaskInvalid = "Invalid background task specification: ";
inline constexpr std::string_view kTaskTypeUnsupported = "Unsupported background task type: ";
inline constexpr std::string_view kExecutableNameInvalid =
    "Invalid characters in executable name: ";
inline constexpr std::string_view kExecutableWrong = "Executable missing or in wrong path: ";
inline constexpr std::string_view kTaskPermissionNotAllowed = "Permission not allowed for tasks: ";
inline constexpr std::string_view kTaskPermissionImplicit =
    "BaseTask permission is implicit, please remove it";
inline constexpr std::string_view kTaskPermissionNotInApplication =
    "Task permission needs to be in application too: ";
inline constexpr std::string_view kConditionInvalid = "Invalid condition specification: ";
inline constexpr std::string_view kConditionUnknown = "Unknown task condition: ";

// In front of a condition, then in front of its subtype.
inline constexpr std::string_view kSubtypeUnknownBegin = "Unknown ";
inline constexpr std::string_view kSubtypeUnknown = " condition subtype: ";

}  // namespace pkgvet
