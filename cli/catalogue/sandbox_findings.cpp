// The catalogue: findings on the sandbox section of the desktop file.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/desktop/desktop_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "sandbox-multiple-sections",
     .title = "Desktop file has several sandbox sections",
     .demand = "The desktop file has one section `X-Application`, and neither `X-Pinfold` nor "
               "`Pinfold` beside it.",
     .why = "Only one of them could decide under which permissions the application runs.",
     .fix = "Merge them into `X-Application` in the desktop file and remove the others.",
     .example = "[X-Application]\n"
                "OrganizationName=org.example\n"
                "ApplicationName=pilot\n"
                "Permissions=Internet;Location\n",
     .relatedIds = {"sandbox-section-not-allowed", "sandbox-section-deprecated"},
     .message = &kMultipleSections},
    {.id = "sandbox-section-missing",
     .title = "Desktop file has no sandbox section",
     .demand = "The desktop file has a section `X-Application`.",
     .why = "It says who the application is and under which permissions it runs in the sandbox.",
     .fix = "Add the section to the desktop file. `OrganizationName`, a dot and `ApplicationName` "
            "make up the package's name. If it is there, the file as a whole is not a valid key "
            "file; `desktop-file-validate` tells where.",
     .example = "[X-Application]\n"
                "OrganizationName=org.example\n"
                "ApplicationName=pilot\n"
                "Permissions=Internet\n",
     .relatedIds = {"desktop-group-not-allowed"},
     .message = &kSectionMissing},
    {.id = "sandbox-section-deprecated",
     .severity = Severity::Warning,
     .title = "Sandbox section has a deprecated name",
     .demand = "The sandbox section is called `X-Application`. `X-Pinfold` is still tolerated.",
     .why = "Future versions of the platform will not read it any more, and the application would "
            "not start.",
     .fix = "Rename the section in the desktop file; its keys stay as they are.",
     .example = "[X-Application]\n",
     .relatedIds = {"sandbox-section-not-allowed"},
     .message = &kSectionDeprecated},
    {.id = "sandbox-key-not-allowed",
     .title = "Sandbox section has a key that is not allowed",
     .demand = "The only keys of the sandbox section are `Permissions`, `OrganizationName`, "
               "`ApplicationName`, `ExecDBus`, `ExportDBusInterfaces` and `Intents`. Under the "
               "profile mdm `ExecSystemService`, `ExecSystemServiceUser`, "
               "`ExecSystemServiceGroup` and `ExecSystemServiceAutostart` are permitted too. That "
               "the finding speaks of X-Pinfold means nothing: it is the same for every section.",
     .why = "The section opens the sandbox, so that nothing unknown may stand in it.",
     .fix = "Remove the key from the section in the desktop file, or correct its name: upper and "
            "lower case count. Keys of a system service need the profile mdm.",
     .example = "[X-Application]\n"
                "Permissions=Internet\n",
     .relatedIds = {"system-service-incomplete"},
     .message = &kSandboxKeyNotAllowed},
    {.id = "application-name-reserved",
     .title = "ApplicationName holds a reserved part",
     .demand = "`ApplicationName` does not contain `.instance_`, `.task_`, `.tessara_` or "
               "`.service_`, neither at its beginning nor anywhere else.",
     .why = "The platform forms names of its own with these parts, and the two could be taken for "
            "each other.",
     .fix = "Choose another `ApplicationName`. The package's name, which ends in it, must follow, "
            "and with it program, desktop file and icons.",
     .example = "ApplicationName=taskpilot\n",
     .relatedIds = {"application-identity-mismatch"},
     .message = &kReservedPart},
    {.id = "permission-not-allowed",
     .title = "Application asks for a permission that is not allowed",
     .demand = "`Permissions` holds only permissions that the rule files of the profile list, and "
               "such of the form `NAME@NAME`.",
     .why = "A permission opens the sandbox, and not every application may open it there.",
     .fix = "Remove the permission from the sandbox section of the desktop file, or correct it: "
            "upper and lower case count, and permissions are divided by semicolons. "
            "`pkgvet rules show` prints what is allowed.",
     .example = "[X-Application]\n"
                "Permissions=Internet;Location\n",
     .relatedIds = {"task-permission-not-in-application"},
     .message = &kPermissionNotAllowed},
    {.id = "exec-dbus-unresolved",
     .severity = Severity::Info,
     .title = "Program of ExecDBus was not found in the package",
     .demand = "Nothing: this remark gives the system's reason why the program of `ExecDBus` was "
               "not found in the package.",
     .why = "A program that does not lie at /usr/bin/NAME is accepted only for where it leads. "
            "The program is taken to be all that stands ahead of the last blank, so that the "
            "remark also comes for a line with several arguments.",
     .fix = "Nothing, unless `exec-dbus-invalid` stands beside it. Then install the program in "
            "/usr/libexec/NAME/, where NAME is the name of the package, and give it one argument "
            "at the most.",
     .example = "ExecDBus=/usr/libexec/org.example.pilot/service --session\n",
     .relatedIds = {"exec-dbus-invalid"},
     .message = &kDBusPathError},
    {.id = "sandbox-section-not-allowed",
     .title = "Sandbox section has a name that is not allowed",
     .demand = "The sandbox section is called `X-Application`. A section called `Pinfold` is "
               "not allowed.",
     .why = "The names of groups that are not defined by a standard must begin with `X-`, and "
            "the old name does not.",
     .fix = "Rename the section in the desktop file; its keys stay as they are.",
     .example = "[X-Application]\n",
     .relatedIds = {"sandbox-section-deprecated", "sandbox-multiple-sections"},
     .message = &kSectionDisallowed},
    {.id = "application-name-invalid",
     .title = "ApplicationName is missing or holds characters that are not allowed",
     .demand = "`ApplicationName` begins with a Latin letter, `_` or `-`, and goes on with "
               "Latin letters, digits, `_`, `-` and dots.",
     .why = "Directories, buses and units of the sandbox are called by it.",
     .fix = "Set the key in the sandbox section of the desktop file to the last part of the "
            "package's name. The name that users see is `Name` of `Desktop Entry`.",
     .example = "[X-Application]\n"
                "ApplicationName=pilot\n",
     .relatedIds = {"application-identity-mismatch", "application-name-hyphen"},
     .message = &kApplicationNameIllegal},
    {.id = "application-identity-mismatch",
     .title = "Organization and application do not make up the package's name",
     .demand = "`OrganizationName`, a dot and `ApplicationName` are the name of the package.",
     .why = "By these two the sandbox finds the application's data. They must be as unique as the "
            "package's name.",
     .fix = "Split the package's name at one of its dots, most often the last: what stands ahead "
            "of it is `OrganizationName`, what stands behind it is `ApplicationName`. Set both in "
            "the sandbox section of the desktop file.",
     .example = "# For the package org.example.pilot:\n"
                "[X-Application]\n"
                "OrganizationName=org.example\n"
                "ApplicationName=pilot\n",
     .relatedIds = {"organization-name-invalid", "application-name-invalid",
                    "name-not-reverse-domain"},
     .message = &kNamePairWrong},
    {.id = "organization-name-invalid",
     .title = "OrganizationName is missing or holds characters that are not allowed",
     .demand = "`OrganizationName` is not empty and holds only small Latin letters, digits, dots, "
               "`_` and `-`.",
     .why = "It is a domain name, and directories of the sandbox are called by it.",
     .fix = "Set the key in the sandbox section of the desktop file to your domain, read from its "
            "end and in small letters. A package's name with capitals in that part must follow.",
     .example = "[X-Application]\n"
                "OrganizationName=org.example\n",
     .relatedIds = {"organization-name-not-reverse-domain", "application-identity-mismatch"},
     .message = &kOrganizationNameIllegal},
    {.id = "organization-name-leading-digit",
     .title = "Component of OrganizationName begins with a digit",
     .demand = "No component of `OrganizationName` begins with a digit, neither the first nor any "
               "behind a dot.",
     .why = "Names on the bus are formed from it, and their components may not begin with a digit.",
     .fix = "Change the key in the sandbox section of the desktop file; a domain such as "
            "4example.org is commonly written with an underscore ahead of the digit. The package's "
            "name must follow.",
     .example = "[X-Application]\n"
                "OrganizationName=org._4example\n",
     .relatedIds = {"application-identity-mismatch"},
     .message = &kOrganizationNameLeadingDigit},
    {.id = "organization-name-not-reverse-domain",
     .title = "OrganizationName is not in reverse domain notation",
     .demand = "`OrganizationName` has at least two components that are joined with a dot.",
     .why = "A domain of your own keeps the application's data apart from anybody else's.",
     .fix = "Set the key in the sandbox section of the desktop file to your domain, read from its "
            "end. The package's name must follow.",
     .example = "[X-Application]\n"
                "OrganizationName=org.example\n",
     .relatedIds = {"application-identity-mismatch", "name-not-reverse-domain"},
     .message = &kOrganizationNameNoDomain},
    {.id = "exec-dbus-invalid",
     .title = "ExecDBus does not start a program of the package",
     .demand = "`ExecDBus` is `/usr/bin/NAME`, with or without a blank and arguments, or a program "
               "of the package that lies in /usr/libexec/NAME/ or is a link to there, where NAME "
               "is the name of the package.",
     .why = "The bus starts it on behalf of the application, so that it must be the application's "
            "own.",
     .fix = "Set the key in the sandbox section of the desktop file. The path is absolute: unlike "
            "in `Exec`, the bare name does not do. A program in /usr/libexec/NAME/ takes one "
            "argument at the most.",
     .example = "[X-Application]\n"
                "ExecDBus=/usr/bin/org.example.pilot --service\n",
     .relatedIds = {"exec-dbus-unresolved", "application-name-hyphen-with-service"},
     .message = &kDBusWrong},
    {.id = "system-service-invalid",
     .title = "ExecSystemService does not start a program of the package",
     .demand = "`ExecSystemService` begins with /usr/libexec/NAME/, where NAME is the name of the "
               "package.",
     .why = "The service runs with more rights than the application, so that it must be a program "
            "that the package itself brings.",
     .fix = "Install the program there in the .spec file, and set the key in the sandbox section "
            "of the desktop file.",
     .example = "[X-Application]\n"
                "ExecSystemService=/usr/libexec/org.example.pilot/service\n"
                "ExecSystemServiceUser=lumbra-mdm\n"
                "ExecSystemServiceGroup=privileged\n",
     .relatedIds = {"system-service-incomplete", "system-service-account"},
     .message = &kSystemServiceWrong},
    {.id = "system-service-incomplete",
     .title = "System service is not described in full",
     .demand = "Of `ExecSystemService`, `ExecSystemServiceUser` and `ExecSystemServiceGroup` the "
               "sandbox section has all or none.",
     .why = "A service without an account would run under one that nobody chose.",
     .fix = "Add what is missing in the sandbox section of the desktop file, or remove the rest.",
     .example = "[X-Application]\n"
                "ExecSystemService=/usr/libexec/org.example.pilot/service\n"
                "ExecSystemServiceUser=lumbra-mdm\n"
                "ExecSystemServiceGroup=privileged\n",
     .relatedIds = {"system-service-invalid", "system-service-account"},
     .message = &kSystemServiceIncomplete},
    {.id = "system-service-account",
     .title = "System service runs under the wrong account",
     .demand = "`ExecSystemServiceUser` is `lumbra-mdm` and `ExecSystemServiceGroup` is "
               "`privileged`.",
     .why = "This account has the rights that device management needs and no others.",
     .fix = "Set both keys in the sandbox section of the desktop file.",
     .example = "[X-Application]\n"
                "ExecSystemServiceUser=lumbra-mdm\n"
                "ExecSystemServiceGroup=privileged\n",
     .relatedIds = {"system-service-invalid", "system-service-incomplete"},
     .message = &kSystemServiceAccountWrong},
    {.id = "application-name-hyphen-with-service",
     .title = "ApplicationName with a service holds a hyphen",
     .demand =
         "`ApplicationName` does not contain a `-` where the sandbox section has `ExecDBus` or "
         "describes a system service.",
     .why = "The name becomes part of a name on the bus, in which a hyphen is not allowed.",
     .fix = "Choose an `ApplicationName` without a hyphen; an underscore is allowed. The package's "
            "name, which ends in it, must follow, and with it program, desktop file and icons.",
     .example = "[X-Application]\n"
                "ApplicationName=flight_log\n",
     .relatedIds = {"application-name-hyphen", "application-identity-mismatch"},
     .message = &kHyphenBreaksServices},
    {.id = "application-name-hyphen",
     .severity = Severity::Warning,
     .title = "ApplicationName holds a hyphen",
     .demand = "`ApplicationName` should not contain a `-`.",
     .why = "The application can then never have a service on the bus or in the system, since the "
            "name becomes part of a name in which a hyphen is not allowed.",
     .fix = "Nothing, if the application needs no service. Otherwise choose a name without a "
            "hyphen; an underscore is allowed. The package's name, which ends in it, must follow, "
            "and with it program, desktop file and icons.",
     .example = "[X-Application]\n"
                "ApplicationName=flight_log\n",
     .relatedIds = {"application-name-hyphen-with-service", "application-identity-mismatch"},
     .message = &kHyphenNotRecommended},
};

}  // namespace

Chapter sandboxChapter() {
    return {"Sandbox section", kEntries};
}

}  // namespace pkgvet::cli
