// The catalogue: findings on a package's header.
#include "cli/catalogue_tables.h"
#include "pkgvet/meta/meta_messages.h"

namespace pkgvet::cli {

namespace {

std::vector<Entry> nameAndScripts() {
    return {
        {.id = "name-not-reverse-domain",
         .title = "Package name is not in reverse domain notation",
         .demand = "The package's name has at least three components that are joined with dots, "
                   "none of them empty.",
         .why = "Name, desktop file, program and data directory of an application are all called "
                "by the package's name. A domain that you own keeps it from colliding with "
                "anybody else's.",
         .fix = "Rename the package in its .spec file: a domain of yours, read from its end, then "
                "the name of the application. Rename the desktop file, the icons and the program "
                "accordingly, best by using `%{name}` for all of them.",
         .example = "Name: org.example.pilot\n",
         .related = {"application-identity-mismatch", "desktop-file-missing", "path-not-allowed"},
         .pieces = {words(kNotDomainNotation)}},
        {.id = "scripts-not-allowed",
         .severity = Severity::Critical,
         .grave = true,
         .title = "Package has scripts",
         .demand = "The package has no scriptlet of any kind and no triggers.",
         .why = "Scriptlets run with all rights while a package is installed or removed, outside "
                "the sandbox. The finding rejects a package even where validation is switched off "
                "and cannot be waived.",
         .fix = "Remove `%pre`, `%post`, `%preun`, `%postun`, `%pretrans`, `%posttrans`, the "
                "`%trigger` and `%filetrigger` sections and `%verifyscript` from the .spec file, "
                "and macros that expand to them. What such a section prepares, do in `%install` "
                "when it is the same on each device, otherwise in the application when it starts "
                "for the first time.",
         .example = "# remove:\n"
                    "%post\n"
                    "mkdir -p /var/lib/pilot\n",
         .pieces = {words(kScriptsNotAllowed)}},
    };
}

}  // namespace

Chapter headerChapter() {
    return {"Package header", nameAndScripts()};
}

}  // namespace pkgvet::cli
