// The catalogue: findings on where a package installs its files.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/files/file_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "main-binary-unwanted",
     .title = "Application in QML alone has a main program",
     .demand = "A package whose desktop file starts a QML launcher installs nothing at "
               "/usr/bin/NAME, where NAME is the name of the package.",
     .why = "The program would never be started, and it is not clear what the application is.",
     .fix = "Remove the program from `%install` and `%files` in the .spec file. If it is the "
            "application, let `Exec` in the desktop file start it in place of the launcher.",
     .example = "Exec=/usr/bin/org.example.pilot\n",
     .relatedIds = {"qml-only-application", "desktop-exec-invalid"},
     .message = &kMainBinaryMustNotExist},
    {.id = "sealwatchd-invalid-json",
     .title = "Configuration of the integrity service is not valid JSON",
     .demand = "/etc/sealwatchd/config.d/NAME.json, where NAME is the name of the package, is "
               "valid JSON. It is read, and must be there, also where a longer path of the package "
               "only holds that text.",
     .why = "The service could not protect the files of the application.",
     .fix = "Correct the file, or remove it from the .spec file. `python3 -m json.tool` tells "
            "where it is wrong.",
     .example = "{\n"
                "    \"watch\": [\"elf:/usr/bin/org.example.pilot\"]\n"
                "}\n",
     .relatedIds = {"sealwatchd-mismatch"},
     .message = &kSealwatchdInvalidJson},
    {.id = "sealwatchd-mismatch",
     .title = "Configuration of the integrity service names a file that the package lacks",
     .demand = "Each entry of `watch` in /etc/sealwatchd/config.d/NAME.json, where NAME is the "
               "name of the package, is the path of a file of the package, perhaps behind `file:` "
               "or `elf:`.",
     .why = "An application may have its own files watched and no others.",
     .fix = "Correct or remove the entries in the file. Paths are absolute, and wildcards are not "
            "known. The finding comes once, however many entries are wrong.",
     .example = "{\n"
                "    \"watch\": [\n"
                "        \"elf:/usr/bin/org.example.pilot\",\n"
                "        \"file:/usr/share/org.example.pilot/route.txt\"\n"
                "    ]\n"
                "}\n",
     .relatedIds = {"sealwatchd-invalid-json"},
     .message = &kSealwatchdMismatch},
    {.id = "forbidden-file-extension",
     .title = "Left-over of an editor or of version control",
     .demand = "Outside of the package's own directories no path ends in .git, .svn, .hg, .bzr, "
               ".cvs, .DS_Store or .swp.",
     .why = "Such files got in by mistake and often tell more than was meant.",
     .fix = "Do not install the file: copy single files in `%install` of the .spec file in place "
            "of whole directories, or delete it there.",
     .example = "%install\n"
                "find %{buildroot} -name '*.swp' -delete\n",
     .relatedIds = {"path-not-allowed"},
     .message = &kForbiddenExtension},
    {.id = "bin-directory-owned",
     .title = "Package owns /usr/bin",
     .demand = "The package does not list the directory /usr/bin itself.",
     .why = "It belongs to the system, and a package that owns it can change its attributes.",
     .fix = "List the program and not the directory under `%files` in the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"path-not-allowed"},
     .message = &kBinDirectoryOwned},
    {.id = "libexec-wrong-format",
     .title = "File in the directory of helper programs is not a program of this platform",
     .demand = "Each file in /usr/libexec/NAME/, where NAME is the name of the package, is an ELF "
               "file in little-endian byte order.",
     .why = "The directory is for programs of the application and for nothing else.",
     .fix = "Install data into `%{_datadir}/%{name}/` in the .spec file, and compile programs for "
            "the device.",
     .example = "install -D -m 0644 rules.js %{buildroot}%{_datadir}/%{name}/rules.js\n",
     .relatedIds = {"executable-wrong-format"},
     .message = &kBadExecutableFormat},
    {.id = "debug-files",
     .title = "Package holds debug symbols or sources",
     .demand = "The package installs nothing into /usr/lib/debug or /usr/src/debug.",
     .why = "They are of no use on a device and take a lot of room.",
     .fix = "Do not list them under `%files` in the .spec file. rpmbuild puts them into packages "
            "of their own, which are not handed in; or do without them.",
     .example = "%global debug_package %{nil}\n",
     .relatedIds = {"path-not-allowed"},
     .message = &kDebugFiles},
    {.id = "path-not-allowed",
     .title = "File is installed where it is not allowed",
     .demand = "With NAME the name of the package, a package installs into /usr/share/NAME/, "
               "/usr/libexec/NAME/ and, for its organization and application, "
               "/usr/share/common/ORGANIZATION/APPLICATION/. Besides it installs "
               "/usr/bin/NAME, /usr/share/applications/NAME.desktop, files below "
               "/usr/share/icons/hicolor/, /etc/sealwatchd/config.d/NAME.json, and what the rule "
               "files of its profile list.",
     .why = "What belongs to an application lies in places of its own, so that it can neither "
            "replace nor influence anything else.",
     .fix = "Install the file below `%{_datadir}/%{name}/` in the .spec file, and read it from "
            "there. Of directories, list under `%files` only those of the application and no "
            "directory of the system. For files in /usr/lib/.build-id, switch build-id links off. "
            "`pkgvet rules show` prints which further places are allowed.",
     .example = "%global _build_id_links none\n"
                "\n"
                "%install\n"
                "install -D -m 0644 route.txt %{buildroot}%{_datadir}/%{name}/route.txt\n"
                "\n"
                "%files\n"
                "%{_datadir}/%{name}\n",
     .relatedIds = {"executable-wrong-location", "debug-files", "bin-directory-owned"},
     .message = &kLocationNotAllowed},
    {.id = "main-binary-missing",
     .title = "Main program is missing",
     .demand = "The package installs /usr/bin/NAME, where NAME is the name of the package, unless "
               "the application is written in QML alone.",
     .why = "This is what the platform starts.",
     .fix = "Install the program under this name in the .spec file. For an application in QML "
            "alone, let `Exec` in the desktop file start `lumbra-qml NAME` and require the "
            "launcher.",
     .example = "install -D -m 0755 pilot %{buildroot}%{_bindir}/%{name}\n",
     .relatedIds = {"main-binary-not-executable", "desktop-exec-invalid"},
     .message = &kMainBinaryMustExist},
};

}  // namespace

Chapter pathChapter() {
    return {"Places of files", kEntries};
}

}  // namespace pkgvet::cli
