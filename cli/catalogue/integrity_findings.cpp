// The catalogue: the program's own findings, on whether what is judged is what would be installed.
#include <algorithm>
#include <array>
#include <iterator>

#include "cli/catalogue/catalogue_tables.h"
#include "cli/catalogue/content_findings.h"
#include "cli/catalogue/integrity_messages.h"
#include "cli/catalogue/payload_findings.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "source-package",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package of sources",
     .demand = "The header names the source package that it was built from, as that of every "
               "binary package does, and does not call itself one of sources.",
     .why = "rpm takes a package without that name for one of sources, and unpacks its files where"
            " it builds packages instead of where their paths say.",
     .fix = "Judge the binary package. It is the one whose file does not end in `.src.rpm`.",
     .example = kBuildCommand,
     .message = &kSourcePackage},
    {.id = "other-operating-system",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package is for another operating system",
     .demand = "The header says that the package is for `linux`.",
     .why = "rpm refuses a package for another system, or installs it by rules that nobody looked "
            "at.",
     .fix = "Build the package on a Linux machine, without a `--target` that names another system.",
     .example = "rpmbuild --target aarch64-linux -bb org.example.pilot.spec\n",
     .message = &kOtherSystem},
    {.id = "payload-format-unknown",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload is not an archive of cpio",
     .demand = "The header says that the payload is in the format `cpio`, or nothing about it.",
     .why = "Another format, such as that of the differences between two packages, is not unpacked"
            " in the way in which the rules see it.",
     .fix = "Build the package with rpmbuild, and judge what it builds and no package made of it.",
     .example = kBuildCommand,
     .message = &kPayloadFormatUnknown},
    {.id = "relocatable-package",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Files can be installed in another place",
     .demand = "The header has no prefixes, by which rpm would put files in other directories than"
               " those that their paths name.",
     .why = "The rules judge the paths of the header. Whoever installs a relocatable package can "
            "choose others.",
     .fix = "Remove the line `Prefix` or `Prefixes` from the .spec file.",
     .example = "Name: org.example.pilot\n"
                "Version: 1.0\n",
     .message = &kRelocatable},
    {.id = "trigger-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has triggers",
     .demand = "The package has no section `%triggerin`, `%triggerun`, `%triggerprein` or "
               "`%triggerpostun`, nor any part of one.",
     .why = "A trigger runs as root when another package is installed or removed. The rule on "
            "scripts does not look at triggers.",
     .fix = "Remove the sections from the .spec file. What they did has to be done by the "
            "application, with its own rights.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed", "file-trigger-not-allowed"},
     .message = &kTrigger},
    {.id = "file-trigger-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has file triggers",
     .demand = "The package has no section `%filetriggerin`, `%filetriggerun` or "
               "`%filetriggerpostun`, nor any part of one.",
     .why = "A file trigger runs as root whenever a package installs or removes files below a "
            "directory, and the rule on scripts does not look at it.",
     .fix = "Remove the sections from the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed", "trigger-not-allowed"},
     .message = &kFileTrigger},
    {.id = "transaction-file-trigger-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has file triggers of transactions",
     .demand = "The package has no section `%transfiletriggerin`, `%transfiletriggerun` or "
               "`%transfiletriggerpostun`, nor any part of one.",
     .why = "Such a trigger runs as root once for each transaction that touches files below a "
            "directory, and the rule on scripts does not look at it.",
     .fix = "Remove the sections from the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed", "trigger-not-allowed"},
     .message = &kTransactionFileTrigger},
    {.id = "verify-script-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has a verify script",
     .demand = "The package has no section `%verifyscript`, nor any part of one.",
     .why = "The script runs as root when somebody asks rpm to verify the package, and the rule on"
            " scripts does not look at it.",
     .fix = "Remove the section from the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed"},
     .message = &kVerifyScript},
    {.id = "transaction-script-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has a script around its removal",
     .demand = "The package has no section `%preuntrans` or `%postuntrans`, nor any part of one.",
     .why = "Recent versions of rpm run these scripts as root, and the rule on scripts does not "
            "look at them.",
     .fix = "Remove the sections from the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed"},
     .message = &kTransactionScript},
    {.id = "script-flags-not-allowed",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package has flags of scripts",
     .demand = "The header has no flags that say how a script is to be run.",
     .why = "They belong to a script. rpm may expand macros in it, or take what it prints for "
            "commands.",
     .fix = "Remove the script section together with its options from the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"scripts-not-allowed"},
     .message = &kScriptFlags},
    {.id = "header-tag-unknown",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header has a tag that no package needs",
     .demand = "All tags of the header are among those that describe a package, list its files or "
               "name other packages.",
     .why = "A tag that these rules do not know may make rpm, or a plugin of it, do something at "
            "installation that nobody looked at.",
     .fix = "Build the package with rpmbuild, without policies, collections and users to be "
            "created, and without adding tags later.",
     .example = kBuildCommand,
     .relatedIds = {"trigger-not-allowed"},
     .message = &kTagUnknown},
    {.id = "header-tag-translated",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header has a tag in several languages",
     .demand = "Only summary, description and group of a package are translated.",
     .why = "rpm reads such a text in the language of the machine. It can be one here and another "
            "one on a device.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-tag-twice"},
     .message = &kTagTranslated},
    {.id = "account-created",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Package makes users or groups",
     .demand = "The package provides nothing whose name begins with `user(`, `group(` or "
               "`groupmember(`.",
     .why = "Later versions of rpm make the accounts that such names stand for, with any id, at "
            "installation.",
     .fix = "Remove the `Provides:` line, and the files below `/usr/lib/sysusers.d` for which "
            "rpmbuild adds one.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"provide-not-allowed"},
     .message = &kAccount},
    {.id = "header-tag-twice",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header has a tag twice",
     .demand = "Each tag stands in the header once.",
     .why = "Which of two values counts is not defined: it can be one here and the other one on a "
            "device.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-lists-disagree"},
     .message = &kTagTwice},
    {.id = "header-lists-disagree",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Lists of the header have different lengths",
     .demand = "Each list of what files have (modes, owners, flags, sizes, digests and so on) has "
               "one element for each file name.",
     .why = "A file without a mode or owner gets one that nobody chose, and a list that is too "
            "long is read on in another way elsewhere.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-index-out-of-range"},
     .message = &kListsDisagree},
    {.id = "header-index-out-of-range",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Directory of a file is not in the header",
     .demand = "The number that stands for the directory of a file is that of a directory in the "
               "header.",
     .why = "The file would go nowhere, or to what happens to stand behind the list.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-lists-disagree"},
     .message = &kIndexOutOfRange},
    {.id = "header-path-not-normal",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Path in the header is not normal",
     .demand = "Each path in the header begins with a slash and has no empty part, no `.` and no "
               "`..` between its slashes.",
     .why = "rpm installs to the place where such a path leads, while the rules judge it by its "
            "text: it would begin in a directory of the package and end in another one.",
     .fix = kBuildWithRpmbuild,
     .example = "%files\n"
                "%{_datadir}/%{name}/data\n",
     .relatedIds = {"header-path-split", "place-inside-path"},
     .message = &kPathNotNormal},
    {.id = "header-path-split",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Directory and name are not parted at the last slash",
     .demand = "In the header a directory ends with a slash, and the name of a file holds none.",
     .why = "rpm joins the two in some places and uses them one by one in others, so that the same"
            " file could be in two places.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-path-not-normal"},
     .message = &kPathSplit},
    {.id = "header-path-too-long",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Path in the header is too long",
     .demand = "A path in the header has less than 4,096 bytes.",
     .why = "No program can open such a file by its path, and so no rule can look at it.",
     .fix = "Give the file a shorter name, or put it in fewer directories.",
     .example = "%files\n"
                "%{_datadir}/%{name}/data\n",
     .message = &kPathTooLong},
    {.id = "header-path-twice",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Path is in the header twice",
     .demand = "Each path stands in the header once.",
     .why = "Of two entries with one path, one would be judged and the other one installed.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"header-tag-twice"},
     .message = &kPathTwice},
    {.id = "header-path-below-file",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Path goes through what is not a directory",
     .demand = "Whatever stands above a path of the header is a directory there, or is not in the "
               "header at all.",
     .why = "Where the header makes a link of a directory of the package, what lies below that "
            "path is written to wherever the link leads.",
     .fix = "Remove the link, or the files below it, from `%install` and `%files` in the .spec "
            "file.",
     .example = "%files\n"
                "%dir %{_datadir}/%{name}/data\n"
                "%{_datadir}/%{name}/data/map\n",
     .relatedIds = {"payload-type-differs"},
     .message = &kPathBelowFile},
    {.id = "place-inside-path",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Permitted place stands in the middle of a path",
     .demand = "A path that holds a place where packages may install begins with one, or is listed"
               " in the rule tree.",
     .why = "The rule on places looks for them anywhere in a path, so that it permits "
            "`/etc/cron.d/usr/share/icons/hicolor/evil`.",
     .fix = "Install the file below `/usr/share/NAME`, where NAME is the name of the package.",
     .example = "install -D -m 644 map %{buildroot}%{_datadir}/%{name}/map\n",
     .relatedIds = {"path-not-allowed", "header-path-not-normal"},
     .message = &kPlaceInside},
    {.id = "header-special-file",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header makes a device, fifo or socket",
     .demand = "Each entry of the header is a file, a directory or a link.",
     .why = "A device node gives whoever may open it the hardware behind it, past all permissions."
            " Applications have no use for fifos and sockets in packages: they make them when they"
            " run.",
     .fix = "Remove the entry from `%files` in the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .message = &kSpecialFile},
    {.id = "header-special-bit",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header sets a set-id or sticky bit",
     .demand = "No mode in the header has the setuid, setgid or sticky bit. Where the unpacked "
               "file has it as well, `setuid-file` says so instead.",
     .why = "rpm sets the modes of the header, and not those of the payload, which the rule on "
            "modes looks at. That rule does not look at directories.",
     .fix = "Correct the mode in `%files` or `%install` in the .spec file.",
     .example = "%attr(0755, root, root) %{_bindir}/%{name}\n",
     .relatedIds = {"setuid-file", "payload-mode-differs"},
     .message = &kHeaderSpecialBit},
    {.id = "header-writable-by-others",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header lets anybody write to a file",
     .demand = "No mode in the header lets everybody write. Where the unpacked file has that mode "
               "as well, `writable-by-others` says so instead.",
     .why = "rpm sets the modes of the header, and not those of the payload, which the rule on "
            "modes looks at.",
     .fix = "Correct the mode in `%files` or `%install` in the .spec file.",
     .example = "%attr(0644, root, root) %{_datadir}/%{name}/map\n",
     .relatedIds = {"writable-by-others", "payload-mode-differs"},
     .message = &kHeaderWritable},
    {.id = "file-capabilities",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header gives a program capabilities",
     .demand = "No file of the header has capabilities.",
     .why = "They are rights of root that the program has whoever starts it, and they are not part"
            " of its mode.",
     .fix = "Remove `%caps` from `%files` in the .spec file.",
     .example = "%files\n"
                "%{_bindir}/%{name}\n",
     .relatedIds = {"header-special-bit"},
     .message = &kCapabilities},
    {.id = "file-digest-missing",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Header has no digest of a file",
     .demand = "The header has a digest of each file that is installed.",
     .why = "Nothing would tell if the file were another one on the device.",
     .fix = kBuildWithRpmbuild,
     .example = kBuildCommand,
     .relatedIds = {"file-digests-weak"},
     .message = &kFileDigestMissing},
    {.id = "file-digests-weak",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Digests of files are too weak",
     .demand = "The digests of files are SHA-256 or stronger, or the header has such a digest of "
               "the whole payload.",
     .why = "Two files with the same MD5 or SHA-1 digest can be made, of which one is judged and "
            "the other one installed.",
     .fix = "Build the package with a version of rpm that is not older than 4.14, and without "
            "setting `_binary_filedigest_algorithm`.",
     .example = "%define _binary_filedigest_algorithm 8\n",
     .relatedIds = {"file-digest-missing"},
     .message = &kFileDigestsWeak},
};

// A chapter is one table.
constexpr auto kAllEntries = [] {
    std::array<Entry, std::size(kEntries) + std::size(kContentEntries) + std::size(kPayloadEntries)>
        all{};
    auto behind = std::copy(std::begin(kEntries), std::end(kEntries), all.begin());
    behind = std::copy(std::begin(kContentEntries), std::end(kContentEntries), behind);
    std::copy(std::begin(kPayloadEntries), std::end(kPayloadEntries), behind);
    return all;
}();

}  // namespace

Chapter integrityChapter() {
    return {"Package integrity", kAllEntries};
}

}  // namespace pkgvet::cli
