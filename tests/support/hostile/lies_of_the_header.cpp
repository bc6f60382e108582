#include <rpm/rpmtag.h>

#include "tests/support/base/joined_tables.h"
#include "tests/support/hostile/lies.h"
#include "tests/support/package/accepted_package.h"

namespace {

// One more file, in header and payload alike.
void addFile(CraftedPackage* package, const std::string& path) {
    package->file(packedFile(path, "evil\n"));
}

// The text in the header alone, with another mode.
void listMode(CraftedPackage* package, std::uint16_t mode) {
    package->list(packedFile(kAcceptedText, "data\n", mode));
}

// The names of the files without their directories.
void setNames(CraftedPackage* package, const std::vector<std::string>& names) {
    package->set(RPMTAG_BASENAMES, rpmTexts(names));
}

// As many values as there are files, and one more.
template <typename Value>
std::vector<Value> oneMore(const Value& value) {
    return std::vector<Value>(7, value);
}

const std::vector<Lie> kPaths = {
    {"a path leads out of its directory and into another",
     [](CraftedPackage* package) { addFile(package, kAcceptedData + "/../../../etc/evil"); },
     {"header-path-not-normal", "payload-name-leads-up"},
     "100644 /etc/evil 5"},
    {"a path has an empty component",
     [](CraftedPackage* package) { addFile(package, kAcceptedData + "//evil"); },
     {"header-path-not-normal", "payload-name-not-normal"},
     "100644 /usr/share/org.example.app/evil 5"},
    {"a path has a component that means its own directory",
     [](CraftedPackage* package) { addFile(package, kAcceptedData + "/./evil"); },
     {"header-path-not-normal", "payload-name-not-normal"},
     "100644 /usr/share/org.example.app/evil 5"},
    {"a path ends in a slash",
     [](CraftedPackage* package) { addFile(package, kAcceptedData + "/evil/"); },
     {"header-path-not-normal", "payload-name-not-normal"}},
    {"a path is relative",
     [](CraftedPackage* package) { addFile(package, kAcceptedData.substr(1) + "/evil"); },
     {"header-path-not-normal", "payload-file-extra", "payload-file-missing"}},
    {"a permitted place stands in the middle of a path",
     [](CraftedPackage* package) { addFile(package, "/etc/cron.d/usr/share/icons/hicolor/evil"); },
     {"place-inside-path"},
     "100644 /etc/cron.d/usr/share/icons/hicolor/evil 5"},
    {"a path is there twice",
     [](CraftedPackage* package) {
         setNames(package, {"org.example.app.desktop", "org.example.app", "data", "data", "qml",
                            "main.qml"});
     },
     {"header-path-twice", "payload-file-extra", "payload-file-missing"}},
    {"a name holds a slash",
     [](CraftedPackage* package) {
         setNames(package, {"org.example.app.desktop", "org.example.app", "data", "link", "qml",
                            "../main.qml"});
     },
     {"header-path-not-normal", "header-path-split", "payload-file-extra", "payload-file-missing"}},
    {"a path is too long",
     [](CraftedPackage* package) {
         addFile(package, kAcceptedData + "/" + std::string(5000, 'x'));
     },
     {"header-path-too-long", "payload-name-size"}},
};

const std::vector<Lie> kModes = {
    {"a file is set-user-id in the header alone",
     [](CraftedPackage* package) { listMode(package, 04755); },
     {"header-special-bit", "payload-mode-differs"},
     "104755 /usr/share/org.example.app/data 5"},
    {"a file is set-group-id in the header alone",
     [](CraftedPackage* package) { listMode(package, 02755); },
     {"header-special-bit", "payload-mode-differs"},
     "102755 /usr/share/org.example.app/data 5"},
    {"a file is sticky in the header alone",
     [](CraftedPackage* package) { listMode(package, 01644); },
     {"header-special-bit", "payload-mode-differs"},
     "101644 /usr/share/org.example.app/data 5"},
    {"a directory is sticky in the header alone",
     [](CraftedPackage* package) { package->list(packedDirectory(kAcceptedQml, 01755)); },
     {"header-special-bit", "payload-mode-differs"},
     "041755 /usr/share/org.example.app/qml"},
    {"a file is writable for all in the header alone",
     [](CraftedPackage* package) { listMode(package, 0666); },
     {"header-writable-by-others", "payload-mode-differs"},
     "100666 /usr/share/org.example.app/data 5"},
    {"a directory is writable for all in the header alone",
     [](CraftedPackage* package) { package->list(packedDirectory(kAcceptedQml, 0777)); },
     {"header-writable-by-others", "payload-mode-differs"},
     "040777 /usr/share/org.example.app/qml"},
    {"a file is executable in the header alone",
     [](CraftedPackage* package) { listMode(package, 0755); },
     {"payload-mode-differs"},
     "100755 /usr/share/org.example.app/data 5"},
    {"a file has capabilities",
     [](CraftedPackage* package) {
         PackedFile file = packedFile(kAcceptedText, "data\n");
         file.capabilities = "cap_sys_admin=ep";
         package->list(file);
     },
     {"file-capabilities"},
     "100644 /usr/share/org.example.app/data 5"},
};

const std::vector<Lie> kLists = {
    {"there are more names than modes",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEMODES, rpmInt16({0100644})); },
     {"header-lists-disagree", "header-path-below-file", "header-special-file",
      "payload-type-differs"}},
    {"there are more names than users",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEUSERNAME, rpmTexts({"root"})); },
     {"header-lists-disagree"}},
    {"there are more names than groups",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEGROUPNAME, rpmTexts({"root"})); },
     {"header-lists-disagree"}},
    {"there are more names than flags",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEFLAGS, rpmInt32({0})); },
     {"header-lists-disagree"}},
    {"there are more names than sizes",
     [](CraftedPackage* package) { package->set(RPMTAG_FILESIZES, rpmInt32({0})); },
     {"header-lists-disagree", "payload-size-differs"}},
    {"there are more names than digests",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEDIGESTS, rpmTexts({""})); },
     {"file-digest-missing", "header-lists-disagree"}},
    {"there are more names than targets of links",
     [](CraftedPackage* package) { package->set(RPMTAG_FILELINKTOS, rpmTexts({""})); },
     {"header-lists-disagree", "payload-target-differs"}},
    {"there are more names than numbers of directories",
     [](CraftedPackage* package) { package->set(RPMTAG_DIRINDEXES, rpmInt32({0})); },
     {"header-lists-disagree", "header-path-not-normal", "payload-file-extra",
      "payload-file-missing"}},
    {"there are more modes than names",
     [](CraftedPackage* package) {
         package->set(RPMTAG_FILEMODES, rpmInt16(oneMore<std::uint16_t>(0100644)));
     },
     {"file-digest-missing", "header-lists-disagree", "header-path-below-file",
      "payload-type-differs"}},
    {"there are more users than names",
     [](CraftedPackage* package) {
         package->set(RPMTAG_FILEUSERNAME, rpmTexts(oneMore<std::string>("root")));
     },
     {"header-lists-disagree"}},
    {"there are more flags than names",
     [](CraftedPackage* package) {
         package->set(RPMTAG_FILEFLAGS, rpmInt32(oneMore<std::uint32_t>(0)));
     },
     {"header-lists-disagree"}},
    {"the number of a directory is beyond their list",
     [](CraftedPackage* package) {
         package->set(RPMTAG_DIRINDEXES, rpmInt32({0, 1, 2, 2, 2, 9}));
     },
     {"header-index-out-of-range", "header-path-not-normal", "payload-file-extra",
      "payload-file-missing"}},
    {"there are no modes",
     [](CraftedPackage* package) { package->remove(RPMTAG_FILEMODES); },
     {"header-lists-disagree", "header-path-below-file", "header-special-file",
      "payload-type-differs"}},
};

}  // namespace

std::vector<Lie> liesOfTheHeader() {
    return joined<Lie>({kPaths, kModes, kLists});
}
