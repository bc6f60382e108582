// The catalogue: findings on a package's files as such.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/files/file_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "icon-missing",
     .title = "Icon is missing or has the wrong size",
     .demand = "For each size that the rule files name, 86, 108, 128 and 172 by default, the "
               "package installs /usr/share/icons/hicolor/SIZExSIZE/apps/NAME.png, where NAME is "
               "its name. The file is a PNG image of that width and height.",
     .why = "The user sees a sharp icon on a screen of any density.",
     .fix = "Draw the icon in the size that the finding names, and install it in the .spec file. "
            "A scaled file must be a PNG image and square; `file` tells its size. A `+` in the "
            "package's name keeps its icons from being found.",
     .example = "for size in 86 108 128 172; do\n"
                "    install -D -m 0644 icon-$size.png \\\n"
                "        %{buildroot}%{_datadir}/icons/hicolor/${size}x${size}/apps/%{name}.png\n"
                "done\n",
     .relatedIds = {"desktop-icon-invalid"},
     .message = &kIconNotFound},
    {.id = "hardcoded-path",
     .title = "File holds the path of the default user's home",
     .demand = "No file of the package, text or program, holds /home/defaultuser. Blanks and line "
               "breaks within it make no difference.",
     .why = "The home of a user may be called anything, and in the sandbox it lies elsewhere.",
     .fix = "Ask for the directory when the program runs: `QStandardPaths` in C++, "
            "`StandardPaths` in QML, `$HOME` elsewhere. If the text is in a program but not in its "
            "sources, it is the directory of the build: map it away with a compiler flag.",
     .example = "// In place of \"/home/defaultuser/Documents\":\n"
                "QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)\n"
                "\n"
                "# In the .spec file, where the directory of the build is meant:\n"
                "%global optflags %{optflags} -ffile-prefix-map=%{_builddir}=.\n",
     .relatedIds = {"rpath-not-allowed"},
     .message = &kHardcodedPath},
    {.id = "empty-directory",
     .severity = Severity::Warning,
     .title = "Directory is empty",
     .demand = "Directories that a package installs should hold something.",
     .why = "An empty directory may be left out at installation, and the application then misses "
            "it.",
     .fix = "Remove it from `%install` and `%files` in the .spec file, and create it when the "
            "application runs, in a place that it may write to.",
     .example = "// In the program:\n"
                "QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));\n",
     .message = &kEmptyDirectory},
    {.id = "managed-configuration-invalid",
     .title = "Managed configuration is not valid",
     .demand = "/usr/share/NAME/managed-configuration/configuration.xml, where NAME is the name "
               "of the package, is a regular file of well-formed XML that conforms to the "
               "platform's schema and has 256 KiB at the most.",
     .why = "Device management offers the application's settings to administrators from it.",
     .fix = "Correct the file, or remove it from the .spec file. `xmllint --noout` tells where it "
            "is not well-formed, and `xmllint --schema` where it does not conform.",
     .example = "xmllint --noout managed-configuration/configuration.xml\n",
     .message = &kParameterFileInvalid},
    {.id = "file-attributes-unreadable",
     .title = "File is listed but not there",
     .demand = "Each path that the package lists is in its payload.",
     .why = "What is not there cannot be judged.",
     .fix = "Remove `%ghost` from the line under `%files` in the .spec file, or remove the line: "
            "what the application creates at run time need not belong to the package.",
     .example = "# Remove from the .spec file:\n"
                "%ghost %{_datadir}/%{name}/cache.db\n",
     .message = &kAttributesNotRead},
    {.id = "setuid-file",
     .grave = true,
     .title = "File has its setuid, setgid or sticky bit set",
     .demand = "No file of the package has one of these bits set.",
     .why = "With setuid or setgid a program runs with the rights of its owner, which is root. "
            "This finding rejects a package even where validation is switched off, and it cannot "
            "be waived.",
     .fix = "Give the file an ordinary mode in the .spec file: three digits, or a 0 and three "
            "digits. What needs more rights, ask of the platform's services.",
     .example = "# In place of %attr(4755,root,root):\n"
                "%attr(0755,root,root) %{_bindir}/%{name}\n",
     .relatedIds = {"file-executable", "writable-by-others"},
     .message = &kSpecialBitSet},
    {.id = "file-executable",
     .title = "File must not be executable",
     .demand = "With NAME the name of the package, a file that its owner may execute is "
               "/usr/bin/NAME, lies in /usr/libexec/NAME/, or is a library with `.so` in its name "
               "below /usr/share/NAME/, /usr/lib/3rdparty/NAME/ or a directory of plug-ins.",
     .why = "What cannot be executed cannot be started by mistake or by an attacker.",
     .fix = "Install the file with mode 0644 in the .spec file. Helper programs belong into "
            "`%{_libexecdir}/%{name}/`.",
     .example = "install -D -m 0644 route.txt %{buildroot}%{_datadir}/%{name}/route.txt\n",
     .relatedIds = {"executable-wrong-location", "executable-wrong-format"},
     .message = &kMustNotBeExecutable},
    {.id = "writable-by-others",
     .title = "File or directory can be written by others than its owner",
     .demand = "Neither group nor others may write to what the package installs. Under the profile "
               "auth this is a warning.",
     .why = "Any program of the group, or any at all, could change the application.",
     .fix = "Set the mode in the .spec file: 0644 for files, 0755 for directories and programs. "
            "Where the mode comes from the source tree, take the permission away in `%install`.",
     .example = "%install\n"
                "chmod -R go-w %{buildroot}\n",
     .relatedIds = {"owner-not-root", "group-not-root"},
     .message = &kWritable},
    {.id = "owner-not-root",
     .title = "File does not belong to root",
     .demand = "All that the package installs belongs to the user root.",
     .why = "The application could otherwise change itself, and the user may not exist on the "
            "device.",
     .fix = "Set the owner at the head of `%files` in the .spec file, and in each `%attr`.",
     .example = "%files\n"
                "%defattr(-,root,root,-)\n",
     .relatedIds = {"group-not-root"},
     .message = &kUserShouldBeRoot},
    {.id = "group-not-root",
     .title = "File does not belong to the group root",
     .demand = "All that the package installs belongs to the group root.",
     .why = "The group may not exist on the device, or others may be in it.",
     .fix = "Set the group at the head of `%files` in the .spec file, and in each `%attr`.",
     .example = "%files\n"
                "%defattr(-,root,root,-)\n",
     .relatedIds = {"owner-not-root"},
     .message = &kGroupShouldBeRoot},
    {.id = "symlink-dangling",
     .severity = Severity::Info,
     .title = "Symbolic link leads to nothing that is there while the package is judged",
     .demand = "Nothing: this remark precedes the judgement of such a link. One with an absolute "
               "target inside the package is permitted.",
     .why = "The link is judged by its text, since there is no file to look at.",
     .fix = "Nothing, unless `symlink-target-not-allowed` stands beside it.",
     .example = "ln -s data-1 %{buildroot}%{_datadir}/%{name}/current\n",
     .relatedIds = {"symlink-target-not-allowed"},
     .message = &kBewareOfLinks},
    {.id = "symlink-target-not-allowed",
     .title = "Symbolic link leads out of the package",
     .demand = "A symbolic link leads to a path that the package itself installs.",
     .why = "What a link outside leads to is decided by whoever can write there.",
     .fix = "Let the link lead to a file of the package in `%install` of the .spec file, or remove "
            "it. A relative target is joined to the link's directory as it stands, so that `..` "
            "in it leads nowhere unless the file is there.",
     .example = "ln -s data-1 %{buildroot}%{_datadir}/%{name}/current\n",
     .relatedIds = {"symlink-dangling"},
     .message = &kLinkTargetNotAllowed},
};

}  // namespace

Chapter fileChapter() {
    return {"Files", kEntries};
}

}  // namespace pkgvet::cli
