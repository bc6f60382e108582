// The steps of the sandbox rule that concern the services of an application.
#pragma once

#include <string>
#include <string_view>

class DesktopEntry;

namespace pkgvet {

struct DesktopFacts;

inline constexpr std::string_view kExecDBusKey = "ExecDBus";
inline constexpr std::string_view kSystemServiceKey = "ExecSystemService";
inline constexpr std::string_view kSystemServiceUserKey = "ExecSystemServiceUser";
inline constexpr std::string_view kSystemServiceGroupKey = "ExecSystemServiceGroup";

// Both read the section that facts name. They report nothing: what they find out goes to facts,
// which the rule reports once it has read the whole section. They run when dbusWarning is known,
// since a service turns it into an error.

// The launch line of the D-Bus service, if any. tempDir is the extraction directory. A program that
// is not there is remarked on, straight on standard error.
void judgeDBusService(const DesktopEntry& entry, const std::string& packageName,
                      const std::string& tempDir, DesktopFacts* facts);

// The launch line and the account of the system service, if any.
void judgeSystemService(const DesktopEntry& entry, const std::string& packageName,
                        DesktopFacts* facts);

}  // namespace pkgvet
