// The catalogue: findings on QML files.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/qml/qml_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "application-type-for-toolkit",
     .severity = Severity::Warning,
     .title = "Application uses the toolkit without its type",
     .demand = "`X-Dorrit-Application-Type` is `ostrand-qt5` where a QML file imports "
               "`Lumbra.Ostrand`.",
     .why = "Only the launcher's process of this type has the toolkit at hand.",
     .fix = "Set the key in the group `Desktop Entry` of the desktop file.",
     .example = "[Desktop Entry]\n"
                "X-Dorrit-Application-Type=ostrand-qt5\n",
     .relatedIds = {"application-type-not-recommended", "application-type-missing"},
     .message = &kShouldBeOstrandQt5},
    {.id = "qml-import-not-allowed",
     .title = "QML file imports what is not allowed",
     .demand = "A module that matches a disallowed pattern of the rule files, as all of the "
               "platform's do, is imported only in the versions that they list. A path in quotes "
               "is not absolute.",
     .why = "Only what is listed is part of the platform's interface. What lies outside the "
            "package may differ from device to device.",
     .fix = "Change the import in the QML file to a module and version that is allowed, written "
            "with one blank between them; `pkgvet rules show` prints which are. Take files by "
            "paths relative to the package's own /usr/share/NAME/qml/, where NAME is its name.",
     .example = "// In place of import QtQuick 3.0 and import \"/usr/share/other/qml\":\n"
                "import QtQuick 2.6\n"
                "import \"components\"\n",
     .relatedIds = {"qml-import-unstable"},
     .message = &kImportNotAllowed},
    {.id = "qml-import-unstable",
     .severity = Severity::Warning,
     .title = "QML file imports what is unstable or deprecated",
     .demand = "QML files import only modules that the rule files list as allowed. This one is "
               "listed as unstable or deprecated and is tolerated.",
     .why = "An unstable module may change and a deprecated one may go, and the application then "
            "stops working.",
     .fix = "Import a newer version or another module in the QML file; `pkgvet rules show` prints "
            "what is allowed. Where there is none, be ready for changes.",
     .example = "// In place of import QtQuick 1.1:\n"
                "import QtQuick 2.6\n",
     .relatedIds = {"qml-import-not-allowed"},
     .message = &kImportUnstable},
};

}  // namespace

Chapter qmlChapter() {
    return {"QML files", kEntries};
}

}  // namespace pkgvet::cli
