#include "tests/support/package/accepted_package.h"

namespace {

constexpr const char* kLauncher = "libtessaraapp-launcher";

}  // namespace

RuleTree acceptingRules() {
    RuleTree tree;
    tree.regular().requires_.allowed = {kLauncher};
    tree.regular().qmlimports.allowed = {R"(QtQuick 2\.6)"};
    return tree;
}

std::string acceptedDesktopText() {
    return "[Desktop Entry]\nName=App\nType=Application\nIcon=" + kAcceptedName +
           "\nExec=lumbra-qml " + kAcceptedName +
           "\nX-Dorrit-Application-Type=ostrand-qt5\n"
           "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n";
}

CraftedPackage acceptedPackage() {
    CraftedPackage package(kAcceptedName);
    package.requirement(kLauncher);
    package.file(packedFile(kAcceptedDesktopFile, acceptedDesktopText()));
    package.file(packedDirectory(kAcceptedData)).file(packedDirectory(kAcceptedQml));
    package.file(packedFile(kAcceptedPage, "import QtQuick 2.6\nItem {}\n"));
    package.file(packedFile(kAcceptedText, "data\n")).file(packedLink(kAcceptedLink, "data"));
    return package;
}
