// The steps of the sandbox rule that concern the services of an application.
#pragma once

#include <string>
#include <string_view>

struct ContentValidatorPrivate;
class DesktopEntry;

namespace pkgvet {

inline constexpr std::string_view kExecDBusKey = "ExecDBus";
inline constexpr std::string_view kSystemServiceKey = "ExecSystemService";
inline constexpr std::string_view kSystemServiceUserKey = "ExecSystemServiceUser";
inline constexpr std::string_view kSystemServiceGroupKey = "ExecSystemServiceGroup";

// Both read the section that record names and store what they find in record, to be reported with
// the rest of the section. They come after dbusWarning is known.

// The launch line of the D-Bus service, if any. tempDir is the extraction directory.
void judgeDBusService(const DesktopEntry& entry, const std::string& packageName,
                      const std::string& tempDir, ContentValidatorPrivate* record);

// The launch line and the account of the system service, if any.
void judgeSystemService(const DesktopEntry& entry, const std::string& packageName,
                        ContentValidatorPrivate* record);

}  // namespace pkgvet
