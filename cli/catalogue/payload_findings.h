// The catalogue: the program's own findings on a payload that was not unpacked. They belong to the
// chapter of those on the integrity of a package.
#pragma once

#include "cli/catalogue/catalogue.h"
#include "cli/catalogue/payload_messages.h"

namespace pkgvet::cli {

inline constexpr std::string_view kPayloadFix =
    "Build the package with rpmbuild, and let nothing change it afterwards. No tool of a "
    "distribution writes a payload like this one.";
inline constexpr std::string_view kPayloadExample = "rpmbuild -bb org.example.pilot.spec\n";

inline constexpr Entry kPayloadEntries[] = {
    {.id = "payload-foreign-bytes",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds bytes that belong to no file",
     .demand = "The entries of the payload follow one another directly, from its first byte to "
               "the last entry.",
     .why = "cpio skips what it does not understand until it finds something that it does. Where "
            "rpm and cpio do not begin with the same byte, they do not unpack the same files. "
            "Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-foreign-format", "payload-goes-on"},
     .message = &kPayloadForeignBytes},
    {.id = "payload-foreign-format",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds an entry in another format",
     .demand = "Each entry of the payload is in the format that is known as newc and begins with "
               "070701.",
     .why = "rpm and cpio do not read the same formats. rpm's own for files of 4 GiB and more is "
            "one that cpio skips, and takes for an archive what stands in the data of such a "
            "file. Nothing from there on was unpacked.",
     .fix = "Keep each file of the package below 4 GiB, so that rpmbuild writes the usual format, "
            "and build the package with rpmbuild.",
     .example = kPayloadExample,
     .relatedIds = {"payload-foreign-bytes"},
     .message = &kPayloadForeignFormat},
    {.id = "payload-fields-invalid",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds an entry with a number that cannot be read",
     .demand = "Each number of an entry of the payload is written as eight hexadecimal digits.",
     .why = "What a program makes of any other text is its own affair, so that rpm and cpio may "
            "see a name or a file end at different places. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .message = &kPayloadFieldsInvalid},
    {.id = "payload-padding-not-empty",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds bytes between two entries",
     .demand = "The up to three bytes that bring the next part of the payload to a multiple of "
               "four are NUL.",
     .why = "They belong to no file, so that nobody judges what stands there. Nothing from there "
            "on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .message = &kPayloadPaddingNotEmpty},
    {.id = "payload-trailer-has-data",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Last entry of the payload has data",
     .demand = "The entry that ends the payload is empty.",
     .why = "It belongs to no file, so that nobody judges what stands there.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-goes-on"},
     .message = &kPayloadTrailerHasData},
    {.id = "payload-goes-on",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload goes on behind its last entry",
     .demand = "Behind the entry that ends it, the payload holds nothing but NUL bytes.",
     .why = "cpio stops at that entry. A second archive behind it would be seen by other tools, "
            "and by nobody who judges.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-trailer-has-data"},
     .message = &kPayloadGoesOn},
    {.id = "payload-name-size",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Name in the payload is empty or too long",
     .demand = "Each name in the payload has 1 to 4096 bytes.",
     .why = "No path of a device is longer, and rpm and cpio do different things with one that "
            "is. Nothing from there on was unpacked.",
     .fix = "Shorten the path in `%install`, and build the package with rpmbuild.",
     .example = kPayloadExample,
     .message = &kPayloadNameSize},
    {.id = "payload-name-holds-nul",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Name in the payload holds a NUL byte",
     .demand = "A NUL byte stands at the end of each name in the payload, and nowhere else.",
     .why = "Programs read a name up to its first NUL byte or as far as its size says, and would "
            "unpack different files. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .message = &kPayloadNameEnd},
    {.id = "payload-name-absolute",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Name in the payload is absolute",
     .demand = "No name in the payload begins with a slash. rpm writes `./` ahead of each path.",
     .why = "cpio would write to that place of the machine that judges. Nothing from there on was "
            "unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-name-leads-up", "header-path-not-normal"},
     .message = &kPayloadNameAbsolute},
    {.id = "payload-name-leads-up",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Name in the payload leads out of its directory",
     .demand = "No name in the payload has a component `..`.",
     .why = "cpio would write to that place of the machine that judges, and rules on the text of "
            "a path would not see where it ends. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-name-absolute", "header-path-not-normal"},
     .message = &kPayloadNameLeadsUp},
    {.id = "payload-name-not-normal",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Name in the payload is not normal",
     .demand = "Behind a leading `./`, no name in the payload has an empty component or a "
               "component `.`, and none ends in a slash.",
     .why = "One file would have many names, so that no rule on names could be sure to meet it. "
            "Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-name-twice", "header-path-not-normal"},
     .message = &kPayloadNameNotNormal},
    {.id = "payload-name-twice",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds a name twice",
     .demand = "Each name stands in the payload once. Hard links are different names of one file.",
     .why = "It depends on the program and on times in the payload which of the two is there in "
            "the end. The second one was not unpacked, and nothing behind it.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-hard-links-contradict"},
     .message = &kPayloadNameTwice},
    {.id = "payload-directory-replaced",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload replaces a directory",
     .demand = "A name below which the payload has unpacked something is that of a directory.",
     .why = "It depends on the program whether the file or link takes the directory's place, and "
            "what then becomes of all that lies in it. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-unpacks-through-link"},
     .message = &kPayloadNameIsDirectory},
    {.id = "payload-unpacks-through-link",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload unpacks below what is not a directory",
     .demand = "What the payload unpacks below a name comes behind a directory of that name, or "
               "where nothing has that name.",
     .why = "Below a link that was unpacked before, cpio would write to wherever the link leads, "
            "which may be anywhere on the machine. Nothing from there on was unpacked.",
     .fix = "Make the name a directory in `%install`, or install the file to where the link leads. "
            "rpmbuild does not write such a payload.",
     .example = kPayloadExample,
     .relatedIds = {"payload-directory-replaced"},
     .message = &kPayloadBelowNonDirectory},
    {.id = "payload-special-file",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds a device, a fifo or a socket",
     .demand = "The payload holds files, directories and links.",
     .why = "Such an entry has no content that could be judged, and gives access to hardware or to "
            "other processes. Nothing from there on was unpacked.",
     .fix = "Remove `%dev` and what makes fifos or sockets from the .spec file. An application "
            "makes what it needs where it runs, and devices are the platform's.",
     .example = "# Remove from the .spec file:\n"
                "%dev(c, 1, 3) %{_datadir}/%{name}/null\n",
     .message = &kPayloadSpecialFile},
    {.id = "payload-unknown-type",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds an entry of an unknown type",
     .demand = "The payload holds files, directories and links.",
     .why = "rpm and cpio may see different things in a type that there is none of. Nothing from "
            "there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .message = &kPayloadUnknownType},
    {.id = "payload-directory-has-data",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload holds a directory with data",
     .demand = "The entry of a directory is empty.",
     .why = "cpio does not skip such data and would take it for the next entries, so that it "
            "unpacks files that rpm does not see. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-foreign-bytes"},
     .message = &kPayloadDirectoryHasData},
    {.id = "payload-root-directory",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload changes the root directory",
     .demand = "Where the payload has an entry for `/`, it is a directory that only its owner can "
               "write to.",
     .why = "A package would otherwise decide who can write to the root of a device, or to the "
            "directory in which it is judged. Nothing from there on was unpacked.",
     .fix = "Remove `/` from `%files`: it belongs to the platform.",
     .example = "# Remove from the .spec file:\n"
                "%dir /\n",
     .message = &kPayloadRootDirectory},
    {.id = "payload-link-target",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Target of a link in the payload is not a path",
     .demand = "The target of each symbolic link has 1 to 4096 bytes, none of them NUL.",
     .why = "No device can follow any other, and rpm and cpio do different things with it. Nothing "
            "from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .message = &kPayloadLinkTarget},
    {.id = "payload-hard-links-contradict",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Hard links in the payload contradict each other",
     .demand = "The names of one file say the same number of links, are not more than that, and "
               "none but the last comes with data.",
     .why = "cpio takes the data of the first for all of them and drops any other, where rpm would "
            "install it. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"payload-name-twice"},
     .message = &kPayloadHardLink},
    {.id = "payload-set-id-bit",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Payload sets a set-id bit that the header does not have",
     .demand = "A file has the setuid or setgid bit in the payload only where it has it in the "
               "header.",
     .why = "Where the two differ, it depends on the program that unpacks whether there is a "
            "program with the rights of another user. Nothing from there on was unpacked.",
     .fix = kPayloadFix,
     .example = kPayloadExample,
     .relatedIds = {"setuid-file"},
     .message = &kPayloadSetId},
};

}  // namespace pkgvet::cli
