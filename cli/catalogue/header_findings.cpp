// The catalogue: findings on a package's header.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/meta/header_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "name-not-reverse-domain",
     .title = "Package name is not in reverse domain notation",
     .demand = "The package's name holds at least three components that are joined with dots, none "
               "of them empty.",
     .why = "Desktop file, program, icons and data directory of an application are all called by "
            "the package's name. A domain of your own keeps it from colliding with anybody else's.",
     .fix = "Rename the package in its .spec file: your domain, read from its end, then the name "
            "of the application. Program, desktop file, icons and data directory must follow, best "
            "by writing `%{name}` for it everywhere; so must `Icon`, `Exec`, `OrganizationName` "
            "and `ApplicationName` in the desktop file.",
     .example = "Name: org.example.pilot\n",
     .relatedIds = {"application-identity-mismatch", "desktop-file-missing", "path-not-allowed"},
     .message = &kNotDomainNotation},
    {.id = "scripts-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has scripts",
     .demand = "The package has none of the scriptlets `%pre`, `%post`, `%preun`, `%postun`, "
               "`%pretrans` and `%posttrans`, not even one that only names a program to run.",
     .why = "They run with all rights and outside the sandbox when a package is installed or "
            "removed. This finding rejects a package even where validation is switched off, and "
            "it cannot be waived.",
     .fix = "Remove these sections from the .spec file, and macros that expand to them. What they "
            "prepare, do in `%install` when it is the same on each device, otherwise in the "
            "application at its first start. Calls of `ldconfig` are not needed: libraries of an "
            "application lie in its own directory.",
     .example = "# Remove from the .spec file:\n"
                "%post -p /sbin/ldconfig\n",
     .message = &kScriptsNotAllowed},
    {.id = "mandatory-provide-missing",
     .title = "Package does not provide its profile's name",
     .demand = "A package of this profile provides the name that the profile prescribes, which the "
               "finding tells.",
     .why = "By this name the platform finds the one package that fills the role, such as device "
            "management.",
     .fix = "Add the name to the .spec file as `Provides` and also as `Conflicts`. If the package "
            "was never meant for the role, have it judged under another profile.",
     .example = "Provides: lumbra-mdm-provider\n"
                "Conflicts: lumbra-mdm-provider\n",
     .relatedIds = {"mandatory-conflict-missing"},
     .message = &kMandatoryProvideMissing},
    {.id = "mandatory-conflict-missing",
     .title = "Package does not conflict with its profile's name",
     .demand = "A package of this profile conflicts with the very name that it must provide, which "
               "the finding tells.",
     .why = "Providing a name and conflicting with it ensures that one such package at the most is "
            "installed. A package never conflicts with itself.",
     .fix = "Add the name to the .spec file as `Conflicts` and also as `Provides`. If the package "
            "was never meant for the role, have it judged under another profile.",
     .example = "Provides: lumbra-mdm-provider\n"
                "Conflicts: lumbra-mdm-provider\n",
     .relatedIds = {"mandatory-provide-missing"},
     .message = &kMandatoryConflictMissing},
    {.id = "provide-not-allowed",
     .title = "Package provides a name that is not its own",
     .demand = "A package provides only names in which its own name occurs, `application()`, "
               "`application(NAME.desktop)` for its own name, `mimehandler(TYPE)` for MIME types "
               "that are not reserved, and the name that its profile prescribes.",
     .why = "A package that provides somebody else's name could take that package's place, or "
            "become what other packages depend on.",
     .fix = "If the .spec file declares the name, remove that `Provides`. If rpmbuild found it by "
            "itself, as it does for a shared library such as `libroute.so.1()(64bit)`, exclude it, "
            "and the requirement on it as well. If it is a `mimehandler(...)`, the type is "
            "reserved for the system: remove it from `MimeType` in the desktop file.",
     .example = "%global __provides_exclude ^libroute\\\\.so.*$\n"
                "%global __requires_exclude ^libroute\\\\.so.*$\n",
     .relatedIds = {"dependency-not-allowed", "library-not-allowed"},
     .message = &kProvideNotAllowed},
    {.id = "conflict-not-allowed",
     .title = "Package conflicts with another",
     .demand = "A package conflicts with nothing but the name that its profile prescribes, and "
               "most profiles prescribe none.",
     .why = "An application must not keep another one from being installed.",
     .fix = "Remove the `Conflicts` line from the .spec file. Two applications of different names "
            "share no file, so that none is needed.",
     .example = "# Remove from the .spec file:\n"
                "Conflicts: org.example.copilot\n",
     .relatedIds = {"mandatory-conflict-missing", "obsolete-not-allowed"},
     .message = &kConflictNotAllowed},
    {.id = "obsolete-not-allowed",
     .title = "Package obsoletes another",
     .demand = "A package obsoletes nothing.",
     .why = "An update would remove the other package without asking, whoever it belongs to.",
     .fix = "Remove the `Obsoletes` line from the .spec file. A new version replaces the old one "
            "by its name alone; after a change of name, let the old package's last version tell "
            "its users.",
     .example = "# Remove from the .spec file:\n"
                "Obsoletes: org.example.oldpilot < 2.0\n",
     .relatedIds = {"conflict-not-allowed"},
     .message = &kObsoleteNotAllowed},
    {.id = "vendor-not-recommended",
     .severity = Severity::Warning,
     .title = "Package names a vendor that is tolerated",
     .demand = "A package names no vendor. This one is tolerated.",
     .why = "The vendor says who built the parts of the platform; an application's origin is "
            "established by its signature.",
     .fix = "Remove `Vendor` from the .spec file, and `%vendor` from the macros of the build "
            "machine.",
     .example = "# Remove from the .spec file:\n"
                "Vendor: pelzo\n",
     .relatedIds = {"vendor-not-allowed"},
     .message = &kVendorNotRecommended},
    {.id = "vendor-not-allowed",
     .title = "Package names a vendor",
     .demand = "A package names no vendor.",
     .why = "The vendor says who built the parts of the platform; an application's origin is "
            "established by its signature.",
     .fix = "Remove `Vendor` from the .spec file. If it does not stand there, the build machine "
            "sets it through the macro `%vendor`, in ~/.rpmmacros, in the build service's project "
            "configuration or in the distribution's own macros: define it away at the head of the "
            ".spec file.",
     .example = "%undefine vendor\n",
     .relatedIds = {"vendor-not-recommended"},
     .message = &kVendorNotAllowed},
    {.id = "dependency-unstable",
     .severity = Severity::Warning,
     .title = "Package requires what is unstable or deprecated",
     .demand = "A package requires only what the rule files list as allowed. This requirement is "
               "listed as unstable or deprecated and is tolerated.",
     .why = "An unstable interface may change and a deprecated one may go, and the application "
            "then stops working.",
     .fix = "If the .spec file declares it, replace the `Requires` or leave it out. If rpmbuild "
            "found it by itself, it is a library that some program of the package links: move to "
            "its successor, or carry the library in the package. `pkgvet rules show` prints what "
            "is allowed.",
     .example = "# In place of qt5-qtwebkit:\n"
                "Requires: qt5-qtdeclarative\n",
     .relatedIds = {"library-unstable", "dependency-not-allowed"},
     .message = &kDependencyUnstable},
    {.id = "dependency-not-allowed",
     .title = "Package requires what is not allowed",
     .demand = "A package requires only libraries and names that the rule files of its profile "
               "list.",
     .why = "Only what is listed is part of the platform's interface and there on each device.",
     .fix =
         "If the .spec file declares it, remove that `Requires`. If rpmbuild found it by itself, "
         "it is a library that some program of the package links, such as "
         "`libroute.so.1()(64bit)`: stop linking it, or carry it below `%{_datadir}/%{name}/lib` "
         "and exclude the requirement, which the package meets by itself. `pkgvet rules show` "
         "prints what is allowed.",
     .example = "%global __provides_exclude ^libroute\\\\.so.*$\n"
                "%global __requires_exclude ^libroute\\\\.so.*$\n",
     .relatedIds = {"library-not-allowed", "provide-not-allowed", "dependency-unstable"},
     .message = &kDependencyNotAllowed},
};

}  // namespace

Chapter headerChapter() {
    return {"Package header", kEntries};
}

}  // namespace pkgvet::cli
